#pragma once

#include <cstdint>
#include <vector>

#include "graph/cell_roots.h"

namespace kelvane {

enum class GridDirection : std::uint8_t { U, V };

// Follows the curve through cells in which it is proven to be the graph of one continuous function
// of u (or of v) that is not steep, or only rises or only falls.
//
// In every half step there is a column, in large cells in every step; where f differs in sign at
// its ends it holds exactly one point of the curve. Between a column with a point and one without
// the curve leaves the cell, at a point of the border that is found as well, so that the pieces of
// neighbouring cells meet.
class CellTracer {
public:
    CellTracer(CellField& field, CurveSketch& sketch)
        : m_field(field)
        , m_sketch(sketch)
        , m_roots(field)
    {
    }

    // The curve in the box is the graph of a function of the variable of this direction.
    void Add(const LatticeBox& box, GridDirection over);

    // Adds the pieces in all cells so far to the sketch.
    void Flush();

private:
    struct Cell {
        std::size_t First = 0; // of its ends of columns
        std::size_t Columns = 0;
    };

    void Collect(const Cell& cell);
    void Bracketed(std::size_t a, std::size_t b);
    void EndPiece();

    CellField& m_field;
    CurveSketch& m_sketch;
    RootFinder m_roots;
    std::vector<Cell> m_cells;
    std::vector<LatticePoint> m_ends; // of columns, low and high in turns
    std::vector<double> m_values;     // there
    std::vector<Bracket> m_brackets;
    std::vector<std::size_t> m_pieces; // where they end in the brackets
    std::vector<LatticePoint> m_points;
};

} // namespace kelvane
