#pragma once

#include <span>
#include <vector>

#include "graph/cell_tracer.h"

namespace kelvane {

// A cell in which there may be something of the curve, but it is not yet clear what.
struct OpenCell {
    LatticeBox Box;
    CellRange Range;
    bool MiddleMayBeZero = false;

    bool IsContinuous() const { return Range.Marks == 0; }

    // Whether f may have a smallest or largest value in it.
    bool MayHoldExtremum() const { return Range.AlongU.HoldZero() && Range.AlongV.HoldZero(); }
};

// Decides about cells by interval arithmetic, as far as that can: those that hold nothing of the
// curve are dropped, those that hold one simple piece are traced, those on which f is 0 are areas.
class CellSieve {
public:
    CellSieve(CellField& field, CellTracer& tracer, CurveSketch& sketch)
        : m_field(field)
        , m_tracer(tracer)
        , m_sketch(sketch)
    {
    }

    // Appends the cells that stay open, in their order.
    void Sift(std::span<const LatticeBox> boxes, std::vector<OpenCell>& open);

private:
    CellField& m_field;
    CellTracer& m_tracer;
    CurveSketch& m_sketch;
    std::vector<CellRange> m_ranges;
    std::vector<OpenCell> m_survivors;
    std::vector<LatticeBox> m_middles;
};

} // namespace kelvane
