#pragma once

#include <string>

#include "doc/rich_page.h"

namespace kelvane {

inline bool operator==(const RichRun& a, const RichRun& b)
{
    return a.Text == b.Text && a.Raised == b.Raised;
}

// Lines for comparing: "x[2]+1|y|" is x with a raised 2 and +1, y, and an empty line. Every run has
// marks of its own, so that runs that are not canonical show.
inline std::string Show(const RichPage& lines)
{
    std::string shown;
    for (std::size_t line = 0; line < lines.size(); ++line) {
        shown += line > 0 ? "|" : "";
        for (std::size_t run = 0; run < lines[line].size(); ++run) {
            const auto& [text, raised] = lines[line][run];
            const bool marked = run > 0 && lines[line][run - 1].Raised == raised;
            shown += (marked ? "/" : "") + (raised ? "[" + text + "]" : text);
            shown += text.empty() ? "/empty run/" : "";
        }
    }
    return shown;
}

} // namespace kelvane
