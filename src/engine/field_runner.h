#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/block_evaluator.h"
#include "engine/field.h"

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

// What is known of f over a whole box, as bits. None of them: f is defined and continuous on it.
inline constexpr std::int64_t kPartlyUndefined = 1; // may lack a value somewhere on the box
inline constexpr std::int64_t kMayJump = 2;         // may be not continuous where it has values
inline constexpr std::int64_t kNowhereDefined = 4;  // has no value on the box; proven

// Over each box, f and its derivatives lie in these intervals wherever they exist: bounds are
// rounded outwards, so this is a proof. Where kNowhereDefined is set the intervals say nothing.
// Where a derivative may not exist in a box (in a corner of abs, at the edge of a domain) its
// interval holds all slopes of f between points of the box, which may be all numbers.
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
    VectorLevel m_level;
};

} // namespace kelvane
