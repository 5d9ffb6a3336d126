#pragma once

#include <cstdint>

#include "graph/curve_search.h"

namespace kelvane {

// Which variable the other one is a function of.
enum class GraphOver : std::uint8_t {
    X, // y = g(x): df/dy is a constant other than 0
    Y  // x = g(y): df/dx is
};

// Finds the graph of a function, column by column (row by row over y), each step wide, in lattice
// units.
//
// Two neighbouring samples are joined where the function is proven to be defined and continuous
// between them and the line lies within a fraction of a pixel of it; else the column is halved
// again and again. What remains about a pole, a jump or the edge of a domain stays open. Where the
// function oscillates within a fraction of a pixel the column is filled over the values that it
// is proven to take, all of them between two samples of a continuous stretch; what of the interval
// bounds is neither covered nor excluded after a bounded effort is unresolved.
Pace TraceExplicit(const CurveSearch& search, GraphOver over, double step);

} // namespace kelvane
