#include "engine/evaluate.h"

#include <cassert>
#include <cmath>

#include "engine/arithmetic.h"
#include "engine/slot_walker.h"

namespace kelvane {

namespace {

// Calculates at once, with the variables as they are.
struct PlainArithmetic {
    using Value = Number;
    EvalState& State;

    Value Operand(const Equation& equation, int position) const
    {
        return {OperandValue(State, equation, position), true};
    }
    static Value Juxtapose(Value term, Value factor)
    {
        return term.Value == 0 ? factor : kelvane::Multiply(term, factor);
    }
    static Value Multiply(Value term, Value factor) { return kelvane::Multiply(term, factor); }
    static Value Divide(Value term, Value factor) { return kelvane::Divide(term, factor); }
    static Value Raise(Value term, Value factor) { return kelvane::Raise(term, factor); }
    static Value Apply(Token function, Value argument) { return ApplyFunction(function, argument); }

    // A term worth 0 adds nothing, not even its precision.
    static Value PushTerm(Value sum, Value term, Token sign)
    {
        if (term.Value == 0)
            return sum;
        return Add(sum, sign == Token::Minus ? Negate(term) : term);
    }
    bool GoOn(Value term, Value sum) const
    {
        if (!std::isfinite(term.Value) || !std::isfinite(sum.Value))
            State.EvalError = true;
        return !State.EvalError;
    }

private:
    static float OperandValue(const EvalState& state, const Equation& equation, int position)
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
};

} // namespace

double Evaluate(EvalState& state, int& position, const Equation& equation)
{
    assert(position >= 1);
    PlainArithmetic arithmetic{state};
    return WalkSlots(arithmetic, position, equation).Value;
}

} // namespace kelvane
