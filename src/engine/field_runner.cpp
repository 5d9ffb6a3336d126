#include "engine/field_runner.h"

#include <algorithm>
#include <cassert>
#include <span>

namespace kelvane {

namespace {

const IntervalKernelSet& IntervalKernelsFor(VectorLevel level)
{
    switch (level) {
#if defined(__x86_64__)
    case VectorLevel::Bits512:
        return IntervalKernels<8>();
    case VectorLevel::Bits256:
        return IntervalKernels<4>();
#endif
    case VectorLevel::Bits128:
        return IntervalKernels<2>();
    default:
        return IntervalKernels<1>();
    }
}

// Bytes of registers that stay in the nearest cache.
constexpr std::size_t kNearBytes = 24U << 10U;

std::span<const Instruction> PartOf(const Field& field, FieldPart part)
{
    const std::span<const Instruction> code(field.Code.Code);
    return part == FieldPart::Value ? code.first(field.ValueLength) : code;
}

void FillUp(FieldColumn& column, int count)
{
    std::fill(column.At.begin() + count, column.At.begin() + WholeVectors(count),
              column.At[static_cast<std::size_t>(count) - 1]);
}

} // namespace

// The elements that are worked on together, and the variables.
struct FieldRunner::Stretch {
    std::size_t First = 0;
    std::int64_t Count = 0;
    std::array<Place, 2> Variables;
};

FieldRunner::FieldRunner(VectorLevel level)
    : m_kernels(BlockEvaluator(level).Kernels())
    , m_intervals(IntervalKernelsFor(level))
{
}

// Makes room for the registers, and decides how many elements to work on at a time.
void FieldRunner::Reserve(const Program& program, int columns)
{
    const auto all = static_cast<std::size_t>(std::max(program.Registers, 1)) *
                     static_cast<std::size_t>(columns);
    const auto fitting = kNearBytes / (all * sizeof(double)) / kPointsAtOnce * kPointsAtOnce;
    m_stretch = static_cast<int>(
        std::clamp<std::size_t>(fitting, 2 * std::size_t{kPointsAtOnce}, kBlockPoints));
    m_columns = columns;
    const std::size_t elements = all * static_cast<std::size_t>(m_stretch);
    const std::size_t needed = (elements + kBlockPoints - 1) / kBlockPoints;
    m_registers.resize(std::max(m_registers.size(), needed));
}

double* FieldRunner::Register(int index, int column)
{
    return m_registers.front().At.data() + std::ptrdiff_t{m_stretch} * index * m_columns +
           std::ptrdiff_t{m_stretch} * column;
}

FieldRunner::Place FieldRunner::Find(const Operand& operand, const Program& program,
                                     const Stretch& stretch)
{
    switch (operand.Kind) {
    case OperandKind::Variable:
        return stretch.Variables[operand.Index];
    case OperandKind::Constant: {
        const void* const bytes = program.Constants[operand.Index].Bytes.data();
        const auto* const lanes = static_cast<const double*>(bytes);
        return {lanes, lanes, 0};
    }
    default:
        return {Register(operand.Index, 0), Register(operand.Index, m_columns - 1), 1};
    }
}

// ---- points

void FieldRunner::AtPoints(const Field& field, FieldPoints& points, int count, FieldPart part,
                           FieldValues& values)
{
    assert(field.IsCompiled() && count >= 1 && count <= kBlockPoints);
    Reserve(field.Code, 1);
    FillUp(points.X, count);
    FillUp(points.Y, count);
    const int whole = WholeVectors(count);
    for (int first = 0; first < whole; first += m_stretch) {
        const double* const x = points.X.At.data() + first;
        const double* const y = points.Y.At.data() + first;
        RunPoints(field, part,
                  {static_cast<std::size_t>(first),
                   std::min(m_stretch, whole - first),
                   {Place{x, x, 1}, Place{y, y, 1}}},
                  values);
    }
}

void FieldRunner::RunPoints(const Field& field, FieldPart part, const Stretch& stretch,
                            FieldValues& values)
{
    std::fill_n(m_failed.begin(), stretch.Count, 0.0);
    const std::array<FieldColumn*, 3> outputs{&values.F, &values.AlongX, &values.AlongY};
    for (const Instruction& instruction : PartOf(field, part)) {
        const Place a = Find(instruction.A, field.Code, stretch);
        const Place b = Find(instruction.B, field.Code, stretch);
        const bool ends = instruction.Code == Operation::Finish;
        double* const result =
            ends ? outputs[static_cast<std::size_t>(instruction.Parameter)]->At.data() +
                       stretch.First
                 : Register(instruction.Result, 0);
        m_kernels.Run[static_cast<std::size_t>(instruction.Code)][1][1](
            {.Result = result,
             .A = a.Low,
             .B = b.Low,
             .StrideA = a.Stride,
             .StrideB = b.Stride,
             .Count = stretch.Count,
             .Parameter = instruction.Parameter,
             .Base = field.Code.Bases.data(),
             .Failed = m_failed.data()});
    }
}

// ---- boxes

void FieldRunner::OverBoxes(const Field& field, FieldBoxes& boxes, int count, FieldPart part,
                            FieldRanges& ranges)
{
    assert(field.IsCompiled() && count >= 1 && count <= kBlockPoints);
    Reserve(field.Code, 2);
    for (IntervalColumn* const side : {&boxes.X, &boxes.Y}) {
        FillUp(side->Low, count);
        FillUp(side->High, count);
    }
    const int whole = WholeVectors(count);
    for (int first = 0; first < whole; first += m_stretch) {
        const auto place = [first](const IntervalColumn& side) {
            return Place{side.Low.At.data() + first, side.High.At.data() + first, 1};
        };
        RunBoxes(field, part,
                 {static_cast<std::size_t>(first),
                  std::min(m_stretch, whole - first),
                  {place(boxes.X), place(boxes.Y)}},
                 ranges);
    }
}

IntervalKernel FieldRunner::KernelFor(const Instruction& instruction) const
{
    const Operand& a = instruction.A;
    const Operand& b = instruction.B;
    const bool isSame = a.Kind == b.Kind && a.Index == b.Index;
    if (instruction.Code == Operation::Subtract && isSame)
        return m_intervals.SubtractSame;
    if (instruction.Code == Operation::Divide && isSame)
        return m_intervals.DivideSame;
    if (instruction.Code == Operation::Power && b.Kind == OperandKind::Constant)
        return m_intervals.PowerConstant;
    return m_intervals.Run[static_cast<std::size_t>(instruction.Code)];
}

void FieldRunner::RunBoxes(const Field& field, FieldPart part, const Stretch& stretch,
                           FieldRanges& ranges)
{
    std::int64_t* marks = ranges.Marks.data() + stretch.First;
    std::fill_n(marks, stretch.Count, 0);
    const std::array<IntervalColumn*, 3> outputs{&ranges.F, &ranges.AlongX, &ranges.AlongY};
    for (const Instruction& instruction : PartOf(field, part)) {
        if (instruction.Code == Operation::Check)
            continue;
        const Place a = Find(instruction.A, field.Code, stretch);
        const Place b = Find(instruction.B, field.Code, stretch);
        IntervalStep step{.Low = Register(instruction.Result, 0),
                          .High = Register(instruction.Result, 1),
                          .LowA = a.Low,
                          .HighA = a.High,
                          .LowB = b.Low,
                          .HighB = b.High,
                          .StrideA = a.Stride,
                          .StrideB = b.Stride,
                          .Count = stretch.Count,
                          .Parameter = instruction.Parameter,
                          .Base = field.Code.Bases.data(),
                          .Marks = marks};
        if (instruction.Code == Operation::Finish) {
            IntervalColumn& output = *outputs[static_cast<std::size_t>(instruction.Parameter)];
            step.Low = output.Low.At.data() + stretch.First;
            step.High = output.High.At.data() + stretch.First;
            marks = m_unused.data(); // what follows are derivatives
        }
        KernelFor(instruction)(step);
    }
}

} // namespace kelvane
