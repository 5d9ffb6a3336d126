#include "graph/cell_finish.h"

#include <limits>

namespace kelvane {

namespace {

constexpr std::size_t kEdgeSamples = 8; // of each edge of a cell that is not continuous
constexpr double kTolerance = 1e-6;     // steps
constexpr std::size_t kMaxMinima = 64;  // looked for among the cells of a few dozen pixels
constexpr double kSame = 1e-4;          // steps between points that are one

// A point on the way around a box.
LatticePoint OnEdge(const LatticeBox& box, std::size_t edge, double part)
{
    const double u = box.U0 + (box.U1 - box.U0) * part;
    const double v = box.V0 + (box.V1 - box.V0) * part;
    switch (edge) {
    case 0:
        return {u, box.V0};
    case 1:
        return {box.U1, v};
    case 2: // backwards, by the same formula as the cell above has it
        return {box.U0 + (box.U1 - box.U0) * (1 - part), box.V1};
    default:
        return {box.U0, box.V0 + (box.V1 - box.V0) * (1 - part)};
    }
}

// Where the lines from a to b and from c to d meet, if they do.
std::optional<LatticePoint> Meeting(LatticePoint a, LatticePoint b, LatticePoint c, LatticePoint d)
{
    const double u1 = b.U - a.U;
    const double v1 = b.V - a.V;
    const double u2 = d.U - c.U;
    const double v2 = d.V - c.V;
    const double part = ((c.U - a.U) * v2 - (c.V - a.V) * u2) / (u1 * v2 - v1 * u2);
    if (!(part >= 0 && part <= 1))
        return std::nullopt;
    return LatticePoint{a.U + u1 * part, a.V + v1 * part};
}

LatticePoint MeanOf(std::span<const LatticePoint> points)
{
    LatticePoint sum;
    for (const LatticePoint& point : points)
        sum = {sum.U + point.U, sum.V + point.V};
    const auto count = static_cast<double>(points.size());
    return {sum.U / count, sum.V / count};
}

} // namespace

void CellFinisher::EdgePoints::Add(LatticePoint point)
{
    auto* const end = At.begin() + Count;
    const bool isKnown = std::any_of(At.begin(), end, [&](const LatticePoint& other) {
        return std::abs(other.U - point.U) <= kSame && std::abs(other.V - point.V) <= kSame;
    });
    if (!isKnown && Count < At.size())
        At[Count++] = point;
}

void CellFinisher::Finish(std::span<const OpenCell> cells)
{
    m_found.assign(cells.size(), {});
    SampleEdges(cells);
    AddBorders();
    AddRoots(cells);
    AddTouchesOfMarked();
    AddTouches(cells);
    for (const EdgePoints& points : m_found)
        Join(points);
}

// Brackets what happens between neighbouring samples on the edges.
void CellFinisher::SampleEdges(std::span<const OpenCell> cells)
{
    m_points.clear();
    for (const OpenCell& cell : cells) {
        const std::size_t samples = cell.IsContinuous() ? 1 : kEdgeSamples;
        for (std::size_t k = 0; k < 4 * samples; ++k) {
            m_points.push_back(
                OnEdge(cell.Box, k / samples,
                       static_cast<double>(k % samples) / static_cast<double>(samples)));
        }
    }
    m_field.Values(m_points, m_values);
    m_brackets.clear();
    m_owners.clear();
    m_borders.clear();
    m_borderOwners.clear();
    m_falls.clear();
    std::size_t first = 0;
    for (std::size_t at = 0; at < cells.size(); ++at) {
        PairSamples(cells[at], at, first);
        if (!cells[at].IsContinuous())
            KeepFalls(at, first);
        first += cells[at].IsContinuous() ? 4 : 4 * kEdgeSamples;
    }
}

void CellFinisher::PairSamples(const OpenCell& cell, std::size_t index, std::size_t first)
{
    const std::size_t count = cell.IsContinuous() ? 4 : 4 * kEdgeSamples;
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t a = first + k;
        const std::size_t b = first + (k + 1) % count;
        if (m_values[a] == 0)
            m_found[index].Add(m_points[a]);
        if (m_values[a] * m_values[b] < 0) {
            m_brackets.push_back({m_points[a], m_points[b], m_values[a], m_values[b]});
            m_owners.push_back(index);
        } else if (std::isnan(m_values[a]) != std::isnan(m_values[b])) {
            const auto [in, out] = std::isnan(m_values[b]) ? std::pair{a, b} : std::pair{b, a};
            m_borders.push_back({m_points[in], m_points[out], m_values[in], m_values[out]});
            m_borderOwners.push_back(index);
        }
    }
}

// Keeps the ways from the smallest |f| among the samples of an edge to the samples beside it.
void CellFinisher::KeepFalls(std::size_t index, std::size_t first)
{
    for (std::size_t k = 0; k < 4 * kEdgeSamples; k += kEdgeSamples) {
        std::array<std::size_t, kEdgeSamples + 1> samples{};
        std::array<double, kEdgeSamples + 3> heights{}; // nothing is before and after
        heights.fill(std::numeric_limits<double>::infinity());
        for (std::size_t at = 0; at <= kEdgeSamples; ++at) {
            samples[at] = first + (k + at) % (4 * kEdgeSamples);
            if (std::isfinite(m_values[samples[at]]))
                heights[at + 1] = std::abs(m_values[samples[at]]);
        }
        for (std::size_t at = 0; at <= kEdgeSamples; ++at) {
            const double height = heights[at + 1];
            if (!(height > 0 && height < heights[at] && height <= heights[at + 2]))
                continue;
            const LatticePoint from = m_points[samples[at]];
            if (at > 0)
                m_falls.push_back({from, m_points[samples[at - 1]], index});
            if (at < kEdgeSamples)
                m_falls.push_back({from, m_points[samples[at + 1]], index});
        }
    }
}

// Fails brackets of poles: the nearer to one the larger f.
void CellFinisher::DropPoles(std::span<const OpenCell> cells)
{
    constexpr double kGrowth = 1.5;
    constexpr double kNearer = 0.1;
    const auto smaller = [](const Bracket& bracket) {
        return std::min(std::abs(bracket.AtA), std::abs(bracket.AtB));
    };
    m_wide.clear();
    m_wideOwners.clear();
    for (std::size_t at = 0; at < m_brackets.size(); ++at) {
        if (!cells[m_owners[at]].IsContinuous()) {
            m_wide.push_back(m_brackets[at]);
            m_wideOwners.push_back(at);
        }
    }
    if (m_wide.empty())
        return;
    m_roots.Find(m_wide, RootOf::Value, kNearer * m_wide.front().Length());
    for (std::size_t at = 0; at < m_wide.size(); ++at) {
        Bracket& bracket = m_brackets[m_wideOwners[at]];
        const bool isPole = smaller(m_wide[at]) > kGrowth * smaller(bracket);
        bracket = m_wide[at];
        if (isPole)
            bracket = {bracket.A, bracket.A, std::nan(""), std::nan("")};
    }
}

// In a cell that is not continuous a change of sign counts where f is continuous across it.
void CellFinisher::AddRoots(std::span<const OpenCell> cells)
{
    DropPoles(cells);
    m_roots.Find(m_brackets, RootOf::Value, kTolerance);
    m_boxes.clear();
    for (const Bracket& bracket : m_brackets)
        m_boxes.push_back(bracket.Box());
    m_field.Ranges(m_boxes, FieldPart::Value, m_ranges);
    for (std::size_t at = 0; at < m_brackets.size(); ++at) {
        const std::size_t owner = m_owners[at];
        const bool proven = cells[owner].IsContinuous() || m_ranges[at].Marks == 0;
        if (proven && !m_brackets[at].HasFailed())
            m_found[owner].Add(m_brackets[at].Root());
    }
}

// The last point with a value may be a zero, or f may change its sign on the way there, however
// steeply.
void CellFinisher::AddBorders()
{
    m_wide = m_borders;
    m_roots.FindBorders(m_borders);
    m_points.clear();
    m_values.clear();
    for (const Bracket& border : m_borders) {
        m_points.push_back(border.A);
        m_values.push_back(border.AtA);
    }
    m_touches.AreZeros(m_points, m_values, m_zeros);
    for (std::size_t at = 0; at < m_borders.size(); ++at) {
        const Bracket& border = m_borders[at];
        if (m_zeros[at] != 0) {
            m_found[m_borderOwners[at]].Add(border.A);
        } else if (m_wide[at].AtA * border.AtA < 0) {
            m_brackets.push_back({m_wide[at].A, border.A, m_wide[at].AtA, border.AtA});
            m_owners.push_back(m_borderOwners[at]);
        }
    }
}

// In cells that are not continuous and of which little is known so far.
void CellFinisher::AddTouchesOfMarked()
{
    std::erase_if(m_falls,
                  [&](const TouchFinder::Stretch& fall) { return m_found[fall.Owner].Count >= 2; });
    m_touches.FindOnStretches(m_falls, m_onFalls);
    for (const TouchFinder::Touch& touch : m_onFalls)
        m_found[touch.Owner].Add(touch.At);
}

// In continuous cells of which little is known so far.
void CellFinisher::AddTouches(std::span<const OpenCell> cells)
{
    const auto seeksMore = [&](std::size_t at) {
        return m_found[at].Count < 2 && cells[at].IsContinuous();
    };
    m_boxes.clear();
    m_owners.clear();
    for (std::size_t at = 0; at < cells.size(); ++at) {
        if (seeksMore(at)) {
            m_boxes.push_back(cells[at].Box);
            m_owners.push_back(at);
        }
    }
    m_touches.FindOnEdges(m_boxes, m_onEdges, TouchFinder::kAnyCrossing);
    for (std::size_t at = 0; at < m_boxes.size(); ++at) {
        for (std::size_t k = 0; k < m_onEdges[at].Count; ++k)
            m_found[m_owners[at]].Add(m_onEdges[at].At[k]);
    }
    m_owners.clear();
    for (std::size_t at = 0; at < cells.size(); ++at) {
        if (!seeksMore(at) || !cells[at].MayHoldExtremum())
            continue;
        if (m_found[at].Count == 1)
            AddDot(m_found[at].At[0]);
        else
            m_owners.push_back(at);
    }
    AddMinima(cells);
}

// In the cells whose numbers are there; if they are very many, where |f| is smallest in the middle.
void CellFinisher::AddMinima(std::span<const OpenCell> cells)
{
    if (m_owners.size() > kMaxMinima) {
        m_points.clear();
        for (const OpenCell& cell : cells)
            m_points.push_back(Middle(cell.Box));
        m_field.Values(m_points, m_values);
        std::nth_element(m_owners.begin(), m_owners.begin() + kMaxMinima, m_owners.end(),
                         [&](std::size_t one, std::size_t other) {
                             return std::abs(m_values[one]) < std::abs(m_values[other]);
                         });
        m_owners.resize(kMaxMinima);
    }
    m_boxes.clear();
    for (const std::size_t owner : m_owners)
        m_boxes.push_back(cells[owner].Box);
    m_touches.FindMinima(m_boxes, m_minima);
    for (std::size_t at = 0; at < m_boxes.size(); ++at) {
        if (!m_minima[at].has_value())
            continue;
        m_found[m_owners[at]].Add(*m_minima[at]);
        AddDot(*m_minima[at]);
    }
}

void CellFinisher::JoinTouches(std::span<const LatticeBox> boxes, std::vector<char>& done)
{
    constexpr std::size_t kCorners = 4;
    constexpr double kCrossing = 0.05; // else two lines would be drawn as one
    m_points.clear();
    for (const LatticeBox& box : boxes) {
        for (std::size_t edge = 0; edge < kCorners; ++edge)
            m_points.push_back(OnEdge(box, edge, 0));
    }
    m_field.Values(m_points, m_values);
    m_boxes.clear();
    m_owners.clear();
    for (std::size_t at = 0; at < boxes.size(); ++at) {
        const std::span<const double> corners{m_values.data() + at * kCorners, kCorners};
        const auto [least, most] = std::minmax_element(corners.begin(), corners.end());
        if (*least >= 0 || *most <= 0) {
            m_boxes.push_back(boxes[at]);
            m_owners.push_back(at);
        }
    }
    m_touches.FindOnEdges(m_boxes, m_onEdges, kCrossing);
    done.assign(boxes.size(), 0);
    for (std::size_t at = 0; at < m_boxes.size(); ++at) {
        if (m_onEdges[at].Count != 2)
            continue;
        done[m_owners[at]] = 1;
        // On a border as well, though a neighbour may find the same: it may also have been dropped.
        m_sketch.AddPiece({m_onEdges[at].At.begin(), 2});
    }
}

void CellFinisher::Join(const EdgePoints& points)
{
    if (points.Count == 2)
        m_sketch.AddPiece({points.At.begin(), points.Count});
    else if (points.Count > 2)
        JoinToHub(points);
}

// Joins all points to the one place for which the lines there follow the curve best.
void CellFinisher::JoinToHub(const EdgePoints& points)
{
    const std::span<const LatticePoint> ends{points.At.begin(), points.Count};
    std::vector<LatticePoint> hubs{MeanOf(ends)};
    hubs.insert(hubs.end(), ends.begin(), ends.end());
    if (points.Count == 4) {
        for (std::size_t other = 1; other < 4; ++other) {
            const std::size_t third = other == 1 ? 2 : 1;
            if (const auto meeting =
                    Meeting(ends[0], ends[other], ends[third], ends[6 - other - third]))
                hubs.push_back(*meeting);
        }
    }
    m_points.clear();
    for (const LatticePoint& hub : hubs) {
        for (const LatticePoint& end : ends)
            m_points.push_back({(hub.U + end.U) / 2, (hub.V + end.V) / 2});
    }
    m_field.Values(m_points, m_values);
    std::size_t best = 0;
    double leastError = std::numeric_limits<double>::infinity();
    for (std::size_t at = 0; at < hubs.size(); ++at) {
        double error = 0;
        for (std::size_t k = at * ends.size(); k < (at + 1) * ends.size(); ++k)
            error += std::abs(m_values[k]);
        if (error < leastError) {
            leastError = error;
            best = at;
        }
    }
    for (const LatticePoint& end : ends) {
        const std::array<LatticePoint, 2> piece{end, hubs[best]};
        if (end.U != piece[1].U || end.V != piece[1].V)
            m_sketch.AddPiece(piece);
    }
}

// Once within half a pixel.
void CellFinisher::AddDot(LatticePoint at)
{
    constexpr std::int64_t kRow = std::int64_t{1} << 24;
    const auto column = static_cast<std::int64_t>(std::floor(at.U * 2));
    const auto row = static_cast<std::int64_t>(std::floor(at.V * 2));
    for (std::int64_t above = -1; above <= 1; ++above) {
        for (std::int64_t beside = -1; beside <= 1; ++beside) {
            if (m_dots.contains((row + above) * kRow + column + beside))
                return;
        }
    }
    m_dots.insert(row * kRow + column);
    m_sketch.AddPiece({&at, 1});
}

} // namespace kelvane
