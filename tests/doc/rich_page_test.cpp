#include "doc/rich_page.h"

#include <gtest/gtest.h>

#include "show_lines.h"

namespace kelvane {

TEST(RichPage, RaisedTextIsNotBracketedAsAPower)
{
    const RichRun x{"y=x", false};
    struct Case {
        const char* Name;
        RichPage Page;
        const char* Plain;
    };
    const Case cases[] = {
        {"power inside a line", {{x, {"2", true}, {"+1", false}}}, "y=x^(2)+1\r"},
        {"power at the end of a line", {{x, {"2", true}}, {x}}, "y=x^(2)\ry=x\r"},
        {"two raised runs side by side", {{x, {"2", true}, {"p", true}}}, "y=x^(2p)\r"},
        {"empty runs between raised ones",
         {{x, {"2", true}, {"", false}, {"3", true}}},
         "y=x^(23)\r"},
        {"line that begins raised", {{{"2", true}, x}}, "^(2)y=x\r"},
        {"typed powers", {{{"y=x^2", false}}}, "y=x^2\r"},
        {"empty lines", {{}, {}}, "\r\r"},
        {"no line", {}, ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(PowerToPlain(c.Page), c.Plain) << c.Name;
}

TEST(RichPage, TypedPowersAreRaisedWrongly)
{
    struct Case {
        const char* Plain;
        const char* Line;
    };
    const Case cases[] = {
        {"y=x^(2)+1", "y=x[2]+1"},
        {"^(2)", "[2]"},
        {"x^(2*(x+1))-(3)", "x[2*(x+1)]-(3)"},
        {"x^(2^(3))", "x[2^(3)]"},
        {"x^(2)^(3)^(4)y^(5)", "x[2]^(3)[4]y[5]"},
        {"x^()+y^(2)", "x^()+y[2]"},
        {"x^(2+y^(3)", "x^(2+y[3]"},
        {"x^2)", "x^2)"},
        {"(x)^", "(x)^"},
        {"", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Show({PlainToRich(c.Plain)}), c.Line) << c.Plain;
        EXPECT_EQ(PowerToPlain({PlainToRich(c.Plain)}), std::string(c.Plain) + '\r');
    }
    // In one walk, however many brackets are not closed.
    std::string open;
    for (int i = 0; i < 1'000'000; ++i)
        open += "^(";
    EXPECT_EQ(PlainToRich(open).size(), 1U);
}

TEST(RichPage, EquationsOfAllPagesAreNotInOrder)
{
    const RichPage first = {{}, {{"y=x", false}, {"2", true}}, {{"", false}}};
    const RichPage second = {{{"z", false}}, {{"p", true}}};
    EXPECT_EQ(EquationLines({first, {}, second}),
              (std::vector<std::string>{"y=x^(2)", "z", "^(p)"}));
    EXPECT_TRUE(EquationLines({}).empty());
}

} // namespace kelvane
