#pragma once

#include <array>
#include <cstdint>

#include "engine/program.h"

// The loops behind the instructions, one set for every width of vectors. Internal to the block
// evaluation and the block bisection.

namespace kelvane {

// What one instruction works on.
struct KernelStep {
    void* Result = nullptr;
    const void* A = nullptr;
    const void* B = nullptr;
    std::int64_t StrideA = 1; // 0: the same element (a constant) for all points
    std::int64_t StrideB = 1;
    std::int64_t Count = 0; // points, a multiple of kPointsAtOnce
    std::int64_t Parameter = 0;
    const PowerBase* Base = nullptr;
    double* Failed = nullptr; // a point: 0, or NaN once it has failed
};

// One halving of the interval of every point. Each array has an element a point.
struct BisectionStep {
    // Status of a point; the first three are how a search ends.
    static constexpr std::int64_t kActive = 0;
    static constexpr std::int64_t kSolved = 1;
    static constexpr std::int64_t kGaveUp = 2;
    static constexpr std::int64_t kFailed = 3;

    double* Low = nullptr; // the interval: two singles
    double* High = nullptr;
    const float* Middle = nullptr;
    const double* Left = nullptr; // the sides of the equation at the middle
    const double* Right = nullptr;
    const std::int64_t* Rising = nullptr; // mask: look higher where left > right
    double* Answer = nullptr;             // the middle at which the point's search ended
    std::int64_t* Status = nullptr;
    double Tolerance = 0;
    std::int64_t Count = 0; // points, a multiple of kPointsAtOnce
};

// Kernels work on whole vectors of every width.
inline constexpr int kPointsAtOnce = 16;

constexpr int WholeVectors(int points)
{
    return (points + kPointsAtOnce - 1) / kPointsAtOnce * kPointsAtOnce;
}

using Kernel = void (*)(const KernelStep&);

struct KernelSet {
    // By operation and by the types of both operands, or of the one and of the result; nullptr
    // where the compiler never asks for it. Masks count as doubles.
    std::array<std::array<std::array<Kernel, 2>, 2>, kOperations> Run;

    // The middles of the intervals, rounded to single.
    void (*Halve)(const double* low, const double* high, float* middle, std::int64_t count);

    // Narrows the intervals to the half that keeps the solution and ends searches. Returns how many
    // of the points are still active.
    std::int64_t (*Narrow)(const BisectionStep& step);
};

// The set for vectors of W doubles. To be called only on a processor that has them.
template <int W>
const KernelSet& Kernels();

template <>
const KernelSet& Kernels<1>();
template <>
const KernelSet& Kernels<2>();
template <>
const KernelSet& Kernels<4>();
template <>
const KernelSet& Kernels<8>();

} // namespace kelvane
