#include "engine/interval_kernels.h"

#include "engine/interval_lanes.h"

// Compiled once for every width of vectors; see block_kernels.cpp for what that demands.

namespace kelvane {

namespace {

// Rounding errors of the functions, with room to spare over those in vector_math.h. A power may be
// calculated by ChainPower.
constexpr double kSineError = 4 * kUlp;
constexpr double kTangentError = 4 * kUlp;
constexpr double kAngleError = 0x1p-107; // what pi lacks, of the angle
constexpr double kLogarithmError = 2 * kUlp;
constexpr double kArcError = 4 * kUlp;
constexpr double kPowerError = (kMaxChainExponent + 2) * kUlp;

constexpr double kHalfPi = 0x1.921fb54442d18p0; // a little low
constexpr double kHalfPiAbove = 0x1.921fb54442d19p0;

// ---- arithmetic

// A sum of two numbers that is 0 is exact.
[[gnu::always_inline]] inline Range WidenedSum(Range raw)
{
    const Range range = Widened(raw, kOneRounding);
    return {raw.Low == 0 ? raw.Low : range.Low, raw.High == 0 ? raw.High : range.High};
}

[[gnu::always_inline]] inline Found Sum(Range a, Range b)
{
    const Range raw{a.Low + b.Low, a.High + b.High};
    return {WidenedSum(raw), OverflowMarks(raw)};
}

[[gnu::always_inline]] inline Found Difference(Range a, Range b)
{
    const Range raw{a.Low - b.High, a.High - b.Low};
    return {WidenedSum(raw), OverflowMarks(raw)};
}

// A factor 0 counts even if the other one is infinite.
[[gnu::always_inline]] inline Double PartialProduct(Double a, Double b)
{
    const Double product = a * b;
    return product == product ? product : All(0);
}

[[gnu::always_inline]] inline Found Product(Range a, Range b)
{
    const Double p = PartialProduct(a.Low, b.Low);
    const Double q = PartialProduct(a.Low, b.High);
    const Double r = PartialProduct(a.High, b.Low);
    const Double s = PartialProduct(a.High, b.High);
    const Range raw{Smaller(Smaller(p, q), Smaller(r, s)), Larger(Larger(p, q), Larger(r, s))};
    Range range = Widened(raw, kOneRounding);

    // The signs are exact, whatever underflows.
    const auto isZero = ((a.Low == 0) & (a.High == 0)) | ((b.Low == 0) & (b.High == 0));
    const auto sameSign = ((a.Low >= 0) & (b.Low >= 0)) | ((a.High <= 0) & (b.High <= 0)) | isZero;
    const auto otherSign = ((a.Low >= 0) & (b.High <= 0)) | ((a.High <= 0) & (b.Low >= 0)) | isZero;
    range.Low = sameSign ? Larger(range.Low, All(0)) : range.Low;
    range.High = otherSign ? Smaller(range.High, All(0)) : range.High;
    return {range, OverflowMarks(raw)};
}

// The quotient by a divisor without negative part. Where it reaches 0 the quotient has no bound
// on the side of the dividend's sign. The divisor's low bound must not be -0.
[[gnu::always_inline]] inline Range RawQuotient(Range a, Range b)
{
    return {a.Low / (a.Low < 0 ? b.Low : b.High), a.High / (a.High > 0 ? b.Low : b.High)};
}

[[gnu::always_inline]] inline Found Quotient(Range a, Range b)
{
    const auto isNegative = b.High <= 0;
    const Range above{isNegative ? -a.High : a.Low, isNegative ? -a.Low : a.High};
    const Range below{(isNegative ? -b.High : b.Low) + 0.0, isNegative ? -b.Low : b.High};
    const auto isNever = below.High == 0;
    const auto isEither = (below.Low < 0) | isNever;
    const Range positive{isEither ? All(1) : below.Low, isEither ? All(1) : below.High};
    const Range raw = RawQuotient(above, positive);
    Range range = Widened(raw, kOneRounding);
    range.Low = above.Low >= 0 ? Larger(range.Low, All(0)) : range.Low;
    range.High = above.High <= 0 ? Smaller(range.High, All(0)) : range.High;
    range.Low = isEither ? All(-__builtin_inf()) : range.Low;
    range.High = isEither ? All(__builtin_inf()) : range.High;
    const auto meetsZero = below.Low <= 0;
    return {range, OverflowMarks(raw) | MarkWhere(meetsZero, kPartlyUndefined | kMayJump) |
                       MarkWhere(isNever, kNowhereDefined)};
}

void SubtractSame(const IntervalStep& step)
{
    EachRange(step, [](Range) { return Range{All(0), All(0)}; });
}

void DivideSame(const IntervalStep& step)
{
    EachFound(step, [](Range a) {
        const auto isNever = (a.Low == 0) & (a.High == 0);
        const auto meetsZero = (a.Low <= 0) & (a.High >= 0);
        return AllWhereNone({{All(1), All(1)},
                             MarkWhere(meetsZero, kPartlyUndefined | kMayJump) |
                                 MarkWhere(isNever, kNowhereDefined)});
    });
}

void NegateRanges(const IntervalStep& step)
{
    EachRange(step, [](Range a) { return Range{-a.High, -a.Low}; });
}

[[gnu::always_inline]] inline Double NearestZero(Range a)
{
    return a.Low > 0 ? a.Low : (a.High < 0 ? -a.High : All(0));
}

void AbsoluteRanges(const IntervalStep& step)
{
    EachRange(step, [](Range a) { return Range{NearestZero(a), Larger(-a.Low, a.High)}; });
}

[[gnu::always_inline]] inline Double SignOf(Double a)
{
    return a > 0 ? All(1) : (a < 0 ? All(-1) : All(0));
}

void SignRanges(const IntervalStep& step)
{
    EachRange(step, [](Range a) { return Range{SignOf(a.Low), SignOf(a.High)}; });
}

void PositiveRanges(const IntervalStep& step)
{
    EachRange(step, [](Range a) { return Range{Larger(a.Low, All(0)), Larger(a.High, All(0))}; });
}

// ---- powers

enum class Parity : std::uint8_t { Even, Odd, Fraction };

// The power with a positive exponent; raise gives that of numbers that are not negative. Fractions
// take no negative base.
template <Parity parity, class Raise>
[[gnu::always_inline]] inline Found PositivePower(Range a, double error, Raise raise)
{
    if constexpr (parity == Parity::Odd) {
        const auto raiseAny = [&](Double base) {
            const Double size = raise(Magnitude<kWidth>(base));
            return base < 0 ? -size : size;
        };
        const Range raw{raiseAny(a.Low), raiseAny(a.High)};
        Range range = Widened(raw, error);
        range.Low = a.Low >= 0 ? Larger(range.Low, All(0)) : range.Low;
        range.High = a.High <= 0 ? Smaller(range.High, All(0)) : range.High;
        return {range, OverflowMarks(raw)};
    } else {
        const bool even = parity == Parity::Even;
        const Range size{even ? NearestZero(a) : Larger(a.Low, All(0)),
                         even ? Larger(-a.Low, a.High) : Larger(a.High, All(0))};
        const Range raw{raise(size.Low), raise(size.High)};
        Range range = Widened(raw, error);
        range.Low = Larger(range.Low, All(0));
        range.High = size.High == 0 ? All(0) : range.High;
        const Bits marks = OverflowMarks(raw);
        if (even)
            return {range, marks};
        return AllWhereNone({range, marks | MarkWhere(a.Low < 0, kPartlyUndefined) |
                                        MarkWhere(a.High < 0, kNowhereDefined)});
    }
}

struct Exponent {
    Parity Kind = Parity::Even;
    bool IsNegative = false;
    double Error = 0;
};

template <Parity parity, class Raise>
void RaiseAs(const IntervalStep& step, const Exponent& exponent, Raise raise)
{
    const double error = exponent.Error;
    if (!exponent.IsNegative) {
        EachFound(step, [&](Range a) { return PositivePower<parity>(a, error, raise); });
        return;
    }
    EachFound(step, [&](Range a) {
        const Found power = PositivePower<parity>(a, error, raise);
        const Found inverse = Quotient({All(1), All(1)}, power.Values);
        return AllWhereNone({inverse.Values, power.Marks | inverse.Marks});
    });
}

template <class Raise>
void RaiseBy(const IntervalStep& step, const Exponent& exponent, Raise raise)
{
    if (exponent.Kind == Parity::Even)
        return RaiseAs<Parity::Even>(step, exponent, raise);
    if (exponent.Kind == Parity::Odd)
        return RaiseAs<Parity::Odd>(step, exponent, raise);
    RaiseAs<Parity::Fraction>(step, exponent, raise);
}

template <int halves>
void RaiseToHalves(const IntervalStep& step, const Exponent& exponent)
{
    RaiseBy(step, exponent, [](Double a) { return HalvesPower<kWidth>(a, halves); });
}

// The frequent exponents have loops of their own.
void RaiseToAnyHalves(const IntervalStep& step)
{
    const auto halves = static_cast<int>(step.Parameter);
    const int size = halves < 0 ? -halves : halves;
    const bool exact = size == 1 || size == 2 || size == 4; // but for one rounding
    const Exponent exponent{.Kind = size % 2 != 0   ? Parity::Fraction
                                    : size % 4 == 0 ? Parity::Even
                                                    : Parity::Odd,
                            .IsNegative = halves < 0,
                            .Error = exact ? kOneRounding : (size / 2.0 + 2) * kUlp};
    switch (size) {
    case 0:
        return EachRange(step, [](Range) { return Range{All(1), All(1)}; });
    case 1:
        return RaiseToHalves<1>(step, exponent);
    case 4:
        return RaiseToHalves<4>(step, exponent);
    case 6:
        return RaiseToHalves<6>(step, exponent);
    default:
        RaiseBy(step, exponent, [size](Double a) { return HalvesPower<kWidth>(a, size); });
    }
}

// Power takes finite numbers; its exponent is positive here.
void RaiseToConstant(const IntervalStep& step)
{
    const double value = *step.LowB;
    const double size = value < 0 ? -value : value;
    const bool whole = size >= 0x1p52 || (size + 0x1p52) - 0x1p52 == size;
    const bool even = size / 2 >= 0x1p52 || (size / 2 + 0x1p52) - 0x1p52 == size / 2;
    const Exponent exponent{.Kind = !whole ? Parity::Fraction
                                    : even ? Parity::Even
                                           : Parity::Odd,
                            .IsNegative = value < 0,
                            .Error = kPowerError};
    RaiseBy(step, exponent, [size](Double a) {
        const Double power = Power<kWidth>(Smaller(a, All(kLargest)), All(size));
        return a > kLargest ? a : power;
    });
}

// A positive constant raised to something runs one way.
void RaiseBase(const IntervalStep& step)
{
    const PowerBase base = step.Base[step.Parameter];
    const Log2Parts<kWidth> log2{All(base.High), All(base.Low)};
    const auto raise = [&](Double b) {
        const Double finite = Larger(Smaller(b, All(kLargest)), All(-kLargest));
        return PowerOfBase<kWidth>(base.Base, log2, finite);
    };
    const bool falls = base.Base < 1;
    EachFound(step, [&](Range b) {
        const Range raw{raise(falls ? b.High : b.Low), raise(falls ? b.Low : b.High)};
        const Range range = Widened(raw, kPowerError);
        return Found{{Larger(range.Low, All(0)), range.High}, OverflowMarks(raw)};
    });
}

// Both vary: a^b = exp(b log a) has its extremes at corners. A negative base has no power here.
[[gnu::always_inline]] inline Found AnyPower(Range a, Range b)
{
    const Range base{Larger(a.Low, All(0)), Larger(a.High, All(0))};
    const Range finite{Smaller(base.Low, All(kLargest)), Smaller(base.High, All(kLargest))};
    const Range exponent{Larger(b.Low, All(-kLargest)), Smaller(b.High, All(kLargest))};
    const Double p = Power<kWidth>(finite.Low, exponent.Low);
    const Double q = Power<kWidth>(finite.Low, exponent.High);
    const Double r = Power<kWidth>(finite.High, exponent.Low);
    const Double s = Power<kWidth>(finite.High, exponent.High);
    const auto isEndless = (base.High > kLargest) | (b.Low < -kLargest) | (b.High > kLargest);
    const Range raw{isEndless ? All(0) : Smaller(Smaller(p, q), Smaller(r, s)),
                    isEndless ? All(__builtin_inf()) : Larger(Larger(p, q), Larger(r, s))};
    const Range range = Widened(raw, kPowerError);
    const auto meetsPole = (a.Low <= 0) & (b.Low <= 0);
    return AllWhereNone(
        {{Larger(range.Low, All(0)), range.High},
         OverflowMarks(raw) | MarkWhere(a.Low < 0, kPartlyUndefined) |
             MarkWhere(meetsPole, kPartlyUndefined | kMayJump) |
             MarkWhere((a.High < 0) | ((a.High <= 0) & (b.High < 0)), kNowhereDefined)});
}

// ---- functions

void LogarithmRanges(const IntervalStep& step)
{
    EachFound(step, [](Range a) {
        const Range log{Logarithm<kWidth>(a.Low), Logarithm<kWidth>(a.High)};
        const Range range = Widened(log, kLogarithmError);
        return AllWhereNone(
            {{a.Low > 0 ? range.Low : All(-__builtin_inf()),
              a.High < __builtin_inf() ? range.High : All(__builtin_inf())},
             MarkWhere(a.Low <= 0, kPartlyUndefined) | MarkWhere(a.High <= 0, kNowhereDefined)});
    });
}

void ArcTangentRanges(const IntervalStep& step)
{
    EachRange(step, [](Range a) {
        const Range raw{ArcTangent<kWidth>(a.Low), ArcTangent<kWidth>(a.High)};
        const Range range = Widened(raw, kArcError);
        return Range{a.Low == 0 ? a.Low : range.Low, a.High == 0 ? a.High : range.High};
    });
}

// What the formulas of arc sine and arc cosine lose: the root of 1 - a^2 has an error that grows
// near 1. It counts in proportion to a, and as such besides the error of the arc tangent.
[[gnu::always_inline]] inline Double ArcRoom(Double a)
{
    const Double rest = 1 - a * a;
    const Double root = SquareRoot<kWidth>(rest > 0x1p-53 ? rest : All(0x1p-53));
    return Magnitude<kWidth>(a) * 0x1p-51 / root + kTiny;
}

[[gnu::always_inline]] inline Found ArcFound(Range a, Range values)
{
    return AllWhereNone({values, MarkWhere((a.Low <= -1) | (a.High >= 1), kPartlyUndefined) |
                                     MarkWhere((a.Low >= 1) | (a.High <= -1), kNowhereDefined)});
}

void ArcSineRanges(const IntervalStep& step)
{
    EachFound(step, [](Range a) {
        const Double low = Below(ArcSine<kWidth>(a.Low), kArcError) - ArcRoom(a.Low);
        const Double high = Above(ArcSine<kWidth>(a.High), kArcError) + ArcRoom(a.High);
        return ArcFound(
            a, {a.Low > -1 ? low : All(-kHalfPiAbove), a.High < 1 ? high : All(kHalfPiAbove)});
    });
}

void ArcCosineRanges(const IntervalStep& step)
{
    EachFound(step, [](Range a) {
        const Double low = ArcCosine<kWidth>(a.High) - (ArcRoom(a.High) + kArcError);
        const Double high = ArcCosine<kWidth>(a.Low) + (ArcRoom(a.Low) + kArcError);
        return ArcFound(a, {a.High < 1 ? Larger(low, All(0)) : All(0),
                            a.Low > -1 ? high : All(2 * kHalfPiAbove)});
    });
}

// ---- angles

// The whole numbers n for which (n + part) pi may lie in a range of angles.
struct Turns {
    Double First;
    Double Last;   // smaller than First where there is none
    Range Angles;  // the range, or 0 where it is too wide or too far out for this
    Bits IsBeyond; // not 0 there
};

[[gnu::always_inline]] inline Turns TurnsIn(Range a, double part)
{
    const auto isNear =
        (a.Low >= -kLargestAngle) & (a.High <= kLargestAngle) & (a.High - a.Low < 4 * kHalfPi);
    const Range angles{isNear ? a.Low : All(0), isNear ? a.High : All(0)};
    const auto room = [](Double t) { return (Magnitude<kWidth>(t) + 1) * 0x1p-50; };
    const Double low = angles.Low * kInversePi - part;
    const Double high = angles.High * kInversePi - part;
    const Double from = low - room(low);
    const Double to = high + room(high);
    const Double nearFrom = (from + kRoundingShift) - kRoundingShift;
    const Double nearTo = (to + kRoundingShift) - kRoundingShift;
    return {nearFrom < from ? nearFrom + 1 : nearFrom, nearTo > to ? nearTo - 1 : nearTo, angles,
            isNear ? Bits{} : Bits{} + 1};
}

// The range of the sine, for a part of 0.5, or the cosine, for 0, whose extremes are at
// (n + part) pi: 1 for even n and -1 for odd.
template <Double function(Double)>
[[gnu::always_inline]] inline Range Wave(Range a, double part)
{
    const Turns turns = TurnsIn(a, part);
    const Double atLow = function(turns.Angles.Low);
    const Double atHigh = function(turns.Angles.High);
    const Range raw{Smaller(atLow, atHigh), Larger(atLow, atHigh)};
    const Double angle = Larger(-turns.Angles.Low, turns.Angles.High);
    const Double farthest = Larger(angle, -angle) * kAngleError;
    const auto error = [&](Double value) {
        return Magnitude<kWidth>(value) * kSineError + farthest;
    };
    const Double low = Larger(raw.Low - error(raw.Low), All(-1));
    const Double high = Smaller(raw.High + error(raw.High), All(1));

    const auto isOdd = (As<Bits>(turns.Last + kRoundingShift) & 1) != 0;
    const auto hasSome = turns.First <= turns.Last;
    const auto hasBoth = (turns.First < turns.Last) | (turns.IsBeyond != 0);
    return {hasBoth | (hasSome & isOdd) ? All(-1) : low,
            hasBoth | (hasSome & !isOdd) ? All(1) : high};
}

void SineRanges(const IntervalStep& step)
{
    EachRange(step, [](Range a) { return Wave<Sine<kWidth>>(a, 0.5); });
}

void CosineRanges(const IntervalStep& step)
{
    EachRange(step, [](Range a) { return Wave<Cosine<kWidth>>(a, 0); });
}

void TangentRanges(const IntervalStep& step)
{
    EachFound(step, [](Range a) {
        const Turns turns = TurnsIn(a, 0.5);
        const auto error = [](Double value, Double angle) {
            return Magnitude<kWidth>(value) * kTangentError +
                   Magnitude<kWidth>(angle) * kAngleError;
        };
        const Double atLow = Tangent<kWidth>(turns.Angles.Low);
        const Double atHigh = Tangent<kWidth>(turns.Angles.High);
        const auto hasPole = (turns.First <= turns.Last) | (turns.IsBeyond != 0);
        return Found{{hasPole ? All(-__builtin_inf()) : atLow - error(atLow, turns.Angles.Low),
                      hasPole ? All(__builtin_inf()) : atHigh + error(atHigh, turns.Angles.High)},
                     MarkWhere(hasPole, kPartlyUndefined | kMayJump)};
    });
}

void FinishRanges(const IntervalStep& step)
{
    EachRange(step, [](Range a) { return a; });
}

// ---- the set

constexpr IntervalKernelSet TheSet()
{
    IntervalKernelSet set{{}, SubtractSame, DivideSame, RaiseToConstant};
    const auto put = [&set](Operation operation, IntervalKernel kernel) {
        set.Run[static_cast<std::size_t>(operation)] = kernel;
    };
    put(Operation::Add, OfTwo<Sum>);
    put(Operation::Subtract, OfTwo<Difference>);
    put(Operation::Multiply, OfTwo<Product>);
    put(Operation::Divide, OfTwo<Quotient>);
    put(Operation::Power, OfTwo<AnyPower>);
    put(Operation::BasePower, RaiseBase);
    put(Operation::HalvesPower, RaiseToAnyHalves);
    put(Operation::Sine, SineRanges);
    put(Operation::Cosine, CosineRanges);
    put(Operation::Tangent, TangentRanges);
    put(Operation::Logarithm, LogarithmRanges);
    put(Operation::Absolute, AbsoluteRanges);
    put(Operation::ArcSine, ArcSineRanges);
    put(Operation::ArcCosine, ArcCosineRanges);
    put(Operation::ArcTangent, ArcTangentRanges);
    put(Operation::Negate, NegateRanges);
    put(Operation::Sign, SignRanges);
    put(Operation::Positive, PositiveRanges);
    put(Operation::Finish, FinishRanges);
    return set;
}

constexpr IntervalKernelSet kKernels = TheSet();

} // namespace

template <>
const IntervalKernelSet& IntervalKernels<kWidth>()
{
    return kKernels;
}

} // namespace kelvane
