#pragma once

#include <cstdint>

#include "graph/view.h"

namespace kelvane {

// The sample abscissae of one equation: from XMin to XMax times ZoomFactor, both included, Step2D
// times ZoomFactor apart, as singles. Index i from 0 to Count - 1.
//
// Each is computed from its index, so that rounding does not add up over a long sweep. There are at
// most kMaxSamples: singles lie no closer in the outer half of a range, and a smaller step than
// that would draw the same points again.
struct Sweep {
    static constexpr std::int64_t kMaxSamples = std::int64_t{1} << 24;

    double Start = 0;
    double End = 0;
    double Step = 0;
    std::int64_t Count = 0; // 0 where the range is empty or not finite

    // The abscissa, never beyond End.
    float At(std::int64_t index) const;
};

Sweep MakeSweep(const ViewState& view);

} // namespace kelvane
