#pragma once

#include <optional>

#include "engine/calculation_modes.h"
#include "engine/equations.h"
#include "engine/faults.h"

// The checks that run between preparation and drawing. They look at tokens only and never evaluate:
// an unknown letter, a missing right side or a "0" that ends an equation early pass.

namespace kelvane {

// The first fault of the first ticked equation that has one: YOnRightSide (2D Simple mode only; the
// slot directly after "=" is not tested), ZIn2D, OperatorMisplaced, UnexpectedClose or
// MissingClose. Nothing when all ticked equations pass.
std::optional<EquationFault> CheckEquations(const EquationTable& table, const EquationTicks& ticks,
                                            const CalculationModes& modes);

// NotYEquals when the equation does not begin with "Y=", as Simple 2D mode needs; NotZEquals when
// it does not begin with "Z=", as Simple 3D mode does.
std::optional<EquationFault> CheckYEquals(const EquationTable& table, int number);
std::optional<EquationFault> CheckZEquals(const EquationTable& table, int number);

} // namespace kelvane
