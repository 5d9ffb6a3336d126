#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kelvane {

enum class RtfTokenKind : std::uint8_t {
    GroupOpen,  // {
    GroupClose, // }
    Word,       // \name, perhaps with a number and the blank that ends it
    Symbol,     // \ and one character that is not a letter
    Byte,       // \'hh, a character of the document's 8-bit set
    Text,       // bytes that stand for themselves
    End,
    Malformed, // \ at the end of the text, \' without two digits, \bin with too few bytes behind it
};

struct RtfToken {
    RtfTokenKind Kind = RtfTokenKind::End;
    std::string_view Text{};     // the word's name, the symbol's character, the text; points into
                                 // the document
    std::optional<int> Number{}; // of a word, at most a thousand million either way; of a byte, 0
                                 // to 255
};

// Takes an RTF document apart. Line ends, which mean nothing in RTF, are left out, and so are the
// bytes that belong to \bin. Each byte is looked at once.
class RtfReader {
public:
    // The text must outlive the reader.
    explicit RtfReader(std::string_view text);

    // End for ever at the end.
    RtfToken Next();

    // Where the next token begins: never on a line end, at most the text's length.
    std::size_t Position() const { return m_position; }

    // Goes on at a later position.
    void SkipTo(std::size_t position);

private:
    RtfToken Take();
    RtfToken Control();
    RtfToken Word();
    RtfToken HexByte();
    std::optional<int> Number();
    void SkipLineEnds();
    bool AtEnd() const { return m_position == m_text.size(); }

    std::string_view m_text;
    std::size_t m_position = 0;
};

} // namespace kelvane
