#pragma once

#include <cstdint>

#include "engine/calculation_modes.h"
#include "engine/equations.h"
#include "engine/eval_state.h"

// The dependent variable of one equation at a point: y for a given x on a 2D sheet, z for given x
// and y on a 3D sheet; directly (Simple) or by bisection (Advanced). All read RightStart.
//
// EvalError or EvalSkip afterwards means that the point has no value. These are the plain
// definitions; point_blocks.h does the same for many points at a time.

namespace kelvane {

enum class Dependent : std::uint8_t { Y, Z };

// Simple: the value of the right side into EvalY, EvalZ, which keep theirs where the evaluation
// fails. A value beyond the range of a 32-bit float sets EvalError.
void SimpleY(EvalState& state, const Equation& equation);
void SimpleZ(EvalState& state, const Equation& equation);

// Where the bisection looks, world units, and when it is content.
struct SolveRange {
    float Low = 0; // the visible range of the dependent variable
    float High = 0;
    float Tolerance = 0; // accepted when |left - right| is smaller
};

// Halving leads from the widest interval of floats to one below 1/1000 in about 140 steps; where
// floats lie farther apart than that, this bound ends the search.
inline constexpr int kMaxHalvings = 160;

// Advanced: the value that makes both sides agree, by bisection from the middle of the range;
// returned, and left in EvalY (EvalZ). Sets EvalSkip and EvalError when the interval has shrunk
// below 1/1000 without an agreement; a side that fails ends the search with EvalError alone. Reads
// SolveDirection. Always ends, whatever the range.
float SolveY(EvalState& state, const Equation& equation, const SolveRange& range);
float SolveZ(EvalState& state, const Equation& equation, const SolveRange& range);

// The direction test, run once for an equation before its points are solved: how R - L runs over
// the three samples 1, 0, -1 of the dependent variable, the others as they are. Successive falling
// equations get alternating results (DirectionToggle), so that they trace different branches. With
// a sample that fails R - L does not run one way. Leaves EvalY (EvalZ) at -1.
SolveHalf DirectionY(EvalState& state, const Equation& equation);
SolveHalf DirectionZ(EvalState& state, const Equation& equation);

// The direction test's verdict on R - L at 1, 0 and -1; NaN is a sample that fails.
SolveHalf JudgeDirection(EvalState& state, double above, double middle, double below);

// How a point tool gets the dependent variable of an equation.
struct PointRule {
    Dependent Variable = Dependent::Y;
    CalcMode Mode = CalcMode::Simple;
    SolveRange Range; // for Advanced
};

// Runs before the first point of an equation: RightStart and, in Advanced mode, the direction test
// at the other variables of the state.
void BeginPoints(EvalState& state, const Equation& equation, const PointRule& rule);

// The value at the other variables of the state, into EvalY (EvalZ). False where there is none.
bool EvaluatePoint(EvalState& state, const Equation& equation, const PointRule& rule);

// Exchanges two variables throughout an equation, up to the first two neighbouring slots that hold
// no token (two numbers side by side, or the end).
void SwapXY(Equation& equation);
void SwapXZ(Equation& equation);
void SwapYZ(Equation& equation);

// The number of the first ticked equation, which the point tools evaluate; EquationCount + 1 when
// none is ticked.
int FirstTickedEquation(const EquationTable& table, const EquationTicks& ticks);

} // namespace kelvane
