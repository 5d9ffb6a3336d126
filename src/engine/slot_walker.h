#pragma once

#include "engine/equations.h"

// How a stretch of an equation is read, apart from what is calculated with it: the evaluator reads
// with numbers, the compiler with the instructions that will give them.
//
// An Arithmetic has a type Value, worth 0 when it is made, and
//     Value Operand(equation, position)   a number, a constant or a variable
//     Value Juxtapose(term, factor)       a factor that follows without an operator
//     Value Multiply, Divide, Raise(term, factor)
//     Value Apply(function, argument)
//     Value PushTerm(sum, term, sign)     the sum after a finished term
//     bool GoOn(term, sum)                whether reading is worth while, asked after every token

namespace kelvane {

// The value of the stretch from the position on, which is left where the reading stopped; see
// Evaluate for the rules. Needs position >= 1. Uses stack in proportion to the nesting, at most
// one frame a slot.
template <class Arithmetic>
typename Arithmetic::Value WalkSlots(Arithmetic& arithmetic, int& position,
                                     const Equation& equation)
{
    const Token before = position > 1 ? equation.Tok(position - 1) : Token::Equals;
    const bool singleFactor = before != Token::Open && before != Token::Equals;
    typename Arithmetic::Value sum;
    typename Arithmetic::Value term;
    Token sign = Token::Plus;
    bool done = !arithmetic.GoOn(term, sum);

    // The factor that stands after the operator or function name at the current position.
    const auto next = [&] {
        ++position;
        return WalkSlots(arithmetic, position, equation);
    };

    while (!done && !equation.AtEnd(position)) {
        const Token token = equation.Tok(position);
        switch (token) {
        case Token::Blank:
        case Token::X:
        case Token::Y:
        case Token::Z:
            term = arithmetic.Juxtapose(term, arithmetic.Operand(equation, position));
            break;
        case Token::Plus:
        case Token::Minus:
            sum = arithmetic.PushTerm(sum, term, sign);
            term = {};
            sign = token;
            break;
        case Token::Times:
            term = arithmetic.Multiply(term, next());
            break;
        case Token::Divide:
            term = arithmetic.Divide(term, next());
            break;
        case Token::Power:
            term = arithmetic.Raise(term, next());
            break;
        case Token::Open:
            term = arithmetic.Juxtapose(term, next());
            break;
        case Token::Close:
        case Token::Equals:
            done = true;
            break;
        default:
            term = arithmetic.Juxtapose(term, arithmetic.Apply(token, next()));
            break;
        }
        const bool goOn = arithmetic.GoOn(term, sum);
        done = done || singleFactor;
        if (!done)
            ++position;
        done = done || !goOn;
    }
    sum = arithmetic.PushTerm(sum, term, sign);
    arithmetic.GoOn({}, sum);
    return sum;
}

} // namespace kelvane
