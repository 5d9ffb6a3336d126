#include "engine/calculation_modes.h"

namespace kelvane {

namespace {

constexpr std::string_view kDescriptions[] = {
    "Click On Each Mode To See Its Descriptions Here!",
    ("Simple Mode: This is the simplest mode that Kelvane uses for its graphing calculations. It "
     "is fast, with a good drawing quality, but at a same time it causes a great deal of "
     "limitation in the form of the formulas users can enter. For example, all formulas MUST begin "
     "with 'y='."),
    ("Advanced Mode: Kelvane uses its Advanced computations to make it possible to graph any "
     "complicated non-standard formulas. In this mode you no longer need to be concern about "
     "having y on the left side of the equal sign or having it not associated with any "
     "coefficient. For example, you could enter 'x=xy+Siny' !"),
    ("Double Draw: To ensure that circles or other equations that have two different y values for "
     "each x value are drawn completely, Kelvane analyzes the formulas and if needed draws the "
     "complete graph based on both y values. Ex. 'x^2+y^2=100'."),
    ("Multi Draw: To finalize the process of drawing the most complete graph, Kelvane doublechecks "
     "its graphs by switching the x-y values and drawing the 90 degree rotated graph. This "
     "technique, if not needed, just draws an invisible line &o&n the original graph. However, if "
     "needed, it will complete and finalizs the graph. Ex. 'x=Siny' can't be drawn without this "
     "option chosen!"),
    "Simple Mode: This mode in 3D works exactly like the one in 2D.",
    "Advanced Mode: This mode in 3D works exactly like the one in 2D."};

constexpr ModeScores kSimple = {100, 75, 100, 20};
constexpr ModeScores kAdvanced2D = {90, 75, 50, 75};
constexpr ModeScores kAdvanced3D = {80, 75, 20, 75};
constexpr ModeScores kDoubleDraw = {0, 5, -3, 5}; // added to those of Advanced 2D
constexpr ModeScores kMultiDraw = {0, 20, -20, 20};

void Add(ModeScores& scores, const ModeScores& more)
{
    for (std::size_t i = 0; i < scores.size(); ++i)
        scores[i] += more[i];
}

} // namespace

void Choose2D(CalculationModes& modes, CalcMode mode)
{
    modes.CalcMode2D = mode;
    for (TickState* addition : {&modes.DoubleDraw, &modes.MultiDraw}) {
        if (mode == CalcMode::Simple)
            *addition = TickState::Unavailable;
        else if (*addition == TickState::Unavailable)
            *addition = TickState::Off;
    }
}

void RestoreDefaults(CalculationModes& modes)
{
    TakeChoices(modes, {});
}

void TakeChoices(CalculationModes& modes, const CalculationModes& chosen)
{
    modes.CalcMode2D = chosen.CalcMode2D;
    modes.CalcMode3D = chosen.CalcMode3D;
    modes.DoubleDraw = chosen.DoubleDraw;
    modes.MultiDraw = chosen.MultiDraw;
}

std::string_view ModeDescription(int index)
{
    const bool known = index >= 0 && index < static_cast<int>(std::size(kDescriptions));
    return kDescriptions[known ? index : 0];
}

std::string ShownDescription(int index)
{
    std::string shown(ModeDescription(index));
    std::erase(shown, '&');
    return shown;
}

ModeScores ScoresOf(const CalculationModes& modes, ChartChoice chart)
{
    if (chart == ChartChoice::Mode3D)
        return modes.CalcMode3D == CalcMode::Simple ? kSimple : kAdvanced3D;
    if (modes.CalcMode2D == CalcMode::Simple)
        return kSimple;
    ModeScores scores = kAdvanced2D;
    if (modes.DoubleDraw == TickState::On)
        Add(scores, kDoubleDraw);
    if (modes.MultiDraw == TickState::On)
        Add(scores, kMultiDraw);
    return scores;
}

} // namespace kelvane
