#include "doc/equation_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "show_lines.h"

namespace kelvane {

namespace {

const std::string kTop = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\r\n"
                         "{\\fonttbl{\\f0\\fswiss\\fcharset0 DejaVu Sans;}}\r\n"
                         "{\\colortbl;\\red0\\green0\\blue0;}\r\n";
const std::string kIdentification =
    "\\par Kelvane II - graphing calculator, equation file\\par\\par \r\n";

// Two pages of two lines.
const std::string kSample = kTop + "v3.5\r\n 6 \r\n" + kIdentification +
                            "\\plain\\f0\\fs26 y=x{\\super 2}\r\n"
                            "\\par 2\\u960 p\\{\r\n"
                            "\\par \r\n"
                            "\\par \r\n"
                            "\\plain\\f0\\fs26 \r\n"
                            "\\par {\\super b}\r\n"
                            "\\par \r\n"
                            "\\par \r\n"
                            "}\r\n";

// Pages for comparing, divided by " # ", with a fault in front.
std::string Show(const EquationFileText& file)
{
    static const char* const faults[] = {"", "Malformed: ", "TooLarge: ", "TooManyPages: "};
    std::string shown = faults[static_cast<int>(file.Fault)];
    for (std::size_t page = 0; page < file.Pages.size(); ++page)
        shown += (page > 0 ? " # " : "") + Show(file.Pages[page]);
    return shown;
}

std::string ShownFile(const std::string& text, int linesPerPage, int maxPages = 100)
{
    return Show(ReadEquationFile(text, linesPerPage, maxPages));
}

std::string Replaced(std::string text, const std::string& what, const std::string& by)
{
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
    return text;
}

// As often as it fits into the size.
std::string Repeated(const std::string& part, std::size_t size)
{
    std::string text = part;
    while (text.size() < size)
        text += text;
    text.resize(size / part.size() * part.size());
    return text;
}

} // namespace

TEST(EquationFile, LinesStandOtherwiseInTheFile)
{
    const std::vector<RichPage> pages = {{{{"y=x", false}, {"2", true}}, {{"2p{", false}}},
                                         {{}, {{"b", true}}}};
    EXPECT_EQ(WriteEquationFile(pages, 2), kSample);
    EXPECT_EQ(ShownFile(kSample, 2), "y=x[2]|2p{ # |[b]");
}

TEST(EquationFile, NextLineTakesAnotherPart)
{
    const std::string_view text = "a\r\n\r\nb\nc\rd\r\r\ne";
    std::size_t position = 0;
    for (const char* line : {"a", "", "b\nc\rd\r", "e", "", ""})
        EXPECT_EQ(NextLine(text, position), line);
    EXPECT_EQ(position, text.size());
}

TEST(EquationFile, ForeignFilesReadAsOtherPages)
{
    const std::string noHeader = kSample.substr(kTop.size());
    const std::string saved = "{\\rtf1{\\fonttbl{\\f0 S;}}\\pard v3.5 6 \\par Kelvane II - x\\par";
    struct Case {
        const char* What;
        std::string Text;
        const char* Pages; // of two lines
    };
    const Case cases[] = {
        {"LF alone", Replaced(kSample, "\r\n", "\n"), "y=x[2]|2p{ # |[b]"},
        {"no header", noHeader, "y=x[2]|2p{ # |[b]"},
        {"one header line", "{\\rtf1{\\fonttbl{\\f0 S;}}\r\n" + noHeader, "y=x[2]|2p{ # |[b]"},
        {"wrapped", Replaced(kSample, "2\\u960", "2\r\n\\u960"), "y=x[2]|2p{ # |[b]"},
        {"wrapped in a word", Replaced(kSample, "y=x{", "y=\r\nx\r\n{"), "y=x[2]|2p{ # |[b]"},
        {"no end of line", kSample.substr(0, kSample.size() - 2), "y=x[2]|2p{ # |[b]"},
        {"wrapped behind \\par", Replaced(kSample, "2\\u960", "\r\n2\\u960"), "y=x[2]|2p{ # |[b]"},
        {"line without text", Replaced(kSample, "\r\n}", "\r\n\r\n}"), "y=x[2]|2p{ # |[b]"},
        {"wrapped at its beginning", Replaced(kSample, "\\plain", "\r\n\\plain\r\n"),
         "y=x[2]|2p{ # |[b]"},
        {"more behind the end", kSample + "x", "y=x[2]|2p{ # |[b]"},
        {"closed in the last line", Replaced(kSample, "\r\n}", "}"), "y=x[2]|2p{ # |[b]"},
        {"plain RTF", "{\\rtf1 a\\par b{\\super c}\\par\\par d\\par}\r\n", "a|b[c] # |d"},
        {"empty RTF", "{\\rtf1}", "|"},
        {"saved elsewhere", saved + "\\par a\\par\\par\\par b\\par c\\par\\par}", "a| # b|c"},
        {"other slots", saved + "\\par a\\par\\par d\\par b\\par c\\par\\par}", "a| # d|b # c|"},
        {"a slot too few", saved + "\\par a\\par\\par\\par b\\par c}", "a| # |b # c|"},
        {"almost ours", saved + " a\\par b}", "v3.5 6 |Kelvane II - x # a|b"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ShownFile(c.Text, 2), c.Pages) << c.What;
}

TEST(EquationFile, PagesOfAnotherHeightLoseOrMoveLines)
{
    const std::vector<RichPage> pages = {
        {PlainToRich("a"), {}, PlainToRich("b")}, {}, {PlainToRich("c"), PlainToRich("d")}, {}};
    const std::string file = WriteEquationFile(pages, 3);
    EXPECT_EQ(ShownFile(file, 3), "a||b # || # c|d| # ||");
    EXPECT_EQ(ShownFile(file, 5), "a||b|| # |||| # c|d||| # ||||");
    EXPECT_EQ(ShownFile(file, 2), "a| # b| # | # c|d # |");
    EXPECT_EQ(ShownFile(file, 1), "a #  # b #  # c # d # ");
    EXPECT_EQ(ShownFile(file, 2, 5), "a| # b| # | # c|d # |");
    EXPECT_EQ(ShownFile(file, 2, 3), "TooManyPages: a| # b| # |");
    EXPECT_EQ(ShownFile("{\\rtf1 a\\par b\\par c}", 2, 1), "TooManyPages: a|b");
}

TEST(EquationFile, BadFileIsTakenForAGoodOne)
{
    struct Case {
        std::string Text;
        std::string Pages; // of two lines
    };
    const Case cases[] = {
        {"", "Malformed: |"},
        {"y=x\r\n", "Malformed: |"},
        {"{x}", "Malformed: |"},
        {Replaced(kSample, "v3.5", "v3.6"), "Malformed: |"},
        {Replaced(kSample, " 6 ", " 6x"), "Malformed: |"},
        {Replaced(kSample, " 6 ", "  "), "Malformed: |"},
        {Replaced(kSample, "Kelvane II", "Kelvane I"), "Malformed: |"},
        {Replaced(kSample, "0;}\r\nv", "0;}}\r\nv"), "Malformed: |"},
        {Replaced(kSample, "super 2}", "super 2"), "Malformed: y=x[2]|[2p{] # |[b]"},
        {Replaced(kSample, "super 2}", "super 2}}"), "Malformed: y=x[2]|"},
        {Replaced(kSample, "super 2}", "super 2}}\r\n}"), "Malformed: y=x[2]|"},
        {"{\\rtf1 a} b", "Malformed: a|"},
        {"{\\rtf1 a\\par b", "Malformed: a|b"},
        {"{\\rtf1 a\\par " + std::string(kMaxLineLength, 'x') + "}",
         "a|" + std::string(kMaxLineLength, 'x')},
        {"{\\rtf1 a\\par " + std::string(kMaxLineLength + 1, 'x') + "}", "TooLarge: a|"},
        {kSample + std::string(kMaxFileSize, ' '), "TooLarge: |"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(ShownFile(c.Text, 2), c.Pages) << c.Text.substr(0, 500);
}

TEST(EquationFile, DamagedFileIsNotNoticed)
{
    const std::size_t end = kSample.rfind('}');
    for (std::size_t size = 0; size <= end; ++size)
        EXPECT_EQ(ReadEquationFile(kSample.substr(0, size), 2, 100).Fault, FileFault::Malformed)
            << size;
    for (std::size_t at = 0; at < kSample.size(); ++at) {
        for (const char byte : {'{', '}', '\\', '\r', '\n', ' ', 'x', '9', '-', '\0', '\xFF'}) {
            std::string text = kSample;
            text[at] = byte;
            const EquationFileText file = ReadEquationFile(text, 2, 100);
            ASSERT_GE(file.Pages.size(), 1U);
            for (const RichPage& page : file.Pages)
                ASSERT_EQ(page.size(), 2U);
            const bool brace = kSample[at] == '{' || kSample[at] == '}';
            if (byte == 'x' && brace && at > 0 && kSample[at - 1] != '\\') {
                EXPECT_EQ(file.Fault, FileFault::Malformed) << at;
            }
        }
    }
}

TEST(EquationFile, HugeFileTakesForEver)
{
    constexpr std::size_t kHuge = 60'000'000;
    struct Case {
        std::string Part;
        std::size_t Size;
        FileFault Fault;
    };
    const Case cases[] = {
        {"{", kHuge, FileFault::Malformed},
        {"}", kHuge / 40, FileFault::Malformed},
        {"\\par ", kHuge, FileFault::TooManyPages},
        {"\r\n\\par ", kHuge / 20, FileFault::TooManyPages},
        {"x", kHuge, FileFault::TooLarge},
        {"\\u-10179?", kHuge / 40, FileFault::TooLarge},
        {"\\bin99999999999 ", kHuge, FileFault::Malformed},
        {"\\bin1 x", kHuge / 40, FileFault::None},
        {"{}", kHuge / 40, FileFault::None},
        {"\r\n", kHuge / 40, FileFault::None},
        {"\\" + std::string(1000, 'a') + std::string(1000, '9'), kHuge / 40, FileFault::None},
    };
    for (const std::string& start :
         {std::string("{\\rtf1 "), kSample.substr(0, kSample.size() - 3)}) {
        for (const Case& c : cases) {
            const std::string text = start + Repeated(c.Part, c.Size) + "\r\n}\r\n";
            EXPECT_EQ(ReadEquationFile(text, 2, 100).Fault, c.Fault) << c.Part.substr(0, 20);
        }
    }
}

namespace {

class PageMaker {
public:
    explicit PageMaker(unsigned seed)
        : m_random(seed)
    {
    }

    int Below(int end) { return static_cast<int>(m_random() % static_cast<unsigned>(end)); }

    std::vector<RichPage> Pages(int linesPerPage)
    {
        std::vector<RichPage> pages(1 + (Below(500) == 0 ? Below(100) : Below(3)));
        for (RichPage& page : pages) {
            for (int line = 0; line < linesPerPage; ++line)
                page.push_back(Below(3) == 0 ? RichLine() : Line());
        }
        return pages;
    }

private:
    RichLine Line()
    {
        RichLine line(1 + Below(4));
        bool raised = Below(2) == 0;
        const int pieces = Below(4000) == 0 ? 600 : 1 + Below(6);
        for (RichRun& run : line) {
            run.Raised = std::exchange(raised, !raised);
            for (int i = 0; i < pieces; ++i)
                run.Text += Piece();
        }
        return line;
    }

    std::string Piece()
    {
        static const char* const odd[] = {"{", "}",          "\\",     "\\par",  "p",
                                          "P", "\t",         "\x01",   "\x1B",   "\x7F",
                                          "é", "ÿ",          "\u0085", "αΩ",     "e\u0301",
                                          "😀", "\U0010FFFF", "\uFFFF", "\uE000", "\u2028",
                                          "-", "'",          "*",      "~",      "^(",
                                          "?", " ",          "v3.5",   "u960",   "\xED\x9F\xBF",
                                          "€", "0"};
        if (Below(200) == 0)
            return {'\0'};
        return Below(2) == 0 ? std::string(1, static_cast<char>(' ' + Below(95)))
                             : odd[Below(static_cast<int>(std::size(odd)))];
    }

    std::mt19937 m_random;
};

// What a reader counts to know where pages end.
void ExpectLayout(const std::string& text, int pages, int linesPerPage)
{
    std::size_t position = 0;
    for (int line = 0; line < 6; ++line)
        NextLine(text, position);
    for (int line = 0; line < pages * (linesPerPage + 2); ++line) {
        const std::string_view begin = NextLine(text, position).substr(0, 5);
        ASSERT_EQ(begin, line % (linesPerPage + 2) == 0 ? "\\plai" : "\\par ") << line;
    }
    EXPECT_EQ(text.substr(position), "}\r\n");
}

} // namespace

TEST(EquationFile, WrittenPagesComeBackOtherwise)
{
    constexpr unsigned kSeed = 20260405;
    PageMaker maker(kSeed);
    for (int i = 0; i < 10'000; ++i) {
        const int linesPerPage = 1 + maker.Below(maker.Below(10) == 0 ? 57 : 6);
        const std::vector<RichPage> pages = maker.Pages(linesPerPage);
        const std::string text = WriteEquationFile(pages, linesPerPage);
        const EquationFileText file = ReadEquationFile(text, linesPerPage, 100);
        ASSERT_EQ(file.Fault, FileFault::None) << "seed " << kSeed << ", document " << i;
        ASSERT_EQ(file.Pages, pages) << "seed " << kSeed << ", document " << i;
        ASSERT_EQ(WriteEquationFile(file.Pages, linesPerPage), text);
        ExpectLayout(text, static_cast<int>(pages.size()), linesPerPage);
    }
}

} // namespace kelvane
