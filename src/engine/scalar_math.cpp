#include "engine/scalar_math.h"

#include <cmath>

#include "engine/vector_math.h"

namespace kelvane {

double Sine(double a)
{
    return Sine<1>(a);
}

double Cosine(double a)
{
    return Cosine<1>(a);
}

double Tangent(double a)
{
    return Tangent<1>(a);
}

double Logarithm(double a)
{
    return Logarithm<1>(a);
}

double ArcTangent(double a)
{
    return ArcTangent<1>(a);
}

double ArcSine(double a)
{
    return ArcSine<1>(a);
}

double ArcCosine(double a)
{
    return ArcCosine<1>(a);
}

double SquareRoot(double a)
{
    return SquareRoot<1>(a);
}

double Power(double a, double b)
{
    return Power<1>(a, b);
}

bool IsChainExponent(double b)
{
    return IsChainExponent<1>(b);
}

double ChainPower(double a, double b)
{
    return HalvesPower<1>(a, static_cast<int>(2 * b));
}

Log2Value Log2Of(double a)
{
    const Log2Parts<1> parts = Log2Of<1>(a);
    return {parts.High, parts.Low};
}

double SineOfAny(double a)
{
    return std::sin(a);
}

double CosineOfAny(double a)
{
    return std::cos(a);
}

double TangentOfAny(double a)
{
    return std::tan(a);
}

} // namespace kelvane
