#include "graph/explicit_function.h"

#include <algorithm>

namespace kelvane {

ExplicitFunction::ExplicitFunction(const CurveSearch& search, GraphOver over)
    : m_search(search)
    , m_over(over)
{
    const PixelLattice& lattice = search.Lattice;
    const bool overX = over == GraphOver::X;
    const Field& field = search.Formula;
    m_scale = -1 / (overX ? field.ConstantAlongY : field.ConstantAlongX).value_or(1);
    m_stepsPerUnit = 1 / (overX ? lattice.UnitS : lattice.UnitT);
    m_slopeScale = m_scale / (overX ? lattice.UnitT : lattice.UnitS) / m_stepsPerUnit;
}

int ExplicitFunction::Length() const
{
    return m_over == GraphOver::X ? m_search.Lattice.Width : m_search.Lattice.Height;
}

int ExplicitFunction::Height() const
{
    return m_over == GraphOver::X ? m_search.Lattice.Height : m_search.Lattice.Width;
}

double ExplicitFunction::Abscissa(double along) const
{
    return m_over == GraphOver::X ? m_search.Lattice.X(along) : m_search.Lattice.Y(along);
}

double ExplicitFunction::Along(double abscissa) const
{
    return m_over == GraphOver::X ? m_search.Lattice.U(abscissa) : m_search.Lattice.V(abscissa);
}

double ExplicitFunction::Value(double f) const
{
    const double value = m_scale * f;
    return m_over == GraphOver::X ? m_search.Lattice.V(value) : m_search.Lattice.U(value);
}

LatticePoint ExplicitFunction::At(double abscissa, double value) const
{
    if (m_over == GraphOver::X)
        return {Along(abscissa), value};
    return {value, Along(abscissa)};
}

LatticeBox ExplicitFunction::Box(const Interval& abscissas, const Interval& values) const
{
    const LatticePoint low = At(abscissas.Low, values.Low);
    const LatticePoint high = At(abscissas.High, values.High);
    return {low.U, low.V, high.U, high.V};
}

void ExplicitFunction::Values(std::span<const double> abscissas, std::span<double> values)
{
    const bool overX = m_over == GraphOver::X;
    const auto count = static_cast<int>(abscissas.size());
    std::ranges::copy(abscissas, (overX ? m_points.X : m_points.Y).At.begin());
    (overX ? m_points.Y : m_points.X).At.fill(0);
    m_search.Runner.AtPoints(m_search.Formula, m_points, count, FieldPart::Value, m_values);
    for (std::size_t i = 0; i < abscissas.size(); ++i)
        values[i] = Value(m_values.F.At[i]);
    m_search.Stats.Samples += count;
    m_search.Stats.Compiled += count;
}

void ExplicitFunction::Ranges(std::span<const Interval> abscissas, std::span<Bounds> bounds)
{
    const bool overX = m_over == GraphOver::X;
    const auto count = static_cast<int>(abscissas.size());
    IntervalColumn& along = overX ? m_boxes.X : m_boxes.Y;
    IntervalColumn& other = overX ? m_boxes.Y : m_boxes.X;
    for (std::size_t i = 0; i < abscissas.size(); ++i) {
        along.Low.At[i] = abscissas[i].Low;
        along.High.At[i] = abscissas[i].High;
    }
    other.Low.At.fill(0);
    other.High.At.fill(0);
    m_search.Runner.OverBoxes(m_search.Formula, m_boxes, count, FieldPart::WithGradient, m_ranges);
    const IntervalColumn& slopes = overX ? m_ranges.AlongX : m_ranges.AlongY;
    for (std::size_t i = 0; i < abscissas.size(); ++i) {
        bounds[i] = {Ordered(Value(m_ranges.F.Low.At[i]), Value(m_ranges.F.High.At[i])),
                     Ordered(m_slopeScale * slopes.Low.At[i], m_slopeScale * slopes.High.At[i]),
                     m_ranges.Marks[i]};
    }
    m_search.Stats.Samples += count;
    m_search.Stats.Compiled += count;
}

} // namespace kelvane
