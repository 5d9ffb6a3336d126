#pragma once

#include "graph/axes.h"
#include "graph/draw_driver.h"
#include "view3d/axis_model.h"
#include "view3d/axis_setup.h"

namespace kelvane {

// All state that the subsystems share, each in its own plain struct. The default values are those
// of a fresh start: an empty sheet, an identity transform, Simple mode.
struct SharedState {
    EquationTable Table; // filled only while something prepares and evaluates
    EvalState Eval;
    ViewState View;
    DrawFlags Flags;
    ColorState Colors;
    DrawStats Stats; // of the last draw

    SheetText Sheet; // plain text of the editor's pages
    EquationTicks Ticks;
    CalculationModes Modes;
    DrawSettings Settings;
    AxisSettings Axes;   // what of the frame is drawn
    AxisSetup AxisScale; // as accepted in the axis setup
    AxisModel Axis3D;
    Matrix3 ViewMatrix = kIdentity;
};

// The equations of a draw.
struct SheetEquations {
    SheetText Sheet;
    EquationTicks Ticks;
};

// The state as a draw sees it, with its own equations or with others. The equations must outlive
// the context.
DrawContext MakeDrawContext(SharedState& state, Surface& surface, DrawHost& host,
                            const Clock& clock);
DrawContext MakeDrawContext(SharedState& state, const SheetEquations& equations, Surface& surface,
                            DrawHost& host, const Clock& clock);

} // namespace kelvane
