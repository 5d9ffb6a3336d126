#include "engine/value_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "engine/support.h"

namespace kelvane {
namespace {

constexpr SolveRange kTen{-10, 10, 0.0025F};
constexpr PointRule kSimpleY{Dependent::Y, CalcMode::Simple, {}};
constexpr PointRule kSimpleZ{Dependent::Z, CalcMode::Simple, {}};
constexpr PointRule kAdvancedY{Dependent::Y, CalcMode::Advanced, kTen};

std::string Text(const std::string& line, const PointRule& rule, const TableState& state = {})
{
    return TableText(FillTable(state, Prepared(line), rule), rule.Variable, ',');
}

TEST(ValueTable, RowsStandElsewhere)
{
    const std::tuple<const char*, PointRule, TableState, const char*> cases[] = {
        {"y=x^2", kSimpleY, {}, "x,y\n-2,4\n-1,1\n0,0\n1,1\n2,4\n"},
        {"y=x", kSimpleY, {.TableCentreX = 5}, "x,y\n3,3\n4,4\n5,5\n6,6\n7,7\n"},
        {"y=3", kSimpleY, {.TableCentreX = 2, .PageStep = 0}, "x,y\n2,3\n2,3\n2,3\n2,3\n2,3\n"},
        {"y=x", kSimpleY, {.PageStep = 0.5F}, "x,y\n-0.2,-0.2\n-0.1,-0.1\n0,0\n0.1,0.1\n0.2,0.2\n"},
        {"y=x", kSimpleY, {.PageStep = -5}, "x,y\n2,2\n1,1\n0,0\n-1,-1\n-2,-2\n"},
        {"y=1/x", kSimpleY, {}, "x,y\n-2,-0.5\n-1,-1\n0,\n1,1\n2,0.5\n"},
        {"z=x-y", kSimpleZ, {}, "x,y,z\n-2,-2,0\n-1,-1,0\n0,0,0\n1,1,0\n2,2,0\n"},
        {"z=xy",
         kSimpleZ,
         {.TableCentreX = 10, .TableCentreY = 1},
         "x,y,z\n8,-1,-8\n9,0,0\n10,1,10\n11,2,22\n12,3,36\n"}};
    for (const auto& [line, rule, state, text] : cases)
        EXPECT_EQ(Text(line, rule, state), text) << line;
}

TEST(ValueTable, RowWithoutValueShowsSomethingNew)
{
    const TableRows rows = FillTable({}, Prepared("y=1/(x+1)+2"), kSimpleY); // x = -2: 1, -1: none
    EXPECT_TRUE(rows[0].HasValue);
    EXPECT_FALSE(rows[1].HasValue);
    EXPECT_EQ(rows[1].Y, 1) << "what the evaluation left";
    EXPECT_TRUE(rows[2].HasValue);
    EXPECT_EQ(rows[2].Y, 3);
}

TEST(ValueTable, BisectionMissesTheCurve)
{
    const TableRows rows = FillTable({.PageStep = 15}, Prepared("x^2+y^2=25"), kAdvancedY);
    for (const TableRow& row : rows) { // x = -6, -3, 0, 3, 6
        EXPECT_EQ(row.HasValue, std::fabs(row.X) < 5) << row.X;
        if (row.HasValue) {
            EXPECT_NEAR(std::hypot(row.X, row.Y), 5, 0.001) << row.X;
        }
    }
}

TEST(ValueTable, SameTableHasOtherNumbersAfterPaging)
{
    // Falling equations: their directions would alternate if one were remembered.
    for (const char* const line : {"y=x", "y+x=y^3", "x^2+y^2=25"}) {
        const std::string first = Text(line, kAdvancedY);
        TableState state;
        for (const PageTurn turn : {PageTurn::Next, PageTurn::Previous}) {
            EXPECT_TRUE(TurnPage(state, turn, PageAxis::X));
            Text(line, kAdvancedY, state);
        }
        EXPECT_EQ(Text(line, kAdvancedY, state), first) << line;
    }
}

TEST(ValueTable, PagesOverlapOrRunAlongTheOtherVariable)
{
    TableState state{.TableCentreX = 1, .TableCentreY = 2, .PageStep = 2.5F};
    EXPECT_TRUE(TurnPage(state, PageTurn::Next, PageAxis::X));
    EXPECT_EQ(state.TableCentreX, 3.5F);
    EXPECT_EQ(state.TableCentreY, 2);
    EXPECT_TRUE(TurnPage(state, PageTurn::Previous, PageAxis::Y));
    EXPECT_EQ(state.TableCentreX, 3.5F);
    EXPECT_EQ(state.TableCentreY, -0.5F);
    EXPECT_EQ(state.PageStep, 2.5F);
}

TEST(ValueTable, PageTurnsOutOfTheRangeOfSingles)
{
    TableState state{.PageStep = 2e38F};
    EXPECT_TRUE(TurnPage(state, PageTurn::Next, PageAxis::X));
    EXPECT_FALSE(TurnPage(state, PageTurn::Next, PageAxis::X)) << "4e38";
    EXPECT_EQ(state.TableCentreX, 2e38F);
    EXPECT_TRUE(TurnPage(state, PageTurn::Previous, PageAxis::Y)) << "the other is free";
    state = {.TableCentreX = 3e38F, .PageStep = 1e37F};
    EXPECT_TRUE(TurnPage(state, PageTurn::Next, PageAxis::X)) << "3.1e38 and a little";
    EXPECT_FALSE(SetStep(state, "2e37")) << "a row at 3.5e38";
    EXPECT_EQ(state.PageStep, 1e37F);
}

TEST(ValueTable, StepIsReadWrongly)
{
    const std::string zeros(400, '0');
    const std::tuple<std::string, float> cases[] = {{"1", 5},
                                                    {"0.1", 0.5F},
                                                    {"0,1", 0.5F},
                                                    {" 2", 10},
                                                    {"+2", 10},
                                                    {"-.5", -2.5F},
                                                    {"\u22122", -10},
                                                    {"2.", 10},
                                                    {"1e3", 5000},
                                                    {"1E-1x", 0.5F},
                                                    {"2e", 10},
                                                    {"3 cm", 15},
                                                    {"1,5,5", 5},
                                                    {"1.5,5", 7.5F},
                                                    {"", 0},
                                                    {"abc", 0},
                                                    {"inf", 0},
                                                    {"nan", 0},
                                                    {"--5", 0},
                                                    {"+-5", 0},
                                                    {".", 0},
                                                    {"-", 0},
                                                    {"e5", 0},
                                                    {"1e-999", 0},
                                                    {"0e999", 0},
                                                    {"0." + zeros + "1", 0},
                                                    {"0." + zeros + "1e401", 5},
                                                    {"6.8e37", 3.4e38F}};
    for (const auto& [text, pageStep] : cases) {
        TableState state{.PageStep = 77};
        EXPECT_TRUE(SetStep(state, text)) << text;
        EXPECT_EQ(state.PageStep, pageStep) << text;
    }
}

TEST(ValueTable, StepTooLargeIsTaken)
{
    for (const std::string& text : {std::string("7e37"), std::string("-7e37"), std::string("1e999"),
                                    std::string("-1e99999999999999999999"), std::string(400, '9'),
                                    std::string(400, '9') + ".5.6e-800"}) {
        TableState state{.TableCentreX = 1, .PageStep = 10};
        EXPECT_FALSE(SetStep(state, text)) << text;
        EXPECT_EQ(state.PageStep, 10) << text;
        EXPECT_EQ(state.TableCentreX, 1) << text;
    }
}

TEST(ValueTable, CopiedTextIsNotOfTabs)
{
    const TableRows rows = FillTable({.PageStep = 2.5F}, Prepared("z=1/x"), kSimpleZ);
    EXPECT_EQ(TableText(rows, Dependent::Z, '\t'),
              "x\ty\tz\n-1\t-1\t-1\n-0.5\t-0.5\t-2\n0\t0\t\n0.5\t0.5\t2\n1\t1\t1\n");
}

} // namespace
} // namespace kelvane
