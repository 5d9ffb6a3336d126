#pragma once

#include <cstdint>

namespace kelvane {

// How the axes of a 3D sheet are laid out on the surface, as the 3D setup chose it: with a receding
// axis at Axis3DHalfAngle degrees, which is half the angle typed, or the simple cross of 45
// degrees.
struct AxisModel {
    bool RealWorldAxis = true;
    std::int16_t Axis3DHalfAngle = 22;
};

} // namespace kelvane
