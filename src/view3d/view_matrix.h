#pragma once

#include <array>
#include <utility>

namespace kelvane {

// The transform of the drawing: nine singles m0..m8, rows (m0 m1 m2)(m3 m4 m5)(m6 m7 m8). On a 2D
// sheet only m0, m1, m3 and m4 count.
using Matrix3 = std::array<float, 9>;

inline constexpr Matrix3 kIdentity{1, 0, 0, 0, 1, 0, 0, 0, 1};

// Exact comparisons: any element that differs counts.
bool IsIdentity2D(const Matrix3& matrix);
bool IsIdentity3D(const Matrix3& matrix);

// (m0 x + m1 y, m3 x + m4 y), in single precision.
std::pair<float, float> Transform2D(const Matrix3& matrix, float x, float y);

} // namespace kelvane
