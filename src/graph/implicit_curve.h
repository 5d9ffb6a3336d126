#pragma once

#include "graph/curve_search.h"

namespace kelvane {

// Finds all of the curve f = 0 in the lattice by subdividing cells.
Pace TraceImplicit(const CurveSearch& search);

} // namespace kelvane
