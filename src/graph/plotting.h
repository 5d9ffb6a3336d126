#pragma once

#include <cstdint>
#include <functional>

#include "graph/draw_driver.h"
#include "graph/sweep.h"

// The plotting routines, and what they share.

namespace kelvane {

inline constexpr Rgb kProgressGreen{0, 255, 0};

// Progress is reported at most once in this time; the window breathes more often, so that it
// answers within a frame of the screen.
inline constexpr double kProgressSeconds = 0.05;
inline constexpr double kBreathSeconds = 0.008;

// Puts one point of a curve on the surface: s is the sample abscissa, t the result plus CenterY.
// Out of the y range it is dropped and breaks the curve; else it is stretched, coloured and
// transformed, drawn as a dot or joined to the previous point, and becomes the previous point.
void PlotPoint2D(const DrawContext& context, float s, float t);

// Calls drawEquation with the number of each ticked equation in turn, its column cache empty, its
// colours and the start of its right side prepared. The first that does not end Complete ends it.
DrawEnd DrawTicked(const DrawContext& context, const std::function<DrawEnd(int)>& drawEquation);

// Takes one equation's samples in blocks of up to blockSize; plotBlock draws the samples from the
// first on, count of them. Between blocks progress is reported, the window breathes, and a stop
// request is heeded. Where a block leaves EvalSkip set, the sweep jumps SkipUnits ahead.
using BlockPlotter = std::function<void(std::int64_t first, int count)>;
DrawEnd SweepBlocks(const DrawContext& context, const Sweep& sweep, int blockSize,
                    const BlockPlotter& plotBlock);

// Simple 2D: sweeps x for every ticked equation, all of which must begin with "y=", and joins the
// values of the right sides. A sample without a value draws nothing and does not break the curve.
DrawEnd DrawSimple2D(const DrawContext& context);

// Advanced 2D: equations of any form. Each sample's y is solved for by bisection; one without a
// solution draws nothing and does not break the curve.
//
// Double Draw lets the samples go in turns to two branches, which are solved in opposite
// directions and joined each within itself. Multi Draw solves each sample twice: for y, and with x
// and y exchanged, for the x that belongs to the sample as a y; both are joined each within itself.
// With both, each of the two passes has its two branches.
DrawEnd DrawAdvanced2D(const DrawContext& context);
DrawEnd DrawDoubleDraw2D(const DrawContext& context);
DrawEnd DrawMultiDraw2D(const DrawContext& context);
DrawEnd DrawDoubleMultiDraw2D(const DrawContext& context);

// The second family, which joins nothing that it has not proven to be one curve, and says where it
// is not sure; see docs/complete-curves.md. Points go to PlotPoint2D like all others. Each
// equation is searched until all of it is known or its share of DrawSettings::BudgetSeconds is
// over; areas that remain unknown are hatched and counted.

// Simple: equations that begin with "y=", columns of Step2D or a quarter of a pixel, whichever is
// wider.
DrawEnd DrawCompleteSimple2D(const DrawContext& context);

// Advanced: all branches of equations of any form. So there is nothing left for Double Draw and
// Multi Draw to add: with the second family they draw the same.
DrawEnd DrawCompleteAdvanced2D(const DrawContext& context);

} // namespace kelvane
