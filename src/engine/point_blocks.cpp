#include "engine/point_blocks.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

// Most steps of a program take 0.1 to 2 ns a point, and so do angles and powers, unless the C
// library or single lanes have to do them; a slot of the plain evaluator takes some 20 ns. A block
// of so many steps stays well below the time of a screen's frame.
constexpr std::size_t kStepsABlock = 1'000'000;
constexpr std::size_t kStepsASlot = 10;
constexpr std::size_t kStepsAnAngle = 20;

std::size_t StepsOf(const Instruction& instruction)
{
    switch (instruction.Code) {
    case Operation::Sine:
    case Operation::Cosine:
    case Operation::Tangent:
    case Operation::Power:
    case Operation::BasePower:
        return kStepsAnAngle;
    default:
        return 1;
    }
}

std::size_t Steps(const CompiledSide& side)
{
    if (!side.Code.IsCompiled())
        return kStepsASlot * (side.Source->Slots.size() + 1);
    std::size_t steps = 0;
    for (const Instruction& instruction : side.Code.Code)
        steps += StepsOf(instruction);
    return steps;
}

// How often the range is halved until a search gives up.
std::size_t HalvingsOf(const SolveRange& range)
{
    const double width = (static_cast<double>(range.High) - range.Low) * 1000;
    const double halvings = std::ceil(std::log2(std::max(std::fabs(width), 1.0))) + 1;
    return static_cast<std::size_t>(std::fmin(halvings, kMaxHalvings)); // also for NaN
}

int SizeFor(std::size_t stepsAPoint)
{
    const std::size_t points = kStepsABlock / stepsAPoint;
    return static_cast<int>(std::clamp<std::size_t>(points, 1, kBlockPoints));
}

PointOutcome OutcomeOf(std::int64_t status)
{
    switch (status) {
    case BisectionStep::kSolved:
        return PointOutcome::Found;
    case BisectionStep::kFailed:
        return PointOutcome::Failed;
    default:
        return PointOutcome::GaveUp; // the last halving ends every search
    }
}

} // namespace

CompiledEquation CompileEquation(const Equation& equation)
{
    return {CompileSide(equation, 1), CompileSide(equation, EquationsStart(equation))};
}

int SimpleBlockSize(const CompiledEquation& equation)
{
    return SizeFor(Steps(equation.Right));
}

int SolveBlockSize(const CompiledEquation& equation, const SolveRange& range)
{
    return SizeFor((Steps(equation.Left) + Steps(equation.Right)) * HalvingsOf(range));
}

PointSolver::PointSolver(VectorLevel level)
    : m_evaluator(level)
{
}

void PointSolver::Simple(const CompiledEquation& equation, BlockPoints& points, int count,
                         BlockResults& results)
{
    m_evaluator.Evaluate(equation.Right, points, count, m_right);
    for (std::size_t at = 0; at < static_cast<std::size_t>(count); ++at) {
        results.Value[at] = static_cast<float>(m_right.At[at]);
        results.Outcome[at] =
            std::isfinite(results.Value[at]) ? PointOutcome::Found : PointOutcome::Failed;
    }
}

SolveHalf PointSolver::Direction(const CompiledEquation& equation, Dependent dependent,
                                 EvalState& state)
{
    constexpr int kSamples = 3;
    BlockPoints& points = m_searches.Points;
    std::fill_n(points.X.begin(), kSamples, state.EvalX);
    std::fill_n(points.Y.begin(), kSamples, state.EvalY);
    std::fill_n(points.Z.begin(), kSamples, state.EvalZ);
    auto& variable = dependent == Dependent::Y ? points.Y : points.Z;
    variable[0] = 1;
    variable[1] = 0;
    variable[2] = -1;
    m_evaluator.Evaluate(equation.Left, points, kSamples, m_left);
    m_evaluator.Evaluate(equation.Right, points, kSamples, m_right);
    (dependent == Dependent::Y ? state.EvalY : state.EvalZ) = -1;
    return JudgeDirection(state, m_right.At[0] - m_left.At[0], m_right.At[1] - m_left.At[1],
                          m_right.At[2] - m_left.At[2]);
}

void PointSolver::Begin(const BlockPoints& points, int count, const BlockSearch& search)
{
    m_searches.Points = points;
    m_searches.Count = count;
    for (std::size_t at = 0; at < static_cast<std::size_t>(count); ++at) {
        m_searches.Low[at] = search.Range.Low;
        m_searches.High[at] = search.Range.High;
        m_searches.Rising[at] = search.Halves[at] == SolveHalf::Rising ? -1 : 0;
        m_searches.Status[at] = BisectionStep::kActive;
        m_searches.Point[at] = static_cast<std::uint16_t>(at);
    }
    FillUp();
}

// What fills the last vectors is not to be counted as active.
void PointSolver::FillUp()
{
    std::fill(m_searches.Status.begin() + m_searches.Count,
              m_searches.Status.begin() + WholeVectors(m_searches.Count), BisectionStep::kFailed);
}

// Halves all intervals once; how many searches go on.
std::int64_t PointSolver::Step(const CompiledEquation& equation, const BlockSearch& search)
{
    Searches& now = m_searches;
    const KernelSet& kernels = m_evaluator.Kernels();
    const int whole = WholeVectors(now.Count);
    auto& middle = search.Variable == Dependent::Y ? now.Points.Y : now.Points.Z;
    kernels.Halve(now.Low.data(), now.High.data(), middle.data(), whole);
    m_evaluator.Evaluate(equation.Left, now.Points, now.Count, m_left);
    m_evaluator.Evaluate(equation.Right, now.Points, now.Count, m_right);
    return kernels.Narrow({.Low = now.Low.data(),
                           .High = now.High.data(),
                           .Middle = middle.data(),
                           .Left = m_left.At.data(),
                           .Right = m_right.At.data(),
                           .Rising = now.Rising.data(),
                           .Answer = now.Answer.data(),
                           .Status = now.Status.data(),
                           .Tolerance = search.Range.Tolerance,
                           .Count = whole});
}

// Writes down the searches that have ended and moves the others together.
void PointSolver::TakeEnded(BlockResults& results)
{
    Searches& now = m_searches;
    std::size_t kept = 0;
    for (std::size_t at = 0; at < static_cast<std::size_t>(now.Count); ++at) {
        const std::size_t point = now.Point[at];
        results.Value[point] = static_cast<float>(now.Answer[at]);
        results.Outcome[point] = OutcomeOf(now.Status[at]);
        now.Points.X[kept] = now.Points.X[at];
        now.Points.Y[kept] = now.Points.Y[at];
        now.Points.Z[kept] = now.Points.Z[at];
        now.Low[kept] = now.Low[at];
        now.High[kept] = now.High[at];
        now.Rising[kept] = now.Rising[at];
        now.Point[kept] = now.Point[at];
        kept += now.Status[at] == BisectionStep::kActive ? 1U : 0U;
    }
    now.Count = static_cast<int>(kept);
    std::fill_n(now.Status.begin(), kept, BisectionStep::kActive);
    FillUp();
}

void PointSolver::Solve(const CompiledEquation& equation, const BlockPoints& points, int count,
                        const BlockSearch& search, BlockResults& results)
{
    Begin(points, count, search);
    for (int i = 0; i < kMaxHalvings && m_searches.Count > 0; ++i) {
        const std::int64_t active = Step(equation, search);
        if (active * 4 <= static_cast<std::int64_t>(m_searches.Count) * 3)
            TakeEnded(results);
    }
    if (m_searches.Count > 0)
        TakeEnded(results);
}

} // namespace kelvane
