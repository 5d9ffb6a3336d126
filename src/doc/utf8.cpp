#include "doc/utf8.h"

namespace kelvane {

namespace {

// How many bytes a character takes that begins with this one; 0 when none does.
int SequenceLength(unsigned char first)
{
    if (first < 0x80)
        return 1;
    if (first < 0xC2 || first > 0xF4)
        return 0;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

// The least character that needs this many bytes.
constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};

} // namespace

char32_t NextCharacter(std::string_view text, std::size_t& position)
{
    const std::size_t begin = position++;
    const auto first = static_cast<unsigned char>(text[begin]);
    const int length = SequenceLength(first);
    if (length == 1)
        return first;
    if (length == 0 || text.size() - begin < static_cast<std::size_t>(length))
        return kReplacementCharacter;
    char32_t character = first & (0x7FU >> length);
    for (const char next : text.substr(begin + 1, length - 1)) {
        if ((static_cast<unsigned char>(next) & 0xC0U) != 0x80)
            return kReplacementCharacter;
        character = character << 6 | (static_cast<unsigned char>(next) & 0x3FU);
    }
    if (character < kLeast[length] || character > 0x10FFFF || IsHighSurrogate(character) ||
        IsLowSurrogate(character))
        return kReplacementCharacter;
    position = begin + length;
    return character;
}

void AppendCharacter(std::string& text, char32_t character)
{
    const auto trailing = [&](int shift) {
        text += static_cast<char>(0x80U | (character >> shift & 0x3FU));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0U | character >> 6);
        trailing(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0U | character >> 12);
        trailing(6);
        trailing(0);
    } else {
        text += static_cast<char>(0xF0U | character >> 18);
        trailing(12);
        trailing(6);
        trailing(0);
    }
}

} // namespace kelvane
