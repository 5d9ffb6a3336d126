#include "graph/view_tools.h"

#include <algorithm>
#include <cmath>

#include "graph/ticks.h"

namespace kelvane {

namespace {

// Neighbouring pixels must be different singles, or curves turn into stairs.
bool TellsPixelsApart(double coordinate, double pixel)
{
    const auto here = static_cast<float>(coordinate);
    return std::isfinite(here) && static_cast<float>(coordinate + pixel) != here;
}

// Takes a new zoom factor and centre, if they are usable.
bool Take(ViewState& view, double zoomFactor, WorldPoint center)
{
    if (!(zoomFactor >= kMinZoom && zoomFactor <= kMaxZoom))
        return false;
    ViewState next = view;
    next.ZoomFactor = static_cast<float>(zoomFactor);
    next.CenterX = static_cast<float>(center.X);
    next.CenterY = static_cast<float>(-center.Y);
    if (!UpdatePixPerStep(next))
        return false;
    const double pixel = 1 / static_cast<double>(next.PixPerStep);
    if (!TellsPixelsApart(center.X, pixel) || !TellsPixelsApart(center.Y, pixel / next.YRatio))
        return false;
    view.ZoomFactor = next.ZoomFactor;
    view.CenterX = next.CenterX;
    view.CenterY = next.CenterY + 0.0F; // no negative 0 to show
    view.PixPerStep = next.PixPerStep;
    return true;
}

PixelPoint Crossing(const ViewState& view)
{
    return {view.OriginX, view.OriginY};
}

WorldPoint CenterOf(const ViewState& view)
{
    return {view.CenterX, -static_cast<double>(view.CenterY)};
}

} // namespace

bool SetZoom(ViewState& view, double zoomFactor)
{
    return Take(view, zoomFactor, CenterOf(view));
}

bool SetCenter(ViewState& view, WorldPoint center)
{
    return Take(view, view.ZoomFactor, center);
}

bool ZoomAround(ViewState& view, double factor, PixelPoint fixed)
{
    const WorldPoint center = CenterOf(view);
    const WorldPoint there = PixelToWorld(view, fixed);
    // The crossing's distance from the fixed point grows with the zoom factor.
    return Take(view, view.ZoomFactor * factor,
                {there.X + (center.X - there.X) * factor, there.Y + (center.Y - there.Y) * factor});
}

void RoundCenter(ViewState& view)
{
    constexpr double kPixels = 8; // the graph moves by half as much
    const auto rounded = [](double value, double pixel) {
        const double step = NiceStep(kPixels / 2 * pixel);
        return std::round(value / step) * step;
    };
    const double pixel = 1 / static_cast<double>(view.PixPerStep);
    const WorldPoint center = CenterOf(view);
    SetCenter(view, {rounded(center.X, pixel), rounded(center.Y, pixel / view.YRatio)});
}

bool CenterAt(ViewState& view, PixelPoint pixel)
{
    return SetCenter(view, PixelToWorld(view, pixel));
}

bool MoveGraph(ViewState& view, double right, double down)
{
    const PixelPoint crossing = Crossing(view);
    return CenterAt(view, {crossing.X - right, crossing.Y - down});
}

bool ZoomToBox(ViewState& view, PixelBox box, PixelSize surface)
{
    const double width = std::fabs(box.To.X - box.From.X);
    const double height = std::fabs(box.To.Y - box.From.Y);
    if (!(width > 0 && height > 0))
        return false;
    const double factor = std::max(width / surface.Width, height / surface.Height);
    const PixelPoint middle{(box.From.X + box.To.X) / 2, (box.From.Y + box.To.Y) / 2};
    return Take(view, view.ZoomFactor * factor, PixelToWorld(view, middle));
}

} // namespace kelvane
