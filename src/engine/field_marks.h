#pragma once

#include <cstdint>

namespace kelvane {

// What is known of f over a whole box, as bits. None of them: f is defined and continuous on it.
inline constexpr std::int64_t kPartlyUndefined = 1; // may lack a value somewhere on the box
inline constexpr std::int64_t kMayJump = 2;         // may be not continuous where it has values
inline constexpr std::int64_t kNowhereDefined = 4;  // has no value on the box; proven

} // namespace kelvane
