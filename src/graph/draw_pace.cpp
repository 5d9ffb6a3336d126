#include "graph/draw_pace.h"

#include <algorithm>

#include "graph/plotting.h"

namespace kelvane {

namespace {

// When a watching user first sees a part of the curve, and how often after that, seconds.
constexpr double kFirstLook = 0.025;
constexpr double kNextLook = 0.15;

} // namespace

DrawPace::DrawPace(const DrawContext& context, CurveSketch& sketch, double seconds)
    : m_context(context)
    , m_sketch(sketch)
    , m_nextLook(context.Time.Seconds() + kFirstLook)
{
    m_end = m_nextLook - kFirstLook + std::max(seconds, 0.0);
}

Pace DrawPace::Ask(double fraction)
{
    if (m_verdict != Pace::GoOn)
        return m_verdict;
    const double now = m_context.Time.Seconds();
    if (now >= m_nextReport) {
        m_context.Host.PercentGo(std::clamp(fraction, 0.0, 1.0));
        m_nextReport = now + kProgressSeconds;
    }
    if (now >= m_nextLook && m_context.Host.IsWatched()) {
        m_sketch.Plot();
        m_context.Host.ShowSoFar();
        m_nextLook = m_context.Time.Seconds() + kNextLook;
    }
    if (now >= m_nextBreath) {
        m_context.Host.Breathe();
        m_nextBreath = now + kBreathSeconds;
    }
    if (!m_context.Host.MayGoOn())
        m_verdict = Pace::Stop;
    else if (now + m_sketch.PlotSeconds() >= m_end)
        m_verdict = Pace::TimeUp;
    return m_verdict;
}

} // namespace kelvane
