#pragma once

#include "engine/field_runner.h"
#include "graph/curve_sketch.h"
#include "graph/draw_pace.h"
#include "graph/pixel_lattice.h"

namespace kelvane {

// Where and how a curve is searched for: the curve f = 0 of a field in a lattice, by interval
// arithmetic and samples. All of it outlives the search.
struct CurveSearch {
    const Field& Formula; // compiled
    const PixelLattice& Lattice;
    FieldRunner& Runner;
    DrawPace& Pacer;
    CurveSketch& Sketch; // where the findings go
    DrawStats& Stats;    // Samples and Compiled count points and boxes
};

} // namespace kelvane
