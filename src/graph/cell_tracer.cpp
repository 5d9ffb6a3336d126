#include "graph/cell_tracer.h"

namespace kelvane {

namespace {

constexpr double kFineColumn = 0.5; // steps, in small cells, where the curve may be bent
constexpr double kWideColumn = 1;
constexpr double kWideCell = 4;
constexpr double kTolerance = 1e-4; // steps; the root of what is linear is far closer
constexpr std::size_t kManyEnds = 4096;

} // namespace

void CellTracer::Add(const LatticeBox& box, GridDirection over)
{
    const bool overU = over == GridDirection::U;
    const double from = overU ? box.U0 : box.V0;
    const double to = overU ? box.U1 : box.V1;
    const double column = to - from >= kWideCell ? kWideColumn : kFineColumn;
    const auto columns = static_cast<std::size_t>(std::ceil((to - from) / column)) + 1;
    m_cells.push_back({m_ends.size(), columns});
    for (std::size_t k = 0; k < columns; ++k) {
        const double at = k + 1 == columns ? to : from + static_cast<double>(k) * column;
        m_ends.push_back(overU ? LatticePoint{at, box.V0} : LatticePoint{box.U0, at});
        m_ends.push_back(overU ? LatticePoint{at, box.V1} : LatticePoint{box.U1, at});
    }
    if (m_ends.size() >= kManyEnds)
        Flush();
}

void CellTracer::Flush()
{
    m_field.Values(m_ends, m_values);
    m_brackets.clear();
    m_pieces.clear();
    for (const Cell& cell : m_cells)
        Collect(cell);
    m_roots.Find(m_brackets, RootOf::Value, kTolerance);
    std::size_t at = 0;
    for (const std::size_t end : m_pieces) {
        m_points.clear();
        for (; at < end; ++at)
            m_points.push_back(m_brackets[at].Root());
        m_sketch.AddPiece(m_points);
    }
    m_cells.clear();
    m_ends.clear();
}

void CellTracer::Bracketed(std::size_t a, std::size_t b)
{
    m_brackets.push_back({m_ends[a], m_ends[b], m_values[a], m_values[b]});
}

void CellTracer::EndPiece()
{
    if (m_brackets.size() > (m_pieces.empty() ? 0 : m_pieces.back()))
        m_pieces.push_back(m_brackets.size());
}

// Brackets every point of the curve in a cell, in order, and says where a piece ends.
void CellTracer::Collect(const Cell& cell)
{
    bool heldPoint = false;
    for (std::size_t k = 0; k < cell.Columns; ++k) {
        const std::size_t low = cell.First + 2 * k;
        const std::size_t high = low + 1;
        const bool holdsPoint = Differ(m_values[low], m_values[high]);
        const bool lowChanges = k > 0 && Differ(m_values[low - 2], m_values[low]);
        if (k > 0 && heldPoint != holdsPoint) {
            Bracketed(lowChanges ? low - 2 : high - 2, lowChanges ? low : high);
            if (heldPoint)
                EndPiece();
        } else if (lowChanges && !holdsPoint) { // through both borders, between the columns
            Bracketed(low - 2, low);
            Bracketed(high - 2, high);
            EndPiece();
        }
        if (holdsPoint)
            Bracketed(low, high);
        heldPoint = holdsPoint;
    }
    EndPiece();
}

} // namespace kelvane
