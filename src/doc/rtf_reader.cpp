#include "doc/rtf_reader.h"

#include <algorithm>

namespace kelvane {

namespace {

constexpr int kMaxNumber = 1'000'000'000;

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

// -1 when it is none.
int HexDigit(char c)
{
    if (IsDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

RtfReader::RtfReader(std::string_view text)
    : m_text(text)
{
    SkipLineEnds();
}

RtfToken RtfReader::Next()
{
    const RtfToken token = Take();
    SkipLineEnds();
    return token;
}

void RtfReader::SkipTo(std::size_t position)
{
    m_position = std::clamp(position, m_position, m_text.size());
    SkipLineEnds();
}

RtfToken RtfReader::Take()
{
    if (AtEnd())
        return {};
    switch (m_text[m_position]) {
    case '{':
        return {RtfTokenKind::GroupOpen, m_text.substr(m_position++, 1)};
    case '}':
        return {RtfTokenKind::GroupClose, m_text.substr(m_position++, 1)};
    case '\\':
        ++m_position;
        return Control();
    default:
        const std::size_t begin = m_position;
        m_position = std::min(m_text.find_first_of("\\{}\r\n", begin), m_text.size());
        return {RtfTokenKind::Text, m_text.substr(begin, m_position - begin)};
    }
}

RtfToken RtfReader::Control()
{
    if (AtEnd())
        return {RtfTokenKind::Malformed};
    if (IsLetter(m_text[m_position]))
        return Word();
    const std::string_view symbol = m_text.substr(m_position++, 1);
    if (symbol == "'")
        return HexByte();
    return {RtfTokenKind::Symbol, symbol};
}

RtfToken RtfReader::Word()
{
    const std::size_t begin = m_position;
    while (!AtEnd() && IsLetter(m_text[m_position]))
        ++m_position;
    RtfToken token{RtfTokenKind::Word, m_text.substr(begin, m_position - begin)};
    token.Number = Number();
    if (!AtEnd() && m_text[m_position] == ' ')
        ++m_position;
    if (token.Text == "bin" && token.Number > 0) {
        if (m_text.size() - m_position < static_cast<std::size_t>(*token.Number))
            return {RtfTokenKind::Malformed};
        m_position += *token.Number;
    }
    return token;
}

RtfToken RtfReader::HexByte()
{
    if (m_text.size() - m_position < 2)
        return {RtfTokenKind::Malformed};
    const int high = HexDigit(m_text[m_position]);
    const int low = HexDigit(m_text[m_position + 1]);
    if (high < 0 || low < 0)
        return {RtfTokenKind::Malformed};
    m_position += 2;
    return {RtfTokenKind::Byte, {}, 16 * high + low};
}

std::optional<int> RtfReader::Number()
{
    std::size_t digits = m_position;
    const bool negative = digits < m_text.size() && m_text[digits] == '-';
    if (negative)
        ++digits;
    if (digits == m_text.size() || !IsDigit(m_text[digits]))
        return std::nullopt;
    long long number = 0;
    for (; digits < m_text.size() && IsDigit(m_text[digits]); ++digits)
        number = std::min<long long>(10 * number + (m_text[digits] - '0'), kMaxNumber);
    m_position = digits;
    return static_cast<int>(negative ? -number : number);
}

void RtfReader::SkipLineEnds()
{
    while (!AtEnd() && (m_text[m_position] == '\r' || m_text[m_position] == '\n'))
        ++m_position;
}

} // namespace kelvane
