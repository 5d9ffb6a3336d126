#include "view3d/draw_settings.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

std::optional<float> StepFromResolution(double pixelsPerUnit)
{
    if (!std::isfinite(pixelsPerUnit) || pixelsPerUnit <= 0)
        return std::nullopt;
    const auto step = static_cast<float>(1 / pixelsPerUnit);
    return std::isfinite(step) ? std::optional(step) : std::nullopt;
}

double ResolutionFor(double span, double wanted)
{
    constexpr double kFewestSamples = 250;
    constexpr double kMostSamples = 2e6;
    return std::clamp(wanted, kFewestSamples / span, kMostSamples / span);
}

bool IsDrawWidth(int width)
{
    return width >= 1 && width <= kMaxDrawWidth;
}

} // namespace kelvane
