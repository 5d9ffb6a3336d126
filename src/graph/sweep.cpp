#include "graph/sweep.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelvane {

float Sweep::At(std::int64_t index) const
{
    return static_cast<float>(std::min(Start + static_cast<double>(index) * Step, End));
}

Sweep MakeSweep(const ViewState& view)
{
    Sweep sweep;
    sweep.Start = view.XMin * view.ZoomFactor;
    sweep.End = view.XMax * view.ZoomFactor;
    sweep.Step = view.Step2D * view.ZoomFactor;
    const double span = sweep.End - sweep.Start;
    if (!std::isfinite(span) || span < 0)
        return sweep;
    // The step is a rounded 1 / resolution: its rounding must not cost the last sample.
    const double steps = span / sweep.Step * (1 + std::numeric_limits<float>::epsilon());
    if (sweep.Step > 0 && steps < Sweep::kMaxSamples - 1) {
        sweep.Count = static_cast<std::int64_t>(steps) + 1;
    } else {
        sweep.Count = span > 0 ? Sweep::kMaxSamples : 1;
        sweep.Step = span / (Sweep::kMaxSamples - 1);
    }
    return sweep;
}

} // namespace kelvane
