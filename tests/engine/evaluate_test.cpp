#include "engine/evaluate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>

#include "engine/support.h"

namespace kelvane {

namespace {

std::optional<double> RightSide(const std::string& line, float x)
{
    const Equation equation = Prepared(line);
    return ValueFrom(EquationsStart(equation), equation, {.EvalX = x});
}

} // namespace

TEST(Evaluator, FormulaHasAnotherValueThanByHand)
{
    using Case = std::tuple<const char*, float, double>;
    const Case plain[] = {
        {"Y=-X+3", 2, 1},      {"Y=2*(X^2)", 3, 18},  {"Y=2(X^2)", 3, 18},  {"Y=2X^2", 3, 18},
        {"Y=1/2X", 3, 1.5},    {"Y=X/2/2", 4, 1},     {"Y=2-3-4", 0, -5},   {"Y=X(X+1)", 0, 1},
        {"Y=(X-5)^3", 2, -27}, {"Y=2x^2^3", 3, 5832}, {"Y=x^(.5)", 4, 2},   {"Y=Abs(X-5)", 2, 3},
        {"Y=ABS(-x)^2", 3, 9}, {"Y=XCos(X)", 0, 1},   {"Y=X*Cos(X)", 0, 0}, {"Y=0^X", 2, 0},
        {"Y=(1-1)^X", 0, 1},   {"Y=", 5, 0},          {"Y=()", 5, 0},       {"Y=3=4", 0, 3}};
    const Case computed[] = {
        {"Y=XCos(X)", 1, std::cos(1.0)},    {"Y=X-X^2+2Sinx", 2, 2 - 4 + 2 * std::sin(2.0)},
        {"Y=Asinx", 0.5F, std::asin(0.5)},  {"Y=Acosx", -0.5F, std::acos(-0.5)},
        {"Y=Atanx", 1e30F, std::acos(0.0)}, {"Y=e^(X)", 1, double{2.718282F}}};
    const Case surprising[] = {
        {"Y=2(X+1)^2", 2, 36}, // the base takes the 2 along
        {"Y=X*-2", 3, 2},      // the bare sign is a factor worth 0, which the 2 then replaces
        {"Y=2**x+1", 3, 1},    // a bare operator is a factor too, with an operand of its own
        {"Y=2Abs-x", 3, 3},    // the sign is the argument, and x replaces the term worth 0
        {"Y=2Sinxx", 2, 2 * std::sin(2.0) * 2}, // a function takes one factor
        {"Y=(X+0)*2", 3, 3},                    // the 0 ends the group, its ")" the rest
        {"Y=x^0.5", 2, 0.5},                    // x^0 and then .5: the point belongs to no run
        {"Y=x^-2", 3, 2},                       // x^0, which is 1, and then 2
    };
    const auto expectValues = [](const auto& cases) {
        for (const auto& [line, x, value] : cases)
            EXPECT_NEAR(RightSide(line, x).value_or(NAN), value, 1e-12 * std::fabs(value)) << line;
    };
    expectValues(plain);
    expectValues(computed);
    expectValues(surprising);
}

TEST(Evaluator, FailureIsTakenForAValue)
{
    // The square of 1e20 is beyond a single, e to the power 3600 beyond a double.
    constexpr std::pair<const char*, float> kCases[] = {
        {"Y=X/0", 1},       {"Y=1/X", 0},      {"Y=Log(X)", 0},       {"Y=Log(X)", -1},
        {"Y=Asin(X)", 1},   {"Y=Asin(X)", -1}, {"Y=Acos(X)", 1},      {"Y=Acos(X)", 2},
        {"Y=X^(.5)", -1},   {"Y=(X)^(-1)", 0}, {"Y=X*X", 1e20F},      {"Y=X+X", 3e38F},
        {"Y=X^2", 1e20F},   {"Y=e^(XX)", 60},  {"Y=Abs(e)^(XX)", 60}, {"Y=(1/(X-X))*2", 1},
        {"Y=3+Log(X)", -1}, {"Y=X", INFINITY}};
    for (const auto& [line, x] : kCases)
        EXPECT_FALSE(RightSide(line, x)) << line;
    EXPECT_FALSE(RightSide("Y=" + Repeated("9", 41), 0)) << "a literal beyond a single";
}

TEST(Evaluator, SingleArithmeticRunsInDoubleOrDoubleInSingle)
{
    const float tenth = 0.1F;
    const double wide = static_cast<double>(tenth);
    const double huge = static_cast<double>(1e20F);
    // A term worth 0 does not make the sum a double.
    const std::tuple<const char*, float, double> cases[] = {
        {"Y=X*X", tenth, tenth * tenth},   {"Y=X/3", tenth, tenth / 3.0F},
        {"Y=Abs(X)X", tenth, wide * wide}, {"Y=Abs(X)X", 1e20F, huge * huge},
        {"Y=.5+X+.5", 1e-9F, 1.0},         {"Y=X+Sin(X-X)+1", 1e-9F, 1.0}};
    for (const auto& [line, x, value] : cases)
        EXPECT_EQ(RightSide(line, x), value) << line;
    EXPECT_TRUE(RightSide("Y=Abs(X)*1E20", 1e30F));
}

TEST(Evaluator, PositionDoesNotEndWhereTheSideEnds)
{
    const Equation equation = Prepared("x^2+y^2=100");
    EvalState state{.EvalX = 3, .EvalY = 4};
    int position = 1;
    EXPECT_EQ(Evaluate(state, position, equation), 25);
    EXPECT_EQ(equation.Tok(position), Token::Equals);
    EXPECT_FALSE(state.EvalError);
}

TEST(Evaluator, DeepNestingOverflowsTheStack)
{
    EXPECT_EQ(RightSide("y=" + std::string(998, '(') + "x" + std::string(998, ')'), 7), 7);
    EXPECT_EQ(RightSide("=" + std::string(1998, '(') + "x", 7), 7);
    EXPECT_EQ(RightSide("y=x" + std::string(1997, '^'), 7), 1);
    const auto sines = RightSide("y=" + Repeated("sin", 1997) + "x", 0.5);
    EXPECT_TRUE(sines > 0 && sines < 0.1) << testing::PrintToString(sines);
}

} // namespace kelvane
