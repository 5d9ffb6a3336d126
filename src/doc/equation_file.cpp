#include "doc/equation_file.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <optional>
#include <utility>

#include "doc/rtf.h"

namespace kelvane {

namespace {

constexpr std::string_view kHeader = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\r\n"
                                     "{\\fonttbl{\\f0\\fswiss\\fcharset0 DejaVu Sans;}}\r\n"
                                     "{\\colortbl;\\red0\\green0\\blue0;}\r\n";
constexpr int kMaxHeaderLines = 3;
constexpr std::string_view kVersion = "v3.5";
constexpr std::string_view kSystem = "Kelvane II - ";
constexpr std::string_view kProduct = "graphing calculator, equation file";
constexpr std::string_view kPageOpening = "\\plain\\f0\\fs26 ";
constexpr std::string_view kParagraph = "\\par ";

// More lines than all pages have, also when the editor is much higher.
constexpr RtfLimits kLimits = {.Lines = 1 << 18, .LineLength = kMaxLineLength};

std::string_view NextLineEndedBy(std::string_view lineEnd, std::string_view text,
                                 std::size_t& position)
{
    const std::size_t begin = std::min(position, text.size());
    const std::size_t end = std::min(text.find(lineEnd, begin), text.size());
    position = std::min(end + lineEnd.size(), text.size());
    return text.substr(begin, end - begin);
}

// A file's lines, wherever it comes from.
class LineWalk {
public:
    explicit LineWalk(std::string_view text)
        : m_text(text)
        , m_lineEnd(text.find("\r\n") == std::string_view::npos ? "\n" : "\r\n")
    {
    }

    std::string_view Next() { return NextLineEndedBy(m_lineEnd, m_text, m_position); }
    std::size_t Position() const { return m_position; }
    bool AtEnd() const { return m_position == m_text.size(); }

private:
    std::string_view m_text;
    std::string_view m_lineEnd;
    std::size_t m_position = 0;
};

// The number of slots from its line.
std::optional<std::size_t> SlotCount(std::string_view line)
{
    const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
    const std::string_view digits = line.substr(begin, line.find_last_not_of(' ') + 1 - begin);
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), count);
    return error == std::errc() && end == digits.end() ? std::optional(count) : std::nullopt;
}

// What a file says before paging.
struct Contents {
    RichPage Lines{1};                      // of all pages
    std::vector<std::size_t> PageStarts{0}; // where in Lines pages begin, in order
    FileFault Fault = FileFault::None;
};

FileFault FaultOf(const RtfText& rtf)
{
    switch (rtf.Fault()) {
    case RtfFault::None:
        return rtf.IsOpen() ? FileFault::Malformed : FileFault::None;
    case RtfFault::LineTooLong:
        return FileFault::TooLarge;
    case RtfFault::TooManyLines:
        return FileFault::TooManyPages;
    default:
        return FileFault::Malformed;
    }
}

// Fills in what was read. Nothing may follow but line ends, blanks and the like, which some
// programs leave behind.
void TakeOver(Contents& contents, RtfText& rtf, std::string_view rest)
{
    contents.Fault = FaultOf(rtf);
    const bool blank = std::ranges::all_of(rest, [](unsigned char c) { return c <= ' '; });
    if (contents.Fault == FileFault::None && !blank)
        contents.Fault = FileFault::Malformed;
    contents.Lines = std::move(rtf.Lines());
}

bool BeginsParagraph(std::string_view line)
{
    return line == "\\par" || line.starts_with(kParagraph);
}

// Reads the pages, from the line after the identification to the end of the document.
Contents ReadBody(std::string_view text, LineWalk walk, RtfText& rtf)
{
    Contents contents;
    std::string_view line;
    while (!walk.AtEnd() && rtf.IsOpen()) {
        line = walk.Next();
        // Behind the empty slot and the end of the page before.
        const RichPage& lines = rtf.Lines();
        const std::size_t last = lines.size() - 1;
        if (last > contents.PageStarts.back() && lines[last].empty() && lines[last - 1].empty() &&
            !line.empty() && line != "}" && !BeginsParagraph(line))
            contents.PageStarts.push_back(last);
        rtf.ReadTo(walk.Position());
    }
    TakeOver(contents, rtf, line == "}" ? std::string_view() : text.substr(rtf.Position()));
    return contents;
}

// A file with the system's own lines; nothing when it has none.
std::optional<Contents> ReadOwnLayout(std::string_view text)
{
    LineWalk walk(text);
    std::size_t headerEnd = 0;
    std::string_view line = walk.Next();
    for (int i = 0; i < kMaxHeaderLines && line.starts_with('{'); ++i) {
        headerEnd = walk.Position();
        line = walk.Next();
    }
    const bool rightVersion = line == kVersion;
    const bool counted = SlotCount(walk.Next()).has_value();
    line = walk.Next();
    const bool identified =
        line.starts_with(kParagraph) && line.substr(kParagraph.size()).starts_with(kSystem);
    if (!rightVersion && !identified)
        return std::nullopt;

    RtfText rtf(text, kLimits);
    if (headerEnd == 0)
        rtf.OpenDocument();
    rtf.ReadTo(headerEnd);
    if (!rightVersion || !counted || !identified || !rtf.IsOpen())
        return Contents{.Fault = FileFault::Malformed};
    rtf.SkipTo(walk.Position());
    return ReadBody(text, walk, rtf);
}

std::string_view BaseText(const RichLine& line)
{
    return line.size() == 1 && !line.front().Raised ? line.front().Text : std::string_view();
}

// Leaves the system's own lines out of a file that went through a word processor. Its pages are
// known when the empty slots between them are still in their places.
void DropOwnLines(Contents& contents, int linesPerPage)
{
    RichPage& lines = contents.Lines;
    if (lines.size() < 4 || !BaseText(lines[0]).starts_with(kVersion) ||
        !BaseText(lines[1]).starts_with(kSystem) || !lines[2].empty())
        return;
    const auto slots = SlotCount(BaseText(lines[0]).substr(kVersion.size()));
    if (!slots)
        return;
    lines.erase(lines.begin(), lines.begin() + 3);
    const std::size_t slotsPerPage = static_cast<std::size_t>(linesPerPage) + 1;
    if (*slots % slotsPerPage != 0 || lines.size() < *slots)
        return;
    for (std::size_t slot = linesPerPage; slot < *slots; slot += slotsPerPage) {
        if (!lines[slot].empty())
            return;
    }
    for (std::size_t slot = slotsPerPage; slot < *slots; slot += slotsPerPage)
        contents.PageStarts.push_back(slot);
}

Contents ReadAnyRtf(std::string_view text, int linesPerPage)
{
    if (!text.starts_with("{\\rtf"))
        return {.Fault = FileFault::Malformed};
    RtfText rtf(text, kLimits);
    rtf.ReadTo(text.size());
    Contents contents;
    TakeOver(contents, rtf, text.substr(rtf.Position()));
    DropOwnLines(contents, linesPerPage);
    return contents;
}

EquationFileText InPages(Contents contents, std::size_t linesPerPage, std::size_t maxPages)
{
    EquationFileText file{.Pages = {}, .Fault = contents.Fault};
    RichPage& lines = contents.Lines;
    contents.PageStarts.push_back(lines.size());
    for (std::size_t page = 0; page + 1 < contents.PageStarts.size(); ++page) {
        std::size_t begin = contents.PageStarts[page];
        std::size_t end = contents.PageStarts[page + 1];
        while (end > begin && lines[end - 1].empty())
            --end;
        do {
            if (file.Pages.size() == maxPages) {
                if (file.Fault == FileFault::None)
                    file.Fault = FileFault::TooManyPages;
                return file;
            }
            RichPage& filled = file.Pages.emplace_back(linesPerPage);
            for (std::size_t line = 0; line < linesPerPage && begin < end; ++line)
                filled[line] = std::move(lines[begin++]);
        } while (begin < end);
    }
    return file;
}

} // namespace

std::string_view NextLine(std::string_view text, std::size_t& position)
{
    return NextLineEndedBy("\r\n", text, position);
}

std::string WriteEquationFile(const std::vector<RichPage>& pages, int linesPerPage)
{
    const std::size_t slotsPerPage = static_cast<std::size_t>(linesPerPage) + 1;
    std::string text(kHeader);
    text.append(kVersion).append("\r\n ");
    text.append(std::to_string(pages.size() * slotsPerPage)).append(" \r\n");
    text.append(kParagraph).append(kSystem).append(kProduct).append("\\par\\par \r\n");
    for (const RichPage& page : pages) {
        assert(page.size() < slotsPerPage);
        // The slot beyond the last line and the end of the page are empty paragraphs.
        for (std::size_t line = 0; line <= slotsPerPage; ++line) {
            text += line == 0 ? kPageOpening : kParagraph;
            if (line < page.size())
                AppendRtf(text, page[line]);
            text += "\r\n";
        }
    }
    return text += "}\r\n";
}

EquationFileText ReadEquationFile(std::string_view text, int linesPerPage, int maxPages)
{
    Contents contents;
    if (text.size() > kMaxFileSize)
        contents.Fault = FileFault::TooLarge;
    else if (auto own = ReadOwnLayout(text))
        contents = std::move(*own);
    else
        contents = ReadAnyRtf(text, linesPerPage);
    return InPages(std::move(contents), linesPerPage, maxPages);
}

} // namespace kelvane
