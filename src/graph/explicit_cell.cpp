#include "graph/explicit_cell.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace kelvane {

namespace {

// Widths and values are in steps of the lattice.
constexpr double kTolerance = 0.125;       // of a line
constexpr double kNegligibleWidth = 1e-3;  // of a stretch
constexpr double kUnseenWidth = 0.02;      // of all that is negligible in a cell
constexpr double kQuietChange = 1.0 / 256; // of the value at an end, halving a stretch
constexpr double kPoleChange = 0.25;       // the same, so near a pole that doubles end
constexpr double kThinnest = 0.25;         // of what is unresolved
constexpr double kFilledGap = 0.5;         // between values taken
constexpr double kFirstBlur = 0.5;         // see m_blur: until the cell is relaxed,
constexpr double kRelaxedBlur = 1;         // after that,
constexpr double kLastBlur = 1.5;          // and when it ends

// For so many halvings no stretch is left as it is.
constexpr int kExactEffort = 64;

bool IsWithin(const Interval& values, double value)
{
    return values.Low <= value && value <= values.High;
}

} // namespace

void ValueSet::Add(const Interval& values)
{
    Interval sum = values;
    const auto first = std::ranges::find_if(
        m_intervals, [&](const Interval& i) { return i.High + kFilledGap >= values.Low; });
    auto end = first;
    for (; end != m_intervals.end() && end->Low - kFilledGap <= values.High; ++end)
        sum = {std::min(sum.Low, end->Low), std::max(sum.High, end->High)};
    m_intervals.insert(m_intervals.erase(first, end), sum);
}

std::vector<Interval> ValueSet::Missing(const Interval& values, double blur) const
{
    std::vector<Interval> missing;
    double from = values.Low;
    for (const Interval& interval : m_intervals) {
        if (interval.High + blur <= from)
            continue;
        if (interval.Low - blur >= values.High)
            break;
        if (interval.Low - blur > from)
            missing.push_back({from, interval.Low - blur});
        from = interval.High + blur;
    }
    if (from < values.High || (values.Low == values.High && from == values.Low))
        missing.push_back({from, values.High});
    return missing;
}

StretchKind Judge(const Stretch& stretch, const CellScale& scale)
{
    const Interval& values = stretch.Known.Values;
    if ((stretch.Known.Marks & kNowhereDefined) != 0 || values.High < 0 ||
        values.Low > scale.Height)
        return StretchKind::Empty;
    const double v0 = stretch.V0;
    const double v1 = stretch.V1;
    if (stretch.Known.Marks != 0 || !std::isfinite(v0) || !std::isfinite(v1))
        return StretchKind::Open;
    const Interval& slopes = stretch.Known.Slopes;
    const bool isMonotone = slopes.Low >= 0 || slopes.High <= 0;
    // Between two slopes the graph stays in a parallelogram around the line; how high that is says
    // little where both are steep.
    const double width = (stretch.At.High - stretch.At.Low) * scale.StepsPerUnit;
    const double slope = (v1 - v0) / width;
    const double spread = slopes.High - slopes.Low;
    const double height = (slopes.High - slope) * (slope - slopes.Low) / spread * width;
    if (spread <= 0 || height <= kTolerance * (isMonotone ? std::hypot(1, slope) : 1))
        return StretchKind::Line;
    const Interval spanned = Ordered(v0, v1);
    const bool isSpanned = isMonotone || (values.Low >= spanned.Low - kTolerance &&
                                          values.High <= spanned.High + kTolerance);
    if ((isSpanned && width <= kTolerance) || values.High - values.Low <= kTolerance)
        return StretchKind::Line;
    return StretchKind::Open;
}

ExplicitCell::ExplicitCell(const CellScale& scale, const Stretch& whole)
    : m_scale(scale)
    , m_whole(whole)
    , m_blur(kFirstBlur)
{
    constexpr double kUnknown = std::numeric_limits<double>::infinity();
    m_whole.Change0 = std::isfinite(whole.V0) ? kUnknown : 0;
    m_whole.Change1 = std::isfinite(whole.V1) ? kUnknown : 0;
    m_whole.Depth = 0;
    constexpr std::size_t kUsuallyOpen = 32;
    m_open.reserve(kUsuallyOpen);
    TakeOne(m_whole);
}

Interval ExplicitCell::Visible(const Interval& values) const
{
    return {std::max(values.Low, 0.0), std::min(values.High, m_scale.Height)};
}

double ExplicitCell::Width(const Stretch& stretch) const
{
    return (stretch.At.High - stretch.At.Low) * m_scale.StepsPerUnit;
}

bool ExplicitCell::IsSettled(const Stretch& stretch) const
{
    return m_taken.Missing(Visible(stretch.Known.Values), m_blur).empty();
}

// Too narrow to be seen, unless the graph still goes up or down at an end, as it does near a pole.
bool ExplicitCell::IsNegligible(const Stretch& stretch) const
{
    if (Width(stretch) > kNegligibleWidth)
        return false;
    constexpr int kManyHalvings = 60; // after which an end that is still the first one is the edge
    const auto isActive = [&](double value, double change) {
        return IsWithin({0, m_scale.Height}, value) && change > kQuietChange &&
               (std::isfinite(change) || stretch.Depth < kManyHalvings);
    };
    const Interval& values = stretch.Known.Values;
    return std::abs(stretch.V1 - stretch.V0) <= kQuietChange ||
           values.High - values.Low <= kQuietChange ||
           !(isActive(stretch.V0, stretch.Change0) || isActive(stretch.V1, stretch.Change1));
}

// The newest, so that the search comes to its end somewhere, and now and then the oldest, so that
// it does not stay in one difficult place.
Stretch ExplicitCell::Pop()
{
    constexpr int kOldest = 4;
    constexpr std::size_t kManyOpen = 64;
    const bool isOldest = ++m_popped % kOldest == 0 && m_open.size() < kManyOpen;
    const auto at = isOldest ? m_open.begin() : m_open.end() - 1;
    const Stretch stretch = *at;
    m_open.erase(at);
    return stretch;
}

bool ExplicitCell::Next(Stretch& stretch, double& middle)
{
    while (!m_open.empty()) {
        stretch = Pop();
        if (m_effort >= kExactEffort && IsSettled(stretch)) {
            m_isBand = true;
            continue;
        }
        if (IsNegligible(stretch)) {
            TakeNegligible(stretch);
            continue;
        }
        middle = std::midpoint(stretch.At.Low, stretch.At.High);
        if (stretch.At.Low < middle && middle < stretch.At.High)
            return true;
        TakeUndivided(stretch);
    }
    return false;
}

// Nothing is seen of it but that it joins its neighbours, where it does.
void ExplicitCell::TakeNegligible(const Stretch& stretch)
{
    if (stretch.Known.Marks == 0 && std::isfinite(stretch.V0) && std::isfinite(stretch.V1))
        m_lines.push_back(stretch);
    else
        Drop(stretch);
}

void ExplicitCell::Drop(const Stretch& stretch)
{
    m_dropped.Add(Visible(stretch.Known.Values));
    m_droppedWidth += Width(stretch);
    for (const auto& [at, value] :
         {std::pair(stretch.At.Low, stretch.V0), std::pair(stretch.At.High, stretch.V1)}) {
        if (!IsWithin({0, m_scale.Height}, value))
            continue;
        m_sampled.Add({value, value});
        m_sampledAt = at;
    }
}

// Between two doubles that have none between them.
void ExplicitCell::TakeUndivided(const Stretch& stretch)
{
    if (Width(stretch) > kNegligibleWidth) {
        m_stuck.push_back(stretch);
        return;
    }
    TakeNegligible(stretch);
    // A logarithm's pole may be further away than doubles reach: it goes on beyond both.
    const auto goOn = [&](double at, double value, double change) {
        if (!IsWithin({0, m_scale.Height}, value) || !(change > kPoleChange))
            return;
        const bool down = std::isinf(stretch.Known.Values.Low);
        if (down == std::isinf(stretch.Known.Values.High))
            return;
        Stretch line = stretch;
        line.At = {at, at};
        line.V0 = value;
        line.V1 = down ? 0 : m_scale.Height;
        m_lines.push_back(line);
    };
    goOn(stretch.At.Low, stretch.V0, stretch.Change0);
    goOn(stretch.At.High, stretch.V1, stretch.Change1);
}

void ExplicitCell::TakeOne(const Stretch& stretch)
{
    const StretchKind kind = Judge(stretch, m_scale);
    if (kind == StretchKind::Empty)
        return;
    if (stretch.Known.Marks == 0) {
        const Interval taken = Ordered(stretch.V0, stretch.V1);
        if (taken.High >= 0 && taken.Low <= m_scale.Height)
            m_taken.Add(Visible(taken));
    }
    (kind == StretchKind::Line ? m_lines : m_open).push_back(stretch);
}

// The half that is looked at first changes from level to level, so that the search soon comes to
// places within the cell and does not stay at one of its ends.
void ExplicitCell::Take(const Stretch& low, const Stretch& high)
{
    ++m_effort;
    const bool lowFirst = low.Depth % 2 == 0;
    TakeOne(lowFirst ? high : low);
    TakeOne(lowFirst ? low : high);
}

void ExplicitCell::Relax()
{
    m_blur = kRelaxedBlur;
    m_isBand = true;
    m_lines = {};
}

void ExplicitCell::Finish(const ExplicitFunction& function, CurveSketch& sketch)
{
    if (m_blur == kRelaxedBlur)
        m_blur = kLastBlur;
    for (const Stretch& stretch : m_open) {
        if (IsSettled(stretch))
            m_isBand = true;
        else if (!IsNegligible(stretch))
            m_stuck.push_back(stretch);
    }
    if (m_lines.empty() && m_taken.Intervals().empty())
        AddSampled(function, sketch);
    else if (m_isBand || !m_stuck.empty())
        AddStrokes(function, sketch);
    else
        AddLines(function, sketch);
    for (const Stretch& open : m_stuck)
        m_unresolved.Add(Visible(open.Known.Values));
    AddUnresolved(function, sketch);
}

// Where nothing is proven: points of the graph may be alone, or too close to know more of them.
void ExplicitCell::AddSampled(const ExplicitFunction& function, CurveSketch& sketch)
{
    for (const Interval& values : m_sampled.Intervals()) {
        const LatticePoint dots[] = {function.At(m_sampledAt, values.Low),
                                     function.At(m_sampledAt, values.High)};
        sketch.AddPiece(dots);
    }
    m_taken = m_sampled;
    if (m_droppedWidth <= kUnseenWidth)
        return;
    for (const Interval& values : m_dropped.Intervals())
        m_unresolved.Add(values);
}

void ExplicitCell::AddLines(const ExplicitFunction& function, CurveSketch& sketch)
{
    std::ranges::sort(m_lines, {}, [](const Stretch& line) { return line.At.Low; });
    AddPieces(function, m_lines, sketch);
}

// Strokes are in the middle of the cell, with a line to the neighbours on both sides.
void ExplicitCell::AddStrokes(const ExplicitFunction& function, CurveSketch& sketch) const
{
    const Interval& at = m_whole.At;
    const double middle = std::midpoint(at.Low, at.High);
    std::vector<LatticePoint> stroke;
    for (const Interval& values : m_taken.Intervals()) {
        stroke.clear();
        if (IsWithin(values, m_whole.V0))
            stroke = {function.At(at.Low, m_whole.V0), function.At(middle, m_whole.V0)};
        stroke.push_back(function.At(middle, values.Low));
        stroke.push_back(function.At(middle, values.High));
        if (IsWithin(values, m_whole.V1)) {
            stroke.push_back(function.At(middle, m_whole.V1));
            stroke.push_back(function.At(at.High, m_whole.V1));
        }
        sketch.AddPiece(stroke);
    }
}

void ExplicitCell::AddUnresolved(const ExplicitFunction& function, CurveSketch& sketch) const
{
    for (const Interval& values : m_unresolved.Intervals()) {
        for (const Interval& missing : m_taken.Missing(values, m_blur))
            sketch.AddUnresolved(function.Box(
                m_whole.At, {missing.Low, std::max(missing.High, missing.Low + kThinnest)}));
    }
}

namespace {

// The part of a line from (0, v0) to (1, v1) that is in the lattice, as abscissas; Low above High
// where nothing is.
Interval VisiblePart(double v0, double v1, double height)
{
    Interval part{0, 1};
    const auto cut = [&](double d0, double d1) { // distances from an edge, positive inside
        if (d0 < 0 && d1 < 0)
            part = {1, 0};
        else if (d0 < 0)
            part.Low = std::max(part.Low, d0 / (d0 - d1));
        else if (d1 < 0)
            part.High = std::min(part.High, d0 / (d0 - d1));
    };
    cut(v0, v1);
    cut(height - v0, height - v1);
    return part;
}

} // namespace

void AddPieces(const ExplicitFunction& function, std::span<const Stretch> lines,
               CurveSketch& sketch)
{
    std::vector<LatticePoint> piece;
    const auto flush = [&] {
        sketch.AddPiece(piece);
        piece.clear();
    };
    const double height = function.Height();
    const Stretch* before = nullptr;
    for (const Stretch& line : lines) {
        const Interval part = VisiblePart(line.V0, line.V1, height);
        const auto point = [&](double at) {
            const double value = std::clamp(std::lerp(line.V0, line.V1, at), 0.0, height);
            return function.At(std::lerp(line.At.Low, line.At.High, at), value);
        };
        if (before == nullptr || before->At.High != line.At.Low || part.Low > 0)
            flush();
        before = &line;
        if (part.Low > part.High)
            continue;
        if (piece.empty())
            piece.push_back(point(part.Low));
        piece.push_back(point(part.High));
        if (part.High < 1)
            flush();
    }
    flush();
}

} // namespace kelvane
