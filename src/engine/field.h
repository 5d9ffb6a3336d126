#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "engine/equations.h"
#include "engine/program.h"

// An equation as a field on the plane: f(x, y) = left side - right side, whose zeros are the curve,
// and its partial derivatives.
//
// A field calculates on the real numbers: the literal numbers and the constants are the singles of
// the table, but no result is rounded to single, so that a curve stays smooth however far the view
// zooms in. A factor that follows a factor multiplies, except where what stands before it is zero
// by construction, such as x-x: there it replaces it, as in the evaluator. Single points at which
// a factor happens to be zero are no exception.
//
// The number e is 2.718282 and p is 3.141592, as everywhere. As in the evaluator, f has no value
// where a step on the way to it has none: a division by 0, a logarithm of 0 or less, a root of a
// negative number, the arc sine and arc cosine from 1 and -1 on, and what is beyond the doubles.
// Negative numbers have powers only with constant exponents.

namespace kelvane {

// What a field's program calculates, in this order.
enum class FieldOutput : std::uint8_t {
    Value,  // f
    AlongX, // df/dx, at points at which f has no derivative any value between the slopes beside it
    AlongY  // df/dy
};

struct Field {
    // Instructions whose variables and results are all doubles: index 0 is x, 1 is y. Operation
    // Finish with Parameter n ends the calculation of output n. Empty: not compiled. May use more
    // registers than Program::kMaxRegisters.
    Program Code;

    // The leading instructions that give f alone, its Finish included.
    std::size_t ValueLength = 0;

    // The derivatives, where they are the same number everywhere, and whether f has a value does
    // not depend on the variable either. So a constant df/dy other than 0 makes the curve the graph
    // of y = -f(x, 0) / (df/dy), and the same with x and y exchanged.
    std::optional<double> ConstantAlongX;
    std::optional<double> ConstantAlongY;

    bool IsCompiled() const { return !Code.Code.empty(); }
};

// Not compiled when the equation and its derivatives need more live registers than this, which
// takes the nastiest of the longest equations. An equation that has no value anywhere, such as
// y=1/(x-x), gives a field that has none.
inline constexpr int kMaxFieldRegisters = 4096;
Field CompileField(const Equation& equation);

} // namespace kelvane
