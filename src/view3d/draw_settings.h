#pragma once

#include <cstdint>
#include <optional>

#include "view3d/rgb.h"

// How graphs are drawn: density, joining, width and colours. Written by the draw setup dialog and
// the command line; read by the draw driver once a draw.

namespace kelvane {

enum class PointStyle : std::uint8_t {
    Pixel, // every sample a dot
    Line   // samples joined
};

enum class Coloring2D : std::uint8_t {
    Solid,   // every equation in SolidColor
    Gradual, // from GradientFrom to GradientTo along GradientAlong
    Random   // every equation in the next colour of the palette
};

enum class GradientAxis : std::uint8_t { X, Y };

inline constexpr int kMaxDrawWidth = 100;

struct DrawSettings {
    PointStyle Style = PointStyle::Line;
    Coloring2D Coloring = Coloring2D::Solid;
    GradientAxis GradientAlong = GradientAxis::X;
    Rgb SolidColor{0, 90, 200};
    Rgb GradientFrom{0, 90, 200};
    Rgb GradientTo{200, 60, 0};
    Rgb SheetColor = kWhite;
    int DrawWidth = 1; // pen width in pixels, 1 to kMaxDrawWidth
};

// The sampling step in world units for a resolution in pixels per unit: 1 / resolution, as a
// single. Nothing unless the resolution is a finite number above 0.
std::optional<float> StepFromResolution(double pixelsPerUnit);

// The usual resolution, in pixels per unit.
inline constexpr double kUsualResolution = 100;

// A resolution for a range of x of this length: the one wanted within bounds on the samples in all,
// 250 to two million. Needs span > 0.
double ResolutionFor(double span, double wanted = kUsualResolution);

// True for a draw width from 1 to kMaxDrawWidth.
bool IsDrawWidth(int width);

} // namespace kelvane
