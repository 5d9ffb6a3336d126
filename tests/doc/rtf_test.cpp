#include "doc/rtf.h"

#include <gtest/gtest.h>

#include "show_lines.h"

namespace kelvane {

namespace {

constexpr RtfLimits kFew = {.Lines = 8, .LineLength = 12};

// The lines of a document with this text in it.
std::string LinesOf(const std::string& body)
{
    const std::string document = "{\\rtf1\\ansi " + body + "}";
    RtfText rtf(document, kFew);
    rtf.ReadTo(document.size());
    const bool whole = rtf.Fault() == RtfFault::None && !rtf.IsOpen();
    return (whole ? "" : "fault: ") + Show(rtf.Lines());
}

RtfFault FaultOf(const std::string& document)
{
    RtfText rtf(document, kFew);
    rtf.ReadTo(document.size());
    return rtf.Fault();
}

} // namespace

TEST(Rtf, ControlWordsMeanOtherLinesOrCharacters)
{
    struct Case {
        const char* Body;
        const char* Lines;
    };
    const Case cases[] = {
        // Lines.
        {"a\\par b\\line c\\sect d\\page\r\ne", "a|b|c|d|e"},
        {"a\\par\\par", "a||"},
        {"a\\\r\nb\\\nc", "a|b|c"},
        {"a\r\nb\nc\\pard d\\parx e", "abcde"},
        {"a\\cell b\\cell\\row c", "a|b|c"},
        // Levels.
        {"x\\super 2\\nosupersub +y\\up8 3\\up0 z", "x[2]+y[3]z"},
        {"x{\\super 2}+y{\\up 3\\dn4 z}", "x[2]+y[3]z"},
        {"x\\super 2\\plain y\\super 3\\sub z\\super 4\\super0 5", "x[2]y[3]z[4]5"},
        {"\\super a{\\b b\\par c}\\pard d", "[ab]|[cd]"},
        {"x{\\super 2}{\\super 3}{\\super}{}4", "x[23]4"},
        {"\\up-3 a", "a"},
        // Characters.
        {"\\{a\\}\\\\par b", "{a}\\par b"},
        {"a  b \\b  c", "a  b  c"},
        {"\\'41\\'e9\\'80\\'FF\xE9", "Aé€ÿé"},
        {"a\\~b\\-\\_c\\|d\\:", "a\u00A0b\u00AD\u2011cd"},
        {"\\tab\\emdash\\endash x\\lquote\\rquote\\ldblquote\\rdblquote\\bullet", "\t—–x‘’“”•"},
        {"\\'0a\\'0d\\u10?\\'01\\'7f", "|||\x01\x7F"},
        {"a\\unknown5 b\\u c", "ab\uFFFD"},
        // Unicode and its fallback.
        {"\\u233?\\u233e\\u960 px\\u-3?", "éépx\uFFFD"},
        {"\\u960 p{\\f3 p}\\u61552\\'70", "ppp"},
        {"\\uc0\\u945 x{\\uc3\\u946\\'62\\{abc\\uc2}\\u947 y", "αxβbcγy"},
        {"\\u945\\par b\\u946{c}\\u947\\endash d", "α|bβcγd"},
        {"\\u-10179?\\u-8704?\\u55357\\'3f\\u56832 ?", "😀😀"},
        {"\\uc0\\u55357 {\\super\\u56832}", "😀"},
        {"\\u-10179?x\\u-8704?\\u-10179?\\par\\u-8704?", "\uFFFDx\uFFFD\uFFFD|\uFFFD"},
        {"\\uc0\\u70000\\u1114112\\u-70000", "\U00011170\uFFFD\uFFFD"},
        // What is not running text.
        {"{\\fonttbl{\\f0 Serif;}{\\f1\\fcharset2 Symbol;}}{\\f1 p}", "p"},
        {"a{\\*\\what b{\\super c}\\par d}e{\\header f\\par}{\\b\\pict 00ff}g", "aeg"},
        {"{\\field{\\*\\fldinst LINK}{\\fldrslt text}}", "text"},
        {"a\\bin4 }\\{\nb\\bin0 c\\bin-2 d", "abcd"},
        {"a{\\pict\\bin3 }}}}b", "ab"},
        {"", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(LinesOf(c.Body), c.Lines) << c.Body;
}

TEST(Rtf, BadDocumentIsTakenForAGoodOne)
{
    struct Case {
        std::string Document;
        RtfFault Fault;
    };
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '{') + "x" + std::string(depth, '}');
    };
    const Case cases[] = {
        {"x{\\rtf1}", RtfFault::Malformed},
        {"}", RtfFault::Malformed},
        {"{\\rtf1 \\", RtfFault::Malformed},
        {"{\\rtf1 \\'4", RtfFault::Malformed},
        {"{\\rtf1 \\'4g}", RtfFault::Malformed},
        {"{\\rtf1 {\\pict\\'zz}}", RtfFault::Malformed},
        {"{\\rtf1 \\bin5 abc}", RtfFault::Malformed},
        {"{\\rtf1 \\bin99999999999999999999 abc}", RtfFault::Malformed},
        {nested(RtfText::kMaxDepth), RtfFault::None},
        {nested(RtfText::kMaxDepth + 1), RtfFault::Malformed},
        {"{\\par\\par\\par\\par\\par\\par\\par x}", RtfFault::None},
        {"{\\par\\par\\par\\par\\par\\par\\par\\par x}", RtfFault::TooManyLines},
        {"{123456789012}", RtfFault::None},
        {"{1234567890123}", RtfFault::LineTooLong},
        {"{{\\super 1234567890}\\uc0\\u-10179\\u-8704}", RtfFault::None},
        {"{{\\super 12345678901}\\uc0\\u-10179\\u-8704}", RtfFault::LineTooLong},
    };
    for (const Case& c : cases)
        EXPECT_EQ(FaultOf(c.Document), c.Fault) << c.Document.substr(0, 60);
}

TEST(Rtf, WordProcessorsWouldShowAnotherLine)
{
    struct Case {
        RichLine Line;
        const char* Rtf;
    };
    const Case cases[] = {
        {{{"y=x", false}, {"2", true}, {"+1", false}}, "y=x{\\super 2}+1"},
        {{{"2", true}}, "{\\super 2}"},
        {{{"a", true}, {"", false}, {"b", true}, {"", true}}, "{\\super ab}"},
        {{{"2p", false}, {"p", true}}, "2\\u960 p{\\super \\u960 p}"},
        {{{"2π", false}}, "2\\u960 p"},
        {{{"{\\par}", false}}, "\\{\\\\\\u960 par\\}"},
        {{{"\t\x01\x1F\x7F", false}}, "\\'09\\'01\\'1f\\'7f"},
        {{{"é€\uFFFD😀", false}}, "\\u233?\\u8364?\\u-3?\\u-10179?\\u-8704?"},
        // Not UTF-8: a byte of another set, cut off, too long a form, half a pair, too great.
        {{{"\xE9=\xC3", false}}, "\\u-3?=\\u-3?"},
        {{{"\xC0\xAF", false}}, "\\u-3?\\u-3?"},
        {{{"\xE0\x80\xAF", false}}, "\\u-3?\\u-3?\\u-3?"},
        {{{"\xED\xA0\x80", false}}, "\\u-3?\\u-3?\\u-3?"},
        {{{"\xF4\x90\x80\x80", false}}, "\\u-3?\\u-3?\\u-3?\\u-3?"},
        {{{"\xF8\x90\x80\x80", false}}, "\\u-3?\\u-3?\\u-3?\\u-3?"},
    };
    for (const Case& c : cases) {
        std::string rtf;
        AppendRtf(rtf, c.Line);
        EXPECT_EQ(rtf, c.Rtf);
    }
}

} // namespace kelvane
