#include "engine/block_evaluator.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

#include "engine/evaluate.h"

namespace kelvane {

namespace {

const KernelSet& KernelsFor(VectorLevel level)
{
    switch (level) {
#if defined(__x86_64__)
    case VectorLevel::Bits512:
        return Kernels<8>();
    case VectorLevel::Bits256:
        return Kernels<4>();
#endif
    case VectorLevel::Bits128:
        return Kernels<2>();
    default:
        return Kernels<1>();
    }
}

int TypeIndex(ElementType type)
{
    return type == ElementType::Single ? 0 : 1;
}

double PlainValue(const CompiledSide& side, const BlockPoints& points, std::size_t at)
{
    EvalState state{.EvalX = points.X[at], .EvalY = points.Y[at], .EvalZ = points.Z[at]};
    int position = side.Start;
    const double value = Evaluate(state, position, *side.Source);
    return state.EvalError ? std::numeric_limits<double>::quiet_NaN() : value;
}

} // namespace

bool HasLevel(VectorLevel level)
{
    switch (level) {
#if defined(__x86_64__)
    case VectorLevel::Bits512:
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
               __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512bw");
    case VectorLevel::Bits256:
        return __builtin_cpu_supports("avx2");
#else
    case VectorLevel::Bits512:
    case VectorLevel::Bits256:
        return false;
#endif
    default:
        return true;
    }
}

VectorLevel BestLevel()
{
    for (const VectorLevel level : {VectorLevel::Bits512, VectorLevel::Bits256}) {
        if (HasLevel(level))
            return level;
    }
    return VectorLevel::Bits128;
}

CompiledSide CompileSide(const Equation& equation, int start)
{
    return {Compile(equation, start), &equation, start};
}

BlockEvaluator::BlockEvaluator(VectorLevel level)
    : m_kernels(KernelsFor(level))
{
    assert(HasLevel(level));
}

void BlockEvaluator::Evaluate(const CompiledSide& side, BlockPoints& points, int count,
                              BlockValues& values)
{
    assert(count >= 1 && count <= kBlockPoints);
    if (!side.Code.IsCompiled()) {
        for (std::size_t at = 0; at < static_cast<std::size_t>(count); ++at)
            values.At[at] = PlainValue(side, points, at);
        return;
    }
    const int whole = WholeVectors(count);
    for (auto* variable : {&points.X, &points.Y, &points.Z})
        std::fill(variable->begin() + count, variable->begin() + whole,
                  (*variable)[static_cast<std::size_t>(count) - 1]);
    Run(side.Code, points, whole, values);
}

const void* BlockEvaluator::Find(const Operand& operand, const Program& program,
                                 const BlockPoints& points) const
{
    switch (operand.Kind) {
    case OperandKind::Variable:
        return operand.Index == 0 ? &points.X : operand.Index == 1 ? &points.Y : &points.Z;
    case OperandKind::Constant:
        return &program.Constants[operand.Index];
    default:
        return &m_registers[operand.Index];
    }
}

void BlockEvaluator::Run(const Program& program, const BlockPoints& points, int count,
                         BlockValues& values)
{
    m_registers.resize(std::max(m_registers.size(), static_cast<std::size_t>(program.Registers)));
    if (program.MayFailInside)
        std::fill_n(m_failed.At.begin(), count, 0.0);
    const auto stride = [](const Operand& operand) {
        return operand.Kind == OperandKind::Constant ? 0 : 1;
    };
    for (const Instruction& instruction : program.Code) {
        const auto code = static_cast<std::size_t>(instruction.Code);
        const auto typeA = static_cast<std::size_t>(TypeIndex(instruction.A.Type));
        const auto typeB = static_cast<std::size_t>(TypeIndex(instruction.B.Type));
        const bool last = instruction.Code == Operation::Finish;
        m_kernels.Run[code][typeA][typeB](
            {.Result = last ? static_cast<void*>(&values) : m_registers.data() + instruction.Result,
             .A = Find(instruction.A, program, points),
             .B = Find(instruction.B, program, points),
             .StrideA = stride(instruction.A),
             .StrideB = stride(instruction.B),
             .Count = count,
             .Parameter = instruction.Parameter,
             .Base = program.Bases.data(),
             .Failed = program.MayFailInside ? m_failed.At.data() : m_nothing.At.data()});
    }
}

} // namespace kelvane
