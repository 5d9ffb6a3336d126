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

Box CentredSquare(PixelSize surface)
{
    const double side = std::floor(std::min(surface.Width, surface.Height));
    const double left = std::floor((surface.Width - side) / 2);
    const double top = std::floor((surface.Height - side) / 2);
    return {left, top, left + side - 1, top + side - 1};
}

} // namespace kelvane
