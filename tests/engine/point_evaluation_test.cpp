#include "engine/point_evaluation.h"

#include <gtest/gtest.h>

#include <cmath>

#include "engine/support.h"

namespace kelvane {

namespace {

struct Solution {
    float Value;
    bool Failed;
};

Solution SolveAt(const std::string& line, float x, const SolveRange& range,
                 SolveHalf direction = SolveHalf::Falling)
{
    const Equation equation = Prepared(line);
    EvalState state;
    state.EvalX = x;
    state.EvalSkip = true; // left by an earlier point
    state.RightStart = EquationsStart(equation);
    state.SolveDirection = direction;
    const float y = SolveY(state, equation, range);
    EXPECT_TRUE(state.EvalError || !state.EvalSkip) << line;
    EXPECT_TRUE(y == state.EvalY || std::isnan(y));
    return {y, state.EvalError};
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
    EvalState state;
    state.RightStart = EquationsStart(equation);
    state.EvalX = 3;
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
    struct Case {
        const char* Line;
        float X;
        SolveHalf Direction;
        double Y;
    };
    const Case cases[] = {
        {"x^2+y^2=100", 6, SolveHalf::Falling, 8}, {"x^2+y^2=100", 6, SolveHalf::Rising, -8},
        {"y=x^3", 2, SolveHalf::Falling, 8},       {"x=y^3", 1, SolveHalf::Rising, 1},
        {"2y-3=x", 1, SolveHalf::Falling, 2},
    };
    for (const Case& c : cases) {
        const Solution solution = SolveAt(c.Line, c.X, kTen, c.Direction);
        EXPECT_FALSE(solution.Failed) << c.Line;
        EXPECT_NEAR(solution.Value, c.Y, 0.0125) << c.Line;
    }
}

TEST(Bisection, SearchFindsWhatIsNotThereOrNeverEnds)
{
    constexpr float kHuge = 3e38F;
    EXPECT_TRUE(SolveAt("y=20", 0, kTen).Failed);
    EXPECT_TRUE(SolveAt("y=1/(x-x)", 0, kTen).Failed);
    EXPECT_TRUE(SolveAt("y=x^2+1+y", 0, kTen).Failed);
    for (const SolveRange& range :
         {SolveRange{-kHuge, kHuge, 0}, SolveRange{1e30F, kHuge, 0}, SolveRange{1, -1, 0},
          SolveRange{NAN, 1, 1}, SolveRange{-INFINITY, INFINITY, 1}}) {
        const Solution solution = SolveAt("y=x", 1e7F, range);
        EXPECT_TRUE(solution.Failed || std::fabs(solution.Value - 1e7F) < 1);
    }
}

TEST(Direction, SuccessiveFallingEquationsDoNotAlternate)
{
    EvalState state;
    // R - L over y: rising for x = y, falling for y = x, neither for a circle.
    EXPECT_EQ(DirectionOf(state, "x=y"), SolveHalf::Rising);
    EXPECT_EQ(DirectionOf(state, "y=x"), SolveHalf::Falling);
    EXPECT_EQ(DirectionOf(state, "x^2+y^2=9"), SolveHalf::Falling);
    EXPECT_EQ(DirectionOf(state, "y=x"), SolveHalf::Rising);
    EXPECT_EQ(DirectionOf(state, "y=x"), SolveHalf::Falling);
    state.EvalError = true; // left by an earlier point
    EXPECT_EQ(DirectionOf(state, "x=y"), SolveHalf::Rising);
    EXPECT_EQ(state.EvalY, -1);
}

TEST(Direction, AnotherVariableThanZIsTested)
{
    const Equation equation = Prepared("z=x+y");
    EvalState state;
    state.EvalX = 1;
    state.EvalY = 2;
    state.RightStart = EquationsStart(equation);
    state.SolveDirection = DirectionZ(state, equation);
    EXPECT_EQ(state.SolveDirection, SolveHalf::Falling);
    EXPECT_NEAR(SolveZ(state, equation, kTen), 3, 0.0125);
}

TEST(Swap, TokensOutsideTheRuleAreExchanged)
{
    struct Case {
        void (*Swap)(Equation&);
        const char* Line;
        const char* Slots;
    };
    const Case cases[] = {
        {SwapXY, "x=y+z", "Y = X + Z"},
        {SwapXZ, "x=y+z", "Z = Y + X"},
        {SwapYZ, "x=y+z", "X = Z + Y"},
        {SwapXY, "x+2p=y", "Y + 2 3.141592 = Y"}, // two numbers side by side end it
        {SwapXY, "", ""},
    };
    for (const Case& c : cases) {
        Equation equation = Prepared(c.Line);
        c.Swap(equation);
        EXPECT_EQ(SlotsText(equation), c.Slots) << c.Line;
        c.Swap(equation);
        EXPECT_EQ(SlotsText(equation), SlotsText(Prepared(c.Line))) << c.Line;
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

} // namespace kelvane
