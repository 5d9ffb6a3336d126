#include "graph/draw_driver.h"

#include "engine/checks.h"
#include "graph/plotting.h"

namespace kelvane {

namespace {

// What the calculation settings ask for on a sheet.
enum class Calculation : std::uint8_t { Simple, Advanced, DoubleDraw, MultiDraw, DoubleMultiDraw };

using Routine = DrawEnd (*)(const DrawContext&);

struct RoutineRow {
    bool Mode3D;
    bool AltFamily;
    Calculation Kind;
    Routine Run;
};

constexpr RoutineRow kRoutines[] = {
    {false, false, Calculation::Simple, DrawSimple2D},
    {false, false, Calculation::Advanced, DrawAdvanced2D},
    {false, false, Calculation::DoubleDraw, DrawDoubleDraw2D},
    {false, false, Calculation::MultiDraw, DrawMultiDraw2D},
    {false, false, Calculation::DoubleMultiDraw, DrawDoubleMultiDraw2D},
    {false, true, Calculation::Simple, DrawCompleteSimple2D},
    {false, true, Calculation::Advanced, DrawCompleteAdvanced2D},
    {false, true, Calculation::DoubleDraw, DrawCompleteAdvanced2D},
    {false, true, Calculation::MultiDraw, DrawCompleteAdvanced2D},
    {false, true, Calculation::DoubleMultiDraw, DrawCompleteAdvanced2D},
};

Calculation ChooseCalculation(const CalculationModes& modes)
{
    if ((modes.Mode3D ? modes.CalcMode3D : modes.CalcMode2D) == CalcMode::Simple)
        return Calculation::Simple;
    const bool doubleDraw = !modes.Mode3D && modes.DoubleDraw == TickState::On;
    const bool multiDraw = !modes.Mode3D && modes.MultiDraw == TickState::On;
    if (doubleDraw && multiDraw)
        return Calculation::DoubleMultiDraw;
    if (doubleDraw)
        return Calculation::DoubleDraw;
    return multiDraw ? Calculation::MultiDraw : Calculation::Advanced;
}

// The routine for the settings, or nullptr.
Routine ChooseRoutine(const CalculationModes& modes)
{
    const Calculation kind = ChooseCalculation(modes);
    for (const RoutineRow& row : kRoutines) {
        if (row.Mode3D == modes.Mode3D && row.AltFamily == modes.AltFamily && row.Kind == kind)
            return row.Run;
    }
    return nullptr;
}

void ReadFlags(const DrawContext& context)
{
    DrawFlags& flags = context.Flags;
    flags.GradientOn = context.Settings.Coloring == Coloring2D::Gradual;
    flags.Matrix2DOn = !IsIdentity2D(context.ViewMatrix);
    flags.Matrix3DOn = !IsIdentity3D(context.ViewMatrix);
    flags.JoinPoints = context.Settings.Style == PointStyle::Line;
    flags.SkipUnits = 1;
}

std::optional<EquationFault> PrepareAndCheck(EquationTable& table, const SheetText& sheet,
                                             const EquationTicks& ticks,
                                             const CalculationModes& modes)
{
    if (const auto fault = PrepareEquations(table, sheet))
        return fault;
    return CheckEquations(table, ticks, modes);
}

// Everything before the routine; gives the routine, or the fault to show.
std::optional<EquationFault> Begin(const DrawContext& context, Routine& routine)
{
    if (const auto fault =
            PrepareAndCheck(context.Table, context.Sheet, context.Ticks, context.Modes))
        return fault;
    context.Colors.ColorIndex = 1;
    context.Colors.GradientLast = 0;
    if (!AnyEquationOn(context.Table, context.Ticks, context.Host))
        return EquationFault{Fault::NothingTicked};
    if (!UpdatePixPerStep(context.View))
        return EquationFault{Fault::ZoomFactorZero};
    ReadFlags(context);
    context.View.PrevX = kNoPoint;
    ResetColumnCache(context.View);
    context.Eval.EvalSkip = false; // an earlier solve may have left it
    routine = ChooseRoutine(context.Modes);
    if (routine == nullptr)
        return EquationFault{Fault::RoutineMissing};
    return std::nullopt;
}

DrawEnd DrawPrepared(const DrawContext& context)
{
    const double start = context.Time.Seconds();
    Routine routine = nullptr;
    const auto fault = Begin(context, routine);
    const double prepared = context.Time.Seconds();
    context.Stats.PrepareSeconds = prepared - start;
    if (fault) {
        context.Host.ShowMessage(DescribeFault(*fault, context.Table));
        return DrawEnd::Refused;
    }
    context.Target.SetLineWidth(context.Settings.DrawWidth);
    const DrawEnd end = routine(context);
    context.Stats.SweepSeconds = context.Time.Seconds() - prepared;
    return end;
}

} // namespace

DrawEnd Draw(const DrawContext& context)
{
    context.Stats = {};
    const DrawEnd end = DrawPrepared(context);
    context.Table.Clear();
    return end;
}

bool AnyEquationOn(const EquationTable& table, const EquationTicks& ticks, DrawHost& host)
{
    bool any = false;
    for (int number = 1; number <= table.EquationCount + 1; ++number) {
        host.SetProgressColor(kProgressGreen);
        any = any || ticks.On(number);
    }
    return any;
}

std::optional<EquationFault> FindFault(EquationTable& table, const SheetText& sheet,
                                       const EquationTicks& ticks, const CalculationModes& modes)
{
    if (const auto fault = PrepareAndCheck(table, sheet, ticks, modes))
        return fault;
    const CalcMode mode = modes.Mode3D ? modes.CalcMode3D : modes.CalcMode2D;
    const auto begins = modes.Mode3D ? CheckZEquals : CheckYEquals;
    for (int number = 1; mode == CalcMode::Simple && number <= table.EquationCount + 1; ++number) {
        if (!ticks.On(number))
            continue;
        if (const auto fault = begins(table, number))
            return fault;
    }
    return std::nullopt;
}

} // namespace kelvane
