#include "engine/evaluate.h"

#include <cassert>
#include <cmath>

#include "engine/arithmetic.h"

namespace kelvane {

namespace {

// The value of a number, a constant or a variable.
float Operand(const EvalState& state, const Equation& equation, int position)
{
    switch (equation.Tok(position)) {
    case Token::X:
        return state.EvalX;
    case Token::Y:
        return state.EvalY;
    case Token::Z:
        return state.EvalZ;
    default:
        return equation.Num(position);
    }
}

// A factor that follows by juxtaposition: it multiplies, or is the first of its term.
void Juxtapose(Number& accumulator, Number factor)
{
    accumulator = accumulator.Value == 0 ? factor : Multiply(accumulator, factor);
}

// Closes a term: adds it to the sum with its sign and starts the next one. A term worth 0 adds
// nothing, not even its precision.
void PushTerm(Number& accumulator, Number& sum, Token sign)
{
    if (accumulator.Value != 0)
        sum = Add(sum, sign == Token::Minus ? Negate(accumulator) : accumulator);
    accumulator = {};
}

Number Walk(EvalState& state, int& position, const Equation& equation)
{
    const Token before = position > 1 ? equation.Tok(position - 1) : Token::Equals;
    const bool singleFactor = before != Token::Open && before != Token::Equals;
    Number sum;
    Number accumulator;
    Token sign = Token::Plus;
    bool done = false;

    // The factor that stands after the operator or function name at the current position.
    const auto next = [&] {
        ++position;
        return Walk(state, position, equation);
    };

    while (!done && !equation.AtEnd(position) && !state.EvalError) {
        const Token token = equation.Tok(position);
        switch (token) {
        case Token::Blank:
        case Token::X:
        case Token::Y:
        case Token::Z:
            Juxtapose(accumulator, {Operand(state, equation, position), true});
            break;
        case Token::Plus:
        case Token::Minus:
            PushTerm(accumulator, sum, sign);
            sign = token;
            break;
        case Token::Times:
            accumulator = Multiply(accumulator, next());
            break;
        case Token::Divide:
            accumulator = Divide(accumulator, next());
            break;
        case Token::Power:
            accumulator = Raise(accumulator, next());
            break;
        case Token::Open:
            Juxtapose(accumulator, next());
            break;
        case Token::Close:
        case Token::Equals:
            done = true;
            break;
        default:
            Juxtapose(accumulator, ApplyFunction(token, next()));
            break;
        }
        if (!std::isfinite(accumulator.Value) || !std::isfinite(sum.Value))
            state.EvalError = true;
        done = done || singleFactor;
        if (!done)
            ++position;
    }
    PushTerm(accumulator, sum, sign);
    if (!std::isfinite(sum.Value))
        state.EvalError = true;
    return sum;
}

} // namespace

double Evaluate(EvalState& state, int& position, const Equation& equation)
{
    assert(position >= 1);
    return Walk(state, position, equation).Value;
}

} // namespace kelvane
