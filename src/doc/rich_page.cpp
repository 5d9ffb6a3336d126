#include "doc/rich_page.h"

namespace kelvane {

namespace {

void AppendLine(std::string& plain, const RichLine& line)
{
    bool powerOpen = false;
    for (const RichRun& run : line) {
        if (run.Text.empty())
            continue;
        if (run.Raised != powerOpen)
            plain += run.Raised ? "^(" : ")";
        powerOpen = run.Raised;
        plain += run.Text;
    }
    if (powerOpen)
        plain += ')';
    plain += '\r';
}

} // namespace

std::string PowerToPlain(const RichPage& page)
{
    std::string plain;
    for (const RichLine& line : page)
        AppendLine(plain, line);
    return plain;
}

} // namespace kelvane
