#include "graph/curve_sketch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <tuple>
#include <utility>

#include "graph/clipped_surface.h"
#include "graph/plotting.h"

namespace kelvane {

namespace {

// Ends of pieces have numbers: 2 i is the first point of piece i, 2 i + 1 its last.
constexpr std::size_t kNoEnd = static_cast<std::size_t>(-1);

constexpr std::size_t PieceOf(std::size_t end)
{
    return end / 2;
}

constexpr std::size_t OtherEnd(std::size_t end)
{
    return end ^ 1U;
}

double Distance(LatticePoint a, LatticePoint b)
{
    return std::hypot(a.U - b.U, a.V - b.V);
}

double AreaOf(std::span<const PixelPoint> polygon)
{
    double twice = 0;
    for (std::size_t at = 0; at < polygon.size(); ++at) {
        const PixelPoint& next = polygon[(at + 1) % polygon.size()];
        twice += polygon[at].X * next.Y - next.X * polygon[at].Y;
    }
    return std::fabs(twice) / 2;
}

// Finds for every end the nearest end of another piece that is close enough to join.
class Joiner {
public:
    explicit Joiner(std::vector<LatticePoint> ends);

    // By end: the one it is joined to, or kNoEnd.
    std::vector<std::size_t> Partners() const;

private:
    struct Entry {
        std::int64_t Row; // of a grid of squares as wide as the joint
        std::int64_t Column;
        std::size_t End;

        friend bool operator<(const Entry& a, const Entry& b)
        {
            return std::tie(a.Row, a.Column, a.End) < std::tie(b.Row, b.Column, b.End);
        }
    };

    static std::int64_t Cell(double coordinate)
    {
        return static_cast<std::int64_t>(std::floor(coordinate / CurveSketch::kJoint));
    }
    std::size_t Nearest(std::size_t end, const std::vector<std::size_t>& partners) const;

    std::vector<LatticePoint> m_ends;
    std::vector<Entry> m_entries; // sorted
};

Joiner::Joiner(std::vector<LatticePoint> ends)
    : m_ends(std::move(ends))
{
    m_entries.reserve(m_ends.size());
    for (std::size_t end = 0; end < m_ends.size(); ++end)
        m_entries.push_back({Cell(m_ends[end].V), Cell(m_ends[end].U), end});
    std::sort(m_entries.begin(), m_entries.end());
}

std::size_t Joiner::Nearest(std::size_t end, const std::vector<std::size_t>& partners) const
{
    const LatticePoint at = m_ends[end];
    double best = CurveSketch::kJoint;
    std::size_t nearest = kNoEnd;
    for (std::int64_t row = Cell(at.V) - 1; row <= Cell(at.V) + 1; ++row) {
        const std::int64_t lastColumn = Cell(at.U) + 1;
        auto entry =
            std::lower_bound(m_entries.begin(), m_entries.end(), Entry{row, lastColumn - 2, 0});
        for (; entry != m_entries.end() && entry->Row == row && entry->Column <= lastColumn;
             ++entry) {
            const std::size_t other = entry->End;
            if (PieceOf(other) == PieceOf(end) || partners[other] != kNoEnd)
                continue;
            const double distance = Distance(at, m_ends[other]);
            if (distance < best || (distance == best && nearest == kNoEnd)) {
                best = distance;
                nearest = other;
            }
        }
    }
    return nearest;
}

std::vector<std::size_t> Joiner::Partners() const
{
    std::vector<std::size_t> partners(m_ends.size(), kNoEnd);
    for (std::size_t end = 0; end < m_ends.size(); ++end) {
        if (partners[end] != kNoEnd)
            continue;
        const std::size_t other = Nearest(end, partners);
        if (other == kNoEnd)
            continue;
        partners[end] = other;
        partners[other] = end;
    }
    return partners;
}

// Joins boxes of equal height side by side, and then equally wide ones on top of each other.
std::vector<LatticeBox> Merged(std::vector<LatticeBox> boxes)
{
    const auto merge = [&boxes](auto key, auto touches, auto join) {
        std::sort(boxes.begin(), boxes.end(),
                  [&](const LatticeBox& a, const LatticeBox& b) { return key(a) < key(b); });
        std::vector<LatticeBox> merged;
        for (const LatticeBox& box : boxes) {
            if (!merged.empty() && touches(merged.back(), box))
                join(merged.back(), box);
            else
                merged.push_back(box);
        }
        boxes = std::move(merged);
    };
    merge([](const LatticeBox& b) { return std::tuple(b.V0, b.V1, b.U0); },
          [](const LatticeBox& a, const LatticeBox& b) {
              return a.V0 == b.V0 && a.V1 == b.V1 && a.U1 == b.U0;
          },
          [](LatticeBox& a, const LatticeBox& b) { a.U1 = b.U1; });
    merge([](const LatticeBox& b) { return std::tuple(b.U0, b.U1, b.V0); },
          [](const LatticeBox& a, const LatticeBox& b) {
              return a.U0 == b.U0 && a.U1 == b.U1 && a.V1 == b.V0;
          },
          [](LatticeBox& a, const LatticeBox& b) { a.V1 = b.V1; });
    return boxes;
}

} // namespace

CurveSketch::CurveSketch(const DrawContext& context, const PixelLattice& lattice)
    : m_context(context)
    , m_lattice(lattice)
    , m_dense(context.Flags.GradientOn || !context.Flags.JoinPoints)
{
    const ViewState& view = context.View;
    const Matrix3& matrix = context.ViewMatrix;
    if (!context.Flags.Matrix2DOn)
        return;
    // Where the transform squeezes, rows a step apart are closer than that on the surface.
    const double determinant =
        static_cast<double>(matrix[0]) * matrix[4] - static_cast<double>(matrix[1]) * matrix[3];
    const double distance = view.PixPerStep * lattice.UnitT * std::fabs(view.YRatio * determinant) /
                            std::hypot(matrix[0], matrix[3]);
    m_rowsPerStep = 2 * (distance < 1 ? distance : 1);
}

void CurveSketch::AddPiece(std::span<const LatticePoint> points)
{
    if (points.empty())
        return;
    m_starts.push_back(m_points.size());
    m_points.insert(m_points.end(), points.begin(), points.end());
}

void CurveSketch::AddArea(const LatticeBox& box)
{
    m_areas.push_back(box);
}

void CurveSketch::AddUnresolved(const LatticeBox& box)
{
    m_unresolved.push_back(box);
}

void CurveSketch::Plot()
{
    PlotAreas();
    PlotPieces();
    m_points.clear();
    m_starts.clear();
    m_areas.clear();
}

std::span<const LatticePoint> CurveSketch::Piece(std::size_t piece) const
{
    const std::size_t first = m_starts[piece];
    const std::size_t end = piece + 1 < m_starts.size() ? m_starts[piece + 1] : m_points.size();
    return std::span(m_points).subspan(first, end - first);
}

void CurveSketch::PlotPieces()
{
    std::vector<LatticePoint> ends;
    ends.reserve(2 * m_starts.size());
    for (std::size_t piece = 0; piece < m_starts.size(); ++piece) {
        ends.push_back(Piece(piece).front());
        ends.push_back(Piece(piece).back());
    }
    const std::vector<std::size_t> partners = Joiner(std::move(ends)).Partners();
    std::vector<bool> drawn(m_starts.size());
    std::vector<std::size_t> chain; // the ends at which its pieces are entered
    const auto follow = [&](std::size_t end) {
        chain.clear();
        while (end != kNoEnd && !drawn[PieceOf(end)]) {
            drawn[PieceOf(end)] = true;
            chain.push_back(end);
            end = partners[OtherEnd(end)];
        }
        if (MayGoOn())
            PlotChain(chain);
    };
    for (std::size_t end = 0; end < partners.size(); ++end) {
        if (partners[end] == kNoEnd && !drawn[PieceOf(end)])
            follow(end);
    }
    for (std::size_t end = 0; end < partners.size(); end += 2) { // what is left are loops
        if (!drawn[PieceOf(end)])
            follow(end);
    }
}

void CurveSketch::PlotChain(std::span<const std::size_t> ends)
{
    StartCurve();
    for (const std::size_t end : ends) {
        const auto points = Piece(PieceOf(end));
        for (std::size_t at = m_started ? 1 : 0; at < points.size(); ++at)
            LineTo(end % 2 == 0 ? points[at] : points[points.size() - 1 - at]);
    }
    const auto first = Piece(PieceOf(ends.front()));
    const LatticePoint start = ends.front() % 2 == 0 ? first.front() : first.back();
    if (ends.size() > 1 && Distance(start, m_last) <= kJoint)
        LineTo(start); // closed
}

// An area is drawn as rows, a step or less apart, through the middles of pixels.
void CurveSketch::AddRows(const LatticeBox& box, std::vector<Row>& rows) const
{
    const double height = box.V1 - box.V0;
    const double width = box.U1 - box.U0;
    const int steps = static_cast<int>(std::ceil(height - 1e-6));
    const int count = std::max(static_cast<int>(std::ceil(steps * m_rowsPerStep)), 1);
    const double inset = std::min(width, 1.0) / 2;
    for (int row = 0; row < count; ++row)
        rows.push_back({box.V0 + (row + 0.5) * height / count, box.U0 + inset, box.U1 - inset});
}

void CurveSketch::PlotAreas()
{
    std::vector<Row> rows;
    for (const LatticeBox& box : Merged(std::move(m_areas)))
        AddRows(box, rows);
    m_areas = {};
    std::sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
        return std::tie(a.V, a.From, a.To) < std::tie(b.V, b.From, b.To);
    });
    for (std::size_t at = 0; at < rows.size();) {
        Row row = rows[at++];
        for (; at < rows.size() && rows[at].V == row.V && rows[at].From <= row.To + 1; ++at)
            row.To = std::max(row.To, rows[at].To);
        if (!MayGoOn())
            return;
        StartCurve();
        LineTo({row.From, row.V});
        if (row.To > row.From)
            LineTo({row.To, row.V});
    }
}

double CurveSketch::PlotSeconds() const
{
    constexpr double kEach = 3e-7;
    constexpr double kEachUnresolved = 1e-7;
    return kEach * static_cast<double>(m_points.size() + m_areas.size()) +
           kEachUnresolved * static_cast<double>(m_unresolved.size());
}

// Asked before every chain and row, it asks the host after some thousand points.
bool CurveSketch::MayGoOn()
{
    constexpr std::int64_t kManyPoints = 8192;
    if (m_plotted < kManyPoints || m_stopped)
        return !m_stopped;
    m_plotted = 0;
    m_context.Host.Breathe();
    m_stopped = !m_context.Host.MayGoOn();
    return !m_stopped;
}

void CurveSketch::StartCurve()
{
    m_context.View.PrevX = kNoPoint;
    m_started = false;
}

void CurveSketch::LineTo(LatticePoint to)
{
    if (m_started && to.U == m_last.U && to.V == m_last.V)
        return;
    if (m_started && m_dense) {
        const LatticePoint from = m_last;
        const int count = static_cast<int>(std::ceil(Distance(from, to)));
        const Interval seen = SeenPart(from, to);
        const int first = std::max(static_cast<int>(std::floor(seen.Low * count)), 1);
        const int end = std::min(static_cast<int>(std::ceil(seen.High * count)) + 1, count);
        for (int i = first; i < end; ++i) {
            const double part = static_cast<double>(i) / count;
            PlotAt({std::lerp(from.U, to.U, part), std::lerp(from.V, to.V, part)});
        }
    }
    PlotAt(to);
    m_started = true;
    m_last = to;
}

PixelPoint CurveSketch::PixelAt(LatticePoint point) const
{
    const ViewState& view = m_context.View;
    auto s = static_cast<float>(m_lattice.SampleS(point.U));
    float t = static_cast<float>(m_lattice.SampleT(point.V)) * view.YRatio;
    if (m_context.Flags.Matrix2DOn)
        std::tie(s, t) = Transform2D(m_context.ViewMatrix, s, t);
    return SampleToPixel(view, s, t);
}

Interval CurveSketch::SeenPart(LatticePoint from, LatticePoint to) const
{
    const PixelPoint start = PixelAt(from);
    const PixelPoint end = PixelAt(to);
    const PixelSize size = m_context.Target.Size();
    const double margin = m_context.Settings.DrawWidth;
    Interval part{0, 1};
    const auto clip = [&](double a, double b, double length) {
        if (a == b || !std::isfinite(a) || !std::isfinite(b))
            return; // nothing to gain
        const auto [low, high] =
            std::minmax({(-margin - a) / (b - a), (length + margin - a) / (b - a)});
        part.Low = std::clamp(low, part.Low, 1.0);
        part.High = std::clamp(high, 0.0, part.High);
    };
    clip(start.X, end.X, size.Width);
    clip(start.Y, end.Y, size.Height);
    return part;
}

// Points in the lattice's outermost steps may lie beyond the range by less than a step: they are
// drawn at its edge.
void CurveSketch::PlotAt(LatticePoint point)
{
    ++m_plotted;
    const ViewState& view = m_context.View;
    const auto within = [&](double value, float low, float high) {
        return std::clamp(static_cast<float>(value), low * view.ZoomFactor, high * view.ZoomFactor);
    };
    PlotPoint2D(m_context, within(m_lattice.SampleS(point.U), view.XMin, view.XMax),
                within(m_lattice.SampleT(point.V), view.YMin, view.YMax));
}

void CurveSketch::PlotUnresolved()
{
    if (m_unresolved.empty())
        return;
    double pixels = 0;
    for (const LatticeBox& box : Merged(std::move(m_unresolved)))
        pixels += Hatch(box);
    m_unresolved = {};
    if (pixels > 0)
        m_context.Stats.UnresolvedPixels += std::max(std::llround(pixels), 1LL);
}

// Hatches the box and gives its pixels; a tiny box is hatched somewhat larger, to be seen at all.
double CurveSketch::Hatch(const LatticeBox& box)
{
    constexpr double kLeastSize = 5;
    const double u = std::max(kLeastSize - (box.U1 - box.U0), 0.0) / 2;
    const double v = std::max(kLeastSize - (box.V1 - box.V0), 0.0) / 2;
    const auto wide = CornersOf({box.U0 - u, box.V0 - v, box.U1 + u, box.V1 + v});
    const auto corners = CornersOf(box);
    if (!corners || !wide)
        return 0;
    m_context.Target.Hatch(*wide, m_context.Colors.Graph2DColor);
    const PixelSize size = m_context.Target.Size();
    return AreaOf(ClipPolygon(*corners, {-0.5, -0.5, size.Width - 0.5, size.Height - 0.5}));
}

// Where the box lies on the surface, if that is anywhere.
std::optional<std::array<PixelPoint, 4>> CurveSketch::CornersOf(const LatticeBox& box) const
{
    std::array<PixelPoint, 4> corners;
    const std::array<LatticePoint, 4> around{
        {{box.U0, box.V0}, {box.U1, box.V0}, {box.U1, box.V1}, {box.U0, box.V1}}};
    for (std::size_t at = 0; at < corners.size(); ++at) {
        corners[at] = PixelAt(around[at]);
        if (!std::isfinite(corners[at].X) || !std::isfinite(corners[at].Y))
            return std::nullopt;
    }
    return corners;
}

} // namespace kelvane
