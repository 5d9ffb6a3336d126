#include "app/shared_state.h"

namespace kelvane {

DrawContext MakeDrawContext(SharedState& state, Surface& surface, DrawHost& host,
                            const Clock& clock)
{
    return {state.Table,      state.Eval,  state.View,  state.Flags, state.Colors,
            state.Stats,      state.Sheet, state.Ticks, state.Modes, state.Settings,
            state.ViewMatrix, surface,     host,        clock};
}

} // namespace kelvane
