#include "engine/preparation.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "engine/notation.h"
#include "engine/number_text.h"

namespace kelvane {

namespace {

constexpr float kEuler = 2.718282F;
constexpr float kPi = 3.141592F;

// A line longer than this is refused unread. The longest line of kMaxSlots slots that anyone writes
// (four-letter function names, numbers of eight digits) is shorter.
constexpr std::size_t kMaxLineLength = 16384;

char UpperCase(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// The token of a single character: an operator, a bracket, "=" or a variable; Blank for any other.
Token SingleCharacterToken(char c)
{
    static constexpr std::string_view kCharacters = "+-*/^()=XYZ";
    const auto at = kCharacters.find(UpperCase(c));
    if (at == std::string_view::npos)
        return Token::Blank;
    return static_cast<Token>(static_cast<std::size_t>(Token::Plus) + at);
}

// The slot that starts at the front of the text, and how many characters it takes.
std::pair<Slot, std::size_t> ReadSlot(std::string_view text)
{
    const char c = UpperCase(text.front());
    if (const Token token = SingleCharacterToken(c); token != Token::Blank)
        return {{token, 0}, 1};
    if (const auto [function, length] = ReadFunction(text); function != Token::Blank)
        return {{function, 0}, length};
    if (c == 'E')
        return {{Token::Blank, kEuler}, 1};
    if (c == 'P')
        return {{Token::Blank, kPi}, 1};
    if (c == 'A')
        return {{}, 2}; // an "a" that begins no name leaves an empty slot, which ends the equation
    return {{}, 0};
}

// The value of the number slot that starts at the front of the text, and how many characters it
// takes. Characters that belong to no number are passed over; the first run of digits and points
// counts.
std::pair<Slot, std::size_t> ReadNumber(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && ReadSlot(text.substr(length)).second == 0)
        ++length;
    const std::string_view run = text.substr(0, length);
    const auto digits = run.find_first_of("0123456789.");
    const float value = digits == std::string_view::npos ? 0 : LeadingNumber(run.substr(digits));
    return {{Token::Blank, value}, length};
}

} // namespace

std::pair<Token, std::size_t> ReadFunction(std::string_view text)
{
    if (text.empty())
        return {Token::Blank, 0};
    const char second = text.size() > 1 ? UpperCase(text[1]) : '\0';
    switch (UpperCase(text[0])) {
    case 'S':
        return {Token::Sin, 3};
    case 'C':
        return {Token::Cos, 3};
    case 'T':
        return {Token::Tan, 3};
    case 'L':
        return {Token::Log, 3};
    case 'A':
        break;
    default:
        return {Token::Blank, 0};
    }
    switch (second) {
    case 'B':
        return {Token::Abs, 3};
    case 'S':
        return {Token::Asin, 4};
    case 'C':
        return {Token::Acos, 4};
    case 'T':
        return {Token::Atan, 4};
    default:
        return {Token::Blank, 0};
    }
}

std::optional<EquationFault> SplitLines(EquationTable& table, const SheetText& sheet)
{
    int firstNumber = 1;
    for (const std::string& page : sheet.PagePlain) {
        if (page.empty())
            break;
        int number = firstNumber;
        std::string_view rest = page;
        while (true) {
            const auto end = rest.find('\r');
            std::string line = DropBlanks(rest.substr(0, end));
            if (number <= kMaxEquations) {
                table.Grow(number).Text = std::move(line);
                table.EquationCount = number;
            } else if (!line.empty()) {
                return EquationFault{Fault::TooManyEquations, number};
            }
            if (end == std::string_view::npos)
                break;
            rest.remove_prefix(end + 1);
            ++number;
        }
        firstNumber += sheet.LinesPerPage + 1;
    }
    return std::nullopt;
}

std::string DropBlanks(std::string_view line)
{
    std::string kept;
    kept.reserve(line.size());
    std::copy_if(line.begin(), line.end(), std::back_inserter(kept),
                 [](char c) { return c != ' ' && c != '\t'; });
    return kept;
}

bool Tokenize(std::vector<Slot>& slots, std::string_view line)
{
    while (!line.empty()) {
        auto [slot, length] = ReadSlot(line);
        if (length == 0)
            std::tie(slot, length) = ReadNumber(line);
        if (slots.size() == kMaxSlots)
            return false;
        slots.push_back(slot);
        line.remove_prefix(std::min(length, line.size()));
    }
    return true;
}

std::optional<EquationFault> PrepareEquations(EquationTable& table, const SheetText& sheet)
{
    if (const auto fault = SplitLines(table, sheet))
        return fault;
    for (int number = 1; number <= table.EquationCount; ++number) {
        Equation& equation = table.Grow(number);
        const EquationFault tooLong{Fault::TooLong, number};
        std::vector<Slot> asTyped;
        if (equation.Text.size() > kMaxLineLength || !Tokenize(asTyped, equation.Text))
            return tooLong; // found before bracketing, which costs more the longer the line is
        equation.Text = BracketPowers(std::move(equation.Text));
        if (!Tokenize(equation.Slots, equation.Text))
            return tooLong;
        equation.Slots.shrink_to_fit();
    }
    return std::nullopt;
}

} // namespace kelvane
