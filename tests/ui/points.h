#pragma once

#include <algorithm>
#include <cmath>
#include <ostream>
#include <vector>

#include "graph/surface.h"

namespace kelvane {

using Points = std::vector<PixelPoint>;

// How GoogleTest shows a point.
inline void PrintTo(const PixelPoint& point, std::ostream* out)
{
    *out << '(' << point.X << ", " << point.Y << ')';
}

// The distance of a point from the straight stretch between two others.
inline double Distance(PixelPoint point, PixelPoint from, PixelPoint to)
{
    const double dx = to.X - from.X;
    const double dy = to.Y - from.Y;
    const double square = dx * dx + dy * dy;
    const double along = (point.X - from.X) * dx + (point.Y - from.Y) * dy;
    const double nearest = square > 0 ? std::clamp(along / square, 0.0, 1.0) : 0;
    return std::hypot(from.X + nearest * dx - point.X, from.Y + nearest * dy - point.Y);
}

} // namespace kelvane
