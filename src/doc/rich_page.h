#pragma once

#include <string>
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

} // namespace kelvane
