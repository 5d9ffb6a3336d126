#pragma once

#include <cstdint>

namespace kelvane {

// Which half of its interval the bisection keeps; see DirectionY. The names say what R - L, the
// right side minus the left, does where the dependent variable grows.
enum class SolveHalf : std::uint8_t {
    Falling, // "True": R - L falls, or does not run one way: left > right means look lower
    Rising   // "False": R - L rises: left > right means look higher
};

// The evaluator's inputs and outputs, shared by everything that evaluates.
struct EvalState {
    // The values of the variables, world units. The plotting routine sets the independent ones; the
    // point evaluation writes the dependent one.
    float EvalX = 0;
    float EvalY = 0;
    float EvalZ = 0;

    // An arithmetic failure. Set by the evaluator, ends every evaluation at once; the caller clears
    // it before a series of evaluations. A value computed while it is set means nothing.
    bool EvalError = false;

    // The current point is not to be plotted: the bisection found no solution in view.
    bool EvalSkip = false;

    // The slot where the current equation's right side begins; set by the caller before a series of
    // points (EquationsStart).
    int RightStart = 1;

    // The result of the direction test for the current equation, and the flag that alternates it
    // between successive falling equations.
    SolveHalf SolveDirection = SolveHalf::Falling;
    bool DirectionToggle = false;
};

} // namespace kelvane
