#include "graph/cell_roots.h"

namespace kelvane {

namespace {

constexpr int kMaxTrials = 240;   // the slopes of high powers need most
constexpr int kTrialsToHalve = 3; // in which a bracket must become half as long, or is halved

LatticePoint Between(const Bracket& bracket, double part)
{
    return {bracket.A.U + (bracket.B.U - bracket.A.U) * part,
            bracket.A.V + (bracket.B.V - bracket.A.V) * part};
}

double ZeroBetween(double atA, double atB)
{
    const double part = atA / (atA - atB);
    return part >= 0 && part <= 1 ? part : 0.5; // also where it is not a number
}

} // namespace

LatticePoint Bracket::Root() const
{
    return Between(*this, ZeroBetween(AtA, AtB));
}

double Bracket::Length() const
{
    return std::max(std::abs(B.U - A.U), std::abs(B.V - A.V));
}

LatticeBox Bracket::Box() const
{
    return {std::min(A.U, B.U), std::min(A.V, B.V), std::max(A.U, B.U), std::max(A.V, B.V)};
}

void RootFinder::Begin(std::span<const Bracket> brackets)
{
    m_courses.clear();
    for (std::size_t at = 0; at < brackets.size(); ++at) {
        const Bracket& bracket = brackets[at];
        const double length = std::hypot(bracket.B.U - bracket.A.U, bracket.B.V - bracket.A.V);
        Course course;
        course.Index = at;
        course.WeightA = bracket.AtA;
        course.WeightB = bracket.AtB;
        course.CheckedLength = bracket.Length();
        course.Direction = {(bracket.B.U - bracket.A.U) / length,
                            (bracket.B.V - bracket.A.V) / length};
        m_courses.push_back(course);
    }
}

void RootFinder::Evaluate(RootOf what)
{
    m_points.clear();
    for (const Course& course : m_courses)
        m_points.push_back(course.Trial);
    if (what == RootOf::Value) {
        m_field.Values(m_points, m_values);
        return;
    }
    m_field.Slopes(m_points, m_samples);
    m_values.resize(m_points.size());
    for (std::size_t at = 0; at < m_points.size(); ++at) {
        const LatticePoint& direction = m_courses[at].Direction;
        m_values[at] = m_samples[at].Along(direction);
    }
}

// Where the same end moves twice, the other one counts half, or it would never move.
void RootFinder::Narrow(Bracket& bracket, Course& course, double value)
{
    if (value == 0 || std::isnan(value)) {
        bracket = {course.Trial, course.Trial, value, value};
        return;
    }
    const End moves = Differ(value, bracket.AtA) ? End::B : End::A;
    const double share = moves == course.Moved ? 0.5 : 1;
    course.Moved = moves;
    if (moves == End::A) {
        bracket.A = course.Trial;
        bracket.AtA = course.WeightA = value;
        course.WeightB *= share;
    } else {
        bracket.B = course.Trial;
        bracket.AtB = course.WeightB = value;
        course.WeightA *= share;
    }
}

void RootFinder::Find(std::span<Bracket> brackets, RootOf what, double tolerance)
{
    Begin(brackets);
    for (int trial = 0; trial < kMaxTrials && !m_courses.empty(); ++trial) {
        std::erase_if(m_courses, [&](const Course& course) {
            return brackets[course.Index].Length() <= tolerance * 1.001;
        });
        for (Course& course : m_courses) {
            const Bracket& bracket = brackets[course.Index];
            const double margin = std::min(tolerance / bracket.Length(), 0.5);
            const double part = course.Halve ? 0.5 : ZeroBetween(course.WeightA, course.WeightB);
            course.Trial = Between(bracket, std::clamp(part, margin, 1 - margin));
        }
        Evaluate(what);
        for (std::size_t at = 0; at < m_courses.size(); ++at) {
            Course& course = m_courses[at];
            Bracket& bracket = brackets[course.Index];
            Narrow(bracket, course, m_values[at]);
            course.Halve = false;
            if (trial % kTrialsToHalve == kTrialsToHalve - 1) {
                course.Halve = bracket.Length() > course.CheckedLength / 2;
                course.CheckedLength = bracket.Length();
            }
        }
    }
}

void RootFinder::FindBorders(std::span<Bracket> brackets)
{
    constexpr int kHalvings = 60;
    Begin(brackets);
    for (int trial = 0; trial < kHalvings && !m_courses.empty(); ++trial) {
        std::erase_if(m_courses, [&](const Course& course) {
            const Bracket& bracket = brackets[course.Index];
            const LatticePoint fuzz = m_field.Fuzz(bracket.A);
            return bracket.Length() <= std::max(fuzz.U, fuzz.V) / 4;
        });
        for (Course& course : m_courses)
            course.Trial = Between(brackets[course.Index], 0.5);
        Evaluate(RootOf::Value);
        for (std::size_t at = 0; at < m_courses.size(); ++at) {
            Bracket& bracket = brackets[m_courses[at].Index];
            if (std::isnan(m_values[at])) {
                bracket.B = m_courses[at].Trial;
            } else {
                bracket.A = m_courses[at].Trial;
                bracket.AtA = m_values[at];
            }
        }
    }
}

} // namespace kelvane
