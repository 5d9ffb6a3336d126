#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "doc/equation_file.h"
#include "doc/rich_page.h"
#include "input.h"

// Reads the input as an equation file, and what was read without fault once more after writing it.

namespace kelvane::fuzz {

namespace {

void RequireOneLine(const RichLine& line)
{
    for (const RichRun& run : line)
        Require(run.Text.find_first_of("\r\n") == std::string::npos, "a run is within its line");
}

void CheckFile(std::string_view text, int linesPerPage, int maxPages)
{
    const EquationFileText read = ReadEquationFile(text, linesPerPage, maxPages);
    for (const RichPage& page : read.Pages)
        std::for_each(page.begin(), page.end(), RequireOneLine);
    Require(read.Pages.size() <= static_cast<std::size_t>(maxPages),
            "there are not too many pages");
    if (read.Fault != FileFault::None)
        return;
    Require(!read.Pages.empty(), "a file that can be read has a page");
    for (const RichPage& page : read.Pages)
        Require(page.size() == static_cast<std::size_t>(linesPerPage), "a page has all its lines");

    const std::string written = WriteEquationFile(read.Pages, linesPerPage);
    // Together with the text that is written next, the plain text tells all about the pages.
    const auto sameText = [](const RichPage& a, const RichPage& b) {
        return PowerToPlain(a) == PowerToPlain(b);
    };
    const EquationFileText again = ReadEquationFile(written, linesPerPage, maxPages);
    Require(again.Fault == FileFault::None, "what was written can be read");
    Require(std::equal(read.Pages.begin(), read.Pages.end(), again.Pages.begin(), again.Pages.end(),
                       sameText),
            "what was written reads the same");
    Require(WriteEquationFile(again.Pages, linesPerPage) == written,
            "it is written the same again");
}

// The line that this text is the plain form of.
void CheckPlain(const std::string& text)
{
    const RichLine line = PlainToRich(text);
    RequireOneLine(line);
    Require(PowerToPlain({line}) == text + '\r', "raised powers read as typed ones");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CheckFile(text, 12, 100); // as in a window
    CheckFile(text, 1, 2);    // too many pages, soon
    CheckPlain(std::string(text.substr(0, text.find_first_of("\r\n"))));
    return 0;
}

} // namespace kelvane::fuzz
