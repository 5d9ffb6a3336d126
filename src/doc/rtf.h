#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "doc/rich_page.h"
#include "doc/rtf_reader.h"

// Rich text lines as RTF, which word processors open and save: powers are superscripts, and pi,
// the letter "p" of a page, is the Greek letter.

namespace kelvane {

// Appends a line's text. It is ASCII without line ends, and holds no control word that begins
// with "par".
void AppendRtf(std::string& rtf, const RichLine& line);

enum class RtfFault : std::uint8_t {
    None,
    Malformed, // not RTF, braces that do not match, or too many of them open
    LineTooLong,
    TooManyLines,
};

struct RtfLimits {
    std::size_t Lines;
    int LineLength; // in UTF-16 units
};

// Reads the lines out of an RTF document. Paragraphs, line breaks, and the cells of tables are
// lines; text is base or raised and has no other looks. What is not part of the running text
// (fonts, pictures, notes, ...) is left out. 8-bit characters are read as Windows-1252.
class RtfText {
public:
    static constexpr std::size_t kMaxDepth = 1000; // of groups in each other

    // The text must outlive this.
    RtfText(std::string_view text, RtfLimits limits);

    // As if the text began with the "{" of the document.
    void OpenDocument();

    // Reads the tokens that begin before the position. Stops where the document ends and at the
    // first fault.
    void ReadTo(std::size_t position);
    // Goes on at the position, as if nothing stood before it.
    void SkipTo(std::size_t position) { m_reader.SkipTo(position); }

    // Begun and not at an end yet.
    bool IsOpen() const { return !m_groups.empty() && m_fault == RtfFault::None; }
    // Behind the "}" of the document, once it was read.
    std::size_t Position() const { return m_reader.Position(); }
    RtfFault Fault() const { return m_fault; }

    // What was read so far: at least one line, in the canonical form. The last one may go on. A
    // line that is too long is empty.
    RichPage& Lines() { return m_lines; }
    const RichPage& Lines() const { return m_lines; }

private:
    struct Group {
        bool Raised = false;
        bool Skipped = false;   // not part of the running text
        int FallbackLength = 1; // how many characters repeat a \u for readers that do not know it
    };

    void Read(const RtfToken& token);
    void OpenGroup();
    void CloseGroup();
    void Word(const RtfToken& token);
    void Symbol(char symbol);
    void Unicode(int number);
    void Byte(unsigned char byte);
    void Put(char32_t character);
    void JoinSurrogate(char32_t low);
    void CountUnits(int units);
    void EndLine();

    RtfReader m_reader;
    RtfLimits m_limits;
    RtfFault m_fault = RtfFault::None;
    std::vector<Group> m_groups;
    RichPage m_lines{1};
    int m_lineLength = 0;         // of the last line, in UTF-16 units
    int m_fallback = 0;           // characters still to be left out, after a \u
    char32_t m_highSurrogate = 0; // the character before, when it was one; stands as a replacement
};

} // namespace kelvane
