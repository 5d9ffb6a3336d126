#include "engine/point_evaluation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "engine/support.h"

namespace kelvane {

namespace {

// Nothing when the search gives up.
std::optional<float> SolveAt(const std::string& line, float x, const SolveRange& range,
                             SolveHalf direction = SolveHalf::Falling)
{
    const Equation equation = Prepared(line);
    EvalState state{.EvalX = x, .EvalSkip = true}; // skipped by an earlier point
    state.RightStart = EquationsStart(equation);
    state.SolveDirection = direction;
    const float y = SolveY(state, equation, range);
    EXPECT_TRUE(state.EvalError || !state.EvalSkip) << line;
    EXPECT_TRUE(y == state.EvalY || std::isnan(y));
    return state.EvalError ? std::nullopt : std::optional(y);
}

SolveHalf DirectionOf(EvalState& state, const std::string& line)
{
    const Equation equation = Prepared(line);
    state.RightStart = EquationsStart(equation);
    return DirectionY(state, equation);
}

constexpr SolveRange kTen{-10, 10, 0.0125F}; // as at 20 pixels per unit

} // namespace

TEST(SimpleValue, ResultBeyondASingleIsPlotted)
{
    const Equation equation = Prepared("y=abs(x)x");
    EvalState state{.EvalX = 3, .RightStart = EquationsStart(equation)};
    SimpleY(state, equation);
    EXPECT_EQ(state.EvalY, 9);
    SimpleZ(state, equation);
    EXPECT_EQ(state.EvalZ, 9);
    EXPECT_FALSE(state.EvalError);
    state.EvalX = 1e30F;
    SimpleY(state, equation);
    EXPECT_TRUE(state.EvalError);
}

TEST(Bisection, SolutionLiesOffTheCurve)
{
    using enum SolveHalf;
    constexpr std::tuple<const char*, float, SolveHalf, double> kCases[] = {
        {"x^2+y^2=100", 6, Falling, 8},
        {"x^2+y^2=100", 6, Rising, -8},
        {"y=x^3", 2, Falling, 8},
        {"x=y^3", 1, Rising, 1},
        {"2y-3=x", 1, Falling, 2}};
    for (const auto& [line, x, direction, y] : kCases)
        EXPECT_NEAR(SolveAt(line, x, kTen, direction).value_or(NAN), y, 0.0125) << line;
}

TEST(Bisection, SearchFindsWhatIsNotThereOrNeverEnds)
{
    for (const char* const line : {"y=20", "y=1/(x-x)", "y=x^2+1+y"})
        EXPECT_FALSE(SolveAt(line, 0, kTen)) << line;
    constexpr SolveRange kRanges[] = {
        {-3e38F, 3e38F, 0}, {1e30F, 3e38F, 0}, {1, -1, 0}, {NAN, 1, 1}, {-INFINITY, INFINITY, 1}};
    for (const SolveRange& range : kRanges)
        EXPECT_LT(std::fabs(SolveAt("y=x", 1e7F, range).value_or(1e7F) - 1e7F), 1) << range.Low;
}

TEST(Direction, SuccessiveFallingEquationsDoNotAlternate)
{
    using enum SolveHalf;
    EvalState state;
    // R - L over y: rising for x = y, falling for y = x, neither for a circle.
    EXPECT_EQ(DirectionOf(state, "x=y"), Rising);
    EXPECT_EQ(DirectionOf(state, "y=x"), Falling);
    EXPECT_EQ(DirectionOf(state, "x^2+y^2=9"), Falling);
    EXPECT_EQ(DirectionOf(state, "x=y^2"), Falling); // rises on one side only
    EXPECT_EQ(DirectionOf(state, "y=x"), Rising);
    EXPECT_EQ(DirectionOf(state, "y=x"), Falling);
    state.EvalError = true; // left by an earlier point
    EXPECT_EQ(DirectionOf(state, "x=y"), Rising);
    EXPECT_EQ(state.EvalY, -1);
}

TEST(Direction, AnotherVariableThanZIsTested)
{
    const Equation equation = Prepared("z=x+y");
    EvalState state{.EvalX = 1, .EvalY = 2, .RightStart = EquationsStart(equation)};
    state.SolveDirection = DirectionZ(state, equation);
    EXPECT_EQ(state.SolveDirection, SolveHalf::Falling);
    EXPECT_NEAR(SolveZ(state, equation, kTen), 3, 0.0125);
}

TEST(Swap, TokensOutsideTheRuleAreExchanged)
{
    // Two numbers side by side end the exchange.
    const std::tuple<void (*)(Equation&), const char*, const char*> cases[] = {
        {SwapXY, "x=y+z", "Y = X + Z"},           {SwapXZ, "x=y+z", "Z = Y + X"},
        {SwapYZ, "x=y+z", "X = Z + Y"},           {SwapXY, "x+2+y=x", "Y + 2 + X = Y"},
        {SwapXY, "x+2p=y", "Y + 2 3.141592 = Y"}, {SwapXY, "", ""}};
    for (const auto& [swap, line, slots] : cases) {
        Equation equation = Prepared(line);
        swap(equation);
        EXPECT_EQ(SlotsText(equation), slots) << line;
        swap(equation);
        EXPECT_EQ(SlotsText(equation), SlotsText(Prepared(line))) << line;
    }
}

TEST(PointTools, FirstTickedEquationIsMissed)
{
    EquationTable table;
    PrepareEquations(table, OnePage("y=1\ry=2\ry=3"));
    EquationTicks ticks;
    EXPECT_EQ(FirstTickedEquation(table, ticks), 4);
    ticks.EquationOn[3] = ticks.EquationOn[2] = true;
    EXPECT_EQ(FirstTickedEquation(table, ticks), 2);
}

TEST(PointTools, PointDependsOnTheOneBefore)
{
    using enum CalcMode;
    constexpr std::tuple<const char*, Dependent, CalcMode, double> kCases[] = {
        {"y=x^2+1", Dependent::Y, Simple, 10},    {"z=xy", Dependent::Z, Simple, 6},
        {"2y=x-1", Dependent::Y, Advanced, 1}, // falls
        {"x-1=2y", Dependent::Y, Advanced, 1}, // rises
        {"2z+x=y", Dependent::Z, Advanced, -0.5}, {"y=1/(x-3)", Dependent::Y, Simple, NAN},
        {"y^2=x-4", Dependent::Y, Advanced, NAN},
    };
    for (const auto& [line, variable, mode, value] : kCases) {
        const Equation equation = Prepared(line);
        const PointRule rule{variable, mode, {-10, 10, 0.01F}};
        EvalState state{.EvalX = 3, .EvalY = 2, .EvalError = true, .EvalSkip = true};
        for (int repeat = 0; repeat < 2; ++repeat) {
            BeginPoints(state, equation, rule);
            state.EvalX = 3;
            state.EvalY = 2;
            EXPECT_EQ(EvaluatePoint(state, equation, rule), !std::isnan(value)) << line;
            if (!std::isnan(value)) {
                EXPECT_NEAR(variable == Dependent::Y ? state.EvalY : state.EvalZ, value, 0.01)
                    << line;
            }
        }
    }
}

} // namespace kelvane
