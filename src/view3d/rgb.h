#pragma once

#include <cstdint>

namespace kelvane {

// A colour, 0 to 255 per channel. Four bytes, which move at once; three would move in parts.
struct alignas(4) Rgb {
    std::uint8_t R = 0;
    std::uint8_t G = 0;
    std::uint8_t B = 0;

    friend bool operator==(const Rgb&, const Rgb&) = default;
};

inline constexpr Rgb kBlack{0, 0, 0};
inline constexpr Rgb kWhite{255, 255, 255};

} // namespace kelvane
