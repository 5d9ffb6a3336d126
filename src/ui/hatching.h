#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "graph/layout.h"

namespace kelvane {

// Convex polygons that are hatched together, as geometry: their areas, for a light wash, and
// slanted lines in them. The lines are the same for the whole surface, so that they go on from a
// polygon to its neighbours. Pixels, as on a Surface.
class Hatching {
public:
    // Lines run where x + y is a multiple of this.
    static constexpr double kSpacing = 6;

    // Adds what of the polygon lies within the box. Its corners may go round either way.
    void Add(std::span<const PixelPoint> corners, const Box& box);

    bool IsEmpty() const { return m_starts.empty(); }
    void Clear();

    // The polygons, all of which go round the same way: areas of several that share a border,
    // filled as one path by the winding rule, show no seam.
    std::size_t Count() const { return m_starts.size(); }
    std::span<const PixelPoint> Polygon(std::size_t index) const;
    std::size_t PointCount() const { return m_points.size(); }

    // The lines, each as long as the polygons it crosses touch each other.
    std::vector<PixelLine> Lines() const;

private:
    std::vector<PixelPoint> m_points;
    std::vector<std::size_t> m_starts; // of the polygons
};

} // namespace kelvane
