#include "graph/cell_field.h"

#include <limits>

namespace kelvane {

namespace {

constexpr double kBreathNanoseconds = 1e6;
constexpr double kPointNanoseconds = 1; // an instruction, roughly
constexpr double kBoxNanoseconds = 10;

Bounds Scaled(const IntervalColumn& column, std::size_t at, double factor)
{
    return {column.Low.At[at] * factor, column.High.At[at] * factor};
}

// The spacing of the numbers around the coordinates of a point, as a part of a step.
double FuzzOf(double step, double start, double center, double unit)
{
    const double size = std::abs(start) + std::abs(center) + std::abs(step * unit);
    return 4 * std::numeric_limits<double>::epsilon() * size / unit;
}

} // namespace

void CellField::Count(std::size_t count, double nanosecondsAnInstruction)
{
    m_search.Stats.Samples += static_cast<std::int64_t>(count);
    m_search.Stats.Compiled += static_cast<std::int64_t>(count);
    m_effort += static_cast<double>(count) * nanosecondsAnInstruction *
                static_cast<double>(m_search.Formula.Code.Code.size());
}

bool CellField::IsBreathDue()
{
    if (m_effort < kBreathNanoseconds)
        return false;
    m_effort = 0;
    return true;
}

void CellField::Ranges(std::span<const LatticeBox> boxes, FieldPart part,
                       std::vector<CellRange>& ranges)
{
    const PixelLattice& lattice = m_search.Lattice;
    Count(boxes.size(), kBoxNanoseconds);
    ranges.resize(boxes.size());
    for (std::size_t first = 0; first < boxes.size(); first += kBlockPoints) {
        const std::size_t count = std::min<std::size_t>(kBlockPoints, boxes.size() - first);
        for (std::size_t at = 0; at < count; ++at) {
            const LatticeBox& box = boxes[first + at];
            m_boxes.X.Low.At[at] = lattice.X(box.U0);
            m_boxes.X.High.At[at] = lattice.X(box.U1);
            m_boxes.Y.Low.At[at] = lattice.Y(box.V0);
            m_boxes.Y.High.At[at] = lattice.Y(box.V1);
        }
        m_search.Runner.OverBoxes(m_search.Formula, m_boxes, static_cast<int>(count), part,
                                  m_ranges);
        for (std::size_t at = 0; at < count; ++at) {
            CellRange& range = ranges[first + at];
            range.F = Scaled(m_ranges.F, at, 1);
            if (part == FieldPart::WithGradient) {
                range.AlongU = Scaled(m_ranges.AlongX, at, lattice.UnitS);
                range.AlongV = Scaled(m_ranges.AlongY, at, lattice.UnitT);
            }
            range.Marks = m_ranges.Marks[at];
        }
    }
}

void CellField::LoadPoints(std::span<const LatticePoint> points)
{
    for (std::size_t at = 0; at < points.size(); ++at) {
        m_points.X.At[at] = m_search.Lattice.X(points[at].U);
        m_points.Y.At[at] = m_search.Lattice.Y(points[at].V);
    }
}

void CellField::Values(std::span<const LatticePoint> points, std::vector<double>& values)
{
    Count(points.size(), kPointNanoseconds);
    values.resize(points.size());
    for (std::size_t first = 0; first < points.size(); first += kBlockPoints) {
        const std::size_t count = std::min<std::size_t>(kBlockPoints, points.size() - first);
        LoadPoints(points.subspan(first, count));
        m_search.Runner.AtPoints(m_search.Formula, m_points, static_cast<int>(count),
                                 FieldPart::Value, m_values);
        std::copy_n(m_values.F.At.begin(), count,
                    values.begin() + static_cast<std::ptrdiff_t>(first));
    }
}

void CellField::Slopes(std::span<const LatticePoint> points, std::vector<SlopeSample>& samples)
{
    const PixelLattice& lattice = m_search.Lattice;
    Count(points.size(), 2 * kPointNanoseconds);
    samples.resize(points.size());
    for (std::size_t first = 0; first < points.size(); first += kBlockPoints) {
        const std::size_t count = std::min<std::size_t>(kBlockPoints, points.size() - first);
        LoadPoints(points.subspan(first, count));
        m_search.Runner.AtPoints(m_search.Formula, m_points, static_cast<int>(count),
                                 FieldPart::WithGradient, m_values);
        for (std::size_t at = 0; at < count; ++at) {
            samples[first + at] = {m_values.F.At[at], m_values.AlongX.At[at] * lattice.UnitS,
                                   m_values.AlongY.At[at] * lattice.UnitT};
        }
    }
}

LatticePoint CellField::Fuzz(LatticePoint at) const
{
    const PixelLattice& lattice = m_search.Lattice;
    return {FuzzOf(at.U, lattice.StartS, lattice.CenterX, lattice.UnitS),
            FuzzOf(at.V, lattice.StartT, lattice.CenterY, lattice.UnitT)};
}

LatticeBox CellField::Around(LatticePoint at) const
{
    const LatticePoint fuzz = Fuzz(at);
    return {at.U - fuzz.U, at.V - fuzz.V, at.U + fuzz.U, at.V + fuzz.V};
}

} // namespace kelvane
