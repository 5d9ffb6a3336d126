#include "ui/hatching.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "graph/clipped_surface.h"

namespace kelvane {
namespace {

// So far apart the parts of a line are one, in pixels.
constexpr double kTouching = 1e-6;

// The part of the line x + y = Number * kSpacing from one x to another.
struct Part {
    double Number = 0;
    double From = 0;
    double To = 0;
};

// Twice the area, positive where the corners go round clockwise as seen, with y downwards.
double Turn(std::span<const PixelPoint> polygon)
{
    double sum = 0;
    PixelPoint last = polygon.back();
    for (const PixelPoint& corner : polygon) {
        sum += last.X * corner.Y - corner.X * last.Y;
        last = corner;
    }
    return sum;
}

// What of the line lies in the convex polygon: between the outermost of its meetings with the
// sides.
Part PartWithin(std::span<const PixelPoint> polygon, double number)
{
    const double sum = number * Hatching::kSpacing;
    Part part{number, std::numeric_limits<double>::infinity(),
              -std::numeric_limits<double>::infinity()};
    PixelPoint last = polygon.back();
    for (const PixelPoint& corner : polygon) {
        const double before = last.X + last.Y - sum;
        const double after = corner.X + corner.Y - sum;
        if (before != after && before * after <= 0) {
            const double x = std::lerp(last.X, corner.X, before / (before - after));
            part.From = std::min(part.From, x);
            part.To = std::max(part.To, x);
        }
        last = corner;
    }
    return part;
}

void AddParts(std::span<const PixelPoint> polygon, std::vector<Part>& parts)
{
    const auto [low, high] =
        std::minmax_element(polygon.begin(), polygon.end(),
                            [](PixelPoint a, PixelPoint b) { return a.X + a.Y < b.X + b.Y; });
    const int first = static_cast<int>(std::ceil((low->X + low->Y) / Hatching::kSpacing));
    const int last = static_cast<int>(std::floor((high->X + high->Y) / Hatching::kSpacing));
    for (int i = first; i <= last; ++i) {
        const Part part = PartWithin(polygon, i);
        if (part.From < part.To)
            parts.push_back(part);
    }
}

PixelLine LineOf(const Part& part)
{
    const double sum = part.Number * Hatching::kSpacing;
    return {{part.From, sum - part.From}, {part.To, sum - part.To}};
}

} // namespace

void Hatching::Add(std::span<const PixelPoint> corners, const Box& box)
{
    std::vector<PixelPoint> seen = ClipPolygon(corners, box);
    if (seen.size() < 3)
        return;
    if (Turn(seen) < 0)
        std::reverse(seen.begin(), seen.end());
    m_starts.push_back(m_points.size());
    m_points.insert(m_points.end(), seen.begin(), seen.end());
}

void Hatching::Clear()
{
    m_points.clear();
    m_starts.clear();
}

std::span<const PixelPoint> Hatching::Polygon(std::size_t index) const
{
    const std::size_t begin = m_starts[index];
    const std::size_t end = index + 1 < m_starts.size() ? m_starts[index + 1] : m_points.size();
    return std::span(m_points).subspan(begin, end - begin);
}

std::vector<PixelLine> Hatching::Lines() const
{
    std::vector<Part> parts;
    for (std::size_t i = 0; i < Count(); ++i)
        AddParts(Polygon(i), parts);
    std::sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) {
        return a.Number != b.Number ? a.Number < b.Number : a.From < b.From;
    });
    std::vector<PixelLine> lines;
    for (std::size_t i = 0; i < parts.size();) {
        Part whole = parts[i];
        for (++i; i < parts.size() && parts[i].Number == whole.Number &&
                  parts[i].From <= whole.To + kTouching;
             ++i)
            whole.To = std::max(whole.To, parts[i].To);
        lines.push_back(LineOf(whole));
    }
    return lines;
}

} // namespace kelvane
