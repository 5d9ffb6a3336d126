#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "engine/equations.h"

// The letters of the notation, for the two steps of the preparation that read text. ASCII only:
// bytes of other characters are neither letters nor digits.

namespace kelvane {

inline bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

inline bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// x, y, z, e and p.
inline bool IsVariableOrConstant(char c)
{
    return std::string_view("XxYyZzEePp").find(c) != std::string_view::npos;
}

// The function whose name the text begins with and how many characters the name takes, which may be
// more than are left; {Blank, 0} when it begins with none.
std::pair<Token, std::size_t> ReadFunction(std::string_view text);

} // namespace kelvane
