#include <algorithm>
#include <cstddef>
#include <memory>

#include "engine/checks.h"
#include "engine/point_blocks.h"
#include "graph/plotting.h"
#include "graph/sweep.h"

namespace kelvane {

namespace {

// A right side with y in it (which passes the checks directly after "=") continues from the result
// of the sample before, so its samples cannot be evaluated together.
bool ReadsItsOwnResult(const CompiledSide& right)
{
    const auto& slots = right.Source->Slots;
    const auto start = std::min(static_cast<std::size_t>(right.Start) - 1, slots.size());
    return std::any_of(slots.begin() + static_cast<std::ptrdiff_t>(start), slots.end(),
                       [](const Slot& slot) { return slot.Tok == Token::Y; });
}

// The sweep of one equation, a block of samples at a time.
class SimpleSweep {
public:
    SimpleSweep(const DrawContext& context, PointSolver& solver, const Equation& equation)
        : m_context(context)
        , m_solver(solver)
        , m_equation(CompileEquation(equation))
        , m_sweep(MakeSweep(context.View))
        , m_blockSize(ReadsItsOwnResult(m_equation.Right) ? 1 : SimpleBlockSize(m_equation))
    {
    }

    DrawEnd Run();

private:
    void PlotBlock(std::int64_t first, int count);

    const DrawContext& m_context;
    PointSolver& m_solver;
    CompiledEquation m_equation;
    Sweep m_sweep;
    int m_blockSize;
    BlockPoints m_points;
    BlockResults m_results;
};

void SimpleSweep::PlotBlock(std::int64_t first, int count)
{
    EvalState& eval = m_context.Eval;
    const ViewState& view = m_context.View;
    const auto size = static_cast<std::size_t>(count);
    for (std::size_t at = 0; at < size; ++at)
        m_points.X[at] = m_sweep.At(first + static_cast<std::int64_t>(at)) + view.CenterX;
    std::fill_n(m_points.Y.begin(), size, eval.EvalY);
    std::fill_n(m_points.Z.begin(), size, eval.EvalZ);
    m_solver.Simple(m_equation, m_points, count, m_results);
    for (std::size_t at = 0; at < size; ++at) {
        eval.EvalX = m_points.X[at];
        eval.EvalError = m_results.Outcome[at] != PointOutcome::Found;
        if (eval.EvalError) {
            ++m_context.Stats.Failed;
            continue;
        }
        eval.EvalY = m_results.Value[at];
        PlotPoint2D(m_context, eval.EvalX - view.CenterX, view.CenterY + eval.EvalY);
    }
    m_context.Stats.Samples += count;
    m_context.Stats.Compiled += m_equation.IsCompiled() ? count : 0;
}

DrawEnd SimpleSweep::Run()
{
    return SweepBlocks(m_context, m_sweep, m_blockSize,
                       [this](std::int64_t first, int count) { PlotBlock(first, count); });
}

} // namespace

DrawEnd DrawSimple2D(const DrawContext& context)
{
    const auto solver = std::make_unique<PointSolver>();
    return DrawTicked(context, [&](int number) {
        if (const auto fault = CheckYEquals(context.Table, number)) {
            context.Host.ShowMessage(DescribeFault(*fault, context.Table));
            return DrawEnd::Refused;
        }
        return SimpleSweep(context, *solver, context.Table.At(number)).Run();
    });
}

} // namespace kelvane
