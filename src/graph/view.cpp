#include "graph/view.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

// Tells whether a value fits a single without becoming 0 or infinite.
bool IsScale(double value)
{
    const auto single = static_cast<float>(value);
    return std::isfinite(single) && single > 0;
}

bool IsProper(Interval interval)
{
    return std::isfinite(interval.Low) && std::isfinite(interval.High) &&
           IsScale(interval.High - interval.Low) &&
           static_cast<float>(interval.Low) < static_cast<float>(interval.High);
}

SolveRange RangeOf(const ViewState& view, float low, float high)
{
    return {view.ZoomFactor * low - view.CenterY, high * view.ZoomFactor - view.CenterY,
            view.Step2D * view.ZoomFactor / 4};
}

} // namespace

bool UpdatePixPerStep(ViewState& view)
{
    if (view.ZoomFactor == 0)
        return false;
    view.PixPerStep = view.UnitPixels / view.ZoomFactor;
    return IsScale(view.PixPerStep);
}

PixelPoint SampleToPixel(const ViewState& view, float s, float t)
{
    const double scale = view.PixPerStep;
    return {view.OriginX + s * scale, view.OriginY - t * scale};
}

PixelPoint WorldToPixel(const ViewState& view, WorldPoint world)
{
    const double scale = view.PixPerStep;
    return {view.OriginX + (world.X - view.CenterX) * scale,
            view.OriginY - (world.Y + view.CenterY) * view.YRatio * scale};
}

WorldPoint PixelToWorld(const ViewState& view, PixelPoint pixel)
{
    const double scale = view.PixPerStep;
    return {(pixel.X - view.OriginX) / scale + view.CenterX,
            (view.OriginY - pixel.Y) / (view.YRatio * scale) - view.CenterY};
}

bool FitRange(ViewState& view, Interval x, Interval y, PixelSize size)
{
    if (!IsProper(x) || !IsProper(y))
        return false;
    const double pixelsPerX = size.Width / (x.High - x.Low);
    const double pixelsPerY = size.Height / (y.High - y.Low);
    const double originX = -x.Low * pixelsPerX;
    const double originY = y.High * pixelsPerY;
    if (!IsScale(pixelsPerX) || !IsScale(pixelsPerY) || !IsScale(pixelsPerY / pixelsPerX) ||
        !std::isfinite(static_cast<float>(originX)) || !std::isfinite(static_cast<float>(originY)))
        return false;
    view.XMin = static_cast<float>(x.Low);
    view.XMax = static_cast<float>(x.High);
    view.YMin = static_cast<float>(y.Low);
    view.YMax = static_cast<float>(y.High);
    view.UnitPixels = static_cast<float>(pixelsPerX);
    view.YRatio = static_cast<float>(pixelsPerY / pixelsPerX);
    view.OriginX = static_cast<float>(originX);
    view.OriginY = static_cast<float>(originY);
    return true;
}

bool FitEqualUnits(ViewState& view, Interval x, PixelSize size)
{
    const double halfHeight = (x.High - x.Low) / 2 * size.Height / size.Width;
    if (!FitRange(view, x, {-halfHeight, halfHeight}, size))
        return false;
    view.YRatio = 1;
    view.YMin = std::min(view.YMin, view.XMin);
    view.YMax = std::max(view.YMax, view.XMax);
    return true;
}

SolveRange SolveRangeY(const ViewState& view)
{
    return RangeOf(view, view.YMin, view.YMax);
}

SolveRange SolveRangeZ(const ViewState& view)
{
    return RangeOf(view, view.ZMin, view.ZMax);
}

} // namespace kelvane
