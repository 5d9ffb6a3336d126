#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "engine/point_blocks.h"
#include "graph/plotting.h"
#include "graph/sweep.h"

namespace kelvane {

namespace {

enum class Branches : std::uint8_t {
    One,        // every sample is solved in the direction of the direction test
    Alternating // samples go in turns to two branches, which are solved in opposite directions
};

// What the solution of a form of the equation is.
enum class Solution : std::uint8_t {
    Ordinate, // y at the sample's x
    Abscissa  // of the exchanged formula: x where y is the sample
};

// A branch of the curve as drawn so far: the point to which its next one is joined.
struct BranchEnd {
    float PrevX = kNoPoint;
    float PrevY = 0;
};

// One form of an equation, as typed or exchanged, and what is drawn of it.
class Form {
public:
    // Must stay where it is. Runs the direction test, which reads and writes the state.
    Form(const Equation& equation, Solution solution, Branches branches, PointSolver& solver,
         EvalState& eval)
        : m_equation(solution == Solution::Ordinate ? equation : Exchanged(equation))
        , m_compiled(CompileEquation(m_equation))
        , m_solution(solution)
        , m_branches(branches)
        , m_direction(solver.Direction(m_compiled, Dependent::Y, eval))
    {
    }
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    int BlockSize(const SolveRange& range) const { return SolveBlockSize(m_compiled, range); }

    void Solve(const DrawContext& context, PointSolver& solver, const BlockPoints& points,
               std::int64_t first, int count);
    void Plot(const DrawContext& context, float x, std::int64_t first, int at);

private:
    static Equation Exchanged(Equation equation)
    {
        SwapXY(equation);
        return equation;
    }

    std::size_t BranchOf(std::int64_t sample) const
    {
        return m_branches == Branches::Alternating ? static_cast<std::size_t>(sample % 2) : 0;
    }

    SolveHalf DirectionOf(std::int64_t sample) const
    {
        if (m_branches == Branches::One || sample == 0)
            return m_direction;
        return BranchOf(sample) == 0 ? SolveHalf::Falling : SolveHalf::Rising;
    }

    const Equation m_equation;
    const CompiledEquation m_compiled;
    const Solution m_solution;
    const Branches m_branches;
    const SolveHalf m_direction;
    std::array<BranchEnd, 2> m_ends;
    BlockSearch m_search;
    BlockResults m_results;
};

// Solves the samples first to first + count - 1, whose variables are the points.
void Form::Solve(const DrawContext& context, PointSolver& solver, const BlockPoints& points,
                 std::int64_t first, int count)
{
    m_search.Range = SolveRangeY(context.View);
    for (int at = 0; at < count; ++at)
        m_search.Halves[static_cast<std::size_t>(at)] = DirectionOf(first + at);
    solver.Solve(m_compiled, points, count, m_search, m_results);
    context.Stats.Samples += count;
    context.Stats.Compiled += m_compiled.IsCompiled() ? count : 0;
}

// Plots the solution of the block's sample, x being its world abscissa.
void Form::Plot(const DrawContext& context, float x, std::int64_t first, int at)
{
    const auto index = static_cast<std::size_t>(at);
    if (m_results.Outcome[index] != PointOutcome::Found) {
        ++context.Stats.Failed; // the branch goes on from its last point
        return;
    }
    ViewState& view = context.View;
    BranchEnd& end = m_ends[BranchOf(first + at)];
    view.PrevX = end.PrevX;
    view.PrevY = end.PrevY;
    const float solution = m_results.Value[index];
    if (m_solution == Solution::Ordinate)
        PlotPoint2D(context, x - view.CenterX, view.CenterY + solution);
    else // the ordinate carries the centre's x, as part of the sample, and its y
        PlotPoint2D(context, solution - view.CenterX, view.CenterY + x);
    end = {view.PrevX, view.PrevY};
}

// The sweep of one equation with one or two forms of it.
class AdvancedSweep {
public:
    AdvancedSweep(const DrawContext& context, PointSolver& solver)
        : m_context(context)
        , m_solver(solver)
        , m_sweep(MakeSweep(context.View))
    {
    }

    void Add(std::unique_ptr<Form> form) { m_forms.push_back(std::move(form)); }

    DrawEnd Run();

private:
    void PlotBlock(std::int64_t first, int count);

    const DrawContext& m_context;
    PointSolver& m_solver;
    Sweep m_sweep;
    std::vector<std::unique_ptr<Form>> m_forms;
    BlockPoints m_points;
};

DrawEnd AdvancedSweep::Run()
{
    m_points.Z.fill(m_context.Eval.EvalZ);
    int size = kBlockPoints;
    for (const auto& form : m_forms)
        size = std::min(size, form->BlockSize(SolveRangeY(m_context.View)));
    size = std::max(size / static_cast<int>(m_forms.size()), 1); // a block solves all of them
    return SweepBlocks(m_context, m_sweep, size,
                       [this](std::int64_t first, int count) { PlotBlock(first, count); });
}

void AdvancedSweep::PlotBlock(std::int64_t first, int count)
{
    for (int at = 0; at < count; ++at)
        m_points.X[static_cast<std::size_t>(at)] = m_sweep.At(first + at) + m_context.View.CenterX;
    for (const auto& form : m_forms)
        form->Solve(m_context, m_solver, m_points, first, count);
    for (int at = 0; at < count; ++at) {
        for (const auto& form : m_forms)
            form->Plot(m_context, m_points.X[static_cast<std::size_t>(at)], first, at);
    }
}

enum class Passes : std::uint8_t { AsTyped, AlsoExchanged };

DrawEnd DrawAdvanced(const DrawContext& context, Branches branches, Passes passes)
{
    const auto solver = std::make_unique<PointSolver>();
    return DrawTicked(context, [&](int number) {
        EvalState& eval = context.Eval;
        eval.DirectionToggle = false;
        eval.EvalX = context.View.CenterX; // wherever an earlier sweep has ended
        AdvancedSweep sweep(context, *solver);
        const auto add = [&](Solution solution) {
            sweep.Add(std::make_unique<Form>(context.Table.At(number), solution, branches, *solver,
                                             eval));
        };
        add(Solution::Ordinate);
        if (passes == Passes::AlsoExchanged)
            add(Solution::Abscissa);
        return sweep.Run();
    });
}

} // namespace

DrawEnd DrawAdvanced2D(const DrawContext& context)
{
    return DrawAdvanced(context, Branches::One, Passes::AsTyped);
}

DrawEnd DrawDoubleDraw2D(const DrawContext& context)
{
    return DrawAdvanced(context, Branches::Alternating, Passes::AsTyped);
}

DrawEnd DrawMultiDraw2D(const DrawContext& context)
{
    return DrawAdvanced(context, Branches::One, Passes::AlsoExchanged);
}

DrawEnd DrawDoubleMultiDraw2D(const DrawContext& context)
{
    return DrawAdvanced(context, Branches::Alternating, Passes::AlsoExchanged);
}

} // namespace kelvane
