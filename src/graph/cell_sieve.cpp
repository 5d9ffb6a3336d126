#include "graph/cell_sieve.h"

#include <optional>

namespace kelvane {

namespace {

// How steep a curve may be that is followed in columns; in a small cell it may also be steeper if
// it does nothing but rise or nothing but fall.
constexpr double kMaxSlope = 3;
constexpr double kSmallCell = 1; // steps

// By the mean value theorem: f in the middle, and the slopes times the way from there.
bool MayHoldZero(const OpenCell& cell, const Bounds& middle)
{
    const double reach = cell.Range.AlongU.Largest() * (cell.Box.U1 - cell.Box.U0) / 2 +
                         cell.Range.AlongV.Largest() * (cell.Box.V1 - cell.Box.V0) / 2;
    const double allowed = reach * (1 + 1e-9); // for the rounding of these lines
    return !(middle.Low > allowed || middle.High < -allowed);
}

// The variable of which the curve is a function that is not too steep.
std::optional<GridDirection> SimpleOver(const OpenCell& cell)
{
    const Bounds& alongU = cell.Range.AlongU;
    const Bounds& alongV = cell.Range.AlongV;
    const double slopeOverU = alongU.Largest() / alongV.Smallest(); // infinite where it may be
    const double slopeOverV = alongV.Largest() / alongU.Smallest();
    const bool isSmall = cell.Box.U1 - cell.Box.U0 <= kSmallCell;
    const bool isMonotonic = !alongU.HoldZero() && !alongV.HoldZero();
    if (!(std::min(slopeOverU, slopeOverV) <= kMaxSlope) && !(isSmall && isMonotonic))
        return std::nullopt;
    return slopeOverU <= slopeOverV ? GridDirection::U : GridDirection::V;
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
        if (const auto over = SimpleOver(cell))
            m_tracer.Add(cell.Box, *over);
        else
            open.push_back(cell);
    }
}

} // namespace kelvane
