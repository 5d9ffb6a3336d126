#pragma once

#include <array>
#include <optional>
#include <span>
#include <unordered_set>
#include <vector>

#include "graph/cell_sieve.h"
#include "graph/cell_touch.h"

namespace kelvane {

// What is to be drawn in the smallest cells, those that are a fraction of a pixel and still open:
// nodes, cusps, curves that touch zero, isolated points, ends at the border of a domain.
//
// The points of the curve on the edges of such a cell are joined to each other within it.
class CellFinisher {
public:
    CellFinisher(CellField& field, CurveSketch& sketch)
        : m_field(field)
        , m_sketch(sketch)
        , m_roots(field)
        , m_touches(field)
    {
    }

    void Finish(std::span<const OpenCell> cells);

    // Whether the last call of Finish has found anything in the cell of this number.
    bool HasFound(std::size_t cell) const { return m_found[cell].Count > 0; }

    // Of boxes that curves merely touch: adds the pieces in boxes with exactly two touches on their
    // edges, f having the same sign in all of the box. A flag for every box: it is done.
    void JoinTouches(std::span<const LatticeBox> boxes, std::vector<char>& done);

private:
    // Points of the curve on the edges of a cell, in no order, all different.
    struct EdgePoints {
        void Add(LatticePoint point);

        std::size_t Count = 0;
        std::array<LatticePoint, 8> At;
    };

    void SampleEdges(std::span<const OpenCell> cells);
    void PairSamples(const OpenCell& cell, std::size_t index, std::size_t first);
    void KeepFalls(std::size_t index, std::size_t first);
    void DropPoles(std::span<const OpenCell> cells);
    void AddRoots(std::span<const OpenCell> cells);
    void AddBorders();
    void AddTouches(std::span<const OpenCell> cells);
    void AddTouchesOfMarked();
    void AddMinima(std::span<const OpenCell> cells);
    void Join(const EdgePoints& points);
    void JoinToHub(const EdgePoints& points);
    void AddDot(LatticePoint at);

    CellField& m_field;
    CurveSketch& m_sketch;
    RootFinder m_roots;
    TouchFinder m_touches;

    std::vector<EdgePoints> m_found; // for every cell
    std::vector<LatticePoint> m_points;
    std::vector<double> m_values;
    std::vector<Bracket> m_brackets; // of changes of sign
    std::vector<std::size_t> m_owners;
    std::vector<Bracket> m_wide; // brackets of what may be poles
    std::vector<std::size_t> m_wideOwners;
    std::vector<Bracket> m_borders; // of domains
    std::vector<std::size_t> m_borderOwners;
    std::vector<TouchFinder::Stretch> m_falls; // on edges of cells that are not continuous
    std::vector<TouchFinder::Touch> m_onFalls;
    std::vector<LatticeBox> m_boxes;
    std::vector<CellRange> m_ranges;
    std::vector<char> m_zeros;
    std::vector<TouchFinder::OnEdges> m_onEdges;
    std::vector<std::optional<LatticePoint>> m_minima;
    std::unordered_set<std::int64_t> m_dots; // the half pixels that hold one
};

} // namespace kelvane
