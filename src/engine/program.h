#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/equations.h"

// One side of an equation as a list of instructions, each of which works on all points of a block
// before the next one starts.
//
// An operand is a variable, a constant or a register, and holds one element a point. Singles are
// 32-bit floats, doubles 64-bit floats, masks 64-bit integers that are 0 or -1. Every element gets
// the very bits that the plain evaluator computes for the same step.
//
// A point fails when some step of it is not finite. Most operations hand such a value on to their
// result; before one that may swallow it, Check remembers it, and Finish makes it NaN.

namespace kelvane {

enum class Operation : std::uint8_t {
    Add,         // a + b; single when both are, like the next four
    Subtract,    // a - b
    Multiply,    // a * b
    Divide,      // a / b; not finite where b is 0
    Juxtapose,   // b where a is 0, else a * b
    Power,       // a raised to b, double; b may be anything
    BasePower,   // a constant raised to a, double; Parameter says where the constant is
    HalvesPower, // a raised to half of Parameter; single or double
    Sine,        // double, like all functions below
    Cosine,
    Tangent,
    Logarithm,
    Absolute,
    ArcSine,
    ArcCosine,
    ArcTangent,
    Negate,     // -a, as wide as a
    Sign,       // -1, 0 or 1; double
    Positive,   // a where it is positive, else 0; double
    Narrow,     // a double a as a single
    NonZero,    // mask: a is not 0
    And,        // of two masks
    Or,         // of two masks
    RoundWhere, // a rounded to single where the mask b is 0; double
    Check,      // the point fails where a is not finite; no result
    Finish      // the outcome: a, or NaN where the point has failed; the last instruction
};
inline constexpr int kOperations = static_cast<int>(Operation::Finish) + 1;

enum class ElementType : std::uint8_t { Single, Double, Mask };

enum class OperandKind : std::uint8_t { Variable, Constant, Register };

struct Operand {
    OperandKind Kind = OperandKind::Constant;
    ElementType Type = ElementType::Single;
    std::uint16_t Index = 0; // 0 to 2 for x, y, z; else into the constants or registers
};

struct Instruction {
    Operation Code = Operation::Finish;
    Operand A;
    Operand B;                // without a second operand A once more, but with the result's type
    std::uint16_t Result = 0; // register; of another type than an operand only if not shared
    std::int16_t Parameter = 0;
};

// One constant in every lane of the widest vector. Singles fill it twice as often as doubles.
struct alignas(64) ConstantLanes {
    std::array<std::byte, 64> Bytes;
};

// A positive constant that is raised to powers, and its binary logarithm in two parts.
struct PowerBase {
    double Base = 0;
    double High = 0;
    double Low = 0;
};

struct Program {
    // A longer way to the result than this many live registers is left to the plain evaluator.
    static constexpr int kMaxRegisters = 64;

    std::vector<Instruction> Code; // empty: not compiled
    std::vector<ConstantLanes> Constants;
    std::vector<PowerBase> Bases; // what BasePower refers to
    int Registers = 0;            // used, at most kMaxRegisters
    bool MayFailInside = false;   // has a Check

    bool IsCompiled() const { return !Code.empty(); }
};

// The program of the stretch of an equation that Evaluate would read from the position on:
// EquationsStart for the right side, 1 for the left. Not compiled when it is nested too deeply.
Program Compile(const Equation& equation, int position);

} // namespace kelvane
