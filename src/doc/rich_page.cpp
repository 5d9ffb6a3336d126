#include "doc/rich_page.h"

#include <cstddef>
#include <utility>

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

constexpr std::string_view kPowerOpening = "^(";

// Where the bracket of each power's opening is closed, at the place of its "^"; npos elsewhere.
std::vector<std::size_t> PowerEnds(std::string_view plain)
{
    std::vector<std::size_t> ends(plain.size(), std::string_view::npos);
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        if (plain[i] == '(') {
            open.push_back(i);
        } else if (plain[i] == ')' && !open.empty()) {
            if (open.back() > 0 && plain[open.back() - 1] == '^')
                ends[open.back() - 1] = i;
            open.pop_back();
        }
    }
    return ends;
}

void AppendRun(RichLine& line, std::string_view text, bool raised)
{
    if (!text.empty())
        line.push_back({std::string(text), raised});
}

} // namespace

std::string PowerToPlain(const RichPage& page)
{
    std::string plain;
    for (const RichLine& line : page)
        AppendLine(plain, line);
    return plain;
}

RichLine PlainToRich(std::string_view plain)
{
    const std::vector<std::size_t> ends = PowerEnds(plain);
    RichLine line;
    std::size_t base = 0; // where the base text begins that was not taken over yet
    for (std::size_t i = 0; i < plain.size(); ++i) {
        const std::size_t power = i + kPowerOpening.size();
        const bool followsPower = i == base && !line.empty();
        if (ends[i] == std::string_view::npos || ends[i] == power || followsPower)
            continue;
        AppendRun(line, plain.substr(base, i - base), false);
        AppendRun(line, plain.substr(power, ends[i] - power), true);
        i = ends[i];
        base = i + 1;
    }
    AppendRun(line, plain.substr(base), false);
    return line;
}

std::vector<std::string> EquationLines(const std::vector<RichPage>& pages)
{
    std::vector<std::string> equations;
    for (const RichPage& page : pages) {
        for (const RichLine& line : page) {
            std::string plain = PowerToPlain({line});
            plain.pop_back();
            if (!plain.empty())
                equations.push_back(std::move(plain));
        }
    }
    return equations;
}

} // namespace kelvane
