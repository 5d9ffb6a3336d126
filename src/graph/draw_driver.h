#pragma once

#include <cstdint>
#include <optional>

#include "engine/calculation_modes.h"
#include "engine/equations.h"
#include "engine/eval_state.h"
#include "engine/preparation.h"
#include "graph/color.h"
#include "graph/host.h"
#include "graph/surface.h"
#include "graph/view.h"
#include "view3d/draw_settings.h"
#include "view3d/view_matrix.h"

namespace kelvane {

// Read from the settings once at the start of every draw, so that the plotting need not ask again.
struct DrawFlags {
    bool GradientOn = false; // colours change along a curve
    bool Matrix2DOn = false; // ViewMatrix transforms 2D points
    bool Matrix3DOn = false; // ViewMatrix transforms 3D points
    bool JoinPoints = true;  // consecutive points are joined by lines
    int SkipUnits = 1; // how far a sweep jumps after a sample that is not to be plotted, units
};

// What the last draw did.
struct DrawStats {
    std::int64_t Samples = 0;  // points evaluated
    std::int64_t Points = 0;   // points drawn
    std::int64_t Failed = 0;   // samples without a value
    std::int64_t Compiled = 0; // samples that compiled programs evaluated, not the plain evaluator
    std::int64_t UnresolvedPixels = 0; // of which the second family cannot tell what is there
    double PrepareSeconds = 0;         // preparation and checks
    double SweepSeconds = 0;           // the plotting routine, painting included
};

// Everything a draw works on. First what it changes, then what it reads, then where it goes.
struct DrawContext {
    EquationTable& Table; // empty before and after
    EvalState& Eval;
    ViewState& View;
    DrawFlags& Flags;
    ColorState& Colors;
    DrawStats& Stats;

    const SheetText& Sheet;
    const EquationTicks& Ticks;
    const CalculationModes& Modes;
    const DrawSettings& Settings;
    const Matrix3& ViewMatrix;

    Surface& Target;
    DrawHost& Host;
    const Clock& Time;
};

// How a draw ended. A fault has been shown to the user.
enum class DrawEnd : std::uint8_t { Complete, Stopped, Refused };

// Draws all ticked equations with the current settings onto a surface that InitAxis has prepared:
// formula preparation, checks, flags, one plotting routine. The table is empty afterwards, however
// it ends.
DrawEnd Draw(const DrawContext& context);

// True when at least one equation of the table is ticked.
bool AnyEquationOn(const EquationTable& table, const EquationTicks& ticks, DrawHost& host);

// What Draw would refuse in the ticked equations, without drawing: the first fault of preparation
// and checks, then, in Simple mode, an equation that does not begin with "y=" ("z=" on a 3D sheet).
// Fills the table, which must be empty.
std::optional<EquationFault> FindFault(EquationTable& table, const SheetText& sheet,
                                       const EquationTicks& ticks, const CalculationModes& modes);

} // namespace kelvane
