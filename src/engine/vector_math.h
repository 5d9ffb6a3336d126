#pragma once

#include <cstdint>

#include "engine/lanes.h"
#include "engine/scalar_math.h"

// The elementary functions in W lanes, the same bits at every width. They are free of branches but
// for one test a vector on lanes that need another way, and use + - * /, comparisons and bits only.
//
// A failure (outside the domain, overflow, an argument that is not finite) gives a value that is
// not finite, unless a function says otherwise.
//
// Every polynomial interpolates its function, divided by the leading term, at the Chebyshev points
// of the reduced interval, calculated with 300 bits; the error of the approximation is below 2^-54.
// The largest errors seen in 3 million random arguments a row, in units of the last place (ulp):
//     sine, cosine    2.3  in -1e8 to 1e8; an argument within 1e-13 of a zero has an absolute
//     tangent         1.9  error below 1e-30 instead, from the pieces of pi
//     logarithm       1.0  everywhere
//     arc tangent     1.8  everywhere
//     power           1.7  for results from 1e-100 to 1e100, growing with the logarithm of the
//                          result (up to 14 at the ends of the range of doubles) for bases near
//                          sqrt(2) and sqrt(1/2); n/2 + 1 + n/4 for a whole exponent n
//
// Included only by files that are compiled for W, with -O3: see lanes.h.

namespace kelvane {

// ---- parts

template <int W>
using DoubleOf = typename Lanes<W>::Double;
template <int W>
using BitsOf = typename Lanes<W>::Bits;

// 1.5 * 2^52: adding it rounds to a whole number, which stands in the low bits of the sum.
inline constexpr double kRoundingShift = 0x1.8p52;

inline constexpr std::uint64_t kSignBit = 0x8000'0000'0000'0000;
inline constexpr std::uint64_t kFractionBits = 0x000f'ffff'ffff'ffff;
inline constexpr std::uint64_t kBitsOfOne = 0x3ff0'0000'0000'0000;
inline constexpr std::uint64_t kBitsOfSqrtHalf = 0x3fe6'a09e'667f'3bcd;

template <int W>
[[gnu::always_inline]] inline BitsOf<W> ToBits(DoubleOf<W> a)
{
    return __builtin_bit_cast(BitsOf<W>, a);
}

template <int W>
[[gnu::always_inline]] inline DoubleOf<W> FromBits(BitsOf<W> bits)
{
    return __builtin_bit_cast(DoubleOf<W>, bits);
}

template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Magnitude(DoubleOf<W> a)
{
    return FromBits<W>(ToBits<W>(a) & ~kSignBit);
}

// The leading 26 bits, so that the product of two such is exact.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> LeadingBits(DoubleOf<W> a)
{
    return FromBits<W>(ToBits<W>(a) & ~std::uint64_t{0x07ff'ffff});
}

// Is a comparison true in any lane?
template <int W, class Mask>
[[gnu::always_inline]] inline bool AnyLane(Mask mask)
{
    if constexpr (W == 1)
        return mask;
    else if constexpr (W == 2)
        return (mask[0] | mask[1]) != 0;
    else if constexpr (W == 4)
        return AnyLane<2>(__builtin_shufflevector(mask, mask, 0, 1) |
                          __builtin_shufflevector(mask, mask, 2, 3));
    else
        return AnyLane<4>(__builtin_shufflevector(mask, mask, 0, 1, 2, 3) |
                          __builtin_shufflevector(mask, mask, 4, 5, 6, 7));
}

// c[0] + c[1] z + c[2] z^2 + ...
template <int W, int N>
[[gnu::always_inline]] inline DoubleOf<W> Polynomial(const double (&c)[N], DoubleOf<W> z)
{
    DoubleOf<W> sum = Broadcast<W>(c[N - 1]);
    for (int i = N - 2; i >= 0; --i)
        sum = sum * z + c[i];
    return sum;
}

// A result for vectors with lanes that need another way: in one lane that way, in more lanes each
// lane on its own.
template <int W>
[[gnu::noinline]] DoubleOf<W> LaneByLane(double oneLane(double), double otherWay(double),
                                         DoubleOf<W> a)
{
    if constexpr (W == 1) {
        return otherWay(a);
    } else {
        for (int i = 0; i < W; ++i)
            a[i] = oneLane(a[i]);
        return a;
    }
}

// ---- sine, cosine, tangent; radians

// Pi in pieces of at most 27 bits and the rest: so the multiples that are taken away in the
// reduction are exact up to kLargestAngle. Beyond it the C library calculates.
inline constexpr double kPi1 = 0x1.921fb54p1;
inline constexpr double kPi2 = 0x1.10b461p-29;
inline constexpr double kPi3 = 0x1.a62633145c06ep-57;
inline constexpr double kInversePi = 0x1.45f306dc9c883p-2;
inline constexpr double kLargestAngle = 1e8;

// A number and what its rounding has lost.
template <int W>
struct Reduced {
    DoubleOf<W> High;
    DoubleOf<W> Low;
};

// a - k pi for a k with few bits.
template <int W>
[[gnu::always_inline]] inline Reduced<W> TakeAwayPi(DoubleOf<W> a, DoubleOf<W> k)
{
    const DoubleOf<W> first = a - k * kPi1; // exact
    const DoubleOf<W> second = k * kPi2;
    const DoubleOf<W> rest = first - second;
    const DoubleOf<W> small = ((first - rest) - second) - k * kPi3;
    const DoubleOf<W> high = rest + small;
    return {high, (rest - high) + small};
}

// The sine of r in -pi/2 to pi/2, with its sign changed by the lowest of the bits.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> SignedSine(DoubleOf<W> r, BitsOf<W> bits)
{
    static constexpr double kTail[] = {-0x1.5555555555555p-3,  0x1.1111111111107p-7,
                                       -0x1.a01a01a018a6cp-13, 0x1.71de3a5453ba8p-19,
                                       -0x1.ae6455a01cfe7p-26, 0x1.612400cc362f4p-33,
                                       -0x1.ae510b179cd43p-41, 0x1.899ed64e0a835p-49};
    const DoubleOf<W> z = r * r;
    const DoubleOf<W> sine = r + r * (z * Polynomial<W>(kTail, z));
    return FromBits<W>(ToBits<W>(sine) ^ (bits << 63));
}

// Sine: a less the nearest multiple of pi, whose parity is the sign.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Sine(DoubleOf<W> a)
{
    const DoubleOf<W> shifted = a * kInversePi + kRoundingShift;
    const DoubleOf<W> r = TakeAwayPi<W>(a, shifted - kRoundingShift).High;
    const DoubleOf<W> sine = SignedSine<W>(r, ToBits<W>(shifted));
    if (AnyLane<W>(!(Magnitude<W>(a) <= kLargestAngle))) [[unlikely]]
        return LaneByLane<W>(kelvane::Sine, SineOfAny, a);
    return sine;
}

// Cosine: a less the nearest odd multiple of pi/2.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Cosine(DoubleOf<W> a)
{
    const DoubleOf<W> shifted = (a * kInversePi - 0.5) + kRoundingShift;
    const DoubleOf<W> r = TakeAwayPi<W>(a, (shifted - kRoundingShift) + 0.5).High;
    const DoubleOf<W> cosine = SignedSine<W>(r, ToBits<W>(shifted) + 1);
    if (AnyLane<W>(!(Magnitude<W>(a) <= kLargestAngle))) [[unlikely]]
        return LaneByLane<W>(kelvane::Cosine, CosineOfAny, a);
    return cosine;
}

// Tangent: of a less the nearest multiple of pi/2, which lies in -pi/4 to pi/4; minus one through
// it for odd multiples.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Tangent(DoubleOf<W> a)
{
    static constexpr double kTail[] = {
        0x1.5555555555554p-2,   0x1.11111111116ebp-3,   0x1.ba1ba1b98251fp-5,
        0x1.664f48b4124d1p-6,   0x1.226e2d1dc4577p-7,   0x1.d6d576dd78d88p-9,
        0x1.7d883624353f8p-10,  0x1.36869b0bbf849p-11,  0x1.e34e8e28d7982p-13,
        0x1.f7f9ffac2a43fp-14,  -0x1.f178abbea53c1p-19, 0x1.214a073dcfcb7p-14,
        -0x1.1d5b2894af87fp-15, 0x1.3300600745c32p-16};
    const DoubleOf<W> shifted = a * (2 * kInversePi) + kRoundingShift;
    const Reduced<W> r = TakeAwayPi<W>(a, (shifted - kRoundingShift) / 2);
    const DoubleOf<W> z = r.High * r.High;
    const DoubleOf<W> reduced = r.High + (r.High * (z * Polynomial<W>(kTail, z)) + r.Low);
    const auto odd = (ToBits<W>(shifted) & 1) != 0;
    const DoubleOf<W> tangent =
        (odd ? Broadcast<W>(-1) : reduced) / (odd ? reduced : Broadcast<W>(1));
    if (AnyLane<W>(!(Magnitude<W>(a) <= kLargestAngle))) [[unlikely]]
        return LaneByLane<W>(kelvane::Tangent, TangentOfAny, a);
    return tangent;
}

// ---- logarithms and powers

// A positive number as 2^Exponent (1 + Rest) with 1 + Rest in sqrt(1/2) to sqrt(2).
template <int W>
struct Scaled {
    DoubleOf<W> Exponent;
    DoubleOf<W> Rest;
};

template <int W>
[[gnu::always_inline]] inline Scaled<W> ScaledOf(DoubleOf<W> a)
{
    const auto tiny = a < 0x1p-1022; // a subnormal, scaled first
    const BitsOf<W> bits = ToBits<W>(tiny ? a * 0x1p54 : a) + (kBitsOfOne - kBitsOfSqrtHalf);
    const DoubleOf<W> biased =
        FromBits<W>((bits >> 52) | __builtin_bit_cast(std::uint64_t, 0x1p52));
    const DoubleOf<W> mantissa = FromBits<W>((bits & kFractionBits) + kBitsOfSqrtHalf);
    return {biased - (tiny ? Broadcast<W>(0x1p52 + 1077) : Broadcast<W>(0x1p52 + 1023)),
            mantissa - 1};
}

// Natural logarithm. With s = f / (2 + f), log(1 + f) = 2 atanh s = f - s (f - tail(s^2)).
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Logarithm(DoubleOf<W> a)
{
    static constexpr double kTail[] = {
        0x1.5555555555558p-1, 0x1.9999999995209p-2, 0x1.2492492e0940dp-2, 0x1.c71c62c6f64bcp-3,
        0x1.7462bd59fb06dp-3, 0x1.39fd400fdb1bfp-3, 0x1.2b663322a9c32p-3};
    constexpr double kLn2High = 0x1.62e42ffp-1;
    constexpr double kLn2Low = -0x1.718432a1b0e26p-35;
    const Scaled<W> scaled = ScaledOf<W>(a);
    const DoubleOf<W> f = scaled.Rest;
    const DoubleOf<W> s = f / (2 + f);
    const DoubleOf<W> z = s * s;
    const DoubleOf<W> small = s * (f - z * Polynomial<W>(kTail, z)) - scaled.Exponent * kLn2Low;
    const DoubleOf<W> result = scaled.Exponent * kLn2High + (f - small);
    const auto valid = (a > 0) & (a < __builtin_inf());
    return valid ? result : Broadcast<W>(__builtin_nan(""));
}

// The binary logarithm of a positive number as a sum: High has 26 bits, Low is smaller than the
// last of them.
template <int W>
struct Log2Parts {
    DoubleOf<W> High;
    DoubleOf<W> Low;
};

// As in Logarithm, with s to twice the precision.
template <int W>
[[gnu::always_inline]] inline Log2Parts<W> Log2Of(DoubleOf<W> a)
{
    static constexpr double kTail[] = {
        0x1.ec709dc3a0401p-1, 0x1.2776c50ef685fp-1, 0x1.a61762b555880p-2, 0x1.484b0905ab2e7p-2,
        0x1.0c9e97b955980p-2, 0x1.c4fda1901095cp-3, 0x1.aff1179f97c9dp-3};
    constexpr double kScaleHigh = 0x1.7154768p1; // 2 / log 2
    constexpr double kScaleLow = -0x1.6a3e80f444178p-26;
    const Scaled<W> scaled = ScaledOf<W>(a);
    const DoubleOf<W> f = scaled.Rest;
    const DoubleOf<W> divisor = 2 + f;
    const DoubleOf<W> divisorLow = f - (divisor - 2);
    const DoubleOf<W> divisorHigh = LeadingBits<W>(divisor);
    const DoubleOf<W> inverse = 1 / divisor;
    const DoubleOf<W> sHigh = LeadingBits<W>(f * inverse);
    const DoubleOf<W> remainder =
        ((f - sHigh * divisorHigh) - sHigh * (divisor - divisorHigh)) - sHigh * divisorLow;
    const DoubleOf<W> sLow = remainder * inverse;
    const DoubleOf<W> s = sHigh + sLow;
    const DoubleOf<W> z = s * s;
    const DoubleOf<W> leading = sHigh * kScaleHigh; // exact
    const DoubleOf<W> high = scaled.Exponent + leading;
    const DoubleOf<W> low =
        (leading - (high - scaled.Exponent)) +
        (sHigh * kScaleLow + sLow * (kScaleHigh + kScaleLow) + s * (z * Polynomial<W>(kTail, z)));
    const DoubleOf<W> top = LeadingBits<W>(high + low);
    return {top, (high - top) + low};
}

// 2 to the power of b times a logarithm; 0 far below the range of doubles, infinite above.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> PowerOfTwo(const Log2Parts<W>& log2, DoubleOf<W> b)
{
    static constexpr double kTail[] = {
        0x1.62e42fefa39efp-1,  0x1.ebfbdff82c599p-3,  0x1.c6b08d704a0c2p-5,  0x1.3b2ab6fba1d16p-7,
        0x1.5d87fe78a5222p-10, 0x1.43091309a32b9p-13, 0x1.ffcbfc6739919p-17, 0x1.62bfd3db59f09p-20,
        0x1.b524fa6106cedp-24, 0x1.e607770a54892p-28, 0x1.e9d507f6f344fp-32};
    const DoubleOf<W> bHigh = LeadingBits<W>(b);
    const DoubleOf<W> leading = bHigh * log2.High; // exact
    const DoubleOf<W> rest = (b - bHigh) * log2.High + b * log2.Low;
    const DoubleOf<W> exponent = leading + rest;
    const DoubleOf<W> whole = (exponent + kRoundingShift) - kRoundingShift;
    const DoubleOf<W> fraction = (leading - whole) + rest;
    const DoubleOf<W> power = 1 + fraction * Polynomial<W>(kTail, fraction);
    // In two steps, since 2^whole itself may lie outside the range.
    const DoubleOf<W> shifted = whole / 2 + kRoundingShift;
    const DoubleOf<W> half = shifted - kRoundingShift;
    const auto scale = [](DoubleOf<W> by) {
        return FromBits<W>((ToBits<W>(by + kRoundingShift) << 52) + kBitsOfOne);
    };
    const DoubleOf<W> result = (power * scale(half)) * scale(whole - half);
    const DoubleOf<W> limited = exponent < -1100 ? Broadcast<W>(0) : result;
    return exponent > 1100 ? Broadcast<W>(__builtin_inf()) : limited;
}

// Is it a whole number?
template <int W>
[[gnu::always_inline]] inline auto IsWhole(DoubleOf<W> a)
{
    const DoubleOf<W> size = Magnitude<W>(a);
    return (size >= 0x1p52) | ((size + 0x1p52) - 0x1p52 == size);
}

// The exponents of ChainPower.
template <int W>
[[gnu::always_inline]] inline auto IsChainExponent(DoubleOf<W> b)
{
    const DoubleOf<W> size = Magnitude<W>(b);
    return ((size <= kMaxChainExponent) & ((size + 0x1p52) - 0x1p52 == size)) | (b == 0.5);
}

// Replaces the lanes with such an exponent.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> WithChains(DoubleOf<W> power, DoubleOf<W> a,
                                                     DoubleOf<W> b)
{
    const auto chains = IsChainExponent<W>(b);
    if (!AnyLane<W>(chains)) [[likely]]
        return power;
    double base[W];
    double exponent[W];
    __builtin_memcpy(base, &a, sizeof a);
    __builtin_memcpy(exponent, &b, sizeof b);
    for (int i = 0; i < W; ++i)
        base[i] = kelvane::IsChainExponent(exponent[i]) ? ChainPower(base[i], exponent[i]) : 0;
    __builtin_memcpy(&a, base, sizeof a);
    return chains ? a : power;
}

// a raised to b: by ChainPower where that has the exponent, else by the logarithm of |a|. A
// negative a needs a whole b, and 0 a positive one. For finite a and b.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Power(DoubleOf<W> a, DoubleOf<W> b)
{
    const DoubleOf<W> size = PowerOfTwo<W>(Log2Of<W>(Magnitude<W>(a)), b);
    const auto odd = IsWhole<W>(b) & !IsWhole<W>(b / 2);
    const DoubleOf<W> negative =
        IsWhole<W>(b) ? (odd ? -size : size) : Broadcast<W>(__builtin_nan(""));
    const DoubleOf<W> zero = b > 0 ? Broadcast<W>(0) : Broadcast<W>(__builtin_inf());
    const DoubleOf<W> power = a > 0 ? size : (a < 0 ? negative : zero);
    return WithChains<W>(power, a, b);
}

// The same for a constant a > 0 whose logarithm is known.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> PowerOfBase(double a, const Log2Parts<W>& log2,
                                                      DoubleOf<W> b)
{
    return WithChains<W>(PowerOfTwo<W>(log2, b), Broadcast<W>(a), b);
}

// a raised to a whole number of at most kMaxChainExponent, by squaring and multiplying: from the
// exponent's leading binary digit on, the power so far is squared, and multiplied by a for every
// digit 1. A negative exponent gives 1 through the positive power.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> IntegerPower(DoubleOf<W> a, int exponent)
{
    const int size = exponent < 0 ? -exponent : exponent;
    if (size == 0)
        return Broadcast<W>(1);
    int digit = kMaxChainExponent;
    while ((size & digit) == 0)
        digit /= 2;
    DoubleOf<W> power = a;
    for (digit /= 2; digit > 0; digit /= 2) {
        power = power * power;
        if ((size & digit) != 0)
            power = power * a;
    }
    return exponent < 0 ? 1 / power : power;
}

// Correctly rounded; a negative number fails.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> SquareRoot(DoubleOf<W> a)
{
    if constexpr (W == 1) {
        return __builtin_sqrt(a);
    } else {
        for (int i = 0; i < W; ++i)
            a[i] = __builtin_sqrt(a[i]);
        return a;
    }
}

// ---- arc functions

// Arc tangent: t = -1/|a|, (|a| - 1) / (|a| + 1) or |a|, whichever is at most tan(pi/8) in size,
// and pi/2, pi/4 or 0 added. An infinite argument gives pi/2.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> ArcTangent(DoubleOf<W> a)
{
    static constexpr double kTail[] = {
        -0x1.5555555555555p-2, 0x1.999999999932ep-3, -0x1.2492492434a23p-3, 0x1.c71c71844dc2dp-4,
        -0x1.745d0b02a4662p-4, 0x1.3b125f9410e02p-4, -0x1.10fa4732829ddp-4, 0x1.dfe2ffbc6d11cp-5,
        -0x1.a0886bc8cce76p-5, 0x1.4131236eb5fb9p-5, -0x1.39b84b9e44754p-6};
    constexpr double kTanEighth = 0x1.a827999fcef32p-2;      // tan(pi/8)
    constexpr double kTanThreeEighths = 0x1.3504f333f9de6p1; // tan(3 pi/8)
    constexpr double kQuarterPi = 0x1.921fb54442d18p-1;
    constexpr double kQuarterPiRest = 0x1.1a62633145c07p-55;
    const DoubleOf<W> size = Magnitude<W>(a);
    const auto steep = size > kTanThreeEighths;
    const auto medium = size > kTanEighth;
    const DoubleOf<W> quarters = steep    ? Broadcast<W>(2)
                                 : medium ? Broadcast<W>(1)
                                          : Broadcast<W>(0);
    const DoubleOf<W> above = steep ? Broadcast<W>(-1) : medium ? size - 1 : size;
    const DoubleOf<W> below = steep ? size : medium ? size + 1 : Broadcast<W>(1);
    const DoubleOf<W> t = above / below;
    const DoubleOf<W> z = t * t;
    const DoubleOf<W> small = t * (z * Polynomial<W>(kTail, z)) + quarters * kQuarterPiRest;
    const DoubleOf<W> angle = quarters * kQuarterPi + (t + small);
    return FromBits<W>(ToBits<W>(angle) | (ToBits<W>(a) & kSignBit));
}

// a / sqrt(1 - a^2), the tangent of the angle whose sine is a; fails where the root is 0 or not
// real.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> TangentOfSine(DoubleOf<W> a)
{
    const DoubleOf<W> root = SquareRoot<W>(1 - a * a);
    return root > 0 ? a / root : Broadcast<W>(__builtin_nan(""));
}

// asin a = atan(a / sqrt(1 - a^2)): fails from |a| = 1 on.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> ArcSine(DoubleOf<W> a)
{
    return ArcTangent<W>(TangentOfSine<W>(a));
}

// acos a = atan(-a / sqrt(1 - a^2)) + 2 atan 1: fails from |a| = 1 on.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> ArcCosine(DoubleOf<W> a)
{
    constexpr double kHalfPi = 0x1.921fb54442d18p0;
    return ArcTangent<W>(-TangentOfSine<W>(a)) + kHalfPi;
}

} // namespace kelvane
