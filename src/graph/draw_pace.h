#pragma once

#include <cstdint>

#include "graph/curve_sketch.h"
#include "graph/draw_driver.h"

namespace kelvane {

// What the search for a curve may do next.
enum class Pace : std::uint8_t {
    GoOn,
    TimeUp, // end, and report what is left as unresolved
    Stop    // end at once
};

// Watches over a search: reports progress, lets the window breathe, asks whether to go on, keeps
// the time, and lets a watching user see what has been found so far, the first time after 25 ms.
class DrawPace {
public:
    // The search may take so many seconds from now on, with the drawing of what it finds.
    DrawPace(const DrawContext& context, CurveSketch& sketch, double seconds);

    // To be asked every millisecond or so; fraction is how much is done, 0 to 1. Once it is not
    // GoOn it stays so.
    Pace Ask(double fraction);

private:
    const DrawContext& m_context;
    CurveSketch& m_sketch;
    double m_end;
    double m_nextReport = 0; // seconds of the clock
    double m_nextBreath = 0;
    double m_nextLook = 0;
    Pace m_verdict = Pace::GoOn;
};

} // namespace kelvane
