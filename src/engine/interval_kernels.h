#pragma once

#include <array>
#include <cstdint>

#include "engine/program.h"

// The loops behind the instructions of a field over boxes, one set for every width of vectors.
// Internal to FieldRunner.
//
// A kernel gives an interval that holds the result of its operation, exact or as calculated at a
// point, for all operands in their intervals at which the operation has a result: whatever part of
// an operand lies outside the domain is left out. Lows are below infinity and highs above its
// negative, and none is NaN. Where the operation has a result nowhere, all numbers are given.

namespace kelvane {

// What one instruction works on. Each array has an element a box.
struct IntervalStep {
    double* Low = nullptr;
    double* High = nullptr;
    const double* LowA = nullptr;
    const double* HighA = nullptr;
    const double* LowB = nullptr;
    const double* HighB = nullptr;
    std::int64_t StrideA = 1; // 0: the same number (a constant) for all boxes
    std::int64_t StrideB = 1;
    std::int64_t Count = 0; // boxes, a multiple of kPointsAtOnce
    std::int64_t Parameter = 0;
    const PowerBase* Base = nullptr;
    std::int64_t* Marks = nullptr; // receives what the operation meets, besides what is there
};

using IntervalKernel = void (*)(const IntervalStep&);

struct IntervalKernelSet {
    // By operation; nullptr for those that fields do without.
    std::array<IntervalKernel, kOperations> Run;

    IntervalKernel SubtractSame;  // a - a
    IntervalKernel DivideSame;    // a / a
    IntervalKernel PowerConstant; // Power where B is a constant
};

// The set for vectors of W doubles. To be called only on a processor that has them.
template <int W>
const IntervalKernelSet& IntervalKernels();

template <>
const IntervalKernelSet& IntervalKernels<1>();
template <>
const IntervalKernelSet& IntervalKernels<2>();
template <>
const IntervalKernelSet& IntervalKernels<4>();
template <>
const IntervalKernelSet& IntervalKernels<8>();

} // namespace kelvane
