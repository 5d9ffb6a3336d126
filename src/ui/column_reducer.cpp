#include "ui/column_reducer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvane {

std::span<const PixelPoint> ColumnReducer::Add(PixelPoint point)
{
    // Far out doubles lie farther apart than columns: there the same x is the same column.
    const bool sameColumn = (point.X >= m_left && point.X < m_right) || point.X == m_first.Point.X;
    if (m_count > 0 && sameColumn) {
        const auto settled = Follow(point);
        m_last = {point, m_count++};
        if (point.Y < m_top.Point.Y)
            m_top = m_last;
        if (point.Y > m_bottom.Point.Y)
            m_bottom = m_last;
        return settled;
    }
    const auto settled = Settle();
    StartColumn(point);
    return settled;
}

std::span<const PixelPoint> ColumnReducer::Finish()
{
    const auto settled = Settle();
    m_count = 0;
    return settled;
}

void ColumnReducer::StartColumn(PixelPoint point)
{
    const double column = std::floor(point.X / m_columnWidth);
    m_left = column * m_columnWidth;
    m_right = (column + 1) * m_columnWidth;
    m_turns = 0;
    m_change = 0;
    StartRun(point);
}

void ColumnReducer::StartRun(PixelPoint point)
{
    m_count = 1;
    m_first = m_top = m_bottom = m_last = {point, 0};
    m_path[0] = point;
    m_pathCount = 1;
}

// Keeps the path of a run with few turns: the points at which it turns, and some in between. A long
// one is settled but for its last point, from which the run goes on.
std::span<const PixelPoint> ColumnReducer::Follow(PixelPoint point)
{
    const PixelPoint last = m_last.Point;
    const double change = point.Y - last.Y;
    const bool turns = change * m_change < 0;
    m_turns += turns ? 1 : 0;
    if (change != 0)
        m_change = change < 0 ? -1 : 1;
    if (m_turns > kMostTurns)
        return {};
    if (turns && m_path[m_pathCount - 1] != last)
        m_path[m_pathCount++] = last;
    if (std::abs(point.Y - m_path[m_pathCount - 1].Y) >= kSpacing)
        m_path[m_pathCount++] = point;
    if (m_pathCount + 2 <= kMostPath)
        return {};
    const std::size_t count = m_pathCount - 1;
    std::copy_n(m_path.begin(), count, m_settled.begin());
    StartRun(m_path[count]);
    return {m_settled.data(), count};
}

std::span<const PixelPoint> ColumnReducer::Settle()
{
    if (m_count == 0)
        return {};
    if (m_turns <= kMostTurns) {
        std::copy_n(m_path.begin(), m_pathCount, m_settled.begin());
        std::size_t count = m_pathCount;
        if (m_last.Point != m_settled[count - 1])
            m_settled[count++] = m_last.Point;
        return {m_settled.data(), count};
    }
    const Candidate* early = &m_top;
    const Candidate* late = &m_bottom;
    if (late->Order < early->Order)
        std::swap(early, late);
    std::size_t count = 0;
    for (const Candidate* candidate :
         {&std::as_const(m_first), early, late, &std::as_const(m_last)})
        if (count == 0 || candidate->Point != m_settled[count - 1])
            m_settled[count++] = candidate->Point;
    return {m_settled.data(), count};
}

} // namespace kelvane
