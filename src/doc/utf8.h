#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvane {

inline constexpr char32_t kReplacementCharacter = 0xFFFD; // stands for what is not a character

constexpr bool IsHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool IsLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

// The character at a position that is inside the text; the position moves past it. Bytes that are
// not UTF-8 give a replacement character each.
char32_t NextCharacter(std::string_view text, std::size_t& position);

// Appends a character, which is not a surrogate and at most U+10FFFF.
void AppendCharacter(std::string& text, char32_t character);

} // namespace kelvane
