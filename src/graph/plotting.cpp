#include <algorithm>
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

// Reports the progress of one equation's sweep, lets the window breathe, and asks whether to go on.
class ProgressMeter {
public:
    explicit ProgressMeter(const DrawContext& context)
        : m_context(context)
    {
    }

    // Called after every block of samples with the last one's abscissa; the first call always
    // reports. False when the draw must end.
    bool GoOn(float s);

private:
    const DrawContext& m_context;
    double m_lastReport = 0;
    double m_lastBreath = 0;
    bool m_reported = false;
};

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

DrawEnd DrawTicked(const DrawContext& context, const std::function<DrawEnd(int)>& drawEquation)
{
    for (int number = 1; number <= context.Table.EquationCount + 1; ++number) {
        context.Host.SetProgressColor(kProgressGreen);
        if (!context.Ticks.On(number))
            continue;
        ResetColumnCache(context.View);
        PrepareEquationColor(context.Colors, context.Settings, context.View);
        context.Eval.RightStart = EquationsStart(context.Table.At(number));
        if (const DrawEnd end = drawEquation(number); end != DrawEnd::Complete)
            return end;
        context.View.PrevX = kNoPoint;
        context.Host.InitPerc();
    }
    return DrawEnd::Complete;
}

DrawEnd SweepBlocks(const DrawContext& context, const Sweep& sweep, int blockSize,
                    const BlockPlotter& plotBlock)
{
    bool& skip = context.Eval.EvalSkip;
    const double skipSpan = static_cast<double>(context.View.ZoomFactor) * context.Flags.SkipUnits;
    const auto jump = static_cast<std::int64_t>(
        std::min(skipSpan / sweep.Step, static_cast<double>(sweep.Count)));
    ProgressMeter progress(context);
    int size = 1; // the first sample is reported at once
    for (std::int64_t first = 0; first < sweep.Count; first += size, size = blockSize) {
        if (skip)
            first = std::min(first + jump, sweep.Count - 1);
        skip = false;
        const int count = static_cast<int>(std::min<std::int64_t>(size, sweep.Count - first));
        plotBlock(first, count);
        if (!progress.GoOn(sweep.At(first + count - 1)))
            return DrawEnd::Stopped;
    }
    return DrawEnd::Complete;
}

} // namespace kelvane
