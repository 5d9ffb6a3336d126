#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "view3d/rgb.h"

namespace kelvane {

// A position on the drawing surface in pixels, x to the right and y downwards. Whole numbers are
// the middles of pixels: (0, 0) is the middle of the top left one.
struct PixelPoint {
    double X = 0;
    double Y = 0;

    friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

struct PixelSize {
    double Width = 0;
    double Height = 0;
};

// Whole pixels: columns X to X + Width - 1, rows Y to Y + Height - 1.
struct PixelRect {
    int X = 0;
    int Y = 0;
    int Width = 0;
    int Height = 0;
};

// Which point of a text lies at its anchor.
enum class HorizontalAlign : std::uint8_t { Left, Center, Right };
enum class VerticalAlign : std::uint8_t { Top, Center, Bottom };

struct TextPlace {
    PixelPoint Anchor;
    HorizontalAlign Horizontal = HorizontalAlign::Left;
    VerticalAlign Vertical = VerticalAlign::Top;
};

// Where marks go: a window's picture, an image, a vector file, a printer, or a transcript in the
// tests. Coordinates may lie far outside; what lies outside is not seen. They must be finite.
class Surface {
public:
    virtual ~Surface() = default;

    virtual PixelSize Size() const = 0;

    // Removes all marks and fills the surface.
    virtual void Clear(Rgb sheet) = 0;

    // The pen width in pixels of the pixels and lines that follow; 1 after Clear.
    virtual void SetLineWidth(int width) = 0;

    // A dot of a curve.
    virtual void Pixel(PixelPoint at, Rgb color) = 0;

    // A straight stretch of a curve. Consecutive lines of one colour that meet form one curve.
    virtual void Line(PixelPoint from, PixelPoint to, Rgb color) = 0;

    // Fills whole pixels, sharp; axes, ticks and grid lines are rectangles one pixel thick.
    virtual void FillRect(PixelRect rect, Rgb color) = 0;

    // Hatches a convex polygon of three or more corners, translucently: what is below stays
    // visible.
    virtual void Hatch(std::span<const PixelPoint> corners, Rgb color) = 0;

    // Writes a short text (UTF-8) in the surface's own small font, on top of everything else.
    virtual void Text(const TextPlace& place, std::string_view text, Rgb color) = 0;

    // The room that Text needs for it.
    virtual PixelSize TextSize(std::string_view text) const = 0;
};

} // namespace kelvane
