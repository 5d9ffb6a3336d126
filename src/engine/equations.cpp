#include "engine/equations.h"

#include <cassert>

namespace kelvane {

std::string_view TokenText(Token token)
{
    static constexpr std::array<std::string_view, 20> kTexts{"",  "+", "-", "*",  "/",  "^", "(",
                                                             ")", "=", "X", "Y",  "Z",  "S", "C",
                                                             "T", "L", "A", "As", "Ac", "At"};
    return kTexts[static_cast<std::size_t>(token)];
}

bool IsBinaryOperator(Token token)
{
    return token >= Token::Plus && token <= Token::Power;
}

bool IsFunction(Token token)
{
    return token >= Token::Sin;
}

const Equation& EquationTable::At(int number) const
{
    static const Equation kEmpty;
    const auto index = static_cast<std::size_t>(number) - 1;
    return index < Equations.size() ? Equations[index] : kEmpty;
}

Equation& EquationTable::Grow(int number)
{
    assert(number >= 1 && number <= kMaxEquations);
    const auto count = static_cast<std::size_t>(number);
    if (Equations.size() < count)
        Equations.resize(count);
    return Equations[count - 1];
}

int EquationsStart(const Equation& equation)
{
    for (int j = 1;; ++j) {
        const Token token = equation.Tok(j);
        const bool twoBlanks = token == Token::Blank && equation.Tok(j + 1) == Token::Blank;
        if (token == Token::Equals || twoBlanks)
            return j + 1;
    }
}

} // namespace kelvane
