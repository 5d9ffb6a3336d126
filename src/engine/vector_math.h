#pragma once

#include <cstdint>

#include "engine/lanes.h"
#include "engine/scalar_math.h"

// The elementary functions in W lanes, the same bits at every width. They are free of branches but
// for one test a vector on lanes that need another way, and use + - * /, comparisons and bits only.
//
// A failure (outside the domain, overflow, an argument that is not finite) gives a value that is
// not finite, unless a function says otherwise. Arguments are reduced as each function says. Every
// polynomial interpolates its function, divided by the leading term, at the Chebyshev points of the
// reduced interval, calculated with 300 bits; its error is below 2^-54 of the function.
//
// The largest errors of 3 million random arguments in each of several ranges, in units of the last
// place (ulp):
//     sine, cosine    2.3, tangent 2.0; up to kLargestAngle, and as the C library's beyond. Very
//                     near to a zero the error is 1e-33 of the angle instead: what pi lacks
//     logarithm       1.0
//     arc tangent     2.0; arc sine and cosine add what their formulas lose
//     power           1.7 for results from 1e-100 to 1e100, 2.0 for exponents up to 2000, else 4.1;
//                     0.9 |n| for an exponent n of ChainPower
//
// Included only by files that are compiled for W, with -O3: see lanes.h.

namespace kelvane {

template <int W>
using DoubleOf = typename Lanes<W>::Double;
template <int W>
using BitsOf = typename Lanes<W>::Bits;

// 1.5 * 2^52: adding it rounds to a whole number, which stands in the low bits of the sum.
inline constexpr double kRoundingShift = 0x1.8p52;

inline constexpr std::uint64_t kSignBit = 0x8000'0000'0000'0000;
inline constexpr std::uint64_t kBitsOfOne = 0x3ff0'0000'0000'0000;
inline constexpr std::uint64_t kBitsOfSqrtHalf = 0x3fe6'a09e'667f'3bcd;

// The same bits as a value of another type.
template <class To, class From>
[[gnu::always_inline]] inline To As(From a)
{
    return __builtin_bit_cast(To, a);
}

template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Magnitude(DoubleOf<W> a)
{
    return As<DoubleOf<W>>(As<BitsOf<W>>(a) & ~kSignBit);
}

// The leading 26 bits, so that the product of two such is exact.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> LeadingBits(DoubleOf<W> a)
{
    return As<DoubleOf<W>>(As<BitsOf<W>>(a) & ~std::uint64_t{0x07ff'ffff});
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

// One of three constants.
template <int W, class Mask>
[[gnu::always_inline]] inline DoubleOf<W> Choose(Mask isFirst, double first, Mask isSecond,
                                                 double second, double third)
{
    const DoubleOf<W> rest = isSecond ? Broadcast<W>(second) : Broadcast<W>(third);
    return isFirst ? Broadcast<W>(first) : rest;
}

// A sum of two, Low being smaller than the last bit of High.
template <int W>
struct TwoParts {
    DoubleOf<W> High;
    DoubleOf<W> Low;
};

// Radians. Pi in pieces of at most 27 bits and the rest: so the first two multiples that are
// taken away in the reduction are exact up to kLargestAngle. Beyond it the C library calculates.
inline constexpr double kPi1 = 0x1.921fb54p1;
inline constexpr double kPi2 = 0x1.10b461p-29;
inline constexpr double kPi3 = 0x1.a62633145c06ep-57;
inline constexpr double kInversePi = 0x1.45f306dc9c883p-2;
inline constexpr double kLargestAngle = 1e8;

// With a larger angle: in one lane the C library's result, in more lanes each lane on its own.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> OrLaneByLane(DoubleOf<W> result, DoubleOf<W> a,
                                                       double oneLane(double), double ofAny(double))
{
    if (!AnyLane<W>(!(Magnitude<W>(a) <= kLargestAngle))) [[likely]]
        return result;
    if constexpr (W == 1)
        return ofAny(a);
    else
        for (int i = 0; i < W; ++i)
            a[i] = oneLane(a[i]);
    return a;
}

// a - k pi for a k with few bits. What the subtractions lose is added at the end.
template <int W>
[[gnu::always_inline]] inline TwoParts<W> TakeAwayPi(DoubleOf<W> a, DoubleOf<W> k)
{
    const DoubleOf<W> first = a - k * kPi1; // exact
    const DoubleOf<W> second = k * kPi2;
    const DoubleOf<W> rest = first - second;
    const DoubleOf<W> small = ((first - rest) - second) - k * kPi3;
    const DoubleOf<W> high = rest + small;
    return {high, (rest - high) + small};
}

// The sine, for a part of 0, or the cosine, for 0.5: plus or minus the sine of a less the nearest
// k pi, k being a whole number plus the part. The parity of the whole number gives the sign.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> SignedSine(DoubleOf<W> a, double part)
{
    static constexpr double kTail[] = {-0x1.5555555555555p-3,  0x1.1111111111107p-7,
                                       -0x1.a01a01a018a6cp-13, 0x1.71de3a5453ba8p-19,
                                       -0x1.ae6455a01cfe7p-26, 0x1.612400cc362f4p-33,
                                       -0x1.ae510b179cd43p-41, 0x1.899ed64e0a835p-49};
    const DoubleOf<W> shifted = (a * kInversePi - part) + kRoundingShift;
    const DoubleOf<W> r = TakeAwayPi<W>(a, (shifted - kRoundingShift) + part).High;
    const DoubleOf<W> z = r * r;
    const DoubleOf<W> sine = r + r * (z * Polynomial<W>(kTail, z));
    const BitsOf<W> turns = As<BitsOf<W>>(shifted) + (part == 0 ? 0U : 1U);
    return As<DoubleOf<W>>(As<BitsOf<W>>(sine) ^ (turns << 63));
}

template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Sine(DoubleOf<W> a)
{
    return OrLaneByLane<W>(SignedSine<W>(a, 0), a, kelvane::Sine, SineOfAny);
}

template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Cosine(DoubleOf<W> a)
{
    return OrLaneByLane<W>(SignedSine<W>(a, 0.5), a, kelvane::Cosine, CosineOfAny);
}

// Of a less the nearest multiple of pi/2; for odd multiples minus one through that.
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
    const TwoParts<W> r = TakeAwayPi<W>(a, (shifted - kRoundingShift) / 2);
    const DoubleOf<W> z = r.High * r.High;
    const DoubleOf<W> reduced = r.High + (r.High * (z * Polynomial<W>(kTail, z)) + r.Low);
    const auto odd = (As<BitsOf<W>>(shifted) & 1) != 0;
    const DoubleOf<W> above = odd ? Broadcast<W>(-1) : reduced;
    const DoubleOf<W> below = odd ? reduced : Broadcast<W>(1);
    return OrLaneByLane<W>(above / below, a, kelvane::Tangent, TangentOfAny);
}

// A positive number as 2^Exponent Mantissa with a mantissa in sqrt(1/2) to sqrt(2).
template <int W>
struct Scaled {
    DoubleOf<W> Exponent;
    DoubleOf<W> Mantissa;
};

template <int W>
[[gnu::always_inline]] inline Scaled<W> ScaledOf(DoubleOf<W> a)
{
    const auto tiny = a < 0x1p-1022; // a subnormal, scaled first
    const BitsOf<W> bits = As<BitsOf<W>>(tiny ? a * 0x1p54 : a) + (kBitsOfOne - kBitsOfSqrtHalf);
    const DoubleOf<W> biased = As<DoubleOf<W>>((bits >> 52) | As<std::uint64_t>(0x1p52));
    const DoubleOf<W> mantissa = As<DoubleOf<W>>((bits & 0x000f'ffff'ffff'ffff) + kBitsOfSqrtHalf);
    return {biased - (tiny ? Broadcast<W>(0x1p52 + 1077) : Broadcast<W>(0x1p52 + 1023)), mantissa};
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
    const DoubleOf<W> f = scaled.Mantissa - 1;
    const DoubleOf<W> s = f / (2 + f);
    const DoubleOf<W> z = s * s;
    const DoubleOf<W> small = s * (f - z * Polynomial<W>(kTail, z)) - scaled.Exponent * kLn2Low;
    const DoubleOf<W> result = scaled.Exponent * kLn2High + (f - small);
    const auto valid = (a > 0) & (a < __builtin_inf());
    return valid ? result : Broadcast<W>(__builtin_nan(""));
}

// The binary logarithm of a positive number; High has 26 bits.
template <int W>
using Log2Parts = TwoParts<W>;

// log2 c + log2(m / c) for the mantissa m and the nearest of three centres c; the latter as in
// Logarithm, with s = (m - c) / (m + c) to twice the precision. It is at most 0.061 in size, which
// makes the tail so small that its rounding does not matter.
template <int W>
[[gnu::always_inline]] inline Log2Parts<W> Log2Of(DoubleOf<W> a)
{
    static constexpr double kTail[] = {0x1.ec709dc3a0400p-1, 0x1.2776c50ef1196p-1,
                                       0x1.a617633b394e2p-2, 0x1.48495ba126949p-2,
                                       0x1.0eb21f07fbb4fp-2};
    constexpr double kScaleHigh = 0x1.7154768p1; // 2 / log 2
    constexpr double kScaleLow = -0x1.6a3e80f444178p-26;
    const Scaled<W> scaled = ScaledOf<W>(a);
    const DoubleOf<W> m = scaled.Mantissa;
    const auto below = m < 57.0 / 64;
    const auto above = m > 9.0 / 8;
    const DoubleOf<W> c = Choose<W>(below, 101.0 / 128, above, 81.0 / 64, 1);
    const auto log2High = Choose<W>(below, -0x1.5dfdcf2p-2, above, 0x1.5c01a3ap-2, 0);
    const auto log2Low = Choose<W>(below, 0x1.151f1bbd2926fp-34, above, -0x1.0a5e1817fd3b8p-36, 0);
    const DoubleOf<W> whole = scaled.Exponent + log2High; // exact: 32 bits behind the point
    const DoubleOf<W> f = m - c;                          // exact
    const DoubleOf<W> divisor = m + c;
    const DoubleOf<W> divisorLow = m - (divisor - c);
    const DoubleOf<W> divisorHigh = LeadingBits<W>(divisor);
    const DoubleOf<W> inverse = 1 / divisor;
    const DoubleOf<W> sHigh = LeadingBits<W>(f * inverse);
    const DoubleOf<W> remainder =
        ((f - sHigh * divisorHigh) - sHigh * (divisor - divisorHigh)) - sHigh * divisorLow;
    const DoubleOf<W> sLow = remainder * inverse;
    const DoubleOf<W> s = sHigh + sLow;
    const DoubleOf<W> z = s * s;
    const DoubleOf<W> leading = sHigh * kScaleHigh; // exact
    const DoubleOf<W> high = whole + leading;
    const DoubleOf<W> tail = s * (z * Polynomial<W>(kTail, z));
    const DoubleOf<W> low = (leading - (high - whole)) + ((tail + sLow * (kScaleHigh + kScaleLow)) +
                                                          (sHigh * kScaleLow + log2Low));
    const DoubleOf<W> top = LeadingBits<W>(high + low);
    return {top, (high - top) + low};
}

// 2^Whole Fraction, the form in which a power is found.
template <int W>
struct ScaledPower {
    DoubleOf<W> Whole;
    DoubleOf<W> Fraction; // about 1/sqrt(2) to sqrt(2)
};

// 2 to the power of b times a logarithm.
template <int W>
[[gnu::always_inline]] inline ScaledPower<W> PowerOfTwo(const Log2Parts<W>& log2, DoubleOf<W> b)
{
    static constexpr double kTail[] = {
        0x1.62e42fefa39efp-1,  0x1.ebfbdff82c599p-3,  0x1.c6b08d704a0c2p-5,  0x1.3b2ab6fba1d16p-7,
        0x1.5d87fe78a5222p-10, 0x1.43091309a32b9p-13, 0x1.ffcbfc6739919p-17, 0x1.62bfd3db59f09p-20,
        0x1.b524fa6106cedp-24, 0x1.e607770a54892p-28, 0x1.e9d507f6f344fp-32};
    const DoubleOf<W> bHigh = LeadingBits<W>(b);
    const DoubleOf<W> leading = bHigh * log2.High; // exact
    const DoubleOf<W> rest = (b - bHigh) * log2.High + b * log2.Low;
    const DoubleOf<W> whole = ((leading + rest) + kRoundingShift) - kRoundingShift;
    const DoubleOf<W> fraction = (leading - whole) + rest;
    return {whole, 1 + fraction * Polynomial<W>(kTail, fraction)};
}

// 2 to a whole power from -1022 to 1023.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Scale(DoubleOf<W> whole)
{
    return As<DoubleOf<W>>((As<BitsOf<W>>(whole + kRoundingShift) << 52) + kBitsOfOne);
}

// The largest size of a whole power that Joined takes.
inline constexpr double kEasyScale = 1000;

template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Joined(const ScaledPower<W>& power)
{
    return power.Fraction * Scale<W>(power.Whole);
}

// The same for any size: 0 far below the range of doubles, infinite above. In two steps, since
// 2^Whole itself may lie outside the range.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> JoinedFar(const ScaledPower<W>& power)
{
    const DoubleOf<W> half = (power.Whole / 2 + kRoundingShift) - kRoundingShift;
    const DoubleOf<W> result = (power.Fraction * Scale<W>(half)) * Scale<W>(power.Whole - half);
    const DoubleOf<W> limited = power.Whole < -1100 ? Broadcast<W>(0) : result;
    return power.Whole > 1100 ? Broadcast<W>(__builtin_inf()) : limited;
}

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
    const DoubleOf<W> size = Magnitude<W>(b + b);
    return (size <= 2 * kMaxChainExponent) & ((size + 0x1p52) - 0x1p52 == size);
}

// Replaces the lanes with such an exponent.
template <int W>
[[gnu::noinline]] DoubleOf<W> WithChains(DoubleOf<W> power, DoubleOf<W> a, DoubleOf<W> b)
{
    if constexpr (W == 1) {
        return IsChainExponent<1>(b) ? ChainPower(a, b) : power;
    } else {
        for (int i = 0; i < W; ++i) {
            if (kelvane::IsChainExponent(b[i]))
                power[i] = ChainPower(a[i], b[i]);
        }
        return power;
    }
}

// The power of a from that of |a|.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> WithSign(DoubleOf<W> size, DoubleOf<W> a, DoubleOf<W> b)
{
    const auto odd = IsWhole<W>(b) & !IsWhole<W>(b / 2);
    const DoubleOf<W> negative =
        IsWhole<W>(b) ? (odd ? -size : size) : Broadcast<W>(__builtin_nan(""));
    const DoubleOf<W> zero = b > 0 ? Broadcast<W>(0) : Broadcast<W>(__builtin_inf());
    return a > 0 ? size : (a < 0 ? negative : zero);
}

// a raised to b: by ChainPower where that has the exponent, else by the logarithm of |a|. A
// negative a needs a whole b, and 0 a positive one. For finite a and b.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> Power(DoubleOf<W> a, DoubleOf<W> b)
{
    const ScaledPower<W> power = PowerOfTwo<W>(Log2Of<W>(Magnitude<W>(a)), b);
    const auto hard = !((Magnitude<W>(power.Whole) <= kEasyScale) & (a > 0));
    if (AnyLane<W>(hard | IsChainExponent<W>(b))) [[unlikely]]
        return WithChains<W>(WithSign<W>(JoinedFar<W>(power), a, b), a, b);
    return Joined<W>(power);
}

// The same for a constant a > 0 whose logarithm is known.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> PowerOfBase(double a, const Log2Parts<W>& log2,
                                                      DoubleOf<W> b)
{
    const ScaledPower<W> power = PowerOfTwo<W>(log2, b);
    const auto hard = !(Magnitude<W>(power.Whole) <= kEasyScale);
    if (AnyLane<W>(hard | IsChainExponent<W>(b))) [[unlikely]]
        return WithChains<W>(JoinedFar<W>(power), Broadcast<W>(a), b);
    return Joined<W>(power);
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

// a raised to half of a number of at most twice kMaxChainExponent, by squaring and multiplying:
// from the leading binary digit of the whole part on, the power so far is squared, and multiplied
// by a for every digit 1; then by the square root for a half. A negative exponent gives 1 through
// the positive power.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> HalvesPower(DoubleOf<W> a, int halves)
{
    const int size = halves < 0 ? -halves : halves;
    const int whole = size / 2;
    int digit = kMaxChainExponent;
    while (digit > 1 && (whole & digit) == 0)
        digit /= 2;
    DoubleOf<W> power = whole == 0 ? Broadcast<W>(1) : a;
    for (digit /= 2; digit > 0; digit /= 2) {
        power = power * power;
        if ((whole & digit) != 0)
            power = power * a;
    }
    if (size % 2 != 0)
        power = whole == 0 ? SquareRoot<W>(a) : power * SquareRoot<W>(a);
    return halves < 0 ? 1 / power : power;
}

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
    const DoubleOf<W> quarters = Choose<W>(steep, 2, medium, 1, 0);
    const DoubleOf<W> above = steep ? Broadcast<W>(-1) : medium ? size - 1 : size;
    const DoubleOf<W> below = steep ? size : medium ? size + 1 : Broadcast<W>(1);
    const DoubleOf<W> t = above / below;
    const DoubleOf<W> z = t * t;
    const DoubleOf<W> small = t * (z * Polynomial<W>(kTail, z)) + quarters * kQuarterPiRest;
    const DoubleOf<W> angle = quarters * kQuarterPi + (t + small);
    return As<DoubleOf<W>>(As<BitsOf<W>>(angle) | (As<BitsOf<W>>(a) & kSignBit));
}

// The tangent of the angle whose sine is a; fails from |a| = 1 on, and so do the next two.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> TangentOfSine(DoubleOf<W> a)
{
    const DoubleOf<W> root = SquareRoot<W>(1 - a * a);
    return root > 0 ? a / root : Broadcast<W>(__builtin_nan(""));
}

// asin a = atan(a / sqrt(1 - a^2)).
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> ArcSine(DoubleOf<W> a)
{
    return ArcTangent<W>(TangentOfSine<W>(a));
}

// acos a = atan(-a / sqrt(1 - a^2)) + pi/2, which is 2 atan 1.
template <int W>
[[gnu::always_inline]] inline DoubleOf<W> ArcCosine(DoubleOf<W> a)
{
    return ArcTangent<W>(-TangentOfSine<W>(a)) + 0x1.921fb54442d18p0;
}

} // namespace kelvane
