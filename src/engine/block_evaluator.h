#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/block_kernels.h"
#include "engine/equations.h"
#include "engine/eval_state.h"
#include "engine/program.h"

// Evaluates a side of an equation at many points at a time, with the results of Evaluate to the
// last bit, on vectors as wide as the processor has.

namespace kelvane {

// How many points are worked on at a time.
inline constexpr int kBlockPoints = 256;

// The instructions to work with, narrowest first. All give the same bits.
enum class VectorLevel : std::uint8_t {
    Scalar,  // no vectors
    Bits128, // SSE2, NEON; every supported processor has it
    Bits256, // AVX2
    Bits512  // AVX-512 (F, DQ, VL and BW)
};

// Whether this processor can work at a level, and the widest at which it can.
bool HasLevel(VectorLevel level);
VectorLevel BestLevel();

// The variables at the points of a block, world units.
struct alignas(64) BlockPoints {
    std::array<float, kBlockPoints> X{};
    std::array<float, kBlockPoints> Y{};
    std::array<float, kBlockPoints> Z{};
};

// A result for every point; NaN where the evaluation fails.
struct alignas(64) BlockValues {
    std::array<double, kBlockPoints> At{};
};

// A side of an equation, ready to be evaluated. The equation must stay where and as it is: a side
// without a program is left to the plain evaluator.
struct CompiledSide {
    Program Code;
    const Equation* Source = nullptr;
    int Start = 1; // the slot where the side begins
};

CompiledSide CompileSide(const Equation& equation, int start);

// Room for the results of instructions, and the way to run them. Up to 140 kB; make one for a whole
// draw.
class BlockEvaluator {
public:
    explicit BlockEvaluator(VectorLevel level = BestLevel()); // needs HasLevel(level)

    // The values of a side at the first count points, 1 to kBlockPoints. The points after those
    // are made equal to the last one, and may be evaluated as well.
    void Evaluate(const CompiledSide& side, BlockPoints& points, int count, BlockValues& values);

    const KernelSet& Kernels() const { return m_kernels; }

private:
    struct alignas(64) Register {
        std::array<std::byte, kBlockPoints * sizeof(double)> Bytes;
    };

    void Run(const Program& program, const BlockPoints& points, int count, BlockValues& values);
    const void* Find(const Operand& operand, const Program& program,
                     const BlockPoints& points) const;

    const KernelSet& m_kernels;
    std::vector<Register> m_registers;
    BlockValues m_failed;  // a point: 0, or NaN once it has failed
    BlockValues m_nothing; // the same for programs without Check: always 0
};

} // namespace kelvane
