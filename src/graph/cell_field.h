#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "graph/curve_search.h"

namespace kelvane {

// The field of a search in lattice coordinates, and with slopes a step: what the cells of the
// lattice ask of it.

// All numbers from Low to High; either may be infinite.
struct Bounds {
    double Low = 0;
    double High = 0;

    bool HoldZero() const { return Low <= 0 && High >= 0; }
    double Smallest() const { return HoldZero() ? 0 : std::min(std::abs(Low), std::abs(High)); }
    double Largest() const { return std::max(std::abs(Low), std::abs(High)); }
};

// As FieldRanges has it for one box.
struct CellRange {
    Bounds F;
    Bounds AlongU;
    Bounds AlongV;
    std::int64_t Marks = 0;
};

struct SlopeSample {
    double F = 0;
    double AlongU = 0;
    double AlongV = 0;

    // The slope in the direction of a vector of length 1.
    double Along(LatticePoint direction) const
    {
        return (direction.U == 0 ? 0 : direction.U * AlongU) +
               (direction.V == 0 ? 0 : direction.V * AlongV);
    }
};

// Counts what it calculates in the search's statistics.
class CellField {
public:
    explicit CellField(const CurveSearch& search)
        : m_search(search)
    {
    }
    CellField(const CellField&) = delete;
    CellField& operator=(const CellField&) = delete;

    // Each fills its last parameter with one result for every box or point. Boxes may be points.
    void Ranges(std::span<const LatticeBox> boxes, FieldPart part, std::vector<CellRange>& ranges);
    void Values(std::span<const LatticePoint> points, std::vector<double>& values);
    void Slopes(std::span<const LatticePoint> points, std::vector<SlopeSample>& samples);

    // A few units in the last place of what the coordinates of a point are calculated from.
    LatticePoint Fuzz(LatticePoint at) const;
    LatticeBox Around(LatticePoint at) const;

    // True when about a millisecond has been calculated since it was true last.
    bool IsBreathDue();

private:
    void Count(std::size_t count, double nanosecondsAnInstruction);
    void LoadPoints(std::span<const LatticePoint> points);

    FieldPoints m_points;
    FieldValues m_values;
    FieldBoxes m_boxes;
    FieldRanges m_ranges;
    const CurveSearch& m_search;
    double m_effort = 0; // nanoseconds, roughly
};

inline LatticePoint Middle(const LatticeBox& box)
{
    return {(box.U0 + box.U1) / 2, (box.V0 + box.V1) / 2};
}

inline LatticeBox AsBox(LatticePoint at)
{
    return {at.U, at.V, at.U, at.V};
}

} // namespace kelvane
