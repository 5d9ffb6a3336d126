#include "engine/evaluate.h"

#include <gtest/gtest.h>

#include <cmath>

#include "engine/support.h"

namespace kelvane {

namespace {

struct Outcome {
    double Value;
    bool Failed;
};

Outcome RightSide(const std::string& line, float x, float y = 0)
{
    const Equation equation = Prepared(line);
    EvalState state;
    state.EvalX = x;
    state.EvalY = y;
    int position = EquationsStart(equation);
    const double value = Evaluate(state, position, equation);
    return {value, state.EvalError};
}

} // namespace

TEST(Evaluator, FormulaHasAnotherValueThanByHand)
{
    struct Case {
        const char* Line;
        float X;
        double Value;
    };
    const Case cases[] = {
        {"Y=-X+3", 2, 1},
        {"Y=2*(X^2)", 3, 18},
        {"Y=2(X^2)", 3, 18},
        {"Y=2X^2", 3, 18},
        {"Y=2(X+1)^2", 2, 36}, // the base takes the 2 along
        {"Y=1/2X", 3, 1.5},
        {"Y=X/2/2", 4, 1},
        {"Y=X*-2", 3, 2}, // the bare sign is a factor worth 0, which the 2 then replaces
        {"Y=XCos(X)", 0, 1},
        {"Y=XCos(X)", 1, std::cos(1.0)},
        {"Y=X*Cos(X)", 0, 0},
        {"Y=X(X+1)", 0, 1},
        {"Y=X-X^2+2Sinx", 2, 2 - 4 + 2 * std::sin(2.0)},
        {"Y=2Sinxx", 2, 2 * std::sin(2.0) * 2}, // a function takes one factor
        {"Y=(X+0)*2", 3, 3},                    // the 0 ends the group, its ")" the rest
        {"Y=", 5, 0},
        {"Y=()", 5, 0},
        {"Y=0^X", 2, 0},
        {"Y=(1-1)^X", 0, 1},
        {"Y=(X-5)^3", 2, -27},
        {"Y=Abs(X-5)", 2, 3},
        {"Y=Asinx", 0.5F, std::asin(0.5)},
        {"Y=Acosx", -0.5F, std::acos(-0.5)},
        {"Y=Atanx", 1e30F, std::acos(0.0)},
        {"Y=3=4", 0, 3},
        {"Y=x^0.5", 2, 0.5}, // x^0 and then .5: the point belongs to no run
        {"Y=x^(.5)", 4, 2},
        {"Y=2-3-4", 0, -5},
        {"Y=2x^2^3", 3, 5832},
        {"Y=2**x+1", 3, 1}, // a bare operator is a factor too, with an operand of its own
        {"Y=2Abs-x", 3, 3}, // the sign is the argument, and x replaces the term worth 0
        {"Y=x^-2", 3, 2},   // x^0, which is 1, and then 2
        {"Y=ABS(-x)^2", 3, 9},
        {"Y=e^(X)", 1, static_cast<double>(2.718282F)},
    };
    for (const Case& c : cases) {
        const Outcome outcome = RightSide(c.Line, c.X);
        EXPECT_FALSE(outcome.Failed) << c.Line;
        EXPECT_NEAR(outcome.Value, c.Value, 1e-12 * std::fabs(c.Value)) << c.Line;
    }
}

TEST(Evaluator, FailureIsTakenForAValue)
{
    struct Case {
        const char* Line;
        float X;
    };
    constexpr Case kCases[] = {
        {"Y=X/0", 1},         {"Y=1/X", 0},
        {"Y=Log(X)", 0},      {"Y=Log(X)", -1},
        {"Y=Asin(X)", 1},     {"Y=Asin(X)", -1},
        {"Y=Acos(X)", 1},     {"Y=Acos(X)", 2},
        {"Y=X^(.5)", -1},     {"Y=(X)^(-1)", 0},
        {"Y=X*X", 1e20F}, // overflows a single
        {"Y=X+X", 3e38F},     {"Y=X^2", 1e20F},
        {"Y=e^(XX)", 60},     {"Y=Abs(e)^(XX)", 60},
        {"Y=(1/(X-X))*2", 1}, {"Y=3+Log(X)", -1},
        {"Y=X", INFINITY},    {"Y=99999999999999999999999999999999999999999", 0},
    };
    for (const Case& c : kCases)
        EXPECT_TRUE(RightSide(c.Line, c.X).Failed) << c.Line;
}

TEST(Evaluator, SingleArithmeticRunsInDoubleOrDoubleInSingle)
{
    const float tenth = 0.1F;
    EXPECT_EQ(RightSide("Y=X*X", tenth).Value, static_cast<double>(tenth * tenth));
    EXPECT_EQ(RightSide("Y=X/3", tenth).Value, static_cast<double>(tenth / 3.0F));
    EXPECT_EQ(RightSide("Y=X+1", 1e-9F).Value, 1.0);
    const double twice = static_cast<double>(tenth) * tenth;
    EXPECT_EQ(RightSide("Y=Abs(X)X", tenth).Value, twice);
    EXPECT_EQ(RightSide("Y=Abs(X)*1E20", 1e30F).Failed, false);
    EXPECT_EQ(RightSide("Y=Abs(X)X", 1e20F).Value, static_cast<double>(1e20F) * 1e20F);
    // A term worth 0 does not make the sum a double.
    EXPECT_EQ(RightSide("Y=X+Sin(X-X)+1", 1e-9F).Value, 1.0);
}

TEST(Evaluator, PositionDoesNotEndWhereTheSideEnds)
{
    const Equation equation = Prepared("x^2+y^2=100");
    EvalState state;
    state.EvalX = 3;
    state.EvalY = 4;
    int position = 1;
    EXPECT_EQ(Evaluate(state, position, equation), 25);
    EXPECT_EQ(equation.Tok(position), Token::Equals);
    EXPECT_FALSE(state.EvalError);
}

TEST(Evaluator, DeepNestingOverflowsTheStack)
{
    const std::string open(998, '(');
    const std::string close(998, ')');
    EXPECT_EQ(RightSide("y=" + open + "x" + close, 7).Value, 7);
    EXPECT_EQ(RightSide("=" + std::string(1998, '(') + "x", 7).Value, 7);
    EXPECT_EQ(RightSide("y=x" + std::string(1997, '^'), 7).Value, 1);
    std::string sines = "y=";
    for (int i = 0; i < 1997; ++i)
        sines += "sin";
    const double value = RightSide(sines + "x", 0.5).Value;
    EXPECT_TRUE(value > 0 && value < 0.1) << value;
}

} // namespace kelvane
