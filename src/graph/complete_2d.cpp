#include <algorithm>
#include <memory>

#include "engine/checks.h"
#include "engine/field.h"
#include "graph/explicit_curve.h"
#include "graph/implicit_curve.h"
#include "graph/plotting.h"

namespace kelvane {

namespace {

// Columns are no narrower than this, in pixels: what happens within one is found anyway.
constexpr double kNarrowestColumn = 0.25;
constexpr double kUsualColumn = 0.5;

// Shares the time among the equations: each may take what is left, divided by how many are left.
class TimeShares {
public:
    explicit TimeShares(const DrawContext& context)
        : m_time(context.Time)
        , m_end(context.Time.Seconds() + context.Settings.BudgetSeconds)
    {
        for (int number = 1; number <= context.Table.EquationCount + 1; ++number)
            m_left += context.Ticks.On(number) ? 1 : 0;
    }

    double Next() { return (m_end - m_time.Seconds()) / std::max(m_left--, 1); }

private:
    const Clock& m_time;
    double m_end;
    int m_left = 0;
};

bool IsGraph(const std::optional<double>& slope)
{
    return slope && *slope != 0;
}

Pace Search(const CurveSearch& search, double stepS)
{
    const PixelLattice& lattice = search.Lattice;
    if (lattice.Width == 0)
        return Pace::GoOn;
    if (!search.Formula.IsCompiled()) {
        search.Sketch.AddUnresolved(
            {0, 0, static_cast<double>(lattice.Width), static_cast<double>(lattice.Height)});
        return Pace::GoOn;
    }
    if (IsGraph(search.Formula.ConstantAlongY))
        return TraceExplicit(search, GraphOver::X,
                             std::max(stepS / lattice.UnitS, kNarrowestColumn));
    if (IsGraph(search.Formula.ConstantAlongX))
        return TraceExplicit(search, GraphOver::Y, kUsualColumn);
    return TraceImplicit(search);
}

DrawEnd DrawCurve(const DrawContext& context, FieldRunner& runner, int number, double seconds)
{
    const ViewState& view = context.View;
    const Field field = CompileField(context.Table.At(number));
    const PixelLattice lattice = MakeLattice(view, context.ViewMatrix, context.Target.Size());
    CurveSketch sketch(context, lattice);
    DrawPace pace(context, sketch, seconds);
    const double step = static_cast<double>(view.Step2D) * view.ZoomFactor;
    const Pace end = Search({field, lattice, runner, pace, sketch, context.Stats}, step);
    if (end == Pace::Stop)
        return DrawEnd::Stopped;
    sketch.Plot();
    if (!context.Host.MayGoOn())
        return DrawEnd::Stopped;
    sketch.PlotUnresolved();
    return DrawEnd::Complete;
}

} // namespace

DrawEnd DrawCompleteSimple2D(const DrawContext& context)
{
    const auto runner = std::make_unique<FieldRunner>();
    TimeShares shares(context);
    return DrawTicked(context, [&](int number) {
        if (const auto fault = CheckYEquals(context.Table, number)) {
            context.Host.ShowMessage(DescribeFault(*fault, context.Table));
            return DrawEnd::Refused;
        }
        return DrawCurve(context, *runner, number, shares.Next());
    });
}

DrawEnd DrawCompleteAdvanced2D(const DrawContext& context)
{
    const auto runner = std::make_unique<FieldRunner>();
    TimeShares shares(context);
    return DrawTicked(
        context, [&](int number) { return DrawCurve(context, *runner, number, shares.Next()); });
}

} // namespace kelvane
