#pragma once

#include "graph/surface.h"
#include "graph/view.h"

namespace kelvane {

// What of the frame is drawn; by the axis setup, the grid tick box and the command line.
struct AxisSettings {
    bool ShowAxes = true; // axes, ticks and numbers
    bool ShowGrid = false;
};

inline constexpr Rgb kGridColor{200, 200, 200};

// Clears the surface and draws the coordinate frame of a 2D sheet: grid lines, axes, ticks, and
// numbers that tell the true world value at each division, axis centre and zoom included. Where an
// axis lies outside, its numbers stand at the nearest edge. Updates PixPerStep; where that fails
// only the clearing is done. Returns the distance of the divisions of x in world units, 0 where
// there are none.
double InitAxis(Surface& surface, ViewState& view, const AxisSettings& settings, Rgb sheet);

} // namespace kelvane
