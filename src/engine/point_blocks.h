#pragma once

#include <array>
#include <cstdint>

#include "engine/block_evaluator.h"
#include "engine/point_evaluation.h"

// The dependent variable of one equation at many points at a time: as SimpleY, SolveY and their
// companions give it, point by point and bit by bit.

namespace kelvane {

enum class PointOutcome : std::uint8_t {
    Found,
    Failed, // EvalError
    GaveUp  // EvalError and EvalSkip
};

struct BlockResults {
    std::array<float, kBlockPoints> Value{}; // where found
    std::array<PointOutcome, kBlockPoints> Outcome{};
};

// Both sides of an equation. It must stay where and as it is: who exchanges its variables compiles
// it again.
struct CompiledEquation {
    CompiledSide Left;
    CompiledSide Right;

    bool IsCompiled() const { return Left.Code.IsCompiled() && Right.Code.IsCompiled(); }
};

CompiledEquation CompileEquation(const Equation& equation);

// How many points to give to Simple or to Solve at once, 1 to kBlockPoints, so that a call takes a
// few milliseconds at the most, however long the equation and the range are.
int SimpleBlockSize(const CompiledEquation& equation);
int SolveBlockSize(const CompiledEquation& equation, const SolveRange& range);

// What the points of a block are solved for, where, and which half each of them keeps.
struct BlockSearch {
    Dependent Variable = Dependent::Y;
    SolveRange Range;
    std::array<SolveHalf, kBlockPoints> Halves{};
};

class PointSolver {
public:
    explicit PointSolver(VectorLevel level = BestLevel()); // needs HasLevel(level)

    // Simple: the right side at the first count points, 1 to kBlockPoints.
    void Simple(const CompiledEquation& equation, BlockPoints& points, int count,
                BlockResults& results);

    // Advanced: the solutions at the first count points, each searched for on its own.
    void Solve(const CompiledEquation& equation, const BlockPoints& points, int count,
               const BlockSearch& search, BlockResults& results);

    // The direction test at the other variables of the state; see DirectionY.
    SolveHalf Direction(const CompiledEquation& equation, Dependent dependent, EvalState& state);

private:
    // Where the searches stand. Searches that have ended stay among the others until they are
    // enough to be worth moving the rest together.
    struct Searches {
        BlockPoints Points;
        alignas(64) std::array<double, kBlockPoints> Low{};
        alignas(64) std::array<double, kBlockPoints> High{};
        alignas(64) std::array<double, kBlockPoints> Answer{};
        alignas(64) std::array<std::int64_t, kBlockPoints> Rising{};
        alignas(64) std::array<std::int64_t, kBlockPoints> Status{};
        std::array<std::uint16_t, kBlockPoints> Point{}; // which point of the block it is
        int Count = 0;
    };

    void Begin(const BlockPoints& points, int count, const BlockSearch& search);
    std::int64_t Step(const CompiledEquation& equation, const BlockSearch& search);
    void TakeEnded(BlockResults& results);
    void FillUp();

    BlockEvaluator m_evaluator;
    BlockValues m_left;
    BlockValues m_right;
    Searches m_searches;
};

} // namespace kelvane
