#pragma once

#include <cstdint>
#include <span>

#include "graph/curve_search.h"
#include "graph/explicit_curve.h"

namespace kelvane {

// The interval between two values, in either order.
inline Interval Ordered(double a, double b)
{
    return a <= b ? Interval{a, b} : Interval{b, a};
}

// The function g of a curve y = g(x), or x = g(y), as seen in a lattice: abscissas are in world
// units, since those can be told apart near zero as closely as doubles can; values and slopes are
// in steps of the lattice.
class ExplicitFunction {
public:
    // The derivative of the field along the other variable is a constant other than 0.
    ExplicitFunction(const CurveSearch& search, GraphOver over);

    // The lattice is Length steps long along the abscissa and Height steps high along the value.
    int Length() const;
    int Height() const;

    double Abscissa(double along) const;
    double Along(double abscissa) const;
    double StepsPerUnit() const { return m_stepsPerUnit; } // of the abscissa
    LatticePoint At(double abscissa, double value) const;
    LatticeBox Box(const Interval& abscissas, const Interval& values) const;

    // The values at up to kBlockPoints abscissas; NaN where there is none.
    void Values(std::span<const double> abscissas, std::span<double> values);

    // What is known of g between two abscissas.
    struct Bounds {
        Interval Values;
        Interval Slopes;
        std::int64_t Marks = 0; // as in FieldRanges
    };

    // Over up to kBlockPoints intervals of the abscissa.
    void Ranges(std::span<const Interval> abscissas, std::span<Bounds> bounds);

private:
    double Value(double f) const;
    FieldColumn& Abscissas(FieldColumn& x, FieldColumn& y) const;

    const CurveSearch& m_search;
    GraphOver m_over;
    double m_scale; // g = m_scale f
    double m_stepsPerUnit;
    double m_slopeScale; // the same for the slope, in steps
    FieldPoints m_points;
    FieldValues m_values;
    FieldBoxes m_boxes;
    FieldRanges m_ranges;
};

} // namespace kelvane
