#pragma once

#include "graph/surface.h"
#include "graph/view.h"
#include "view3d/view_matrix.h"

namespace kelvane {

// The part of the plane that a draw shows, measured in pixels: u to the right and v upwards, from
// (0, 0) to (Width, Height), which are whole numbers. Without a transform of the drawing the lines
// of whole u and v are the borders of the surface's pixels; with one, a step of 1 in u or v is at
// most a pixel on the surface.
//
// Every mapping is one formula in doubles, so neighbouring cells have the very same borders.
struct PixelLattice {
    int Width = 0; // 0 where nothing can be seen
    int Height = 0;

    double StartS = 0; // sample coordinates of (0, 0), before YRatio
    double StartT = 0;
    double UnitS = 1; // sample units a step, above 0
    double UnitT = 1;
    double CenterX = 0; // as in ViewState
    double CenterY = 0;

    double SampleS(double u) const { return StartS + u * UnitS; }
    double SampleT(double v) const { return StartT + v * UnitT; }
    double X(double u) const { return CenterX + SampleS(u); } // world
    double Y(double v) const { return SampleT(v) - CenterY; }
    double U(double x) const { return (x - CenterX - StartS) / UnitS; }
    double V(double y) const { return (y + CenterY - StartT) / UnitT; }
};

// Covers the range of the view, or what of it lies on the surface or within two pixels of it. Needs
// UpdatePixPerStep. At most kMaxLattice steps wide and high: beyond, the steps are larger.
inline constexpr int kMaxLattice = 1 << 15;
PixelLattice MakeLattice(const ViewState& view, const Matrix3& matrix, PixelSize surface);

struct LatticePoint {
    double U = 0;
    double V = 0;
};

// U0 < U1 and V0 < V1.
struct LatticeBox {
    double U0 = 0;
    double V0 = 0;
    double U1 = 0;
    double V1 = 0;
};

} // namespace kelvane
