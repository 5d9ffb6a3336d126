#include "ui/line_thinner.h"

#include <cmath>
#include <utility>

namespace kelvane {
namespace {

double Cross(PixelPoint a, PixelPoint b)
{
    return a.X * b.Y - a.Y * b.X;
}

double SquaredLength(PixelPoint a)
{
    return a.X * a.X + a.Y * a.Y;
}

} // namespace

std::optional<PixelPoint> LineThinner::Add(PixelPoint point)
{
    if (!m_started) {
        m_started = true;
        m_anchor = point;
        m_waiting = false;
        m_limited = false;
        m_reach = 0;
        return point;
    }
    std::optional<PixelPoint> settled;
    PixelPoint step{point.X - m_anchor.X, point.Y - m_anchor.Y};
    if (m_waiting && !Fits(step)) {
        settled = m_anchor = m_candidate;
        m_limited = false;
        step = {point.X - m_anchor.X, point.Y - m_anchor.Y};
    }
    m_waiting = true;
    m_candidate = point;
    m_reach = SquaredLength(step);
    Narrow(step);
    return settled;
}

std::optional<PixelPoint> LineThinner::Finish()
{
    const bool due = m_started && m_waiting;
    m_started = false;
    return due ? std::optional(m_candidate) : std::nullopt;
}

bool LineThinner::Fits(PixelPoint step) const
{
    if (SquaredLength(step) < m_reach)
        return false;
    return !m_limited || (Cross(m_from, step) >= 0 && Cross(step, m_to) >= 0);
}

void LineThinner::Narrow(PixelPoint step)
{
    const double distance = std::sqrt(SquaredLength(step));
    if (distance <= m_tolerance)
        return; // seen in every direction
    const double sine = m_tolerance / distance;
    const double cosine = std::sqrt(1 - sine * sine);
    const PixelPoint from{step.X * cosine + step.Y * sine, step.Y * cosine - step.X * sine};
    const PixelPoint to{step.X * cosine - step.Y * sine, step.Y * cosine + step.X * sine};
    if (!m_limited || Cross(m_from, from) > 0)
        m_from = from;
    if (!m_limited || Cross(to, m_to) > 0)
        m_to = to;
    m_limited = true;
}

} // namespace kelvane
