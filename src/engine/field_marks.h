#pragma once

#include <cstdint>

namespace kelvane {

// What is known of f over a whole box, as bits. None of them: f is defined and continuous on it.
inline constexpr std::int64_t kPartlyUndefined = 1; // may lack a value somewhere on the box

// May be not continuous, or have a pole, a place without a value across which it jumps: a divisor
// may be 0. Always with kPartlyUndefined. Roots, logarithms and arc functions at the edge of their
// domains only set the latter.
inline constexpr std::int64_t kMayJump = 2;

inline constexpr std::int64_t kNowhereDefined = 4; // has no value on the box; proven

} // namespace kelvane
