#include "engine/point_evaluation.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/evaluate.h"

namespace kelvane {

namespace {

using Variable = float EvalState::*;

Variable VariableOf(Dependent dependent)
{
    return dependent == Dependent::Y ? &EvalState::EvalY : &EvalState::EvalZ;
}

void SimpleValue(EvalState& state, Variable dependent, const Equation& equation)
{
    int position = state.RightStart;
    const auto value = static_cast<float>(Evaluate(state, position, equation));
    if (!std::isfinite(value))
        state.EvalError = true;
    if (!state.EvalError)
        state.*dependent = value;
}

struct Sides {
    double Left = 0;
    double Right = 0;
};

Sides EvaluateSides(EvalState& state, const Equation& equation)
{
    int left = 1;
    int right = state.RightStart;
    Sides sides;
    sides.Left = Evaluate(state, left, equation);
    sides.Right = Evaluate(state, right, equation);
    return sides;
}

float Solve(EvalState& state, Variable dependent, const Equation& equation, const SolveRange& range)
{
    float low = range.Low;
    float high = range.High;
    for (int i = 0; i < kMaxHalvings; ++i) {
        state.EvalSkip = false;
        state.*dependent = static_cast<float>((static_cast<double>(low) + high) / 2);
        const auto [left, right] = EvaluateSides(state, equation);
        if (state.EvalError)
            return state.*dependent;
        const bool lookHigher = (left > right) == (state.SolveDirection == SolveHalf::Rising);
        (lookHigher ? low : high) = state.*dependent;
        if (std::trunc((static_cast<double>(high) - low) * 1000) == 0)
            break;
        if (std::fabs(left - right) < range.Tolerance)
            return state.*dependent;
    }
    state.EvalSkip = true;
    state.EvalError = true;
    return state.*dependent;
}

SolveHalf Direction(EvalState& state, Variable dependent, const Equation& equation)
{
    const auto difference = [&](float at) {
        state.EvalError = false;
        state.*dependent = at;
        const auto [left, right] = EvaluateSides(state, equation);
        return state.EvalError ? std::numeric_limits<double>::quiet_NaN() : right - left;
    };
    const double above = difference(1);
    const double middle = difference(0);
    const double below = difference(-1);
    return JudgeDirection(state, above, middle, below);
}

void Swap(Equation& equation, Token a, Token b)
{
    for (int j = 1; equation.Tok(j) != Token::Blank || equation.Tok(j + 1) != Token::Blank; ++j) {
        if (equation.Tok(j) == Token::Blank)
            continue;
        Token& token = equation.Slots[static_cast<std::size_t>(j) - 1].Tok;
        if (token == a || token == b)
            token = token == a ? b : a;
    }
}

} // namespace

void SimpleY(EvalState& state, const Equation& equation)
{
    SimpleValue(state, &EvalState::EvalY, equation);
}

void SimpleZ(EvalState& state, const Equation& equation)
{
    SimpleValue(state, &EvalState::EvalZ, equation);
}

float SolveY(EvalState& state, const Equation& equation, const SolveRange& range)
{
    return Solve(state, &EvalState::EvalY, equation, range);
}

float SolveZ(EvalState& state, const Equation& equation, const SolveRange& range)
{
    return Solve(state, &EvalState::EvalZ, equation, range);
}

SolveHalf DirectionY(EvalState& state, const Equation& equation)
{
    return Direction(state, &EvalState::EvalY, equation);
}

SolveHalf DirectionZ(EvalState& state, const Equation& equation)
{
    return Direction(state, &EvalState::EvalZ, equation);
}

SolveHalf JudgeDirection(EvalState& state, double above, double middle, double below)
{
    if (above > middle && below < middle)
        return SolveHalf::Rising;
    if (above < middle && below > middle) {
        state.DirectionToggle = !state.DirectionToggle;
        return state.DirectionToggle ? SolveHalf::Falling : SolveHalf::Rising;
    }
    return SolveHalf::Falling;
}

void BeginPoints(EvalState& state, const Equation& equation, const PointRule& rule)
{
    state.RightStart = EquationsStart(equation);
    state.DirectionToggle = false;
    if (rule.Mode == CalcMode::Advanced)
        state.SolveDirection = Direction(state, VariableOf(rule.Variable), equation);
}

bool EvaluatePoint(EvalState& state, const Equation& equation, const PointRule& rule)
{
    state.EvalError = false;
    state.EvalSkip = false;
    if (rule.Mode == CalcMode::Advanced)
        Solve(state, VariableOf(rule.Variable), equation, rule.Range);
    else
        SimpleValue(state, VariableOf(rule.Variable), equation);
    return !state.EvalError;
}

void SwapXY(Equation& equation)
{
    Swap(equation, Token::X, Token::Y);
}

void SwapXZ(Equation& equation)
{
    Swap(equation, Token::X, Token::Z);
}

void SwapYZ(Equation& equation)
{
    Swap(equation, Token::Y, Token::Z);
}

int FirstTickedEquation(const EquationTable& table, const EquationTicks& ticks)
{
    int number = 1;
    while (number <= table.EquationCount && !ticks.On(number))
        ++number;
    return number;
}

} // namespace kelvane
