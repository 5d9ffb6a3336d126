#include "view3d/draw_settings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace kelvane {

namespace {

constexpr double kQualities[] = {-0.5, -0.05, -0.001}; // in the order of SurfaceTechnique

// A channel's part of the light, 0 to 1.
double Linear(std::uint8_t channel)
{
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

} // namespace

double QualityOf(SurfaceTechnique technique)
{
    return kQualities[static_cast<std::size_t>(technique)];
}

SurfaceTechnique TechniqueOf(double surfaceQuality)
{
    const auto* const found =
        std::find(std::begin(kQualities), std::end(kQualities), surfaceQuality);
    return found == std::end(kQualities)
               ? SurfaceTechnique::Solid
               : static_cast<SurfaceTechnique>(found - std::begin(kQualities));
}

Rgb SheetColorOf(SheetGround ground, Rgb custom)
{
    return ground == SheetGround::White ? kWhite : custom;
}

Rgb InkOn(Rgb ground)
{
    // Where (1.05 / (light + 0.05)) and ((light + 0.05) / 0.05), the contrasts, are equal.
    constexpr double kMiddle = 0.1791;
    const double light =
        0.2126 * Linear(ground.R) + 0.7152 * Linear(ground.G) + 0.0722 * Linear(ground.B);
    return light > kMiddle ? kBlack : kWhite;
}

std::optional<float> StepFromResolution(double pixelsPerUnit)
{
    if (!std::isfinite(pixelsPerUnit) || pixelsPerUnit <= 0)
        return std::nullopt;
    const auto step = static_cast<float>(1 / pixelsPerUnit);
    return std::isfinite(step) ? std::optional(step) : std::nullopt;
}

double ResolutionFor(double span, double wanted)
{
    constexpr double kUsualSpan = 20;
    constexpr double kMostSamples = 2e6;
    const double fewest = std::min(250.0, wanted * kUsualSpan); // coarse is wanted now and then
    return std::clamp(wanted, fewest / span, kMostSamples / span);
}

bool IsDrawWidth(int width)
{
    return width >= 1 && width <= kMaxDrawWidth;
}

} // namespace kelvane
