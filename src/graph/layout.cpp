#include "graph/layout.h"

#include <algorithm>

namespace kelvane {

namespace {

// The stretch of a line, from 0 at its start to 1 at its end, that is left after some cuts.
struct Stretch {
    double First = 0;
    double Last = 1;

    // Keeps the stretch where start + t * change lies from low to high.
    void Keep(double start, double change, double low, double high)
    {
        if (change == 0) {
            if (start < low || start > high)
                Last = -1;
            return;
        }
        const double toLow = (low - start) / change;
        const double toHigh = (high - start) / change;
        First = std::max(First, std::min(toLow, toHigh));
        Last = std::min(Last, std::max(toLow, toHigh));
    }
};

} // namespace

bool Overlap(const Box& a, const Box& b)
{
    return a.Left < b.Right && b.Left < a.Right && a.Top < b.Bottom && b.Top < a.Bottom;
}

Box BoxOf(const TextPlace& place, PixelSize text)
{
    const double left = place.Anchor.X - text.Width * static_cast<int>(place.Horizontal) / 2.0;
    const double top = place.Anchor.Y - text.Height * static_cast<int>(place.Vertical) / 2.0;
    return {left, top, left + text.Width, top + text.Height};
}

std::optional<PixelLine> ClipLine(const PixelLine& line, const Box& box)
{
    if (box.Left > box.Right || box.Top > box.Bottom)
        return std::nullopt;
    const double right = line.To.X - line.From.X;
    const double down = line.To.Y - line.From.Y;
    Stretch stretch;
    stretch.Keep(line.From.X, right, box.Left, box.Right);
    stretch.Keep(line.From.Y, down, box.Top, box.Bottom);
    if (stretch.First > stretch.Last)
        return std::nullopt;
    const auto at = [&](double t) -> PixelPoint {
        return {std::clamp(line.From.X + t * right, box.Left, box.Right),
                std::clamp(line.From.Y + t * down, box.Top, box.Bottom)};
    };
    return PixelLine{at(stretch.First), at(stretch.Last)};
}

LabelSpace::LabelSpace(PixelSize surface)
    : m_inside{kEdgeMargin, kEdgeMargin, surface.Width - kEdgeMargin, surface.Height - kEdgeMargin}
{
}

bool LabelSpace::IsFree(const Box& box) const
{
    const bool inside = box.Left >= m_inside.Left && box.Top >= m_inside.Top &&
                        box.Right <= m_inside.Right && box.Bottom <= m_inside.Bottom;
    return inside &&
           std::none_of(m_taken.begin(), m_taken.end(),
                        [&](const Box& other) { return Overlap(box, other); }) &&
           std::none_of(m_lines.begin(), m_lines.end(),
                        [&](const PixelLine& line) { return ClipLine(line, box).has_value(); });
}

} // namespace kelvane
