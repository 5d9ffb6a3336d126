#pragma once

#include <optional>

#include "graph/surface.h"

namespace kelvane {

// Leaves out the points of a polyline that lie on the straight way between their neighbours, while
// the points arrive one by one. A smooth curve of thousands of points needs a few hundred.
//
// From the last point given back every later point is seen within a small angle, that of a disc of
// the tolerance around it. As long as these angles have a direction in common and the points move
// away, one line replaces them all, and no point left out is further than the tolerance from it. A
// curve that turns back keeps its turning point.
class LineThinner {
public:
    // The tolerance in pixels, above zero.
    explicit LineThinner(double tolerance)
        : m_tolerance(tolerance)
    {
    }

    // Takes the next point and gives back the vertex that is thereby settled, if any. Coordinates
    // up to about 1e6, so that differences of points are exact enough.
    std::optional<PixelPoint> Add(PixelPoint point);

    // Ends the polyline: gives back its last vertex, if one is due, and is ready for another
    // polyline.
    std::optional<PixelPoint> Finish();

private:
    bool Fits(PixelPoint step) const;
    void Narrow(PixelPoint step);

    double m_tolerance;
    bool m_started = false;
    PixelPoint m_anchor; // last vertex given back
    bool m_waiting = false;
    PixelPoint m_candidate; // the latest point, not given back yet; valid while waiting
    double m_reach = 0;     // square of its distance from the anchor
    bool m_limited = false; // whether the two limits hold
    PixelPoint m_from;      // directions between which the next point must be seen
    PixelPoint m_to;
};

} // namespace kelvane
