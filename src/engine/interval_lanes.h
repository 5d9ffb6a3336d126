#pragma once

#include <cstdint>

#include "engine/field_marks.h"
#include "engine/interval_kernels.h"
#include "engine/lanes.h"
#include "engine/vector_math.h"

// Intervals in as many lanes as a vector has, their rounding, and the loops over boxes. Part of
// interval_kernels.cpp, which is compiled once for every width; nothing else includes it, and all
// of it is internal there.

namespace kelvane {

namespace {

constexpr int kWidth = KELVANE_VECTOR_WIDTH;

using Double = Lanes<kWidth>::Double;
using Bits = Lanes<kWidth>::Bits;

constexpr double kLargest = 0x1.fffffffffffffp1023;
constexpr double kTiny = 0x1p-1074;
constexpr double kUlp = 0x1p-52;           // of a number, at most
constexpr double kOneRounding = 0x1.8p-53; // reaches the next number from any

struct Range {
    Double Low;
    Double High;
};

// What an operation gives.
struct Found {
    Range Values;
    Bits Marks;
};

[[gnu::always_inline]] inline Double All(double value)
{
    return Broadcast<kWidth>(value);
}

[[gnu::always_inline]] inline Double Smaller(Double a, Double b)
{
    return a < b ? a : b;
}

[[gnu::always_inline]] inline Double Larger(Double a, Double b)
{
    return a > b ? a : b;
}

template <class Mask>
[[gnu::always_inline]] inline Bits MarkWhere(Mask mask, std::int64_t mark)
{
    return mask ? Bits{} + static_cast<std::uint64_t>(mark) : Bits{};
}

// A lower bound of a number that was calculated with a relative error, and an upper one.
[[gnu::always_inline]] inline Double Below(Double value, double error)
{
    const Double finite = Smaller(value, All(kLargest));
    return finite - (Magnitude<kWidth>(finite) * error + kTiny);
}

[[gnu::always_inline]] inline Double Above(Double value, double error)
{
    return -Below(-value, error);
}

[[gnu::always_inline]] inline Range Widened(Range range, double error)
{
    return {Below(range.Low, error), Above(range.High, error)};
}

// An overflow is no value; the raw bounds tell.
[[gnu::always_inline]] inline Bits OverflowMarks(Range raw)
{
    return MarkWhere((raw.High > kLargest) | (raw.Low < -kLargest), kPartlyUndefined) |
           MarkWhere((raw.Low > kLargest) | (raw.High < -kLargest), kNowhereDefined);
}

// All numbers where there are no values.
[[gnu::always_inline]] inline Found AllWhereNone(Found found)
{
    const auto isNone = (found.Marks & static_cast<std::uint64_t>(kNowhereDefined)) != 0;
    return {{isNone ? All(-__builtin_inf()) : found.Values.Low,
             isNone ? All(__builtin_inf()) : found.Values.High},
            found.Marks};
}

// ---- loops

[[gnu::always_inline]] inline Double LoadLanes(const double* from, std::int64_t at)
{
    Double lanes;
    __builtin_memcpy(&lanes, from + at, sizeof lanes);
    return lanes;
}

[[gnu::always_inline]] inline void Store(const IntervalStep& step, std::int64_t at, Range range)
{
    __builtin_memcpy(step.Low + at, &range.Low, sizeof range.Low);
    __builtin_memcpy(step.High + at, &range.High, sizeof range.High);
}

[[gnu::always_inline]] inline void AddMarks(const IntervalStep& step, std::int64_t at, Bits marks)
{
    Bits before;
    __builtin_memcpy(&before, step.Marks + at, sizeof before);
    marks |= before;
    __builtin_memcpy(step.Marks + at, &marks, sizeof marks);
}

[[gnu::always_inline]] inline Range LoadA(const IntervalStep& step, std::int64_t at)
{
    return {LoadLanes(step.LowA, at * step.StrideA), LoadLanes(step.HighA, at * step.StrideA)};
}

[[gnu::always_inline]] inline Range LoadB(const IntervalStep& step, std::int64_t at)
{
    return {LoadLanes(step.LowB, at * step.StrideB), LoadLanes(step.HighB, at * step.StrideB)};
}

// An operation that never fails: the body maps the operand to its range.
template <class Body>
[[gnu::always_inline]] inline void EachRange(const IntervalStep& step, Body body)
{
    const IntervalStep now = step;
    for (std::int64_t at = 0; at < now.Count; at += kWidth)
        Store(now, at, body(LoadA(now, at)));
}

// The body maps the operand to a Found.
template <class Body>
[[gnu::always_inline]] inline void EachFound(const IntervalStep& step, Body body)
{
    const IntervalStep now = step;
    for (std::int64_t at = 0; at < now.Count; at += kWidth) {
        const Found found = body(LoadA(now, at));
        Store(now, at, found.Values);
        AddMarks(now, at, found.Marks);
    }
}

template <Found calculation(Range, Range)>
void OfTwo(const IntervalStep& step)
{
    const IntervalStep now = step;
    for (std::int64_t at = 0; at < now.Count; at += kWidth) {
        const Found found = calculation(LoadA(now, at), LoadB(now, at));
        Store(now, at, found.Values);
        AddMarks(now, at, found.Marks);
    }
}

} // namespace

} // namespace kelvane
