// Solving equations for y by bisection at 4096 values of x: PointSolver, SolveY, and the same
// bisection with muParser and with C++ that the compiler sees.

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "engine/point_blocks.h"
#include "subjects.h"

namespace {

using namespace kelvane;

constexpr SolveRange kRange{.Low = -10, .High = 10, .Tolerance = 0.0125F};

// SolveY's search among falling solutions, with left - right from elsewhere. NaN where it fails.
template <typename Difference>
double Bisect(const Difference& difference)
{
    double low = kRange.Low;
    double high = kRange.High;
    for (int i = 0; i < kMaxHalvings; ++i) {
        const double middle = (low + high) / 2;
        const double apart = difference(middle);
        if (!std::isfinite(apart))
            break;
        (apart > 0 ? high : low) = middle;
        if (std::trunc((high - low) * 1000) == 0)
            break;
        if (std::fabs(apart) < kRange.Tolerance)
            return middle;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

// How many samples have a solution. The solutions are left in y.
template <typename Difference>
std::int64_t BisectAll(const Samples& x, Samples& y, const Difference& difference)
{
    std::int64_t solved = 0;
    for (std::size_t i = 0; i < kSamples; ++i) {
        y[i] = Bisect([&](double middle) { return difference(x[i], middle); });
        solved += std::isnan(y[i]) ? 0 : 1;
    }
    return solved;
}

template <auto Difference>
std::int64_t NativeSolved(const Samples& x, Samples& y)
{
    return BisectAll(x, y, Difference);
}

struct Curve {
    const char* Line;
    const char* MuParser; // left - right
    std::int64_t (*Native)(const Samples& x, Samples& y);
};

const std::array<Curve, 3> kCurves{{
    {"x^2+y^2=100", "x^2+y^2-100",
     NativeSolved<[](double x, double y) { return x * x + y * y - 100; }>},
    {"x^3+y^3=6xy", "x^3+y^3-6*x*y",
     NativeSolved<[](double x, double y) { return x * x * x + y * y * y - 6 * x * y; }>},
    {"y+siny=x", "y+sin(y)-x",
     NativeSolved<[](double x, double y) { return y + std::sin(y) - x; }>},
}};

// What a curve's ways work on. Must stay where it is.
struct Subject {
    explicit Subject(const Curve& curve)
        : Source(Prepared(curve.Line))
        , Compiled(CompileEquation(Source))
        , Parser(MakeRival(curve.MuParser, {{"x", &ParserX}, {"y", &ParserY}}))
    {
        if (!Compiled.IsCompiled())
            Fail(std::string("not compiled: ") + curve.Line);
        Search.Halves.fill(SolveHalf::Falling);
    }

    Equation Source;
    CompiledEquation Compiled;
    Samples X = SpreadX();
    Samples Y{};
    std::vector<BlockPoints> Blocks = SpreadBlocks();
    BlockSearch Search{.Variable = Dependent::Y, .Range = kRange};
    BlockResults Results;
    double ParserX = 0;
    double ParserY = 0;
    Rival Parser;
};

std::int64_t RunPlain(Subject& subject)
{
    EvalState state;
    state.RightStart = EquationsStart(subject.Source);
    std::int64_t solved = 0;
    for (std::size_t i = 0; i < kSamples; ++i) {
        state.EvalX = static_cast<float>(subject.X[i]);
        state.EvalError = false;
        subject.Y[i] = SolveY(state, subject.Source, kRange);
        solved += state.EvalError ? 0 : 1;
    }
    return solved;
}

std::int64_t RunMuParser(Subject& subject)
{
    return BisectAll(subject.X, subject.Y, [&](double x, double y) {
        subject.ParserX = x;
        subject.ParserY = y;
        return subject.Parser.Eval();
    });
}

std::int64_t RunBlocks(Subject& subject, PointSolver& solver)
{
    std::int64_t solved = 0;
    for (const BlockPoints& points : subject.Blocks) {
        solver.Solve(subject.Compiled, points, kBlockPoints, subject.Search, subject.Results);
        for (const PointOutcome outcome : subject.Results.Outcome)
            solved += outcome == PointOutcome::Found ? 1 : 0;
    }
    return solved;
}

void AddCurve(Comparison& comparison, const Curve& curve)
{
    const auto subject = std::make_shared<Subject>(curve);
    const std::int64_t expected = curve.Native(subject->X, subject->Y);
    const std::string row = std::string(curve.Line) + ", " + std::to_string(expected) + " solved";
    const auto add = [&](const std::string& way, const std::function<std::int64_t()>& run) {
        // Our numbers are singles, so a few samples may come out differently.
        if (const std::int64_t solved = run(); std::abs(solved - expected) * 50 > expected)
            Fail(way + " solves " + std::to_string(solved) + " samples: " + row);
        Add(comparison, row, way, run);
    };
    add("native", [=] { return curve.Native(subject->X, subject->Y); });
    add("plain", [=] { return RunPlain(*subject); });
    if (kHasRival)
        add("muParser", [=] { return RunMuParser(*subject); });
    for (const auto& [level, name] : kLevels)
        if (HasLevel(level))
            add(name,
                [=, solver = PointSolver(level)]() mutable { return RunBlocks(*subject, solver); });
}

} // namespace

int main(int argc, char** argv)
{
    Comparison comparison = EngineComparison(
        "Solving equations by bisection",
        "Solutions y from -10 to 10, accepted where both sides differ by less than 0.0125, at 4096 "
        "values of x from -10 to 10: the same bisection with C++ for the baseline processor "
        "(native), with muParser's Eval() and with the plain evaluator, and blocks of bisections "
        "with the block evaluator.",
        "solved sample");
    for (const Curve& curve : kCurves)
        AddCurve(comparison, curve);
    return Run(comparison, argc, argv);
}
