#include "engine/checks.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "engine/support.h"

namespace kelvane {

namespace {

// The message for the fault; "" for none.
std::string Words(const std::optional<EquationFault>& fault, const EquationTable& table)
{
    const Message message = fault ? DescribeFault(*fault, table) : Message();
    return fault ? message.Title + ": " + message.Text : "";
}

std::string MessageFor(const std::string& lines, const CalculationModes& modes,
                       std::initializer_list<std::size_t> ticked = {1, 2, 3, 4})
{
    EquationTable table;
    PrepareEquations(table, OnePage(lines));
    EquationTicks ticks;
    for (const std::size_t number : ticked)
        ticks.EquationOn[number] = true;
    return Words(CheckEquations(table, ticks, modes), table);
}

constexpr CalculationModes kSimple2D;
constexpr CalculationModes kAdvanced2D{.CalcMode2D = CalcMode::Advanced};
constexpr CalculationModes kSimple3D{.Mode3D = true};

} // namespace

TEST(Checks, BadEquationPassesOrItsMessageDiffers)
{
    const std::tuple<const char*, CalculationModes, const char*> cases[] = {
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
        {"y=)(", kSimple2D, "Error: Error in Equations number 1: unexpected close parenthesis ')'"},
        {"y=1\ry=((x+1)", kSimple2D, "Error: Error in Equation 2: missing right parenthesis ')'"},
        {"y=x+1)\ry=(x", kSimple2D,
         "Error: Error in Equations number 1: unexpected close parenthesis ')'"}};
    for (const auto& [lines, modes, message] : cases)
        EXPECT_EQ(MessageFor(lines, modes), message) << lines;
}

TEST(Checks, GoodEquationIsRefused)
{
    // The slot directly after "=" is not tested, and a 0 ends the equation.
    const std::pair<const char*, CalculationModes> cases[] = {
        {"y=x+y", kAdvanced2D},     {"y=x+y", kSimple3D},
        {"x=y", kSimple2D},         {"z=x", kSimple3D},
        {"-x=2*sin(x)", kSimple2D}, {"y=x+*2", kSimple2D},
        {"y=(-x)-(+x)", kSimple2D}, {"y=sin2x", kSimple2D},
        {"y=0+((sin+", kSimple2D},  {"", kSimple2D},
        {"q@#", kSimple2D},         {"y=", kSimple2D}};
    for (const auto& [line, modes] : cases)
        EXPECT_EQ(MessageFor(line, modes), "") << line;
}

TEST(Checks, UntickedEquationIsCheckedOrALaterTickedOneIsNot)
{
    EXPECT_EQ(MessageFor("y=(\ry=x\ry=)", kSimple2D, {2}), "");
    EXPECT_EQ(MessageFor("y=(\ry=x\ry=)", kSimple2D, {2, 3}),
              "Error: Error in Equations number 3: unexpected close parenthesis ')'");
}

TEST(Checks, BeginningOfAnEquationIsMisread)
{
    EquationTable table;
    PrepareEquations(table, OnePage("Y =x\rx=3\ry"));
    EXPECT_FALSE(CheckYEquals(table, 1));
    EXPECT_EQ(Words(CheckYEquals(table, 2), table),
              "Error: Equation 2 does not begin with 'y=' and therefore requires Advanced "
              "calculations. Please enable Advaced 2D calculation using 'Complexity' button from "
              "'Draw Menu'!");
    EXPECT_TRUE(CheckYEquals(table, 3));
    EXPECT_TRUE(CheckYEquals(table, 501));
    table.Clear();
    PrepareEquations(table, OnePage("z=x\ry=z"));
    EXPECT_FALSE(CheckZEquals(table, 1));
    EXPECT_EQ(Words(CheckZEquals(table, 2), table),
              "Error: Equation number 2 does not begin with 'z=' and therefore requires Advanced "
              "calculations. Please enable Advaced 3D calculation using 'Complexity' button from "
              "'Draw Menu'!");
}

} // namespace kelvane
