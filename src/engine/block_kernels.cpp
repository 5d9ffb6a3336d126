#include "engine/block_kernels.h"

#include "engine/lanes.h"
#include "engine/vector_math.h"

// Compiled once for every width of vectors, each time for a processor that has them. Whatever is
// instantiated here must depend on kWidth or be internal: an inline function shared with the rest
// of the program could bring its instructions to processors that lack them.

namespace kelvane {

namespace {

constexpr int kWidth = KELVANE_VECTOR_WIDTH;

using Double = Lanes<kWidth>::Double;
using Float = Lanes<kWidth>::Float;
using Bits = Lanes<kWidth>::Bits;
using Floats = Lanes<kWidth>::WideFloat;

constexpr std::int64_t kFloats = kWidth == 1 ? 1 : 2 * kWidth;

template <class V, class Element>
V LoadAs(const void* from, std::int64_t at)
{
    V lanes;
    __builtin_memcpy(&lanes, static_cast<const Element*>(from) + at, sizeof lanes);
    return lanes;
}

template <class Element, class V>
void StoreAs(void* to, std::int64_t at, V lanes)
{
    __builtin_memcpy(static_cast<Element*>(to) + at, &lanes, sizeof lanes);
}

// Elements as doubles, whatever they are stored as.
template <ElementType type>
Double Load(const void* from, std::int64_t at)
{
    if constexpr (type == ElementType::Single)
        return ToDouble<kWidth>(LoadAs<Float, float>(from, at));
    else
        return LoadAs<Double, double>(from, at);
}

Bits LoadMask(const void* from, std::int64_t at)
{
    return LoadAs<Bits, std::int64_t>(from, at);
}

// Calls the body for every vector of the block, with the place of its first point. The body gets a
// copy of the step, which no store can change.
template <std::int64_t points, class Body>
[[gnu::always_inline]] inline void EachVector(const KernelStep& step, Body body)
{
    const KernelStep copy = step;
    for (std::int64_t at = 0; at < copy.Count; at += points)
        body(copy, at);
}

// ---- arithmetic

struct Addition {
    template <class V>
    static V Of(V a, V b)
    {
        return a + b;
    }
};
struct Subtraction {
    template <class V>
    static V Of(V a, V b)
    {
        return a - b;
    }
};
struct Multiplication {
    template <class V>
    static V Of(V a, V b)
    {
        return a * b;
    }
};
struct Division {
    template <class V>
    static V Of(V a, V b)
    {
        return a / b;
    }
};
struct Juxtaposition {
    template <class V>
    static V Of(V a, V b)
    {
        return a == 0 ? b : a * b;
    }
};
struct Raising {
    static Double Of(Double a, Double b) { return Power<kWidth>(a, b); }
};

template <class Calculation>
void Singles(const KernelStep& step)
{
    EachVector<kFloats>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<float>(now.Result, at,
                       Calculation::Of(LoadAs<Floats, float>(now.A, at * now.StrideA),
                                       LoadAs<Floats, float>(now.B, at * now.StrideB)));
    });
}

template <class Calculation, ElementType a, ElementType b>
void Doubles(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<double>(
            now.Result, at,
            Calculation::Of(Load<a>(now.A, at * now.StrideA), Load<b>(now.B, at * now.StrideB)));
    });
}

// ---- functions

template <Double function(Double), ElementType a>
void Function(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<double>(now.Result, at, function(Load<a>(now.A, at)));
    });
}

// Results of one element type from operands of another.
template <ElementType a, ElementType result, class Calculation>
[[gnu::always_inline]] inline void Convert(const KernelStep& step, Calculation calculation)
{
    EachVector<kWidth>(step, [&](const KernelStep& now, std::int64_t at) {
        const Double lanes = calculation(Load<a>(now.A, at));
        if constexpr (result == ElementType::Single)
            StoreAs<float>(now.Result, at, ToFloat<kWidth>(lanes));
        else
            StoreAs<double>(now.Result, at, lanes);
    });
}

template <ElementType a, ElementType result, int halves>
void RaiseTo(const KernelStep& step)
{
    Convert<a, result>(step, [](Double lanes) { return HalvesPower<kWidth>(lanes, halves); });
}

// The frequent exponents have loops of their own.
template <ElementType a, ElementType result>
void RaiseToHalves(const KernelStep& step)
{
    const auto halves = static_cast<int>(step.Parameter);
    switch (halves) {
    case 1:
        return RaiseTo<a, result, 1>(step);
    case 3:
        return RaiseTo<a, result, 3>(step);
    case 6:
        return RaiseTo<a, result, 6>(step);
    case 8:
        return RaiseTo<a, result, 8>(step);
    case 10:
        return RaiseTo<a, result, 10>(step);
    default:
        Convert<a, result>(step,
                           [halves](Double lanes) { return HalvesPower<kWidth>(lanes, halves); });
    }
}

template <ElementType a>
void RaiseBase(const KernelStep& step)
{
    const PowerBase base = step.Base[step.Parameter];
    const Log2Parts<kWidth> log2{Broadcast<kWidth>(base.High), Broadcast<kWidth>(base.Low)};
    EachVector<kWidth>(step, [&](const KernelStep& now, std::int64_t at) {
        StoreAs<double>(now.Result, at, PowerOfBase<kWidth>(base.Base, log2, Load<a>(now.A, at)));
    });
}

void NegateSingles(const KernelStep& step)
{
    EachVector<kFloats>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<float>(now.Result, at, -LoadAs<Floats, float>(now.A, at));
    });
}

void NegateDoubles(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<double>(now.Result, at, -Load<ElementType::Double>(now.A, at));
    });
}

void FindSigns(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        const Double lanes = Load<ElementType::Double>(now.A, at);
        const Double one = Broadcast<kWidth>(1);
        StoreAs<double>(now.Result, at, lanes > 0 ? one : (lanes < 0 ? -one : lanes));
    });
}

void TakePositive(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        const Double lanes = Load<ElementType::Double>(now.A, at);
        StoreAs<double>(now.Result, at, lanes < 0 ? Broadcast<kWidth>(0) : lanes);
    });
}

// ---- widths, masks and failures

void NarrowDoubles(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<float>(now.Result, at, ToFloat<kWidth>(Load<ElementType::Double>(now.A, at)));
    });
}

template <ElementType a>
void FindNonZero(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<std::int64_t>(now.Result, at, Load<a>(now.A, at) != 0 ? Bits{} - 1 : Bits{});
    });
}

void AndMasks(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<std::int64_t>(now.Result, at, LoadMask(now.A, at) & LoadMask(now.B, at));
    });
}

void OrMasks(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        StoreAs<std::int64_t>(now.Result, at, LoadMask(now.A, at) | LoadMask(now.B, at));
    });
}

void RoundWhereNarrow(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        const Double lanes = Load<ElementType::Double>(now.A, at);
        const Double rounded = ToDouble<kWidth>(ToFloat<kWidth>(lanes));
        StoreAs<double>(now.Result, at, LoadMask(now.B, at) != 0 ? lanes : rounded);
    });
}

// A number minus itself is 0, or NaN if it is not finite.
template <ElementType a>
void CheckFinite(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        const Double lanes = Load<a>(now.A, at);
        StoreAs<double>(now.Failed, at,
                        Load<ElementType::Double>(now.Failed, at) + (lanes - lanes));
    });
}

// Adding 0 also makes a 0 of a negative one.
template <ElementType a>
void FinishPoints(const KernelStep& step)
{
    EachVector<kWidth>(step, [](const KernelStep& now, std::int64_t at) {
        const Double lanes = Load<a>(now.A, at * now.StrideA);
        const Double failed = Load<ElementType::Double>(now.Failed, at) + (lanes - lanes);
        StoreAs<double>(now.Result, at, lanes + failed);
    });
}

// ---- bisection

void HalveIntervals(const double* low, const double* high, float* middle, std::int64_t count)
{
    for (std::int64_t at = 0; at < count; at += kWidth) {
        const Double sum = LoadAs<Double, double>(low, at) + LoadAs<Double, double>(high, at);
        StoreAs<float>(middle, at, ToFloat<kWidth>(sum / 2));
    }
}

std::int64_t NarrowIntervals(const BisectionStep& step)
{
    Bits active{};
    for (std::int64_t at = 0; at < step.Count; at += kWidth) {
        const auto load = [at](const double* from) { return LoadAs<Double, double>(from, at); };
        const Double middle = Load<ElementType::Single>(step.Middle, at);
        const Double left = load(step.Left);
        const Double right = load(step.Right);
        const Bits above = left > right ? Bits{} - 1 : Bits{};
        const auto higher = (above ^ LoadMask(step.Rising, at)) == 0;
        const Double low = higher ? middle : load(step.Low);
        const Double high = higher ? load(step.High) : middle;
        StoreAs<double>(step.Low, at, low);
        StoreAs<double>(step.High, at, high);

        const Double difference = left - right;
        const Double size = difference < 0 ? -difference : difference;
        const Double width = (high - low) * 1000;
        const Double finite = (left - left) + (right - right);
        Bits ended = size < step.Tolerance ? Bits{} + BisectionStep::kSolved : Bits{};
        ended = ((width < 1) & (width > -1)) ? Bits{} + BisectionStep::kGaveUp : ended;
        ended = finite == 0 ? ended : Bits{} + BisectionStep::kFailed;

        const Bits before = LoadMask(step.Status, at);
        const Bits now = before == 0 ? ended : before;
        StoreAs<double>(step.Answer, at, before == 0 ? middle : load(step.Answer));
        StoreAs<std::int64_t>(step.Status, at, now);
        active += now == 0 ? Bits{} + 1 : Bits{};
    }
    std::int64_t each[kWidth];
    __builtin_memcpy(each, &active, sizeof active);
    std::int64_t sum = 0;
    for (const std::int64_t lane : each)
        sum += lane;
    return sum;
}

// ---- the set

using PerTypes = std::array<std::array<Kernel, 2>, 2>;
constexpr ElementType kSingle = ElementType::Single;
constexpr ElementType kDouble = ElementType::Double;

template <class Calculation>
constexpr PerTypes kArithmetic{
    {{Singles<Calculation>, Doubles<Calculation, kSingle, kDouble>},
     {Doubles<Calculation, kDouble, kSingle>, Doubles<Calculation, kDouble, kDouble>}}};

constexpr PerTypes kPowers{
    {{Doubles<Raising, kSingle, kSingle>, Doubles<Raising, kSingle, kDouble>},
     {Doubles<Raising, kDouble, kSingle>, Doubles<Raising, kDouble, kDouble>}}};

// An operation on one operand with a result as wide as doubles.
constexpr PerTypes Unary(Kernel ofSingle, Kernel ofDouble)
{
    return {{{nullptr, ofSingle}, {nullptr, ofDouble}}};
}

template <Double function(Double)>
constexpr PerTypes kFunction = Unary(Function<function, kSingle>, Function<function, kDouble>);

constexpr KernelSet kKernels{{kArithmetic<Addition>,
                              kArithmetic<Subtraction>,
                              kArithmetic<Multiplication>,
                              kArithmetic<Division>,
                              kArithmetic<Juxtaposition>,
                              kPowers,
                              Unary(RaiseBase<kSingle>, RaiseBase<kDouble>),
                              {{{RaiseToHalves<kSingle, kSingle>, RaiseToHalves<kSingle, kDouble>},
                                {nullptr, RaiseToHalves<kDouble, kDouble>}}},
                              kFunction<Sine<kWidth>>,
                              kFunction<Cosine<kWidth>>,
                              kFunction<Tangent<kWidth>>,
                              kFunction<Logarithm<kWidth>>,
                              kFunction<Magnitude<kWidth>>,
                              kFunction<ArcSine<kWidth>>,
                              kFunction<ArcCosine<kWidth>>,
                              kFunction<ArcTangent<kWidth>>,
                              {{{NegateSingles, nullptr}, {nullptr, NegateDoubles}}},
                              Unary(nullptr, FindSigns),
                              Unary(nullptr, TakePositive),
                              {{{nullptr, nullptr}, {NarrowDoubles, nullptr}}},
                              Unary(FindNonZero<kSingle>, FindNonZero<kDouble>),
                              Unary(nullptr, AndMasks),
                              Unary(nullptr, OrMasks),
                              Unary(nullptr, RoundWhereNarrow),
                              Unary(CheckFinite<kSingle>, CheckFinite<kDouble>),
                              Unary(FinishPoints<kSingle>, FinishPoints<kDouble>)},
                             HalveIntervals,
                             NarrowIntervals};

} // namespace

template <>
const KernelSet& Kernels<kWidth>()
{
    return kKernels;
}

} // namespace kelvane
