#pragma once

// The elementary functions of one number. They are vector_math.h in one lane, so a value calculated
// alone has the same bits as one calculated among others; that header says how they work and how
// exact they are. A failure gives a value that is not finite.

namespace kelvane {

double Sine(double a); // radians, as in the next two
double Cosine(double a);
double Tangent(double a);
double Logarithm(double a); // natural
double ArcTangent(double a);
double ArcSine(double a);
double ArcCosine(double a);
double SquareRoot(double a);
double Power(double a, double b); // a raised to b

// Powers that are a few multiplications and perhaps a square root: exponents that are whole numbers
// or halves of at most this size.
inline constexpr int kMaxChainExponent = 16;
bool IsChainExponent(double b);
double ChainPower(double a, double b); // needs IsChainExponent(b)

// The binary logarithm of a positive number in two parts, for powers of a constant.
struct Log2Value {
    double High = 0;
    double Low = 0;
};
Log2Value Log2Of(double a);

// By the C library, for angles of any size.
double SineOfAny(double a);
double CosineOfAny(double a);
double TangentOfAny(double a);

} // namespace kelvane
