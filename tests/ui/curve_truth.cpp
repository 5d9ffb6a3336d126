#include "ui/curve_truth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace kelvane {

namespace {

constexpr int kMaxHalvings = 60;
constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

// How far |f| must shrink towards a place, in relation to the samples around, for it to be 0 there.
constexpr double kShrinks = 1e-3;       // between two signs: a jump or a pole shrinks not at all
constexpr double kTouches = 1e-6;       // least values
constexpr double kSharp = 0.7;          // least values among samples that are worth a look
constexpr double kReachesAtEdge = 1e-5; // where the domain ends

bool IsOutside(double a, double b, double size)
{
    return std::max(a, b) < -2 || std::min(a, b) > size + 2;
}

// Where |f| is least between two ends, by the golden section.
double LeastBetween(const LineFunction& f, double low, double high)
{
    constexpr double kGolden = 0.6180339887498949;
    const auto size = [&](double t) {
        const double value = std::fabs(f(t));
        return std::isfinite(value) ? value : std::numeric_limits<double>::infinity();
    };
    double left = high - kGolden * (high - low);
    double right = low + kGolden * (high - low);
    double atLeft = size(left);
    double atRight = size(right);
    for (int i = 0; i < kMaxHalvings; ++i) {
        if (atLeft <= atRight) {
            high = std::exchange(right, left);
            left = high - kGolden * (high - low);
            atRight = std::exchange(atLeft, size(left));
        } else {
            low = std::exchange(left, right);
            right = low + kGolden * (high - low);
            atLeft = std::exchange(atRight, size(right));
        }
    }
    return atLeft <= atRight ? left : right;
}

} // namespace

CurveTruth::CurveTruth(const TruthWindow& window)
    : m_window{window.Width + 2 * kMargin,         window.Height + 2 * kMargin,
               window.X0 - kMargin * window.StepX, window.StepX,
               window.Y0 - kMargin * window.StepY, window.StepY}
    , m_marks(static_cast<std::size_t>(m_window.Width) * static_cast<std::size_t>(m_window.Height),
              TruthMark::Off)
{
}

bool CurveTruth::IsOn(Spot spot) const
{
    const double column = std::round(spot.U);
    const double row = std::round(spot.V);
    if (!(column >= 0 && column < m_window.Width && row >= 0 && row < m_window.Height))
        return true; // nothing to find there
    return m_marks[static_cast<std::size_t>(row * m_window.Width + column)] == TruthMark::On;
}

void CurveTruth::Put(Spot spot, TruthMark mark)
{
    const double column = std::round(spot.U);
    const double row = std::round(spot.V);
    if (column >= 0 && column < m_window.Width && row >= 0 && row < m_window.Height) {
        TruthMark& here = m_marks[static_cast<std::size_t>(row * m_window.Width + column)];
        here = std::max(here, mark);
    }
}

void CurveTruth::Point(double x, double y, TruthMark mark)
{
    Put({(x - m_window.X0) / m_window.StepX, (y - m_window.Y0) / m_window.StepY}, mark);
}

void CurveTruth::Area(const PlaneTest& test)
{
    constexpr std::array<double, 3> kParts{-0.37, 0.01, 0.33};
    const auto touches = [&](int column, int row) {
        for (double u : kParts)
            for (double v : kParts)
                if (test(X(column + u), Y(row + v)))
                    return true;
        return false;
    };
    for (int row = 0; row < m_window.Height; ++row)
        for (int column = 0; column < m_window.Width; ++column)
            if (touches(column, row))
                Put({static_cast<double>(column), static_cast<double>(row)});
}

// Whether all pixels from one spot straight to the other are marked, as far as they are visible.
bool CurveTruth::IsFilled(Spot from, Spot to) const
{
    const double length = std::fabs(to.U - from.U) + std::fabs(to.V - from.V);
    if (!(length < 1e4)) // or no number
        return false;
    const double steps = std::ceil(length);
    for (double step = 0; step <= steps; ++step) {
        const double part = step / std::max(steps, 1.0);
        if (!IsOn({from.U + part * (to.U - from.U), from.V + part * (to.V - from.V)}))
            return false;
    }
    return IsOn(to);
}

// Marks the graph between two parameters by halving; the ends of a jump are the last to be marked.
void CurveTruth::JoinGraph(const std::function<Spot(double)>& spotAt, double from, double to)
{
    constexpr int kMaxPieces = 20000; // endless oscillation
    struct Piece {
        double From, To;
        Spot A, B;
        int Depth;
    };
    const double size = m_window.Height;
    std::vector<Piece> open{{from, to, spotAt(from), spotAt(to), 0}};
    for (int pieces = 0; !open.empty() && pieces < kMaxPieces; ++pieces) {
        const Piece piece = open.back();
        open.pop_back();
        const double a = piece.A.V;
        const double b = piece.B.V;
        if ((!std::isfinite(a) && !std::isfinite(b)) || IsOutside(a, b, size) ||
            IsFilled(piece.A, piece.B))
            continue;
        if (std::fabs(a - b) <= 0.5 || piece.Depth == kMaxHalvings) {
            Put(piece.A);
            Put(piece.B);
            continue;
        }
        const double middle = piece.From + (piece.To - piece.From) / 2;
        const Spot spot = spotAt(middle);
        open.push_back({piece.From, middle, piece.A, spot, piece.Depth + 1});
        open.push_back({middle, piece.To, spot, piece.B, piece.Depth + 1});
    }
}

void CurveTruth::Graph(const LineFunction& g)
{
    constexpr int kPerPixel = 256;
    const auto value = [&](double u) { return (g(X(u)) - m_window.Y0) / m_window.StepY; };
    const auto spotAt = [&](double u) { return Spot{u, value(u)}; };
    const double step = 1.0 / kPerPixel;
    double a = kNoValue;
    double b = value(-0.5 - step);
    for (int i = 0; i <= m_window.Width * kPerPixel; ++i) {
        const double u = -0.5 + i * step;
        const double c = value(u);
        if (i > 0)
            JoinGraph(spotAt, u - step, u);
        if ((b - a) * (b - c) > 0 && std::fabs(b - a) + std::fabs(b - c) > 0.1) { // an extreme
            const double far = b > a ? 1e9 : -1e9;
            const double peak =
                LeastBetween([&](double t) { return far - value(t); }, u - 2 * step, u);
            JoinGraph(spotAt, u - step, peak);
        }
        a = std::exchange(b, c);
    }
}

void CurveTruth::GraphAlongY(const LineFunction& g)
{
    CurveTruth other({});
    other.m_window = {m_window.Height, m_window.Width, m_window.Y0,
                      m_window.StepY,  m_window.X0,    m_window.StepX};
    other.m_marks.assign(m_marks.size(), TruthMark::Off);
    other.Graph(g);
    for (int row = 0; row < m_window.Height; ++row)
        for (int column = 0; column < m_window.Width; ++column)
            if (other.IsOn({static_cast<double>(row), static_cast<double>(column)}))
                Put({static_cast<double>(column), static_cast<double>(row)});
}

void CurveTruth::JoinPath(const std::function<Spot(double)>& spotAt, double from, double to)
{
    struct Piece {
        double From, To;
        Spot A, B;
        int Depth;
    };
    std::vector<Piece> open{{from, to, spotAt(from), spotAt(to), 0}};
    while (!open.empty()) {
        const Piece piece = open.back();
        open.pop_back();
        const auto [a, b] = std::pair(piece.A, piece.B);
        const double length = std::hypot(a.U - b.U, a.V - b.V);
        if (IsOutside(a.U, b.U, m_window.Width) || IsOutside(a.V, b.V, m_window.Height))
            continue;
        if (length <= 0.3 || piece.Depth == kMaxHalvings ||
            (!std::isfinite(a.U + a.V) && !std::isfinite(b.U + b.V))) {
            Put(a);
            Put(b);
            continue;
        }
        const double middle = piece.From + (piece.To - piece.From) / 2;
        const Spot spot = spotAt(middle);
        open.push_back({piece.From, middle, a, spot, piece.Depth + 1});
        open.push_back({middle, piece.To, spot, b, piece.Depth + 1});
    }
}

void CurveTruth::Path(const LineFunction& x, const LineFunction& y, double from, double to)
{
    constexpr int kPieces = 20000;
    const auto spotAt = [&](double t) {
        return Spot{(x(t) - m_window.X0) / m_window.StepX, (y(t) - m_window.Y0) / m_window.StepY};
    };
    const double step = (to - from) / kPieces;
    for (int i = 0; i < kPieces; ++i)
        JoinPath(spotAt, from + i * step, i + 1 == kPieces ? to : from + (i + 1) * step);
}

void CurveTruth::Levels(const PlaneFunction& g, const PlaneTest& test)
{
    constexpr int kPerPixel = 3;
    const double step = 1.0 / kPerPixel;
    const int columns = m_window.Width * kPerPixel;
    const auto mark = [&](Spot a, double ga, Spot b, double gb) {
        if (!(std::floor(ga) != std::floor(gb)) || !std::isfinite(ga) || !std::isfinite(gb))
            return;
        const double level = std::max(std::floor(ga), std::floor(gb));
        const double part = std::clamp((level - ga) / (gb - ga), 0.0, 1.0);
        const Spot spot{a.U + part * (b.U - a.U), a.V + part * (b.V - a.V)};
        if (!test || test(X(spot.U), Y(spot.V)))
            Put(spot);
    };
    std::vector<double> above(static_cast<std::size_t>(columns) + 1, kNoValue);
    for (int row = 0; row <= m_window.Height * kPerPixel; ++row) {
        Spot before;
        double value = kNoValue;
        for (int column = 0; column <= columns; ++column) {
            const Spot spot{-0.5 + column * step, -0.5 + row * step};
            const double here = At(g, spot);
            double& up = above[static_cast<std::size_t>(column)];
            mark({spot.U, spot.V - step}, up, spot, here);
            mark(before, value, spot, here);
            before = spot;
            value = up = here;
        }
    }
}

void CurveTruth::TestPair(const PlaneFunction& f, const Sample& a, const Sample& b)
{
    const bool endsA = !std::isfinite(a.F);
    const bool endsB = !std::isfinite(b.F);
    const bool isEdge = endsA != endsB;
    if ((endsA && endsB) || (!isEdge && !(a.F < 0 && b.F > 0) && !(a.F > 0 && b.F < 0)) ||
        (IsOn(a.At) && IsOn(b.At)))
        return;
    Sample low = endsA ? b : a; // has a value
    Sample high = endsA ? a : b;
    const double around = isEdge ? std::fabs(low.F) : std::max(std::fabs(a.F), std::fabs(b.F));
    for (int i = 0; i < kMaxHalvings; ++i) {
        const Spot middle{(low.At.U + high.At.U) / 2, (low.At.V + high.At.V) / 2};
        const Sample sample{middle, At(f, middle)};
        const bool isLow = isEdge ? std::isfinite(sample.F) : (sample.F < 0) == (low.F < 0);
        (isLow ? low : high) = sample;
    }
    const double left = isEdge ? std::fabs(low.F) : std::max(std::fabs(low.F), std::fabs(high.F));
    if (left <= around * (isEdge ? kReachesAtEdge : kShrinks))
        Put(low.At);
}

void CurveTruth::TestValley(const PlaneFunction& f, const Sample& a, const Sample& b,
                            const Sample& c)
{
    const double middle = std::fabs(b.F);
    const double around = std::max(std::fabs(a.F), std::fabs(c.F));
    if (!(middle <= std::fabs(a.F) && middle <= std::fabs(c.F) && middle < around * kSharp) ||
        (a.F < 0) != (c.F < 0) || IsOn(b.At))
        return;
    const auto spotAt = [&](double t) {
        return Spot{a.At.U + t * (c.At.U - a.At.U), a.At.V + t * (c.At.V - a.At.V)};
    };
    const double t = LeastBetween([&](double s) { return At(f, spotAt(s)); }, 0, 1);
    if (std::fabs(At(f, spotAt(t))) <= around * kTouches)
        Put(spotAt(t));
}

void CurveTruth::TestPit(const PlaneFunction& f, const Sample& middle, double reach, double around)
{
    Spot spot = middle.At;
    for (int round = 0; round < 25; ++round) {
        spot.U = LeastBetween(
            [&](double u) {
                return At(f, {u, spot.V});
            },
            spot.U - reach, spot.U + reach);
        spot.V = LeastBetween(
            [&](double v) {
                return At(f, {spot.U, v});
            },
            spot.V - reach, spot.V + reach);
    }
    if (std::fabs(At(f, spot)) <= around * kTouches)
        Put(spot);
}

void CurveTruth::Zeros(const PlaneFunction& f, int perPixel)
{
    const double step = 1.0 / perPixel;
    const auto columns =
        static_cast<std::size_t>(m_window.Width) * static_cast<std::size_t>(perPixel) + 3;
    std::array<std::vector<Sample>, 3> rows; // the middle one is looked at
    for (auto& row : rows)
        row.resize(columns);
    for (int j = -1; j <= m_window.Height * perPixel + 1; ++j) {
        std::rotate(rows.begin(), rows.begin() + 1, rows.end());
        const auto& [up, here, down] = rows;
        for (std::size_t i = 0; i < columns; ++i) {
            const Spot spot{-0.5 + (static_cast<double>(i) - 1) * step, -0.5 + j * step};
            rows[2][i] = {spot, At(f, spot)};
            if (rows[2][i].F == 0)
                Put(spot);
        }
        for (std::size_t i = 1; j >= 1 && i + 1 < columns; ++i) {
            TestPair(f, here[i - 1], here[i]);
            TestPair(f, up[i], here[i]);
            TestValley(f, here[i - 1], here[i], here[i + 1]);
            TestValley(f, up[i], here[i], down[i]);
            const double least = std::fabs(here[i].F);
            const bool isBelow = here[i].F < 0;
            double around = 0;
            bool isPit = std::isfinite(least) && !IsOn(here[i].At);
            for (std::size_t k = i - 1; isPit && k <= i + 1; ++k)
                for (const auto& row : rows) {
                    isPit = isPit && least <= std::fabs(row[k].F) && (row[k].F < 0) == isBelow;
                    around = std::max(around, std::fabs(row[k].F));
                }
            if (isPit && least < around * kSharp)
                TestPit(f, here[i], step, around);
        }
    }
}

TruthMark CurveTruth::MarkAt(int column, int row) const
{
    const int at = (row + kMargin) * m_window.Width + column + kMargin;
    return m_marks[static_cast<std::size_t>(at)];
}

TruthScore ScoreAgainst(const CurveTruth& truth, const std::vector<std::uint8_t>& drawn)
{
    TruthScore score;
    const int width = truth.Width();
    const int height = truth.Height();
    const auto isInk = [&](int column, int row) {
        const int at = row * width + column;
        return column >= 0 && column < width && row >= 0 && row < height &&
               drawn[static_cast<std::size_t>(at)] != 0;
    };
    const auto isCurve = [&](int column, int row) {
        return truth.MarkAt(column, row) != TruthMark::Off;
    };
    // Within 1.5 pixels are the pixel itself and the eight around it.
    const auto anyNear = [](int column, int row, const auto& isThere) {
        for (int j = row - 1; j <= row + 1; ++j)
            for (int i = column - 1; i <= column + 1; ++i)
                if (isThere(i, j))
                    return true;
        return false;
    };
    std::int64_t found = 0;
    std::int64_t right = 0;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            if (truth.MarkAt(column, row) == TruthMark::On) {
                ++score.TruthPixels;
                found += anyNear(column, row, isInk) ? 1 : 0;
            }
            if (isInk(column, row)) {
                ++score.DrawnPixels;
                right += anyNear(column, row, isCurve) ? 1 : 0;
            }
        }
    if (score.TruthPixels > 0)
        score.Found = static_cast<double>(found) / static_cast<double>(score.TruthPixels);
    if (score.DrawnPixels > 0)
        score.Right = static_cast<double>(right) / static_cast<double>(score.DrawnPixels);
    return score;
}

} // namespace kelvane
