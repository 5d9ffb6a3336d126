#pragma once

#include "engine/equations.h"

// The evaluator's numbers. Variables and literal numbers are 32-bit floats, results of functions
// are 64-bit; an operation on two 32-bit values gives a 32-bit value, with 32-bit overflow, any
// other combination a 64-bit one.
//
// Every operation computes in double and rounds at the end, which for + - * / of two singles gives
// the correctly rounded single. A failure of any kind (overflow, a value outside a function's
// domain, a power that has no real value, division by zero) gives a value that is not finite.

namespace kelvane {

struct Number {
    double Value = 0;
    bool Single = true; // holds a 32-bit float
};

Number Add(Number a, Number b);
Number Multiply(Number a, Number b);
Number Divide(Number a, Number b);

// a raised to b. 0^0 is 1; 0 to a negative power and a negative base with an exponent that is not
// whole fail.
Number Raise(Number a, Number b);

Number Negate(Number a);

// Sine, cosine, tangent (radians), natural logarithm, absolute value and the arc functions; always
// 64-bit. asin a = atan(a / sqrt(1 - a^2)) and acos a = atan(-a / sqrt(1 - a^2)) + 2 atan 1, so
// both fail from |a| = 1 on. Needs IsFunction(function).
Number ApplyFunction(Token function, Number a);

} // namespace kelvane
