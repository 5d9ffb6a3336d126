#include <cmath>
#include <tuple>

#include "graph/plotting.h"

namespace kelvane {

namespace {

// Recomputes the gradient's colour unless its variable is where it was computed last.
void UpdateGradient(const DrawContext& context, float s, float t)
{
    const bool alongX = context.Settings.GradientAlong == GradientAxis::X;
    const float at = alongX ? s : t;
    ColorState& colors = context.Colors;
    if (std::fabs(at - static_cast<float>(colors.GradientLast)) < context.View.Step2D)
        return;
    const float start = alongX ? context.View.XMin : context.View.YMin;
    colors.Graph2DColor = GradientColor(colors, at - start);
    colors.GradientLast = std::lrint(at);
}

} // namespace

void PlotPoint2D(const DrawContext& context, float s, float t)
{
    ViewState& view = context.View;
    if (t > view.YMax * view.ZoomFactor || t < view.YMin * view.ZoomFactor) {
        view.PrevX = kNoPoint;
        return;
    }
    t *= view.YRatio;
    if (context.Flags.GradientOn)
        UpdateGradient(context, s, t);
    if (context.Flags.Matrix2DOn)
        std::tie(s, t) = Transform2D(context.ViewMatrix, s, t);
    const PixelPoint at = SampleToPixel(view, s, t);
    if (!std::isfinite(at.X) || !std::isfinite(at.Y)) {
        view.PrevX = kNoPoint; // beyond the range of singles: as far out of range as can be
        return;
    }
    const Rgb color = context.Colors.Graph2DColor;
    if (!context.Flags.JoinPoints || IsNoPoint(view.PrevX))
        context.Target.Pixel(at, color);
    else
        context.Target.Line(SampleToPixel(view, view.PrevX, view.PrevY), at, color);
    ++context.Stats.Points;
    view.PrevX = s;
    view.PrevY = t;
}

bool ProgressMeter::GoOn(float s)
{
    const double now = m_context.Time.Seconds();
    if (!m_reported || now - m_lastReport > kProgressSeconds) {
        const ViewState& view = m_context.View;
        const float fraction =
            (s - view.XMin * view.ZoomFactor) / (view.XMax - view.XMin) / view.ZoomFactor;
        m_context.Host.PercentGo(std::isfinite(fraction) ? fraction : 0);
        m_lastReport = now;
    }
    if (!m_reported || now - m_lastBreath > kBreathSeconds) {
        m_context.Host.Breathe();
        m_lastBreath = now;
    }
    m_reported = true;
    return m_context.Host.MayGoOn();
}

void BeginEquation(const DrawContext& context, int number)
{
    ResetColumnCache(context.View);
    PrepareEquationColor(context.Colors, context.Settings, context.View);
    context.Eval.RightStart = EquationsStart(context.Table.At(number));
}

void EndEquation(const DrawContext& context)
{
    context.View.PrevX = kNoPoint;
    context.Host.InitPerc();
}

} // namespace kelvane
