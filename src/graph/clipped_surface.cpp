#include "graph/clipped_surface.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

bool Holds(const Box& area, const Box& part)
{
    return part.Left >= area.Left && part.Right <= area.Right && part.Top >= area.Top &&
           part.Bottom <= area.Bottom;
}

// One side of a box: what lies beyond is cut off, above Limit for Sign -1, below it for Sign 1.
struct Side {
    double PixelPoint::*Coordinate;
    double Limit;
    int Sign;

    double Inwards(const PixelPoint& point) const { return Sign * (point.*Coordinate - Limit); }
};

// Where the line from a point inside to one outside crosses the side; exactly on it, however far
// away the outer point is.
PixelPoint Crossing(const PixelPoint& inner, const PixelPoint& outer, const Side& side)
{
    const double from = side.Inwards(inner);
    const double share = from / (from - side.Inwards(outer));
    PixelPoint at{std::lerp(inner.X, outer.X, share), std::lerp(inner.Y, outer.Y, share)};
    at.*side.Coordinate = side.Limit;
    return at;
}

std::vector<PixelPoint> CutOff(const std::vector<PixelPoint>& corners, const Side& side)
{
    std::vector<PixelPoint> left;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const PixelPoint& last = corners[(i + corners.size() - 1) % corners.size()];
        const PixelPoint& corner = corners[i];
        const bool wasInside = side.Inwards(last) >= 0;
        const bool isInside = side.Inwards(corner) >= 0;
        if (wasInside != isInside)
            left.push_back(isInside ? Crossing(corner, last, side) : Crossing(last, corner, side));
        if (isInside)
            left.push_back(corner);
    }
    return left;
}

} // namespace

ClippedSurface::ClippedSurface(Surface& target, const Box& area)
    : m_target(target)
    , m_area(area)
{
}

void ClippedSurface::Pixel(PixelPoint at, Rgb color)
{
    if (Holds(m_area, {at.X, at.Y, at.X, at.Y}))
        m_target.Pixel(at, color);
}

void ClippedSurface::Line(PixelPoint from, PixelPoint to, Rgb color)
{
    if (const auto seen = ClipLine({from, to}, m_area))
        m_target.Line(seen->From, seen->To, color);
}

void ClippedSurface::FillRect(PixelRect rect, Rgb color)
{
    const int left = std::max(rect.X, static_cast<int>(m_area.Left));
    const int top = std::max(rect.Y, static_cast<int>(m_area.Top));
    const int right = std::min(rect.X + rect.Width, static_cast<int>(m_area.Right) + 1);
    const int bottom = std::min(rect.Y + rect.Height, static_cast<int>(m_area.Bottom) + 1);
    if (left < right && top < bottom)
        m_target.FillRect({left, top, right - left, bottom - top}, color);
}

void ClippedSurface::Hatch(std::span<const PixelPoint> corners, Rgb color)
{
    constexpr double kHalf = 0.5; // of the outermost pixels lies beyond their middles
    const std::vector<PixelPoint> seen =
        ClipPolygon(corners, {m_area.Left - kHalf, m_area.Top - kHalf, m_area.Right + kHalf,
                              m_area.Bottom + kHalf});
    if (seen.size() >= 3)
        m_target.Hatch(seen, color);
}

void ClippedSurface::Text(const TextPlace& place, std::string_view text, Rgb color)
{
    if (Holds(m_area, BoxOf(place, TextSize(text))))
        m_target.Text(place, text, color);
}

void ClippedSurface::DrawFrame(Rgb color)
{
    const auto left = static_cast<int>(m_area.Left);
    const auto top = static_cast<int>(m_area.Top);
    const int side = static_cast<int>(m_area.Right) - left + 1;
    for (const PixelRect& edge : {PixelRect{left, top, side, 1},
                                  {left, top + side - 1, side, 1},
                                  {left, top, 1, side},
                                  {left + side - 1, top, 1, side}})
        m_target.FillRect(edge, color);
}

// One side of the box after the other.
std::vector<PixelPoint> ClipPolygon(std::span<const PixelPoint> corners, const Box& box)
{
    std::vector<PixelPoint> left(corners.begin(), corners.end());
    for (const Side& side :
         {Side{&PixelPoint::X, box.Left, 1}, Side{&PixelPoint::X, box.Right, -1},
          Side{&PixelPoint::Y, box.Top, 1}, Side{&PixelPoint::Y, box.Bottom, -1}})
        left = CutOff(left, side);
    return left;
}

Box CentredSquare(PixelSize surface)
{
    const double side = std::floor(std::min(surface.Width, surface.Height));
    const double left = std::floor((surface.Width - side) / 2);
    const double top = std::floor((surface.Height - side) / 2);
    return {left, top, left + side - 1, top + side - 1};
}

} // namespace kelvane
