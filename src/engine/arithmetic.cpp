#include "engine/arithmetic.h"

#include <cassert>
#include <cmath>
#include <limits>

namespace kelvane {

namespace {

// Rounds to a single where both operands were singles. An overflow on the way becomes infinite.
Number Rounded(double value, Number a, Number b)
{
    const bool single = a.Single && b.Single;
    return {single ? static_cast<double>(static_cast<float>(value)) : value, single};
}

constexpr double kFailed = std::numeric_limits<double>::quiet_NaN();

// a / sqrt(1 - a^2), the tangent of the angle whose sine is a; fails where the root is 0 or not
// real.
double TangentOfSine(double a)
{
    const double root = std::sqrt(1 - a * a);
    return root > 0 ? a / root : kFailed;
}

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
    return Rounded(std::pow(a.Value, b.Value), a, b);
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
        return {std::sin(v), false};
    case Token::Cos:
        return {std::cos(v), false};
    case Token::Tan:
        return {std::tan(v), false};
    case Token::Log:
        return {std::log(v), false};
    case Token::Abs:
        return {std::fabs(v), false};
    case Token::Asin:
        return {std::atan(TangentOfSine(v)), false};
    case Token::Acos:
        return {std::atan(-TangentOfSine(v)) + 2 * std::atan(1.0), false};
    case Token::Atan:
        return {std::atan(v), false};
    default:
        assert(!"a function");
        return {kFailed, false};
    }
}

} // namespace kelvane
