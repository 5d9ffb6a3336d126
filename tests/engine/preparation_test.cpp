#include "engine/preparation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>

#include "engine/support.h"

namespace kelvane {

TEST(Preparation, LineBecomesOtherSlotsThanItsNotationMeans)
{
    // "S" takes three characters, whatever they are; an "a" that begins no name takes two.
    constexpr std::pair<const char*, const char*> kCases[] = {
        {"Y=2X", "Y = 2 X"},       {"Y=0", "Y = _"},           {"x+0+1", "X + _ + 1"},
        {"y=P", "Y = 3.141592"},   {"2eX", "2 2.718282 X"},    {"Y=aX", "Y = _"},
        {"Y=aX+1", "Y = _ + 1"},   {"y=S(x)", "Y = S )"},      {"y=s", "Y = S"},
        {"y=as", "Y = As"},        {"y=a", "Y = _"},           {"y=1.2.3", "Y = 1.2"},
        {"y=.", "Y = _"},          {"y=2@3", "Y = 2"},         {"y=@3x", "Y = 3 X"},
        {"y=qx", "Y = _ X"},       {"12.5x.5", "12.5 X 0.5"},  {"y=x^2", "Y = ( X ^ 2 )"},
        {" x ^ 2\t", "( X ^ 2 )"}, {"y=\xCF\x80x", "Y = _ X"}, {"^=)(", "^ = ) ("},
        {"sin(x)", "S ( X )"},     {"cOsXTANz", "C X T Z"},    {"logyabsx", "L Y A X"},
        {"asinx", "As X"},         {"acosx", "Ac X"},          {"atanx", "At X"}};
    for (const auto& [line, slots] : kCases)
        EXPECT_EQ(SlotsText(Prepared(line)), slots) << line;
}

TEST(Preparation, PowerBindsOtherThanBracketed)
{
    // The decimal point belongs to no run of digits.
    constexpr std::pair<const char*, const char*> kCases[] = {
        {"y=2*x^2", "y=2*(x^2)"},     {"xy^2", "x(y^2)"},           {"12^34x", "(12^34)x"},
        {"2.5^2", "2.(5^2)"},         {"2^1.5", "(2^1).5"},         {"sinx^2", "sin(x^2)"},
        {"Sin(x)^2", "(Sin(x)^2)"},   {"2(x+1)^2", "(2(x+1)^2)"},   {"x^2^3", "((x^2)^3)"},
        {"x^(y^z)", "(x^((y^z)))"},   {"zp^ex", "z(p^e)x"},         {"e^sinx", "(e^sinx)"},
        {"e^abs(x)z", "(e^abs(x))z"}, {"e^sincosx", "(e^sincosx)"}, {"((x))^2y", "(((x))^2)y"},
        {"x^((y))z", "(x^((y)))z"}};
    for (const auto& [line, bracketed] : kCases)
        EXPECT_EQ(BracketPowers(line), bracketed) << line;
    for (const char* const line : {"x^-2", "sin^2x", "^", "x^", "^2", "x)^2", "x^(2", "x^s"})
        EXPECT_EQ(BracketPowers(line), line) << "no base or no exponent, neither bracket";
}

TEST(Preparation, EquationNumbersDriftFromTickBoxesAcrossPages)
{
    SheetText sheet;
    sheet.LinesPerPage = 3;
    sheet.PagePlain[0] = "y=1\r\ry=3\r";
    sheet.PagePlain[1] = "y=5";
    sheet.PagePlain[3] = "y=99"; // behind an empty page: not read
    EquationTable table;
    ASSERT_FALSE(PrepareEquations(table, sheet));
    EXPECT_EQ(table.EquationCount, 5);
    const char* const expected[] = {"y=1", "", "y=3", "", "y=5", ""};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(table.At(i + 1).Text, expected[i]) << i + 1;
}

TEST(Preparation, LineOrSlotBeyondTheTableIsTakenOrAGoodOneRefused)
{
    const std::tuple<const char*, std::string, std::optional<EquationFault>> cases[] = {
        {"500 lines", Repeated("y=x\r", 499) + "y=x", {}},
        {"501 lines", Repeated("y=x\r", 500) + "y=x", {{Fault::TooManyEquations, 501}}},
        {"600 lines, blank from 501", Repeated("y=x\r", 500) + Repeated(" \r", 100), {}},
        {"2000 slots", Repeated("x", 2000), {}},
        {"2000 slots with blanks", Repeated("x ", 2000), {}},
        {"2001 slots", "y=x\r" + Repeated("x", 2001), {{Fault::TooLong, 2}}},
        {"2001 slots with brackets", Repeated("x^2", 400) + "+", {{Fault::TooLong, 1}}},
        {"10 MB of brackets", std::string(10'000'000, '('), {{Fault::TooLong, 1}}},
        {"16384 characters", "y=" + std::string(16382, '1'), {}},
        {"10 MB of digits", std::string(10'000'000, '1'), {{Fault::TooLong, 1}}}};
    for (const auto& [name, lines, expected] : cases) {
        EquationTable table;
        const auto fault = PrepareEquations(table, OnePage(lines));
        ASSERT_EQ(fault.has_value(), expected.has_value()) << name;
        if (fault) {
            EXPECT_EQ(fault->Code, expected->Code) << name;
            const std::string number = "Equation " + std::to_string(expected->Equation) + ": ";
            EXPECT_NE(DescribeFault(*fault, table).Text.find(number), std::string::npos) << name;
        }
        EXPECT_LE(table.EquationCount, 500) << name;
    }
}

TEST(Preparation, PositionOutsideTheSlotsIsReadFromMemory)
{
    const Equation equation = Prepared("y=x");
    for (const int position : {0, 4, 2000, 2001, 1'000'000})
        EXPECT_TRUE(equation.AtEnd(position)) << position;
    EquationTable table;
    EXPECT_TRUE(table.At(501).AtEnd(1));
    EXPECT_FALSE(EquationTicks{}.On(701));
}

TEST(Preparation, RightSideStartsInTheWrongSlot)
{
    constexpr std::pair<const char*, int> kCases[] = {{"y=x", 3}, {"x^2+y=1", 9}, {"x+1", 4},
                                                      {"", 2},    {"2ex=y", 2},   {"=x", 2},
                                                      {"y=", 3},  {"0=x", 3}};
    for (const auto& [line, start] : kCases)
        EXPECT_EQ(EquationsStart(Prepared(line)), start) << line;
}

TEST(NumberText, ShortestTextDoesNotReadBackOrIsLongerThanNeeded)
{
    constexpr std::pair<float, const char*> kCases[] = {
        {0.1F, "0.1"},    {-2.5F, "-2.5"},  {123456, "123456"}, {16777216, "16777216"},
        {1e20F, "1e+20"}, {1e-5F, "1e-05"}, {-0.0F, "0"},       {1.0F / 3, "0.33333334"}};
    for (const auto& [value, text] : kCases)
        EXPECT_EQ(ShortestText(value), text);
}

TEST(NumberText, LeadingNumberIsMisread)
{
    // 16777217 is halfway between two singles: to even.
    constexpr std::pair<const char*, float> kCases[] = {
        {"x", 0},         {".5", 0.5F},          {"5.", 5}, {"..5", 0}, {"1e5", 1},
        {"12.5x", 12.5F}, {"16777217", 16777216}};
    for (const auto& [text, value] : kCases)
        EXPECT_EQ(LeadingNumber(text), value) << text;
    EXPECT_EQ(LeadingNumber("0." + std::string(60, '0') + "1"), 0);
    EXPECT_EQ(LeadingNumber("1" + std::string(60, '0')), INFINITY);
}

} // namespace kelvane
