#include "engine/checks.h"

#include <gtest/gtest.h>

#include "engine/support.h"

namespace kelvane {

namespace {

// The message for the sheet's first fault; "" when it passes.
std::string MessageFor(const std::string& lines, const CalculationModes& modes,
                       const EquationTicks& ticks)
{
    EquationTable table;
    PrepareEquations(table, OnePage(lines));
    const auto fault = CheckEquations(table, ticks, modes);
    if (!fault)
        return "";
    const Message message = DescribeFault(*fault, table);
    return message.Title + ": " + message.Text;
}

EquationTicks Ticked(std::initializer_list<std::size_t> numbers)
{
    EquationTicks ticks;
    for (const std::size_t number : numbers)
        ticks.EquationOn[number] = true;
    return ticks;
}

constexpr CalculationModes kSimple2D;
constexpr CalculationModes kAdvanced2D{.CalcMode2D = CalcMode::Advanced};
constexpr CalculationModes kSimple3D{.Mode3D = true};

} // namespace

TEST(Checks, BadEquationPassesOrItsMessageDiffers)
{
    struct Case {
        const char* Lines;
        CalculationModes Modes;
        const char* Message;
    };
    const Case cases[] = {
        {"y=x+y", kSimple2D,
         "Error: Error in Equation 1: Variable 'Y' found on right side of '=' sign, therefore "
         "Advanced calculations are required. Please enable Advaced 2D calculation using "
         "'Complexity' button from 'Draw Menu'!"},
        {"x\ry\r\ry=z", kSimple2D,
         "Error: Error in Equations number 4: Z variable is not allowed in 2D mode! Switch to 3D "
         "Graph (from Sheet Menu) and try again."},
        {"y=Sin+x", kAdvanced2D,
         "Error: Error in Equations number 1: 'S+' is not valid! An operator or number between "
         "them is missing!"},
        {"y=xSinasinx", kSimple3D,
         "Error: Error in Equations number 1: 'SAs' is not valid! An operator or number between "
         "them is missing!"},
        {"y=x+1)", kSimple2D,
         "Error: Error in Equations number 1: unexpected close parenthesis ')'"},
        {"y=)(", kSimple2D, "Error: Error in Equations number 1: unexpected close parenthesis ')'"},
        {"y=1\ry=((x+1)", kSimple2D, "Error: Error in Equation 2: missing right parenthesis ')'"},
        {"y=x+1)\ry=(x", kSimple2D,
         "Error: Error in Equations number 1: unexpected close parenthesis ')'"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(MessageFor(c.Lines, c.Modes, Ticked({1, 2, 3, 4})), c.Message) << c.Lines;
}

TEST(Checks, GoodEquationIsRefused)
{
    struct Case {
        const char* Lines;
        CalculationModes Modes;
    };
    const Case cases[] = {
        {"y=x+y", kAdvanced2D}, {"y=x+y", kSimple3D},
        {"x=y", kSimple2D}, // the slot directly after "=" is not tested
        {"z=x", kSimple3D},     {"-x=2*sin(x)", kSimple2D},
        {"y=x+*2", kSimple2D},  {"y=(-x)-(+x)", kSimple2D},
        {"y=sin2x", kSimple2D}, {"y=0+((sin+", kSimple2D}, // a 0 ends the equation
        {"", kSimple2D},        {"q@#", kSimple2D},
        {"y=", kSimple2D},
    };
    for (const Case& c : cases)
        EXPECT_EQ(MessageFor(c.Lines, c.Modes, Ticked({1})), "") << c.Lines;
}

TEST(Checks, UntickedEquationIsCheckedOrALaterTickedOneIsNot)
{
    EXPECT_EQ(MessageFor("y=(\ry=x\ry=)", kSimple2D, Ticked({2})), "");
    EXPECT_EQ(MessageFor("y=(\ry=x\ry=)", kSimple2D, Ticked({2, 3})),
              "Error: Error in Equations number 3: unexpected close parenthesis ')'");
}

TEST(Checks, YEqualsIsSeenWhereItIsNot)
{
    EquationTable table;
    PrepareEquations(table, OnePage("Y =x\rx=3\ry"));
    EXPECT_FALSE(CheckYEquals(table, 1));
    const auto fault = CheckYEquals(table, 2);
    ASSERT_TRUE(fault);
    const Message message = DescribeFault(*fault, table);
    EXPECT_EQ(message.Title, "Error");
    EXPECT_EQ(message.Text,
              "Equation 2 does not begin with 'y=' and therefore requires Advanced calculations. "
              "Please enable Advaced 2D calculation using 'Complexity' button from 'Draw Menu'!");
    EXPECT_TRUE(CheckYEquals(table, 3));
    EXPECT_TRUE(CheckYEquals(table, 501));
}

} // namespace kelvane
