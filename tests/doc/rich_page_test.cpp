#include "doc/rich_page.h"

#include <gtest/gtest.h>

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

} // namespace kelvane
