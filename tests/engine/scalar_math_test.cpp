#include "engine/scalar_math.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

namespace kelvane {
namespace {

using Uniform = std::uniform_real_distribution<double>;

constexpr int kArguments = 100'000; // a row

// The distance of a value from the true one in units of the true one's last place.
double UlpsOff(double value, long double truth)
{
    const int exponent = std::max(std::ilogb(truth), -1022);
    return static_cast<double>(std::fabs(value - truth) / std::ldexp(1.0L, exponent - 52));
}

TEST(ScalarMath, FunctionIsLessExactThanItsHeaderSays)
{
    constexpr std::tuple<const char*, double (*)(double), long double (*)(long double), double>
        kRows[] = {{"sin", Sine, sinl, 2.3},
                   {"cos", Cosine, cosl, 2.3},
                   {"tan", Tangent, tanl, 2},
                   {"log", Logarithm, logl, 1},
                   {"atan", ArcTangent, atanl, 2}};
    constexpr double kRanges[][2] = {{1e-320, 1e9}, {0.1, 20}, {0.9, 1.1}};
    std::mt19937_64 random{20240611};
    for (const auto& [name, function, truth, ulps] : kRows) {
        for (int i = 0; i < 3 * kArguments && !HasFailure(); ++i) {
            const auto& [low, high] = kRanges[i % 3];
            const double size = std::exp(Uniform(std::log(low), std::log(high))(random));
            const double a = truth == logl || i % 2 == 0 ? size : -size;
            EXPECT_LE(UlpsOff(function(a), truth(a)), ulps) << name << ' ' << std::hexfloat << a;
        }
    }
}

// Near a zero: there little is left of the argument when the multiple of pi/2 is taken away. The
// values are by 400 digits.
TEST(ScalarMath, SmallDifferenceFromAZeroIsLost)
{
    constexpr std::tuple<double (*)(double), double, double> kRows[] = {
        {Sine, 0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53},
        {Sine, 0x1.6c6cbc45dc8dep+12, 0x1.6d61b58c99c43p-54},
        {Cosine, 0x1.6c6cbc45dc8dep+5, -0x1.6d61b58c99c43p-61},
        {Cosine, 0x1.65a1dd290660fp+16, 0x1.049c6e4971285p-52},
        {Tangent, 0x1.6c6cbc45dc8dep+6, 0x1.6d61b58c99c43p-60},
        {Sine, 0x1.5ef19a975e1d7p+25, 0x1.5f73b15c86c8dp-50}};
    for (const auto& [function, a, truth] : kRows)
        EXPECT_TRUE(UlpsOff(function(a), truth) < 2.3 || std::fabs(function(a) - truth) < 1e-33 * a)
            << std::hexfloat << a;
}

TEST(ScalarMath, PowerIsLessExactThanItsHeaderSays)
{
    // Ranges of bases and exponents.
    constexpr std::tuple<double, double, double, double> kRows[] = {
        {0, 10, -5, 5},          {2.7182817, 2.7182818, -230, 230},
        {0.9, 1.1, -2000, 2000}, {1e-310, 1e-300, -0.3, 0.3},
        {1.4, 1.43, -640, 640},  {0.7, 0.72, -640, 640}};
    std::mt19937_64 random{20240611};
    for (const auto& [low, high, lowest, highest] : kRows) {
        for (int i = 0; i < kArguments && !HasFailure(); ++i) {
            const double a = Uniform(low, high)(random);
            const double b = Uniform(lowest, highest)(random);
            EXPECT_LE(UlpsOff(Power(a, b), powl(a, b)), 1.7) << std::hexfloat << a << '^' << b;
        }
    }
    for (int i = 0; i < kArguments && !HasFailure(); ++i) {
        const int n = i % (2 * kMaxChainExponent + 1) - kMaxChainExponent;
        const double a = -Uniform(0.5, 2)(random);
        EXPECT_LE(UlpsOff(Power(a, n), powl(a, n)), 0.9 * std::abs(n)) << a << '^' << n;
    }
}

TEST(ScalarMath, EdgeFailsOrHasAValue)
{
    // The first three arguments fail, the last has the value.
    constexpr std::tuple<const char*, double (*)(double), double, double, double, double, double>
        kRows[] = {{"sin", Sine, INFINITY, -INFINITY, NAN, 5e-324, 5e-324},
                   {"cos", Cosine, INFINITY, -INFINITY, NAN, 0, 1},
                   {"tan", Tangent, INFINITY, -INFINITY, NAN, 0, 0},
                   {"log", Logarithm, 0, -1, INFINITY, 1, 0},
                   {"asin", ArcSine, 1, -1, 1.5, 0, 0},
                   {"acos", ArcCosine, 1, -1, 1.5, 0, 0x1.921fb54442d18p0},
                   {"atan", ArcTangent, NAN, NAN, NAN, -1e300, -0x1.921fb54442d18p0},
                   {"sqrt", SquareRoot, -1, -5e-324, NAN, 6.25, 2.5}};
    for (const auto& [name, function, first, second, third, a, value] : kRows) {
        EXPECT_EQ(function(a), value) << name << ' ' << a;
        for (const double failing : {first, second, third})
            EXPECT_FALSE(std::isfinite(function(failing))) << name << ' ' << failing;
    }
    constexpr double kPowers[][3] = {{0, 0, 1},
                                     {0, 2.5, 0},
                                     {-2, 3, -8},
                                     {-2, -3, -0.125},
                                     {-2, 33, -0x1p33},
                                     {-2, 34, 0x1p34},
                                     {-1, 0x1p60, 1},
                                     {2, -1074, 5e-324},
                                     {2, -1080, 0},
                                     {4, -0.5, 0.5},
                                     {9, 0.5, 3},
                                     {2, -1e300, 0},
                                     {1, 1e300, 1},
                                     {0, -2.5, NAN},
                                     {0, -3, NAN},
                                     {-8, 0.5, NAN},
                                     {-2, 2.5, NAN},
                                     {2, 1024, NAN},
                                     {10, 308.5, NAN},
                                     {2, 1e300, NAN},
                                     {2, -1500, 0},
                                     {10, -400.25, 0},
                                     {-1, 0x1.0000000000001p110, 1}};
    for (const auto& [a, b, value] : kPowers)
        EXPECT_TRUE(std::isfinite(value) ? Power(a, b) == value : !std::isfinite(Power(a, b)))
            << a << '^' << b << " is " << Power(a, b);
}

} // namespace
} // namespace kelvane
