#pragma once

#include <cstdint>
#include <optional>

#include "view3d/rgb.h"

// How graphs are drawn: density, joining, width, surfaces and colours, and the colour of the sheet.
// Written by the draw setup, the colour setup and the command line; read by the draw driver once a
// draw.

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

enum class Coloring3D : std::uint8_t { Solid, Gradual };

enum class GradientAxis : std::uint8_t { X, Y, Z }; // Z on 3D sheets only

enum class SurfaceTechnique : std::uint8_t { WireFrame, Solid, SuperSolid };

// What SurfaceQuality is for a technique: -0.5, -0.05 or -0.001; and the technique with this
// quality, "Solid" if there is none.
double QualityOf(SurfaceTechnique technique);
SurfaceTechnique TechniqueOf(double surfaceQuality);

// The usual resolutions, in pixels per unit.
inline constexpr double kUsualResolution = 100;
inline constexpr double kUsualResolution3D = 20;

inline constexpr int kMaxDrawWidth = 100;

inline constexpr double kUsualBudgetSeconds = 2;

// The first colours stand out from a white sheet, and the two ends of a gradient differ in
// lightness and along blue and yellow, which people with any common colour blindness tell apart.

// How graphs of a 3D sheet are drawn.
struct Draw3DSettings {
    double Resolution = kUsualResolution3D; // as typed, in pixels per unit; above 0
    PointStyle Style = PointStyle::Line;

    // The directions in which samples are joined; both false with PointStyle::Pixel.
    bool VerticalLines = true;
    bool HorizontalLines = true;

    // Whether surfaces are filled, and by which technique (QualityOf).
    bool Fill = false;
    double SurfaceQuality = -0.05;

    Coloring3D Coloring = Coloring3D::Solid;
    GradientAxis GradientAlong = GradientAxis::Z;
    Rgb SolidColor{0, 90, 200};
    Rgb GradientFrom{30, 30, 140};
    Rgb GradientTo{210, 100, 0};
};

// What the sheet and the formula editor lie on.
enum class SheetGround : std::uint8_t { White, Custom };

struct DrawSettings {
    // Of 2D graphs, as typed, in pixels per unit; above 0. The step in use, ViewState::Step2D, may
    // be another where the range asks for it (ResolutionFor).
    double Resolution = kUsualResolution;
    PointStyle Style = PointStyle::Line;
    Coloring2D Coloring = Coloring2D::Solid;
    GradientAxis GradientAlong = GradientAxis::X;
    Rgb SolidColor{0, 90, 200};
    Rgb GradientFrom{30, 30, 140};
    Rgb GradientTo{210, 100, 0};

    Draw3DSettings In3D{};

    int DrawWidth = 1; // pen width in pixels, 1 to kMaxDrawWidth

    // How long the second family may search for curves, in all, before it shows what is unknown.
    // Above 0; by the command line.
    double BudgetSeconds = kUsualBudgetSeconds;

    // True: OK of the draw setup leaves the drawing as it is. False: it redraws at once.
    bool AutoRedraw = false;

    // The sheet's colour in use; and the colour setup's choice, from which it comes (SheetColorOf).
    Rgb SheetColor = kWhite;
    SheetGround Ground = SheetGround::White;
    Rgb CustomSheetColor{253, 246, 227};
};

// White, or the custom colour where that is chosen.
Rgb SheetColorOf(SheetGround ground, Rgb custom);

// Black or white, whichever can be read better on a ground of this colour.
Rgb InkOn(Rgb ground);

// The sampling step in world units for a resolution in pixels per unit: 1 / resolution, as a
// single. Nothing unless the resolution is a finite number above 0.
std::optional<float> StepFromResolution(double pixelsPerUnit);

// A resolution for a range of x of this length: the one wanted within bounds on the samples in all,
// 250 (or fewer, where 20 units would have fewer) to two million. Needs span > 0.
double ResolutionFor(double span, double wanted = kUsualResolution);

// True for a draw width from 1 to kMaxDrawWidth.
bool IsDrawWidth(int width);

} // namespace kelvane
