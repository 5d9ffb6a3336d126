#pragma once

#include "graph/view.h"

// Zooming and moving the view by hand. All of them use PixPerStep and keep it up to date. They
// return false, and change nothing, where single precision could not hold the new view or tell its
// pixels apart.

namespace kelvane {

// One step of the zoom keys and of the wheel, as a factor of ZoomFactor.
inline constexpr double kZoomStep = 1.4142135623730951;

// The bounds of ZoomFactor.
inline constexpr double kMinZoom = 1e-6;
inline constexpr double kMaxZoom = 1e6;

bool SetZoom(ViewState& view, double zoomFactor);

// The world point that the axes cross in.
bool SetCenter(ViewState& view, WorldPoint center);

// Multiplies ZoomFactor (2 shows twice as much); the world point under the pixel stays there.
bool ZoomAround(ViewState& view, double factor, PixelPoint fixed);

// Rounds the axes' crossing to short numbers, so that the divisions, which are counted from it,
// read well. The graph moves by a few pixels at the most.
void RoundCenter(ViewState& view);

// The world point under the pixel becomes the axes' crossing.
bool CenterAt(ViewState& view, PixelPoint pixel);

// Moves the graph by so many pixels, to the right and down.
bool MoveGraph(ViewState& view, double right, double down);

// A rectangle of pixels, by two opposite corners.
struct PixelBox {
    PixelPoint From;
    PixelPoint To;
};

// Shows the box as large as the surface allows, its middle where the axes' crossing is on the
// surface. False also for a box without area.
bool ZoomToBox(ViewState& view, PixelBox box, PixelSize surface);

} // namespace kelvane
