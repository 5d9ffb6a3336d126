#pragma once

#include <optional>
#include <string_view>

namespace kelvane {

// A finite number as people type it into a box: with a point or, if it has none, a comma; a true
// minus sign counts too. The whole text must be the number, blanks around it aside. Nothing
// otherwise, and for numbers beyond the range of doubles.
std::optional<double> ReadTyped(std::string_view text);

} // namespace kelvane
