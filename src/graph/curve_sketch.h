#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "graph/draw_driver.h"
#include "graph/pixel_lattice.h"

namespace kelvane {

// What has been found of a curve and waits to be drawn: pieces in any order, which are joined where
// their ends meet, whole areas, and areas about which nothing is known. Lattice coordinates; what
// lies outside of the lattice is not drawn.
class CurveSketch {
public:
    // Pieces whose ends are no further apart than this become one.
    static constexpr double kJoint = 0.02;

    // The context and the lattice must outlive the sketch.
    CurveSketch(const DrawContext& context, const PixelLattice& lattice);

    // A piece of the curve, its points in order; a single one is a dot.
    void AddPiece(std::span<const LatticePoint> points);

    // A box every point of which belongs to the curve, or lies within a step of it.
    void AddArea(const LatticeBox& box);

    // A box in which there may be more of the curve than has been found. Boxes do not overlap.
    void AddUnresolved(const LatticeBox& box);

    // Draws what has been added since the last call: pieces and areas through PlotPoint2D. Lets the
    // window breathe; ends early, and leaves the rest undrawn, when the draw may not go on.
    void Plot();

    // How long that would take, roughly.
    double PlotSeconds() const;

    // Hatches what is unresolved, and counts its pixels in the statistics. At the very end.
    void PlotUnresolved();

private:
    // A row of an area, drawn as a line.
    struct Row {
        double V = 0;
        double From = 0; // u
        double To = 0;
    };

    std::span<const LatticePoint> Piece(std::size_t piece) const;
    void PlotPieces();
    void PlotChain(std::span<const std::size_t> ends);
    void PlotAreas();
    void AddRows(const LatticeBox& box, std::vector<Row>& rows) const;
    double Hatch(const LatticeBox& box);
    std::optional<std::array<PixelPoint, 4>> CornersOf(const LatticeBox& box) const;
    void StartCurve();
    void LineTo(LatticePoint to);
    PixelPoint PixelAt(LatticePoint point) const;
    Interval SeenPart(LatticePoint from, LatticePoint to) const; // on the surface or near, of 0..1
    void PlotAt(LatticePoint point);
    bool MayGoOn();

    const DrawContext& m_context;
    const PixelLattice& m_lattice;
    std::vector<LatticePoint> m_points;
    std::vector<std::size_t> m_starts; // of the pieces, indices into the points
    std::vector<LatticeBox> m_areas;
    std::vector<LatticeBox> m_unresolved;
    double m_rowsPerStep = 1;   // of areas
    std::int64_t m_plotted = 0; // points since the host was asked
    bool m_stopped = false;     // the draw may not go on
    bool m_dense = false;       // lines are drawn as points no further apart than a step
    bool m_started = false;     // there is a last point of the curve being drawn
    LatticePoint m_last;
};

} // namespace kelvane
