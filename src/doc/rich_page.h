#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// A stretch of characters of one kind, UTF-8, without line breaks.
struct RichRun {
    std::string Text;
    bool Raised = false; // a power, shown above the line
};

using RichLine = std::vector<RichRun>;

// A page of the formula editor as a value: lines of runs.
using RichPage = std::vector<RichLine>;

// The page as the formula preparation reads it: lines end with a carriage return (the last one
// too), raised text stands between "^(" and ")". A power ends with its line at the latest.
std::string PowerToPlain(const RichPage& page);

// The line that PowerToPlain turns into this text, which has no line breaks. What stands between
// "^(" and its closing bracket is raised; as there is one level only, a power inside of raised text
// stays typed. So do powers without a closing bracket, empty ones, and one directly behind raised
// text, which it would join.
RichLine PlainToRich(std::string_view plain);

// The plain text of each line that is not empty, in order, without carriage returns.
std::vector<std::string> EquationLines(const std::vector<RichPage>& pages);

} // namespace kelvane
