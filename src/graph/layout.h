#pragma once

#include <optional>
#include <vector>

#include "graph/surface.h"

// Room on a surface: what of a line is visible, and where a label still fits. No drawing.

namespace kelvane {

// Pixels Left to Right and Top to Bottom; touching boxes do not overlap.
struct Box {
    double Left = 0;
    double Top = 0;
    double Right = 0;
    double Bottom = 0;
};

struct PixelLine {
    PixelPoint From;
    PixelPoint To;
};

bool Overlap(const Box& a, const Box& b);

// The box that a text of the size covers at the place.
Box BoxOf(const TextPlace& place, PixelSize text);

// The part of the line within the box, its border included, in the same direction; nothing where
// they do not meet. The ends must be finite and less than 1e300.
std::optional<PixelLine> ClipLine(const PixelLine& line, const Box& box);

// The labels of one surface. They keep clear of its edges, of each other, and of chosen lines.
class LabelSpace {
public:
    static constexpr double kEdgeMargin = 2; // between a label and the surface's edge

    explicit LabelSpace(PixelSize surface);

    // Labels written from now on do not cross the line.
    void Avoid(const PixelLine& line) { m_lines.push_back(line); }

    bool IsFree(const Box& box) const;
    void Take(const Box& box) { m_taken.push_back(box); }

private:
    Box m_inside;
    std::vector<PixelLine> m_lines;
    std::vector<Box> m_taken;
};

} // namespace kelvane
