#include "view3d/draw_settings.h"

#include <cmath>

namespace kelvane {

std::optional<float> StepFromResolution(double pixelsPerUnit)
{
    if (!std::isfinite(pixelsPerUnit) || pixelsPerUnit <= 0)
        return std::nullopt;
    const auto step = static_cast<float>(1 / pixelsPerUnit);
    return std::isfinite(step) ? std::optional(step) : std::nullopt;
}

bool IsDrawWidth(int width)
{
    return width >= 1 && width <= kMaxDrawWidth;
}

} // namespace kelvane
