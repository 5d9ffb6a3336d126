#pragma once

#include "engine/equations.h"
#include "engine/eval_state.h"

namespace kelvane {

// The value of a stretch of an equation for EvalX, EvalY and EvalZ: the plain definition of what a
// formula means. Pass EquationsStart for a right side, 1 for a left side (it stops at "=").
//
// There are two levels of binding: terms joined by "+" and "-", and within a term factors joined by
// "*", "/", "^" or side by side, strictly from left to right. A term's value 0 means "no factor
// yet": a factor that follows by juxtaposition then replaces it, so xCos(x) at 0 is 1.
//
// Where the slot before the start holds neither "(" nor "=" (and the start is not 1) a single
// factor is read: one operand, one function with its argument, or one bracketed group.
//
// On return position is the slot where the evaluation stopped. A failure sets EvalError. Needs
// position >= 1. Uses stack in proportion to the nesting, at most one frame a slot.
double Evaluate(EvalState& state, int& position, const Equation& equation);

} // namespace kelvane
