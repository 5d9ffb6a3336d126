#pragma once

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

} // namespace kelvane
