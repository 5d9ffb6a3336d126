#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/block_evaluator.h"
#include "engine/field.h"
#include "engine/field_marks.h"
#include "engine/interval_kernels.h"

// Calculates a field at many points at a time, or over many boxes at a time by interval arithmetic,
// on vectors as wide as the processor has; the results are the same on all.

namespace kelvane {

// A double for every element of a block.
struct alignas(64) FieldColumn {
    std::array<double, kBlockPoints> At{};
};

struct FieldPoints {
    FieldColumn X; // world units
    FieldColumn Y;
};

// NaN where f has no value; derivatives may be NaN or infinite where f has a value.
struct FieldValues {
    FieldColumn F;
    FieldColumn AlongX;
    FieldColumn AlongY;
};

// Low <= High; either may be infinite.
struct IntervalColumn {
    FieldColumn Low;
    FieldColumn High;
};

// Boxes are X times Y, world units, finite; a side may have no extent.
struct FieldBoxes {
    IntervalColumn X;
    IntervalColumn Y;
};

// Over each box, f and its derivatives lie in these intervals wherever they exist: bounds are
// rounded outwards, so this is a proof. Where kNowhereDefined is set the intervals say nothing.
// A derivative's interval also holds the slopes of f between any two points of the box that differ
// in that variable only, as long as f is defined and continuous between them: so where the
// derivative itself does not exist (in a corner of abs, at the edge of a domain) it is wide enough,
// and may be all numbers.
struct FieldRanges {
    IntervalColumn F;
    IntervalColumn AlongX;
    IntervalColumn AlongY;
    alignas(64) std::array<std::int64_t, kBlockPoints> Marks{};
};

enum class FieldPart : std::uint8_t {
    Value,       // f alone
    WithGradient // also the derivatives
};

// Room for the results of instructions, and the way to run them. Make one for a whole draw.
class FieldRunner {
public:
    explicit FieldRunner(VectorLevel level = BestLevel()); // needs HasLevel(level)

    // The values at the first count points, 1 to kBlockPoints. The points after those may be
    // changed, and evaluated as well. Needs field.IsCompiled(), as does the next.
    void AtPoints(const Field& field, FieldPoints& points, int count, FieldPart part,
                  FieldValues& values);

    // The ranges over the first count boxes; likewise.
    void OverBoxes(const Field& field, FieldBoxes& boxes, int count, FieldPart part,
                   FieldRanges& ranges);

private:
    // Where a register, constant or variable lies: its low bounds and its high ones.
    struct Place {
        const double* Low = nullptr;
        const double* High = nullptr;
        std::int64_t Stride = 1;
    };
    struct Stretch;

    void Reserve(const Program& program, int columns);
    double* Register(int index, int column);
    Place Find(const Operand& operand, const Program& program, const Stretch& stretch);
    IntervalKernel KernelFor(const Instruction& instruction) const;
    void RunPoints(const Field& field, FieldPart part, const Stretch& stretch, FieldValues& values);
    void RunBoxes(const Field& field, FieldPart part, const Stretch& stretch, FieldRanges& ranges);

    const KernelSet& m_kernels;
    const IntervalKernelSet& m_intervals;
    std::vector<FieldColumn> m_registers;
    int m_columns = 1; // of a register
    int m_stretch = 0; // how many elements are worked on at a time
    alignas(64) std::array<double, kBlockPoints> m_failed{};
    alignas(64) std::array<std::int64_t, kBlockPoints> m_unused{}; // marks of derivatives
};

} // namespace kelvane
