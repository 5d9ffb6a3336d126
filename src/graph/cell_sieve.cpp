#include "graph/cell_sieve.h"

#include <optional>

namespace kelvane {

namespace {

constexpr double kMaxSlope = 2;

// By the mean value theorem: f in the middle, and the slopes times the way from there.
bool MayHoldZero(const OpenCell& cell, const Bounds& middle)
{
    const double reach = cell.Range.AlongU.Largest() * (cell.Box.U1 - cell.Box.U0) / 2 +
                         cell.Range.AlongV.Largest() * (cell.Box.V1 - cell.Box.V0) / 2;
    const double allowed = reach * (1 + 1e-9); // for the rounding of these lines
    return !(middle.Low > allowed || middle.High < -allowed);
}

// The variable of which the curve is a function that is not steep.
std::optional<GridDirection> SimpleOver(const CellRange& range)
{
    const double leastU = range.AlongU.Smallest();
    const double leastV = range.AlongV.Smallest();
    if (leastV > 0 && range.AlongU.Largest() <= kMaxSlope * leastV)
        return GridDirection::U;
    if (leastU > 0 && range.AlongV.Largest() <= kMaxSlope * leastU)
        return GridDirection::V;
    return std::nullopt;
}

} // namespace

void CellSieve::Sift(std::span<const LatticeBox> boxes, std::vector<OpenCell>& open)
{
    m_field.Ranges(boxes, FieldPart::WithGradient, m_ranges);
    m_survivors.clear();
    m_middles.clear();
    for (std::size_t at = 0; at < boxes.size(); ++at) {
        const CellRange& range = m_ranges[at];
        if ((range.Marks & kNowhereDefined) != 0 || !range.F.HoldZero())
            continue;
        if (range.Marks == 0 && range.F.Low == 0 && range.F.High == 0) {
            m_sketch.AddArea(boxes[at]);
            continue;
        }
        m_survivors.push_back({boxes[at], range, true});
        m_middles.push_back(AsBox(Middle(boxes[at])));
    }
    m_field.Ranges(m_middles, FieldPart::Value, m_ranges);
    for (std::size_t at = 0; at < m_survivors.size(); ++at) {
        OpenCell& cell = m_survivors[at];
        if (!cell.IsContinuous()) {
            open.push_back(cell);
            continue;
        }
        const Bounds& middle = m_ranges[at].F;
        cell.MiddleMayBeZero = middle.HoldZero();
        if (!MayHoldZero(cell, middle))
            continue;
        if (const auto over = SimpleOver(cell.Range))
            m_tracer.Add(cell.Box, *over);
        else
            open.push_back(cell);
    }
}

} // namespace kelvane
