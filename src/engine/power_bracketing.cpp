#include <cstddef>
#include <string>
#include <string_view>

#include "engine/notation.h"
#include "engine/preparation.h"

namespace kelvane {

namespace {

constexpr std::size_t kNone = std::string::npos;

// Start of the bracketed group that ends at the ")" at end, or kNone.
std::size_t GroupStart(std::string_view line, std::size_t end)
{
    int depth = 0;
    for (std::size_t i = end + 1; i-- > 0;) {
        if (line[i] == ')')
            ++depth;
        if (line[i] == '(' && --depth == 0)
            return i;
    }
    return kNone;
}

// End (one past) of the bracketed group that starts at the "(" at start, or kNone.
std::size_t GroupEnd(std::string_view line, std::size_t start)
{
    int depth = 0;
    for (std::size_t i = start; i < line.size(); ++i) {
        if (line[i] == '(')
            ++depth;
        if (line[i] == ')' && --depth == 0)
            return i + 1;
    }
    return kNone;
}

// Start of the base that ends just before the "^" at power, or kNone.
std::size_t BaseStart(std::string_view line, std::size_t power)
{
    if (power == 0)
        return kNone;
    std::size_t start = power - 1;
    if (IsVariableOrConstant(line[start]))
        return start;
    if (IsDigit(line[start])) {
        while (start > 0 && IsDigit(line[start - 1]))
            --start;
        return start;
    }
    if (line[start] != ')')
        return kNone;
    start = GroupStart(line, start);
    while (start != kNone && start > 0 && (IsDigit(line[start - 1]) || IsLetter(line[start - 1])))
        --start;
    return start;
}

// End (one past) of the exponent that starts at start, or kNone.
std::size_t ExponentEnd(std::string_view line, std::size_t start)
{
    while (start < line.size()) {
        const char c = line[start];
        if (c == '(')
            return GroupEnd(line, start);
        if (IsVariableOrConstant(c))
            return start + 1;
        if (IsDigit(c)) {
            while (start < line.size() && IsDigit(line[start]))
                ++start;
            return start;
        }
        const auto [function, length] = ReadFunction(line.substr(start));
        if (function == Token::Blank)
            return kNone;
        start += length; // the exponent goes on with the function's argument
    }
    return kNone;
}

} // namespace

std::string BracketPowers(std::string line)
{
    for (std::size_t p = line.find('^'); p != kNone; p = line.find('^', p + 1)) {
        const std::size_t base = BaseStart(line, p);
        const std::size_t exponentEnd = ExponentEnd(line, p + 1);
        if (base == kNone || exponentEnd == kNone)
            continue;
        line.insert(exponentEnd, 1, ')');
        line.insert(base, 1, '(');
        ++p; // the "^" has moved with the bracket in front of it
    }
    return line;
}

} // namespace kelvane
