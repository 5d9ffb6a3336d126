#include "doc/rtf.h"

#include <algorithm>
#include <array>
#include <utility>

#include "doc/utf8.h"

namespace kelvane {

namespace {

constexpr char32_t kPi = 0x03C0;
constexpr char32_t kSymbolFontPi = 0xF070; // how some programs keep a "p" in a Symbol font

enum class Action : std::uint8_t { EndLine, Raise, Lower, Unicode, FallbackLength, Put };

struct ControlWord {
    std::string_view Name;
    Action What;
    char32_t Character = 0; // of Put
};

constexpr auto kControlWords = std::to_array<ControlWord>({
    {"bullet", Action::Put, 0x2022},
    {"cell", Action::EndLine},
    {"dn", Action::Lower},
    {"emdash", Action::Put, 0x2014},
    {"emspace", Action::Put, 0x2003},
    {"endash", Action::Put, 0x2013},
    {"enspace", Action::Put, 0x2002},
    {"ldblquote", Action::Put, 0x201C},
    {"line", Action::EndLine},
    {"lquote", Action::Put, 0x2018},
    {"nestcell", Action::EndLine},
    {"nosupersub", Action::Lower},
    {"page", Action::EndLine},
    {"par", Action::EndLine},
    {"plain", Action::Lower},
    {"qmspace", Action::Put, 0x2005},
    {"rdblquote", Action::Put, 0x201D},
    {"rquote", Action::Put, 0x2019},
    {"sect", Action::EndLine},
    {"sub", Action::Lower},
    {"super", Action::Raise},
    {"tab", Action::Put, '\t'},
    {"u", Action::Unicode},
    {"uc", Action::FallbackLength},
    {"up", Action::Raise},
});
static_assert(std::ranges::is_sorted(kControlWords, {}, &ControlWord::Name));

// Groups that begin with one of these are no part of the running text.
constexpr auto kDestinations = std::to_array<std::string_view>(
    {"colortbl",  "filetbl",  "fldinst",    "fonttbl",  "footer",
     "footerf",   "footerl",  "footerr",    "footnote", "header",
     "headerf",   "headerl",  "headerr",    "info",     "listoverridetable",
     "listtable", "listtext", "nonshppict", "object",   "pict",
     "pntext",    "revtbl",   "stylesheet", "tc",       "xe"});
static_assert(std::ranges::is_sorted(kDestinations));

// Characters 0x80 to 0x9F of Windows-1252; those it leaves open are control characters.
constexpr std::array<char32_t, 32> kWindows1252 = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

constexpr std::string_view kHexDigits = "0123456789abcdef";

// As a signed UTF-16 unit, with a question mark for readers that do not know Unicode.
void AppendUnit(std::string& rtf, char32_t unit)
{
    rtf += "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + '?';
}

void AppendText(std::string& rtf, std::string_view text)
{
    for (std::size_t position = 0; position < text.size();) {
        const char32_t character = NextCharacter(text, position);
        if (character == 'p' || character == kPi) {
            rtf += "\\u960 p";
        } else if (character == '\\' || character == '{' || character == '}') {
            rtf += {'\\', static_cast<char>(character)};
        } else if (character < ' ' || character == 0x7F) {
            rtf += {'\\', '\'', kHexDigits[character / 16], kHexDigits[character % 16]};
        } else if (character < 0x80) {
            rtf += static_cast<char>(character);
        } else if (character < 0x10000) {
            AppendUnit(rtf, character);
        } else {
            AppendUnit(rtf, 0xD800 + ((character - 0x10000) >> 10));
            AppendUnit(rtf, 0xDC00 + (character & 0x3FF));
        }
    }
}

} // namespace

void AppendRtf(std::string& rtf, const RichLine& line)
{
    bool raised = false;
    for (const RichRun& run : line) {
        if (run.Text.empty())
            continue;
        if (run.Raised != raised)
            rtf += run.Raised ? "{\\super " : "}";
        raised = run.Raised;
        AppendText(rtf, run.Text);
    }
    if (raised)
        rtf += '}';
}

RtfText::RtfText(std::string_view text, RtfLimits limits)
    : m_reader(text)
    , m_limits(limits)
{
}

void RtfText::OpenDocument()
{
    m_groups.assign(1, Group());
}

void RtfText::ReadTo(std::size_t position)
{
    while (m_reader.Position() < position && m_fault == RtfFault::None) {
        const RtfToken token = m_reader.Next();
        if (m_groups.empty() && token.Kind != RtfTokenKind::GroupOpen)
            m_fault = RtfFault::Malformed;
        else
            Read(token);
        if (m_groups.empty())
            return;
    }
}

void RtfText::Read(const RtfToken& token)
{
    switch (token.Kind) {
    case RtfTokenKind::GroupOpen:
        return OpenGroup();
    case RtfTokenKind::GroupClose:
        return CloseGroup();
    case RtfTokenKind::Malformed:
        m_fault = RtfFault::Malformed;
        return;
    default:
        break;
    }
    if (m_groups.back().Skipped)
        return;
    switch (token.Kind) {
    case RtfTokenKind::Word:
        return Word(token);
    case RtfTokenKind::Symbol:
        return Symbol(token.Text.front());
    case RtfTokenKind::Byte:
        return Byte(static_cast<unsigned char>(*token.Number));
    default:
        for (const char byte : token.Text) {
            if (m_fault == RtfFault::None)
                Byte(static_cast<unsigned char>(byte));
        }
    }
}

void RtfText::OpenGroup()
{
    m_fallback = 0;
    if (m_groups.size() == kMaxDepth)
        m_fault = RtfFault::Malformed;
    else
        m_groups.push_back(m_groups.empty() ? Group() : Group(m_groups.back()));
}

void RtfText::CloseGroup()
{
    m_fallback = 0;
    m_groups.pop_back();
}

void RtfText::Word(const RtfToken& token)
{
    const auto found = std::ranges::lower_bound(kControlWords, token.Text, {}, &ControlWord::Name);
    const bool known = found != kControlWords.end() && found->Name == token.Text;
    if (known && found->What == Action::Put)
        return m_fallback > 0 ? void(--m_fallback) : Put(found->Character);
    m_fallback = 0;
    Group& group = m_groups.back();
    if (!known) {
        group.Skipped = std::ranges::binary_search(kDestinations, token.Text);
        return;
    }
    switch (found->What) {
    case Action::EndLine:
        return EndLine();
    case Action::Raise:
        group.Raised = token.Number.value_or(1) > 0;
        return;
    case Action::Lower:
        group.Raised = false;
        return;
    case Action::Unicode:
        return Unicode(token.Number.value_or(kReplacementCharacter));
    default:
        group.FallbackLength = std::max(token.Number.value_or(1), 0);
    }
}

void RtfText::Symbol(char symbol)
{
    if (symbol == '*') {
        m_groups.back().Skipped = true; // something that not every reader knows
    } else if (symbol == '\r' || symbol == '\n') {
        EndLine();
    } else if (m_fallback > 0) {
        --m_fallback;
    } else if (symbol == '~') {
        Put(0x00A0);
    } else if (symbol == '-') {
        Put(0x00AD);
    } else if (symbol == '_') {
        Put(0x2011);
    } else if (symbol == '\\' || symbol == '{' || symbol == '}') {
        Put(static_cast<char32_t>(symbol));
    }
}

void RtfText::Unicode(int number)
{
    const auto unit = static_cast<char32_t>(number < 0 ? number + 0x10000 : number);
    if (IsLowSurrogate(unit) && m_highSurrogate != 0) {
        JoinSurrogate(unit);
    } else if (IsHighSurrogate(unit)) {
        Put(kReplacementCharacter);
        m_highSurrogate = unit;
    } else {
        Put(unit > 0x10FFFF || IsLowSurrogate(unit) ? kReplacementCharacter : unit);
    }
    m_fallback = m_groups.back().FallbackLength;
}

void RtfText::Byte(unsigned char byte)
{
    if (m_fallback > 0)
        --m_fallback;
    else
        Put(byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : char32_t{byte});
}

void RtfText::Put(char32_t character)
{
    if (character == '\r' || character == '\n')
        return EndLine();
    m_highSurrogate = 0;
    RichLine& line = m_lines.back();
    const bool raised = m_groups.back().Raised;
    if (line.empty() || line.back().Raised != raised)
        line.push_back({{}, raised});
    const bool pi = character == kPi || character == kSymbolFontPi;
    AppendCharacter(line.back().Text, pi ? U'p' : character);
    CountUnits(character < 0x10000 ? 1 : 2);
}

// Puts the whole character where the replacement for its first half stands.
void RtfText::JoinSurrogate(char32_t low)
{
    const char32_t high = std::exchange(m_highSurrogate, 0);
    std::string& text = m_lines.back().back().Text;
    text.resize(text.size() - 3);
    AppendCharacter(text, 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00));
    CountUnits(1);
}

void RtfText::CountUnits(int units)
{
    m_lineLength += units;
    if (m_lineLength <= m_limits.LineLength)
        return;
    m_lines.back().clear();
    m_fault = RtfFault::LineTooLong;
}

void RtfText::EndLine()
{
    m_highSurrogate = 0;
    m_lineLength = 0;
    if (m_lines.size() == m_limits.Lines)
        m_fault = RtfFault::TooManyLines;
    else
        m_lines.emplace_back();
}

} // namespace kelvane
