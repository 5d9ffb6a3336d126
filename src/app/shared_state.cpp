#include "app/shared_state.h"

namespace kelvane {

namespace {

DrawContext ContextOf(SharedState& state, const SheetText& sheet, const EquationTicks& ticks,
                      Surface& surface, DrawHost& host, const Clock& clock)
{
    return {state.Table,      state.Eval, state.View, state.Flags, state.Colors,
            state.Stats,      sheet,      ticks,      state.Modes, state.Settings,
            state.ViewMatrix, surface,    host,       clock};
}

} // namespace

DrawContext MakeDrawContext(SharedState& state, Surface& surface, DrawHost& host,
                            const Clock& clock)
{
    return ContextOf(state, state.Sheet, state.Ticks, surface, host, clock);
}

DrawContext MakeDrawContext(SharedState& state, const SheetEquations& equations, Surface& surface,
                            DrawHost& host, const Clock& clock)
{
    return ContextOf(state, equations.Sheet, equations.Ticks, surface, host, clock);
}

} // namespace kelvane
