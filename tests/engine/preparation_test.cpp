#include "engine/preparation.h"

#include <gtest/gtest.h>

#include "engine/support.h"

namespace kelvane {

TEST(Preparation, LineBecomesOtherSlotsThanItsNotationMeans)
{
    struct Case {
        const char* Line;
        const char* Slots;
    };
    constexpr Case kCases[] = {
        {"y=x^2", "Y = ( X ^ 2 )"},
        {"Y=2X", "Y = 2 X"},
        {"Y=0", "Y = _"},
        {"y=x+0+1", "Y = X + _ + 1"},
        {"Y=P", "Y = 3.141592"},
        {"Y=e^X", "Y = ( 2.718282 ^ X )"},
        {"Y=aX", "Y = _"}, // "a" swallows the character after it
        {"Y=aX+1", "Y = _ + 1"},
        {"y=sin(x)cOsXTANzlogy", "Y = S ( X ) C X T Z L Y"},
        {"y=S(x)", "Y = S )"}, // "S" takes three characters, whatever they are
        {"y=absxasinxacosxatanx", "Y = A X As X Ac X At X"},
        {"y=s", "Y = S"},
        {"y=as", "Y = As"},
        {"y=a", "Y = _"},
        {"y=12.5x.5", "Y = 12.5 X 0.5"},
        {"y=1.2.3", "Y = 1.2"},
        {"y=.", "Y = _"},
        {"y=2@3", "Y = 2"},
        {"y=@3x", "Y = 3 X"},
        {"y=qx", "Y = _ X"},
        {" y = 2 x ^ 2\t", "Y = 2 ( X ^ 2 )"},
        {"y=\xCF\x80x", "Y = _ X"},
        {"", ""},
        {"^=)(", "^ = ) ("},
    };
    for (const Case& c : kCases)
        EXPECT_EQ(SlotsText(Prepared(c.Line)), c.Slots) << c.Line;
}

TEST(Preparation, PowerBindsOtherThanBracketed)
{
    struct Case {
        const char* Line;
        const char* Bracketed;
    };
    constexpr Case kCases[] = {
        {"y=2*x^2", "y=2*(x^2)"},
        {"xy^2", "x(y^2)"},
        {"12^34x", "(12^34)x"},
        {"2.5^2", "2.(5^2)"}, // the point belongs to no run
        {"2^1.5", "(2^1).5"},
        {"sinx^2", "sin(x^2)"},
        {"Sin(x)^2", "(Sin(x)^2)"},
        {"2(x+1)^2", "(2(x+1)^2)"},
        {"((x)(y))^((z)+1)x", "(((x)(y))^((z)+1))x"},
        {"x^2^3", "((x^2)^3)"},
        {"x^(y^z)", "(x^((y^z)))"},
        {"p^e", "(p^e)"},
        {"e^sinx", "(e^sinx)"},
        {"e^abs(x)+1", "(e^abs(x))+1"},
        {"e^sincosx^2", "((e^sincosx)^2)"},
        {"x^-2", "x^-2"}, // no exponent: neither bracket
        {"sin^2x", "sin^2x"},
        {"^", "^"},
        {"x^", "x^"},
        {"^2", "^2"},
        {"x)^2", "x)^2"},
        {"x^(2", "x^(2"},
        {"x^s", "x^s"},
    };
    for (const Case& c : kCases)
        EXPECT_EQ(BracketPowers(c.Line), c.Bracketed) << c.Line;
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
    const auto repeated = [](const std::string& text, int count) {
        std::string all;
        for (int i = 0; i < count; ++i)
            all += text;
        return all;
    };
    struct Case {
        const char* Name;
        std::string Lines;
        std::optional<EquationFault> Fault;
    };
    const Case cases[] = {
        {"500 lines", repeated("y=x\r", 499) + "y=x", {}},
        {"501 lines", repeated("y=x\r", 500) + "y=x", {{Fault::TooManyEquations, 501}}},
        {"600 lines, blank from 501", repeated("y=x\r", 500) + repeated(" \r", 100), {}},
        {"2000 slots", repeated("x", 2000), {}},
        {"2000 slots with blanks", repeated("x ", 2000), {}},
        {"2001 slots", "y=x\r" + repeated("x", 2001), {{Fault::TooLong, 2}}},
        {"2001 slots with brackets", repeated("x^2", 400) + "+", {{Fault::TooLong, 1}}},
        {"10 MB of brackets", std::string(10'000'000, '('), {{Fault::TooLong, 1}}},
        {"16384 characters", "y=" + std::string(16382, '1'), {}},
        {"10 MB of digits", std::string(10'000'000, '1'), {{Fault::TooLong, 1}}},
    };
    for (const Case& c : cases) {
        EquationTable table;
        const auto fault = PrepareEquations(table, OnePage(c.Lines, 700));
        ASSERT_EQ(fault.has_value(), c.Fault.has_value()) << c.Name;
        if (fault) {
            EXPECT_EQ(fault->Code, c.Fault->Code) << c.Name;
            const std::string number = "Equation " + std::to_string(c.Fault->Equation) + ": ";
            EXPECT_NE(DescribeFault(*fault, table).Text.find(number), std::string::npos) << c.Name;
        }
        EXPECT_LE(table.EquationCount, 500) << c.Name;
    }
}

TEST(Preparation, PositionOutsideTheSlotsIsReadFromMemory)
{
    const Equation equation = Prepared("y=x");
    for (const int position : {0, 4, 2000, 2001, 1'000'000}) {
        EXPECT_TRUE(equation.AtEnd(position)) << position;
    }
    EquationTable table;
    EXPECT_TRUE(table.At(501).AtEnd(1));
    EXPECT_FALSE(EquationTicks{}.On(701));
}

TEST(Preparation, RightSideStartsInTheWrongSlot)
{
    struct Case {
        const char* Line;
        int Start;
    };
    constexpr Case kCases[] = {{"y=x", 3},   {"x^2+y=1", 9}, {"x+1", 4}, {"", 2},
                               {"2ex=y", 2}, {"=x", 2},      {"y=", 3},  {"0=x", 3}};
    for (const Case& c : kCases)
        EXPECT_EQ(EquationsStart(Prepared(c.Line)), c.Start) << c.Line;
}

TEST(NumberText, ShortestTextDoesNotReadBackOrIsLongerThanNeeded)
{
    struct Case {
        float Value;
        const char* Text;
    };
    constexpr Case kCases[] = {{0.1F, "0.1"},          {-2.5F, "-2.5"},         {123456, "123456"},
                               {16777216, "16777216"}, {1e20F, "1e+20"},        {1e-5F, "1e-05"},
                               {-0.0F, "0"},           {1.0F / 3, "0.33333334"}};
    for (const Case& c : kCases)
        EXPECT_EQ(ShortestText(c.Value), c.Text);
}

TEST(NumberText, LeadingNumberIsMisread)
{
    struct Case {
        std::string Text;
        float Value;
    };
    const Case cases[] = {
        {"12.5x", 12.5F},
        {".5", 0.5F},
        {"5.", 5.0F},
        {"..5", 0},
        {"x", 0},
        {"1e5", 1.0F},
        {"16777217", 16777216.0F}, // halfway between two singles: to even
        {"0." + std::string(60, '0') + "1", 0},
        {"1" + std::string(60, '0'), std::numeric_limits<float>::infinity()},
    };
    for (const Case& c : cases)
        EXPECT_EQ(LeadingNumber(c.Text), c.Value) << c.Text;
}

} // namespace kelvane
