#include "ui/column_reducer.h"

#include <cmath>
#include <utility>

namespace kelvane {

std::span<const PixelPoint> ColumnReducer::Add(PixelPoint point)
{
    // Far out doubles lie farther apart than columns: there the same x is the same column.
    const bool sameColumn = (point.X >= m_left && point.X < m_right) || point.X == m_first.Point.X;
    if (m_count > 0 && sameColumn) {
        m_last = {point, m_count++};
        if (point.Y < m_top.Point.Y)
            m_top = m_last;
        if (point.Y > m_bottom.Point.Y)
            m_bottom = m_last;
        return {};
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
    m_count = 1;
    m_first = m_top = m_bottom = m_last = {point, 0};
}

std::span<const PixelPoint> ColumnReducer::Settle()
{
    if (m_count == 0)
        return {};
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
