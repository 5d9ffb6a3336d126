#include <algorithm>

#include "engine/checks.h"
#include "engine/point_evaluation.h"
#include "graph/plotting.h"
#include "graph/sweep.h"

namespace kelvane {

namespace {

// Evaluates and plots one sample.
void PlotSample(const DrawContext& context, const Equation& equation, float s)
{
    EvalState& eval = context.Eval;
    eval.EvalX = s + context.View.CenterX;
    eval.EvalError = false;
    SimpleY(eval, equation);
    ++context.Stats.Samples;
    if (eval.EvalSkip || eval.EvalError)
        ++context.Stats.Failed;
    else
        PlotPoint2D(context, eval.EvalX - context.View.CenterX, context.View.CenterY + eval.EvalY);
}

DrawEnd SweepEquation(const DrawContext& context, int number)
{
    const Equation& equation = context.Table.At(number);
    const Sweep sweep = MakeSweep(context.View);
    const double skipSpan = static_cast<double>(context.View.ZoomFactor) * context.Flags.SkipUnits;
    const auto skip = static_cast<std::int64_t>(
        std::min(skipSpan / sweep.Step, static_cast<double>(sweep.Count)));
    ProgressMeter progress(context);
    for (std::int64_t i = 0; i < sweep.Count; ++i) {
        if (context.Eval.EvalSkip)
            i = std::min(i + skip, sweep.Count - 1);
        context.Eval.EvalSkip = false;
        const float s = sweep.At(i);
        PlotSample(context, equation, s);
        if (!progress.GoOn(s))
            return DrawEnd::Stopped;
    }
    return DrawEnd::Complete;
}

} // namespace

DrawEnd DrawSimple2D(const DrawContext& context)
{
    for (int number = 1; number <= context.Table.EquationCount + 1; ++number) {
        context.Host.SetProgressColor(kProgressGreen);
        if (!context.Ticks.On(number))
            continue;
        BeginEquation(context, number);
        if (const auto fault = CheckYEquals(context.Table, number)) {
            context.Host.ShowMessage(DescribeFault(*fault, context.Table));
            return DrawEnd::Refused;
        }
        if (SweepEquation(context, number) == DrawEnd::Stopped)
            return DrawEnd::Stopped;
        EndEquation(context);
    }
    return DrawEnd::Complete;
}

} // namespace kelvane
