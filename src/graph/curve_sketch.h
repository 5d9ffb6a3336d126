#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "graph/draw_driver.h"
#include "graph/pixel_lattice.h"

namespace kelvane {

// What has been found of a curve and waits to be drawn: pieces in any order, which are joined where
// their ends meet, whole areas, and areas about which nothing is known. Lattice coordinates.
class CurveSketch {
public:
    CurveSketch(const DrawContext& context, const PixelLattice& lattice);

    // A piece of the curve, its points in order; a single one is a dot. Pieces whose ends are
    // within 1/50 of a step become one.
    void AddPiece(std::span<const LatticePoint> points);

    // A box every point of which belongs to the curve, or lies within a step of it.
    void AddArea(const LatticeBox& box);

    // A box in which there may be more of the curve than has been found.
    void AddUnresolved(const LatticeBox& box);

    // Draws what has been added since the last call: pieces and areas through PlotPoint2D.
    void Plot();

    // Hatches what is unresolved, and counts its pixels in the statistics. At the very end.
    void PlotUnresolved();

private:
    const DrawContext& m_context;
    const PixelLattice& m_lattice;
    std::vector<LatticePoint> m_points;
    std::vector<std::size_t> m_starts; // of the pieces, indices into the points
    std::vector<LatticeBox> m_areas;
    std::vector<LatticeBox> m_unresolved;
};

} // namespace kelvane
