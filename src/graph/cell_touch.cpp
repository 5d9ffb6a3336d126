#include "graph/cell_touch.h"

namespace kelvane {

namespace {

constexpr double kOverCorner = 1.0 / 64; // how far edges reach, as a part of their length
constexpr double kSame = 1e-3;           // steps between points that are one
constexpr double kSmall = 1e-3;          // a zero, compared with the values around
constexpr int kRound = 8;                // points around another one
constexpr double kMargin = 1.0 / 64;     // how far minima may be outside a box, steps
constexpr double kBent = 4;              // where f is not a straight line
constexpr double kAnyBend = 1e300;
constexpr double kSpan = 1; // how far away the values around are taken, steps

LatticePoint Around(LatticePoint at, int k, LatticePoint radius)
{
    constexpr std::array<LatticePoint, kRound> kPlaces{
        {{1, 0}, {-1, 0}, {0, 1}, {0, -1}, {1, 1}, {-1, -1}, {1, -1}, {-1, 1}}};
    const LatticePoint place = kPlaces[static_cast<std::size_t>(k)];
    return {at.U + place.U * radius.U, at.V + place.V * radius.V};
}

bool IsNear(LatticePoint one, LatticePoint other, double distance)
{
    return std::abs(one.U - other.U) <= distance && std::abs(one.V - other.V) <= distance;
}

LatticePoint Direction(LatticePoint from, LatticePoint to)
{
    const double length = std::hypot(to.U - from.U, to.V - from.V);
    return {(to.U - from.U) / length, (to.V - from.V) / length};
}

// Whether |f| may fall to zero from an end of an edge within this reach, the slope leading inwards.
bool MayFallToZero(double f, double slope, double reach)
{
    return f == 0 || (f * slope < 0 && std::abs(f) <= std::abs(slope) * reach);
}

} // namespace

void TouchFinder::AreZeros(std::span<const LatticePoint> points, std::span<const double> values,
                           std::vector<char>& zeros)
{
    m_fuzzy.clear();
    m_aroundPoints.clear();
    for (const LatticePoint& point : points) {
        m_fuzzy.push_back(m_field.Around(point));
        for (int k = 0; k < kRound; ++k)
            m_aroundPoints.push_back(Around(point, k, {kSpan, kSpan}));
    }
    m_field.Ranges(m_fuzzy, FieldPart::Value, m_ranges);
    m_field.Values(m_aroundPoints, m_around);
    zeros.resize(points.size());
    for (std::size_t at = 0; at < points.size(); ++at) {
        double largest = 0;
        for (int k = 0; k < kRound; ++k) // not a number is never larger
            largest =
                std::max(largest, std::abs(m_around[at * kRound + static_cast<std::size_t>(k)]));
        const bool isZero = m_ranges[at].F.HoldZero() && std::abs(values[at]) <= kSmall * largest;
        zeros[at] = isZero && largest > 0 ? 1 : 0;
    }
}

// Leaves a bracket for every edge along which |f| falls and rises again, perhaps from zero.
void TouchFinder::BracketEdges(std::span<const LatticeBox> boxes)
{
    m_points.clear();
    for (const LatticeBox& box : boxes) {
        const double overU = (box.U1 - box.U0) * kOverCorner;
        const double overV = (box.V1 - box.V0) * kOverCorner;
        for (const double v : {box.V0, box.V1}) {
            m_points.push_back({box.U0 - overU, v});
            m_points.push_back({box.U1 + overU, v});
        }
        for (const double u : {box.U0, box.U1}) {
            m_points.push_back({u, box.V0 - overV});
            m_points.push_back({u, box.V1 + overV});
        }
    }
    m_field.Slopes(m_points, m_samples);
    m_brackets.clear();
    m_owners.clear();
    m_endValues.clear();
    for (std::size_t at = 0; at < m_points.size(); at += 2)
        AddFall(at, at + 1, at / 8, kBent);
}

// Brackets the way between two samples if |f| falls and rises again along it, perhaps from zero.
void TouchFinder::AddFall(std::size_t a, std::size_t b, std::size_t owner, double bend)
{
    const LatticePoint from = m_points[a];
    const LatticePoint to = m_points[b];
    const double reach = bend * std::hypot(to.U - from.U, to.V - from.V);
    const LatticePoint direction = Direction(from, to);
    const double slopeA = m_samples[a].Along(direction);
    const double slopeB = m_samples[b].Along(direction);
    const double f = m_samples[a].F;
    const double otherF = m_samples[b].F;
    if (!Differ(slopeA, slopeB) || f * otherF < 0 || !MayFallToZero(f, slopeA, reach) ||
        !MayFallToZero(otherF, -slopeB, reach))
        return;
    m_brackets.push_back({from, to, slopeA, slopeB});
    m_endValues.push_back(std::abs(f) > std::abs(otherF) ? f : otherF);
    m_owners.push_back(owner);
}

// Leaves for every bracket the point with the smallest |f| in m_points, and f in m_values.
void TouchFinder::TakeSmallest()
{
    m_points.clear();
    for (const Bracket& bracket : m_brackets) {
        m_points.push_back(bracket.A);
        m_points.push_back(bracket.B);
        m_points.push_back(bracket.Root());
    }
    m_field.Values(m_points, m_values);
    for (std::size_t at = 0; at < m_brackets.size(); ++at) {
        std::size_t best = 3 * at + 2;
        for (const std::size_t other : {3 * at, 3 * at + 1}) {
            if (std::abs(m_values[other]) < std::abs(m_values[best]))
                best = other;
        }
        m_points[at] = m_points[best];
        m_values[at] = m_values[best];
    }
    m_points.resize(m_brackets.size());
    m_values.resize(m_brackets.size());
}

// Leaves for every bracket the point of it that may be a zero, and whether it is one.
void TouchFinder::Resolve(double crossing)
{
    m_zeros.clear();
    if (m_brackets.empty())
        return;
    const LatticePoint fuzz = m_field.Fuzz(m_brackets.front().A);
    m_roots.Find(m_brackets, RootOf::AlongSlope, std::max(fuzz.U, fuzz.V) / 2);
    TakeSmallest();
    AreZeros(m_points, m_values, m_zeros);
    for (std::size_t at = 0; at < m_brackets.size(); ++at) {
        const double least = m_values[at];
        if (least * m_endValues[at] < 0 && std::abs(least) <= crossing * std::abs(m_endValues[at]))
            m_zeros[at] = 1;
    }
}

void TouchFinder::FindOnEdges(std::span<const LatticeBox> boxes, std::vector<OnEdges>& found,
                              double crossing)
{
    found.assign(boxes.size(), {});
    BracketEdges(boxes);
    Resolve(crossing);
    for (std::size_t at = 0; at < m_brackets.size(); ++at) {
        OnEdges& edges = found[m_owners[at]];
        auto* const end = edges.At.begin() + edges.Count;
        const bool isNew = std::none_of(edges.At.begin(), end, [&](const LatticePoint& other) {
            return IsNear(other, m_points[at], kSame);
        });
        if (m_zeros[at] != 0 && isNew)
            edges.At[edges.Count++] = m_points[at];
    }
}

bool TouchFinder::Part::FallsFromEither() const
{
    const LatticePoint direction = Direction(A, B);
    return (std::isfinite(AtA.F) && AtA.F * AtA.Along(direction) < 0) ||
           (std::isfinite(AtB.F) && AtB.F * AtB.Along(direction) > 0);
}

// Keeps stretches along which |f| falls where they begin. All of them lead in the direction of the
// axes, so that cells agree on what is on the edge between them.
void TouchFinder::BeginParts(std::span<const Stretch> stretches)
{
    m_points.clear();
    for (const Stretch& stretch : stretches)
        m_points.push_back(stretch.From);
    m_field.Slopes(m_points, m_samples);
    m_parts.clear();
    m_points.clear();
    for (std::size_t at = 0; at < stretches.size(); ++at) {
        const auto& [from, to, owner] = stretches[at];
        if (!(m_samples[at].F * m_samples[at].Along(Direction(from, to)) < 0))
            continue;
        m_parts.push_back({from, to, m_samples[at], {}, owner});
        m_points.push_back(to);
    }
    m_field.Slopes(m_points, m_samples);
    for (std::size_t at = 0; at < m_parts.size(); ++at) {
        Part& part = m_parts[at];
        part.AtB = m_samples[at];
        if (part.A.U + part.A.V > part.B.U + part.B.V)
            part = {part.B, part.A, part.AtB, part.AtA, part.Owner};
    }
}

// Leaves the parts that are not proven continuous and may hold a zero.
void TouchFinder::BracketContinuousParts()
{
    m_fuzzy.clear();
    m_points.clear();
    m_samples.clear();
    for (const Part& part : m_parts) {
        m_fuzzy.push_back({part.A.U, part.A.V, part.B.U, part.B.V});
        m_points.insert(m_points.end(), {part.A, part.B});
        m_samples.insert(m_samples.end(), {part.AtA, part.AtB});
    }
    m_field.Ranges(m_fuzzy, FieldPart::Value, m_ranges);
    std::size_t left = 0;
    for (std::size_t at = 0; at < m_parts.size(); ++at) {
        const CellRange& range = m_ranges[at];
        if (range.Marks == 0 && range.F.HoldZero())
            AddFall(2 * at, 2 * at + 1, m_parts[at].Owner, kAnyBend);
        else if ((range.Marks & kNowhereDefined) == 0 && range.F.HoldZero())
            m_parts[left++] = m_parts[at];
    }
    m_parts.resize(left);
}

void TouchFinder::HalveParts()
{
    m_points.clear();
    for (const Part& part : m_parts)
        m_points.push_back({(part.A.U + part.B.U) / 2, (part.A.V + part.B.V) / 2});
    m_field.Slopes(m_points, m_samples);
    m_halves.clear();
    for (std::size_t at = 0; at < m_parts.size(); ++at) {
        const Part& part = m_parts[at];
        for (const Part& half : {Part{part.A, m_points[at], part.AtA, m_samples[at], part.Owner},
                                 Part{m_points[at], part.B, m_samples[at], part.AtB, part.Owner}}) {
            if (half.FallsFromEither())
                m_halves.push_back(half);
        }
    }
    m_parts.swap(m_halves);
}

void TouchFinder::FindOnStretches(std::span<const Stretch> stretches, std::vector<Touch>& found)
{
    constexpr int kHalvings = 24; // to a few thousand times the spacing of the numbers
    found.clear();
    m_brackets.clear();
    m_owners.clear();
    m_endValues.clear();
    BeginParts(stretches);
    for (int halving = 0; halving < kHalvings && !m_parts.empty(); ++halving) {
        BracketContinuousParts();
        HalveParts();
    }
    Resolve(kAnyCrossing);
    for (std::size_t at = 0; at < m_brackets.size(); ++at) {
        if (m_zeros[at] != 0)
            found.push_back({m_points[at], m_owners[at]});
    }
}

void TouchFinder::FindAcross(std::span<const LatticeBox> boxes, std::vector<char>& found)
{
    found.assign(boxes.size(), 0);
    for (const Diagonal diagonal : {Diagonal::Rising, Diagonal::Falling}) {
        BracketAcross(boxes, diagonal, found);
        Resolve(kAnyCrossing);
        for (std::size_t at = 0; at < m_brackets.size(); ++at)
            found[m_owners[at]] = std::max(found[m_owners[at]], m_zeros[at]);
    }
}

// Leaves a bracket of the deepest fall along a diagonal of every box that is not done.
void TouchFinder::BracketAcross(std::span<const LatticeBox> boxes, Diagonal diagonal,
                                const std::vector<char>& done)
{
    constexpr std::size_t kSamples = 9;
    m_points.clear();
    m_samplers.clear();
    for (std::size_t at = 0; at < boxes.size(); ++at) {
        if (done[at] != 0)
            continue;
        m_samplers.push_back(at);
        const LatticeBox& box = boxes[at];
        for (std::size_t k = 0; k < kSamples; ++k) {
            const double even = static_cast<double>(k) / (kSamples - 1);
            const double part = even * (0.8 + 0.2 * even); // lest a wave keep step
            const double up = diagonal == Diagonal::Rising ? part : 1 - part;
            m_points.push_back(
                {box.U0 + (box.U1 - box.U0) * part, box.V0 + (box.V1 - box.V0) * up});
        }
    }
    m_field.Slopes(m_points, m_samples);
    m_brackets.clear();
    m_owners.clear();
    m_endValues.clear();
    for (std::size_t k = 0; k < m_points.size(); ++k) {
        const std::size_t owner = m_samplers[k / kSamples];
        const std::size_t last = m_brackets.size();
        if (k % kSamples + 1 < kSamples)
            AddFall(k, k + 1, owner, kBent);
        if (m_brackets.size() == last || last == 0 || m_owners[last - 1] != owner)
            continue;
        if (std::abs(m_endValues[last]) < std::abs(m_endValues[last - 1])) {
            m_brackets[last - 1] = m_brackets[last];
            m_endValues[last - 1] = m_endValues[last];
        }
        m_brackets.pop_back();
        m_endValues.pop_back();
        m_owners.pop_back();
    }
}

void TouchFinder::BeginDescents(std::span<const LatticeBox> boxes)
{
    m_points.clear();
    m_descents.clear();
    m_ended.clear();
    for (std::size_t at = 0; at < boxes.size(); ++at) {
        const LatticeBox& box = boxes[at];
        m_points.push_back(Middle(box));
        m_descents.push_back({at, Middle(box), 0, 0, (box.U1 - box.U0) / 2});
    }
    m_field.Values(m_points, m_values);
    for (std::size_t at = 0; at < boxes.size(); ++at)
        m_descents[at].Value = m_descents[at].First = m_values[at];
}

// Moves each descent to the smallest |f| around it, or makes its step smaller.
void TouchFinder::StepDescents(std::span<const LatticeBox> boxes)
{
    m_points.clear();
    for (const Descent& descent : m_descents) {
        for (int k = 0; k < kRound; ++k)
            m_points.push_back(Around(descent.At, k, {descent.Step, descent.Step}));
    }
    m_field.Values(m_points, m_values);
    for (std::size_t at = 0; at < m_descents.size(); ++at) {
        Descent& descent = m_descents[at];
        const LatticeBox& box = boxes[descent.Box];
        bool moved = false;
        for (std::size_t k = at * kRound; k < (at + 1) * kRound; ++k) {
            const LatticePoint& point = m_points[k];
            const bool inside = point.U >= box.U0 - kMargin && point.U <= box.U1 + kMargin &&
                                point.V >= box.V0 - kMargin && point.V <= box.V1 + kMargin;
            if (inside && std::abs(m_values[k]) < std::abs(descent.Value)) {
                descent.At = point;
                descent.Value = m_values[k];
                moved = true;
            }
        }
        descent.Step /= moved ? 1 : 2;
    }
}

void TouchFinder::FindMinima(std::span<const LatticeBox> boxes,
                             std::vector<std::optional<LatticePoint>>& found)
{
    constexpr int kMaxSteps = 150;
    constexpr int kProbation = 16; // steps after which a minimum that is zero shows
    constexpr double kShows = 0.02;
    found.assign(boxes.size(), std::nullopt);
    BeginDescents(boxes);
    for (int step = 0; step < kMaxSteps && !m_descents.empty(); ++step) {
        StepDescents(boxes);
        std::erase_if(m_descents, [&](const Descent& descent) {
            if (step == kProbation && std::abs(descent.Value) > kShows * std::abs(descent.First))
                return true;
            const LatticePoint fuzz = m_field.Fuzz(descent.At);
            const bool ended = descent.Value == 0 || descent.Step < std::max(fuzz.U, fuzz.V) / 8;
            if (ended)
                m_ended.push_back(descent);
            return ended;
        });
    }
    m_points.clear();
    m_values.clear();
    for (const Descent& descent : m_ended) {
        m_points.push_back(descent.At);
        m_values.push_back(descent.Value);
    }
    AreZeros(m_points, m_values, m_zeros);
    for (std::size_t at = 0; at < m_ended.size(); ++at) {
        if (m_zeros[at] != 0)
            found[m_ended[at].Box] = m_ended[at].At;
    }
}

} // namespace kelvane
