#pragma once

#include <span>
#include <vector>

#include "graph/layout.h"

namespace kelvane {

// A part of another surface: what lies outside of it is not drawn. Coordinates are those of the
// whole, and so is its size.
class ClippedSurface : public Surface {
public:
    // The area's sides are pixel middles; the target must outlive this.
    ClippedSurface(Surface& target, const Box& area);

    PixelSize Size() const override { return m_target.Size(); }
    void Clear(Rgb sheet) override { m_target.Clear(sheet); } // all of it
    void SetLineWidth(int width) override { m_target.SetLineWidth(width); }
    void Pixel(PixelPoint at, Rgb color) override;
    void Line(PixelPoint from, PixelPoint to, Rgb color) override;
    void FillRect(PixelRect rect, Rgb color) override;
    void Hatch(std::span<const PixelPoint> corners, Rgb color) override;
    void Text(const TextPlace& place, std::string_view text, Rgb color) override; // whole or not
    PixelSize TextSize(std::string_view text) const override { return m_target.TextSize(text); }

    // Hairlines along the area's sides.
    void DrawFrame(Rgb color);

private:
    Surface& m_target;
    Box m_area;
};

// What of a convex polygon lies within the box, border included, its corners in the same order;
// fewer than three where that is nothing. The corners must be finite and less than 1e300.
std::vector<PixelPoint> ClipPolygon(std::span<const PixelPoint> corners, const Box& box);

// The largest square in the middle of a surface, its sides on whole pixels.
Box CentredSquare(PixelSize surface);

} // namespace kelvane
