#pragma once

#include "graph/draw_driver.h"

// The plotting routines, and what they share.

namespace kelvane {

inline constexpr Rgb kProgressGreen{0, 255, 0};

// Progress is reported at most once in this time; the window breathes more often, so that it
// answers within a frame of the screen.
inline constexpr double kProgressSeconds = 0.05;
inline constexpr double kBreathSeconds = 0.008;

// Reports the progress of one equation's sweep, lets the window breathe, and asks whether to go on.
class ProgressMeter {
public:
    explicit ProgressMeter(const DrawContext& context)
        : m_context(context)
    {
    }

    // Called after every block of samples with the last one's abscissa; the first call always
    // reports. False when the draw must end.
    bool GoOn(float s);

private:
    const DrawContext& m_context;
    double m_lastReport = 0;
    double m_lastBreath = 0;
    bool m_reported = false;
};

// Puts one point of a curve on the surface: s is the sample abscissa, t the result plus CenterY.
// Out of the y range it is dropped and breaks the curve; else it is stretched, coloured and
// transformed, drawn as a dot or joined to the previous point, and becomes the previous point.
void PlotPoint2D(const DrawContext& context, float s, float t);

// Runs at the start of each equation: empty column cache, colours, start of the right side.
void BeginEquation(const DrawContext& context, int number);

// Runs at the end of each equation's sweep: the next one starts unjoined, and progress at "0%".
void EndEquation(const DrawContext& context);

// Simple 2D: sweeps x for every ticked equation, all of which must begin with "y=", and joins the
// values of the right sides. A sample without a value draws nothing and does not break the curve.
DrawEnd DrawSimple2D(const DrawContext& context);

} // namespace kelvane
