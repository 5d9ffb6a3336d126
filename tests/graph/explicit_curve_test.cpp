#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "engine/preparation.h"
#include "graph/explicit_curve.h"
#include "recording.h"

namespace kelvane {

namespace {

using Real = long double;

// Gathers curves: lines that go on where the one before ended are one piece. A dot is a piece of
// its own. The lattice's (0, 0) is at the bottom left.
class CurveSurface : public RecordingSurface {
public:
    void Pixel(PixelPoint at, Rgb) override { Pieces.push_back({At(at)}); }
    void Line(PixelPoint from, PixelPoint to, Rgb) override
    {
        const LatticePoint start = At(from);
        if (Pieces.empty() || Pieces.back().back().U != start.U ||
            Pieces.back().back().V != start.V)
            Pieces.push_back({start});
        Pieces.back().push_back(At(to));
    }
    void Hatch(std::span<const PixelPoint>, Rgb) override { ++Hatched; }

    std::vector<std::vector<LatticePoint>> Pieces;
    int Hatched = 0;

private:
    static LatticePoint At(PixelPoint p) { return {p.X, 800 - p.Y}; }
};

// 1000 x 800 pixels, 50 a unit: x from -10 to 10, y from -8 to 8 unless scaled.
struct CurveSheet : TestSheet {
    explicit CurveSheet(const std::string& line, double unitX = 0.02, double unitY = 0.02)
        : TestSheet(line)
    {
        View = {.OriginX = 500, .OriginY = 400, .UnitPixels = 50, .ColumnCache = {}};
        std::tie(View.XMin, View.XMax, View.YMin, View.YMax) = std::tuple(-10, 10, -8, 8);
        View.PixPerStep = 50;
        if (unitX != 0.02 || unitY != 0.02) { // the crossing in the corner, a pixel a step
            View.PixPerStep = 1 / static_cast<float>(unitX);
            View.YRatio = static_cast<float>(unitX / unitY);
            View.XMax = static_cast<float>(500 * unitX);
            View.YMax = static_cast<float>(400 * unitY);
            View.XMin = -View.XMax;
            View.YMin = -View.YMax;
        }
        Lattice = {.Width = 1000,
                   .Height = 800,
                   .StartS = -500 * unitX,
                   .StartT = -400 * unitY,
                   .UnitS = unitX,
                   .UnitT = unitY};
    }

    CurveSheet& Trace(double step = 0.5, double seconds = 1e9)
    {
        PrepareEquations(Table, Sheet);
        const Field field = CompileField(Table.At(1));
        Table.Clear();
        const DrawContext context = MakeDrawContext(*this, Curves, Host, Time);
        CurveSketch sketch(context, Lattice);
        DrawPace pace(context, sketch, seconds);
        FieldRunner runner;
        const CurveSearch search{field, Lattice, runner, pace, sketch, Stats};
        const GraphOver over = field.ConstantAlongY.value_or(0) != 0 ? GraphOver::X : GraphOver::Y;
        End = TraceExplicit(search, over, step);
        sketch.Plot();
        sketch.PlotUnresolved();
        return *this;
    }

    PixelLattice Lattice;
    CurveSurface Curves;
    Pace End = Pace::GoOn;
};

// The pixels of a picture that something goes through.
class Pixels {
public:
    void Line(LatticePoint from, LatticePoint to)
    {
        const double length = std::hypot(to.U - from.U, to.V - from.V);
        const int count = static_cast<int>(length * 2) + 1;
        for (int i = 0; i <= count; ++i) {
            const double part = static_cast<double>(i) / count;
            Mark(std::lerp(from.U, to.U, part), std::lerp(from.V, to.V, part));
        }
    }

    void Mark(double u, double v)
    {
        if (u >= 0 && u <= 1000 && v >= 0 && v <= 800)
            m_at[Index(static_cast<int>(u), static_cast<int>(v))] = true;
    }

    // How many have none of the others beside them.
    int FarFrom(const Pixels& others) const
    {
        int count = 0;
        for (int u = 0; u <= 1000; ++u) {
            for (int v = 0; v <= 800; ++v)
                count += m_at[Index(u, v)] && !others.IsNear(u, v) ? 1 : 0;
        }
        return count;
    }

private:
    static constexpr std::size_t kRow = 1003;

    static std::size_t Index(int u, int v)
    {
        return static_cast<std::size_t>(v + 1) * kRow + static_cast<std::size_t>(u + 1);
    }

    bool IsNear(int u, int v) const
    {
        for (const int row : {v - 1, v, v + 1}) {
            for (const int column : {u - 1, u, u + 1}) {
                if (m_at[Index(column, row)])
                    return true;
            }
        }
        return false;
    }

    std::vector<bool> m_at = std::vector<bool>(kRow * 803);
};

Pixels Drawn(const CurveSurface& surface)
{
    Pixels pixels;
    for (const auto& piece : surface.Pieces) {
        for (std::size_t i = 1; i < piece.size(); ++i)
            pixels.Line(piece[i - 1], piece[i]);
    }
    return pixels;
}

// The function at close samples, joined unless they are on different sides of a pole or a jump.
Pixels Truth(const CurveSheet& sheet, const std::function<Real(Real)>& function)
{
    const PixelLattice& lattice = sheet.Lattice;
    Pixels pixels;
    Real before = std::numeric_limits<Real>::quiet_NaN();
    constexpr int kEach = 256; // pixel
    for (int i = 0; i <= 1000 * kEach; ++i) {
        const double u = static_cast<double>(i) / kEach;
        const Real x = lattice.StartS + static_cast<Real>(u) * lattice.UnitS;
        const Real v = (function(x) - lattice.StartT) / lattice.UnitT;
        const bool isNear = std::abs(v - before) < 200;
        if (isNear && std::min(v, before) < 800 && std::max(v, before) > 0)
            pixels.Line({u, static_cast<double>(std::clamp<Real>(before, 0, 800))},
                        {u, static_cast<double>(std::clamp<Real>(v, 0, 800))});
        else if (std::isfinite(v))
            pixels.Mark(u, static_cast<double>(v));
        before = v;
    }
    return pixels;
}

constexpr Real kE = 2.718282F; // as the formulas know it

struct TruthCase {
    const char* Line;
    std::function<Real(Real)> Function;
    double UnitX = 0.02;
    double UnitY = 0.02;
};

struct PieceCase {
    const char* Line;
    std::vector<std::vector<LatticePoint>> Ends; // of the pieces from left to right
};

double Left(const std::vector<LatticePoint>& piece)
{
    return std::min(piece.front().U, piece.back().U);
}

} // namespace

TEST(ExplicitCurve, DrawsWhatIsNotThereOrLeavesOutWhatIs)
{
    const TruthCase cases[] = {
        {"y=x^2/4-3", [](Real x) { return x * x / 4 - 3; }},
        {"2*y+x=3", [](Real x) { return (3 - x) / 2; }},
        {"y=sin(10*x)*5", [](Real x) { return std::sin(10 * x) * 5; }},
        {"y=abs(x-1)-abs(x+1)", [](Real x) { return std::abs(x - 1) - std::abs(x + 1); }},
        {"y=(x^(0.5))^2", [](Real x) { return x >= 0 ? x : NAN; }},
        {"y=asin(x/3)*2", [](Real x) { return std::asin(x / 3) * 2; }},
        {"y=1/x^2", [](Real x) { return 1 / (x * x); }},
        {"y=0.000001/x^2", [](Real x) { return 0.000001F / (x * x); }},
        {"y=sin(x)/x", [](Real x) { return std::sin(x) / x; }},
        {"y=sin(40/x)", [](Real x) { return std::sin(40 / x); }},
        {"y=x*sin(1/x)", [](Real x) { return x * std::sin(1 / x); }},
        {"y=sin(e^x)", [](Real x) { return std::sin(std::pow(kE, x)); }},
        {"y=sin(e^x)+cos(e^x)",
         [](Real x) { return std::sin(std::pow(kE, x)) + std::cos(std::pow(kE, x)); }},
        {"y=sin(1000*x)*3", [](Real x) { return std::sin(1000 * x) * 3; }},
        {"y=sin(1/x)", [](Real x) { return std::sin(1 / x); }, 2e-5, 5e-3},
        {"y=sin(x)", [](Real x) { return std::sin(x); }, 4, 5e-3},
        {"y=x^3-x", [](Real x) { return x * x * x - x; }, 1e-9, 1e-9},
    };
    for (const TruthCase& c : cases) {
        CurveSheet sheet(c.Line, c.UnitX, c.UnitY);
        const Pixels drawn = Drawn(sheet.Trace().Curves);
        const Pixels truth = Truth(sheet, c.Function);
        EXPECT_EQ(truth.FarFrom(drawn), 0) << c.Line << ": left out";
        EXPECT_EQ(drawn.FarFrom(truth), 0) << c.Line << ": not there";
        EXPECT_EQ(sheet.Curves.Hatched, 0) << c.Line;
        EXPECT_EQ(sheet.End, Pace::GoOn) << c.Line;
    }
}

// Where the poles lie too close for samples of the truth, all values are taken in every column.
TEST(ExplicitCurve, DenseBranchesLeaveHoles)
{
    struct {
        const char* Line;
        int From; // columns that are full
        int To;
        double Top;
    } const cases[] = {
        {"y=tan(40/x)", 470, 530, 799.5},         {"y=tan(e^x)", 900, 1000, 799.5},
        {"y=tan(500*x)", 0, 1000, 799.5},         {"y=1/sin(1000*x)+1/cos(999*x)", 0, 1000, 799.5},
        {"y=sin(x)*tan(500*x)", 520, 640, 799.5}, {"y=log(abs(sin(1000*x)))", 0, 1000, 399.5},
    };
    for (const auto& c : cases) {
        CurveSheet sheet(c.Line);
        const Pixels drawn = Drawn(sheet.Trace().Curves);
        Pixels full;
        for (int u = c.From; u < c.To; ++u)
            full.Line({u + 0.5, 0.5}, {u + 0.5, c.Top});
        EXPECT_EQ(full.FarFrom(drawn), 0) << c.Line;
        EXPECT_EQ(sheet.Curves.Hatched, 0) << c.Line;
    }
}

TEST(ExplicitCurve, PiecesAreJoinedOrEndAtTheWrongPlace)
{
    const double atan1 = std::atan(0.1) * 50;
    const double half = std::acos(-1.0) / 2 * 50;
    const double root8 = 50 / std::sqrt(8.0); // where 1/x^2 leaves the window
    const PieceCase cases[] = {
        {"y=abs(x)/x", {{{0, 350}, {500, 350}}, {{500, 450}, {1000, 450}}}},
        {"y=atan(1/x)",
         {{{0, 400 - atan1}, {500, 400 - half}}, {{500, 400 + half}, {1000, 400 + atan1}}}},
        {"y=1/x^2", {{{0, 400.5}, {500 - root8, 800}}, {{500 + root8, 800}, {1000, 400.5}}}},
        {"y=1/x", {{{0, 395}, {493.75, 0}}, {{506.25, 800}, {1000, 405}}}},
        {"x=1/y", {{{0, 395}, {493.75, 0}}, {{506.25, 800}, {1000, 405}}}},
        {"y=sin(x)/x", {{{0, 400 + 5 * std::sin(10.0)}, {1000, 400 + 5 * std::sin(10.0)}}}},
        {"y=x^(0.5)", {{{500, 400}, {1000, 400 + 50 * std::sqrt(10.0)}}}},
        {"y=(x-1.2345)^(0.5)", {{{561.725, 400}, {1000, 400 + 50 * std::sqrt(8.7655)}}}},
        {"y=asin(x)", {{{450, 400 - half}, {550, 400 + half}}}},
        {"y=(9-x^2)^(0.5)", {{{350, 400}, {650, 400}}}},
        {"x=y^2-1", {{{1000, 400 - 50 * std::sqrt(11.0)}, {1000, 400 + 50 * std::sqrt(11.0)}}}},
        {"y=(x-3)^(0.5)*(3-x)^(0.5)", {{{650, 400}}}},
        {"y=9", {}},
        {"y=(x-3)^(0.5)*(1-x)^(0.5)", {}},
        {"y=asin(2+x^2)", {}},
    };
    for (const PieceCase& c : cases) {
        CurveSheet sheet(c.Line);
        auto pieces = sheet.Trace().Curves.Pieces;
        std::ranges::sort(pieces, {}, Left);
        EXPECT_EQ(pieces.size(), c.Ends.size()) << c.Line;
        EXPECT_EQ(sheet.Curves.Hatched, 0) << c.Line;
        for (std::size_t i = 0; i < std::min(pieces.size(), c.Ends.size()); ++i) {
            for (const LatticePoint& end : c.Ends[i]) {
                const auto distance = [&](const LatticePoint& p) {
                    return std::hypot(p.U - end.U, p.V - end.V);
                };
                const double least =
                    std::min(distance(pieces[i].front()), distance(pieces[i].back()));
                EXPECT_LT(least, 0.025) << c.Line << " at " << end.U << ", " << end.V;
            }
        }
    }
}

// Poles of tan(10 x) are at (k + 1/2) pi / 10: 64 from -10 to 10, with 63 branches between them.
TEST(ExplicitCurve, BranchesCrossPolesOrEndBeforeTheEdge)
{
    CurveSheet sheet("y=tan(10*x)");
    int full = 0;
    for (const auto& piece : sheet.Trace().Curves.Pieces) {
        const auto [low, high] = std::minmax(piece.front().V, piece.back().V);
        full += low < 0.001 && high > 799.999 ? 1 : 0;
        const double left = (Left(piece) - 500) / 50;
        const double right = (std::max(piece.front().U, piece.back().U) - 500) / 50;
        const double pi = std::acos(-1.0);
        EXPECT_EQ(std::floor(left * 10 / pi + 0.5), std::floor(right * 10 / pi + 0.5)) << left;
    }
    EXPECT_EQ(sheet.Curves.Pieces.size(), 65U);
    EXPECT_EQ(full, 63);
}

// Down to e^-50 from the pole, which only for the first is as far as doubles can be told apart.
TEST(ExplicitCurve, LogarithmsEndInTheAir)
{
    for (const char* line : {"y=log(abs(x))", "y=log(abs(x-1))", "y=1-log(x-1)"}) {
        CurveSheet sheet(line, 0.02, 0.125);
        double lowest = 800;
        double highest = 0;
        for (const auto& piece : sheet.Trace().Curves.Pieces) {
            for (const LatticePoint& point : piece) {
                lowest = std::min(lowest, point.V);
                highest = std::max(highest, point.V);
            }
        }
        EXPECT_LT(std::min(lowest, 800 - highest), 1e-3) << line;
    }
}

TEST(ExplicitCurve, StepChangesTheCurve)
{
    for (const double step : {0.25, 1.0, 7.0, 100.0, 5000.0}) {
        CurveSheet sheet("y=x*sin(1/x)+tan(x)");
        const Pixels drawn = Drawn(sheet.Trace(step).Curves);
        const Pixels truth = Truth(sheet, [](Real x) { return x * std::sin(1 / x) + std::tan(x); });
        EXPECT_EQ(truth.FarFrom(drawn), 0) << step;
        EXPECT_EQ(drawn.FarFrom(truth), 0) << step;
    }
}

TEST(ExplicitCurve, EndsLateOrDrawsWhatIsNotProven)
{
    CurveSheet stopped("y=sin(e^x)");
    stopped.Host.StopAfter = 0;
    EXPECT_EQ(stopped.Trace().End, Pace::Stop);
    EXPECT_LE(stopped.Host.Questions, 1);

    CurveSheet late("y=tan(20*x)");
    EXPECT_EQ(late.Trace(0.5, 0).End, Pace::TimeUp);
    EXPECT_GT(late.Curves.Hatched, 0);
    const auto tangent = [](Real x) { return std::tan(20 * x); };
    EXPECT_EQ(Drawn(late.Curves).FarFrom(Truth(late, tangent)), 0);
    EXPECT_GT(late.Stats.UnresolvedPixels, 0);
}

} // namespace kelvane
