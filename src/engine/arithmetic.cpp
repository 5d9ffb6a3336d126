#include "engine/arithmetic.h"

#include <cassert>
#include <cmath>
#include <limits>

#include "engine/scalar_math.h"

namespace kelvane {

namespace {

// Rounds to a single where both operands were singles. An overflow on the way becomes infinite.
Number Rounded(double value, Number a, Number b)
{
    const bool single = a.Single && b.Single;
    return {single ? static_cast<double>(static_cast<float>(value)) : value, single};
}

constexpr double kFailed = std::numeric_limits<double>::quiet_NaN();

} // namespace

Number Add(Number a, Number b)
{
    return Rounded(a.Value + b.Value, a, b);
}

Number Multiply(Number a, Number b)
{
    return Rounded(a.Value * b.Value, a, b);
}

Number Divide(Number a, Number b)
{
    return b.Value == 0 ? Number{kFailed, a.Single} : Rounded(a.Value / b.Value, a, b);
}

Number Raise(Number a, Number b)
{
    return Rounded(Power(a.Value, b.Value), a, b);
}

Number Negate(Number a)
{
    return {-a.Value, a.Single};
}

Number ApplyFunction(Token function, Number a)
{
    const double v = a.Value;
    switch (function) {
    case Token::Sin:
        return {Sine(v), false};
    case Token::Cos:
        return {Cosine(v), false};
    case Token::Tan:
        return {Tangent(v), false};
    case Token::Log:
        return {Logarithm(v), false};
    case Token::Abs:
        return {std::fabs(v), false};
    case Token::Asin:
        return {ArcSine(v), false};
    case Token::Acos:
        return {ArcCosine(v), false};
    case Token::Atan:
        return {ArcTangent(v), false};
    default:
        assert(false && "not a function");
        return {kFailed, false};
    }
}

} // namespace kelvane
