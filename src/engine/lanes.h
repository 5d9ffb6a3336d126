#pragma once

#include <cstdint>

// W double-precision numbers that go through a calculation side by side, written so that one source
// serves every width: W = 1 is plain double, W = 2, 4 and 8 are vectors of the compiler's own
// (128, 256 and 512 bits), with element-wise operators.
//
// Every operation rounds as the scalar one does and none is fused with another, so a calculation
// written in these gives the same bits at every width. A width may be used only in files compiled
// for a processor that has it; its functions are instantiated nowhere else.

namespace kelvane {

template <int W>
struct Lanes {
    using Double [[gnu::vector_size(8 * W)]] = double;
    using Float [[gnu::vector_size(4 * W)]] = float;
    using Bits [[gnu::vector_size(8 * W)]] = std::uint64_t;
    using WideFloat [[gnu::vector_size(8 * W)]] = float; // as many as fill the vector
};

template <>
struct Lanes<1> {
    using Double = double;
    using Float = float;
    using Bits = std::uint64_t;
    using WideFloat = float;
};

// The same value in every lane.
template <int W>
[[gnu::always_inline]] inline typename Lanes<W>::Double Broadcast(double value)
{
    return typename Lanes<W>::Double{} + value;
}

template <int W>
[[gnu::always_inline]] inline typename Lanes<W>::Double ToDouble(typename Lanes<W>::Float lanes)
{
    if constexpr (W == 1)
        return lanes;
#if defined(__AVX__) && !defined(__clang__) // g++ 12 would convert wide vectors in halves
    else if constexpr (W == 4)
        return __builtin_ia32_cvtps2pd256(lanes);
#endif
#if defined(__AVX512F__) && !defined(__clang__)
    else if constexpr (W == 8)
        return __builtin_ia32_cvtps2pd512_mask(lanes, typename Lanes<W>::Double{}, -1, 4);
#endif
    else
        return __builtin_convertvector(lanes, typename Lanes<W>::Double);
}

template <int W>
[[gnu::always_inline]] inline typename Lanes<W>::Float ToFloat(typename Lanes<W>::Double lanes)
{
    if constexpr (W == 1)
        return static_cast<float>(lanes);
    else
        return __builtin_convertvector(lanes, typename Lanes<W>::Float);
}

} // namespace kelvane
