#include "engine/calculation_modes.h"

#include <gtest/gtest.h>

#include <tuple>

namespace kelvane {
namespace {

using enum CalcMode;
using enum TickState;

TEST(CalculationModes, AdditionIsAvailableInSimpleModeOrLostInAdvanced)
{
    constexpr std::tuple<CalcMode, TickState, TickState> kCases[] = {
        {Simple, On, Unavailable},
        {Simple, Off, Unavailable},
        {Simple, Unavailable, Unavailable},
        {Advanced, Unavailable, Off},
        {Advanced, On, On},
        {Advanced, Off, Off}};
    for (const auto& [mode, before, after] : kCases) {
        for (TickState CalculationModes::*addition :
             {&CalculationModes::DoubleDraw, &CalculationModes::MultiDraw}) {
            CalculationModes modes;
            modes.*addition = before;
            Choose2D(modes, mode);
            EXPECT_EQ(modes.CalcMode2D, mode);
            EXPECT_EQ(modes.*addition, after) << static_cast<int>(before);
        }
    }
}

TEST(CalculationModes, DefaultsOrTakingOverTouchTheSheet)
{
    CalculationModes modes{true, true, Advanced, Advanced, On, Off};
    RestoreDefaults(modes);
    EXPECT_TRUE(modes.Mode3D && modes.AltFamily);
    EXPECT_EQ(modes.CalcMode2D, Simple);
    EXPECT_EQ(modes.CalcMode3D, Simple);
    EXPECT_EQ(modes.DoubleDraw, Unavailable);
    EXPECT_EQ(modes.MultiDraw, Unavailable);
    TakeChoices(modes, {false, false, Advanced, Advanced, On, Off});
    EXPECT_TRUE(modes.Mode3D && modes.AltFamily);
    EXPECT_EQ(modes.CalcMode2D, Advanced);
    EXPECT_EQ(modes.CalcMode3D, Advanced);
    EXPECT_EQ(modes.DoubleDraw, On);
    EXPECT_EQ(modes.MultiDraw, Off);
}

TEST(CalculationModes, ChartScoresAreOthers)
{
    constexpr std::tuple<CalculationModes, ChartChoice, ModeScores> kCases[] = {
        {{}, ChartChoice::Mode2D, {100, 75, 100, 20}},
        {{}, ChartChoice::Mode3D, {100, 75, 100, 20}},
        {{.CalcMode2D = Advanced}, ChartChoice::Mode2D, {90, 75, 50, 75}},
        {{.CalcMode2D = Advanced, .DoubleDraw = On}, ChartChoice::Mode2D, {90, 80, 47, 80}},
        {{.CalcMode2D = Advanced, .MultiDraw = On}, ChartChoice::Mode2D, {90, 95, 30, 95}},
        {{.CalcMode2D = Advanced, .DoubleDraw = On, .MultiDraw = On},
         ChartChoice::Mode2D,
         {90, 100, 27, 100}},
        {{.CalcMode2D = Advanced, .DoubleDraw = On}, ChartChoice::Mode3D, {100, 75, 100, 20}},
        {{.CalcMode3D = Advanced, .DoubleDraw = On}, ChartChoice::Mode3D, {80, 75, 20, 75}},
        {{.CalcMode3D = Advanced}, ChartChoice::Mode2D, {100, 75, 100, 20}}};
    for (const auto& [modes, chart, scores] : kCases)
        EXPECT_EQ(ScoresOf(modes, chart), scores) << testing::PrintToString(scores);
    EXPECT_EQ(BarLength(100), 750);
    EXPECT_EQ(BarLength(27), 202.5);
}

TEST(CalculationModes, DescriptionIsOfAnotherChoiceOrMisspelt)
{
    constexpr std::tuple<int, std::string_view, std::string_view> kCases[] = {
        {1, "Simple Mode: This is", "MUST begin with 'y='."},
        {2, "Advanced Mode: Kelvane", "you could enter 'x=xy+Siny' !"},
        {3, "Double Draw: To ensure", "Ex. 'x^2+y^2=100'."},
        {4, "Multi Draw: To finalize",
         "an invisible line &o&n the original graph. However, if "
         "needed, it will complete and finalizs the graph. Ex. "
         "'x=Siny' can't be drawn without this option chosen!"},
        {5, "Simple Mode: This mode in 3D", "works exactly like the one in 2D."},
        {6, "Advanced Mode: This mode in 3D", "works exactly like the one in 2D."},
        {0, "Click On Each Mode", "To See Its Descriptions Here!"},
        {7, "Click On Each Mode", "To See Its Descriptions Here!"},
        {-1, "Click On Each Mode", "To See Its Descriptions Here!"}};
    for (const auto& [index, begin, end] : kCases) {
        EXPECT_TRUE(ModeDescription(index).starts_with(begin)) << index;
        EXPECT_TRUE(ModeDescription(index).ends_with(end)) << index;
    }
    EXPECT_NE(ShownDescription(4).find("line on the original"), std::string::npos);
    EXPECT_EQ(ShownDescription(5), ModeDescription(5));
}

} // namespace
} // namespace kelvane
