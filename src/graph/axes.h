#pragma once

#include "graph/surface.h"
#include "graph/view.h"

namespace kelvane {

// What of the frame is drawn; by the axis setup, the grid tick box and the command line.
struct AxisSettings {
    bool ShowAxes = true;  // axes, ticks and numbers
    bool ShowGrid = false; // whether the axes are shown or not
    int UnitThickness = 6; // size of the ticks, 0 to 30: they reach two thirds of it, in pixels, to
                           // both sides of their axis
};

// How far a tick reaches to each side of its axis, whole pixels.
int TickHalfLength(const AxisSettings& settings);

// Colours of a frame that reads well on its sheet.
struct FrameColors {
    Rgb Ink;  // axes, ticks and numbers: black or white
    Rgb Grid; // a shade between sheet and ink; RGB(200, 200, 200) on white
};

FrameColors FrameColorsOn(Rgb sheet);

// The least pixels between divisions of an axis of which so many are visible.
double MinimumDivision(double extent);

// Clears the surface and draws the coordinate frame of a 2D sheet: grid lines, axes, ticks, and
// numbers that tell the true world value at each division, axis centre and zoom included. Where an
// axis lies outside, its numbers stand at the nearest edge. Updates PixPerStep; where that fails
// only the clearing is done. Returns the distance of the divisions of x in world units, 0 where
// there are none.
double InitAxis(Surface& surface, ViewState& view, const AxisSettings& settings, Rgb sheet);

} // namespace kelvane
