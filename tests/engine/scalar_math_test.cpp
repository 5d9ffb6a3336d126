#include "engine/scalar_math.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <tuple>

namespace kelvane {
namespace {

constexpr int kArguments = 100'000; // a row
constexpr double kPi = 3.14159265358979323846;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// The distance of a value from the true one in units of the true one's last place.
double UlpsOff(double value, long double truth)
{
    const int exponent = std::max(std::ilogb(truth), -1022);
    return static_cast<double>(std::fabs(value - truth) / std::ldexp(1.0L, exponent - 52));
}

class Arguments {
public:
    double Uniform(double low, double high)
    {
        return std::uniform_real_distribution<double>(low, high)(m_random);
    }
    // Of any magnitude between two, and of either sign.
    double Scaled(double low, double high)
    {
        const double size = std::exp(Uniform(std::log(low), std::log(high)));
        return Uniform(-1, 1) < 0 ? -size : size;
    }

private:
    std::mt19937_64 m_random{20240611};
};

TEST(ScalarMath, FunctionIsLessExactThanItsHeaderSays)
{
    struct Row {
        const char* Name;
        double (*Function)(double);
        long double (*Truth)(long double);
        double Low; // of the arguments' size
        double High;
        double Ulps;
    };
    constexpr Row kRows[] = {{"sine", Sine, sinl, 1e-300, 1e5, 2.3},
                             {"sine, usual", Sine, sinl, 0.1, 20, 2.3},
                             {"cosine", Cosine, cosl, 1e-300, 1e5, 2.3},
                             {"cosine, usual", Cosine, cosl, 0.1, 20, 2.3},
                             {"cosine, large", Cosine, cosl, 1e7, 1e9, 2.3},
                             {"tangent", Tangent, tanl, 1e-300, 1e5, 2},
                             {"tangent, usual", Tangent, tanl, 0.1, 20, 2},
                             {"logarithm", Logarithm, logl, 1e-320, 1e308, 1},
                             {"logarithm, usual", Logarithm, logl, 0.5, 2, 1},
                             {"arc tangent", ArcTangent, atanl, 1e-300, 1e300, 1.9},
                             {"arc tangent, usual", ArcTangent, atanl, 0.1, 10, 1.9}};
    Arguments arguments;
    for (const Row& row : kRows) {
        for (int i = 0; i < kArguments && !HasFailure(); ++i) {
            const double scaled = arguments.Scaled(row.Low, row.High);
            const double a = row.Truth == logl ? std::fabs(scaled) : scaled;
            EXPECT_LE(UlpsOff(row.Function(a), row.Truth(a)), row.Ulps)
                << row.Name << std::hexfloat << " of " << a;
        }
    }
}

TEST(ScalarMath, SmallDifferenceFromAZeroIsLost)
{
    const auto isClose = [](double value, long double truth) {
        return UlpsOff(value, truth) <= 2.5 || std::fabs(value - truth) < 1e-30L;
    };
    // The nearest doubles to multiples of pi/2, and to 1.
    for (int k = 1; k < 1000; ++k) {
        const double a = static_cast<double>(k * 1.57079632679489661923L);
        EXPECT_TRUE(isClose(Sine(a), sinl(a))) << k;
        EXPECT_TRUE(isClose(Cosine(a), cosl(a))) << k;
        EXPECT_LE(UlpsOff(Tangent(a), tanl(a)), 1e3) << k;
        const double nearOne = 1 + std::ldexp(1.0, -k / 20);
        EXPECT_LE(UlpsOff(Logarithm(nearOne), logl(nearOne)), 1) << k;
    }
}

TEST(ScalarMath, PowerIsInexact)
{
    constexpr double kFloatE = 2.7182817459106445;
    // Ranges of bases and exponents, and the error in units of the last place.
    constexpr std::tuple<double, double, double, double, double> kRows[] = {
        {0, 10, -5, 5, 1.5},        {kFloatE, kFloatE, -230, 230, 2}, {0.9, 1.1, -2000, 2000, 2},
        {1e-310, 1e-300, -1, 1, 2}, {2, 2, -1000, 1023.9, 2},         {0.7, 1.5, -100, 100, 4}};
    Arguments arguments;
    for (const auto& [low, high, lowest, highest, ulps] : kRows) {
        for (int i = 0; i < kArguments && !HasFailure(); ++i) {
            const double a = arguments.Uniform(low, high);
            const double b = arguments.Uniform(lowest, highest);
            EXPECT_LE(UlpsOff(Power(a, b), powl(a, b)), ulps) << std::hexfloat << a << '^' << b;
        }
    }
    for (int n = -kMaxChainExponent; n <= kMaxChainExponent; ++n) {
        const double a = arguments.Uniform(0.5, 2);
        EXPECT_LE(UlpsOff(Power(-a, n), powl(-a, n)), 0.8 * std::abs(n)) << a << '^' << n;
    }
}

// A value that is not finite stands for a failure.
void ExpectEdge(double value, double expected, const char* what)
{
    if (std::isfinite(expected))
        EXPECT_EQ(value, expected) << what;
    else
        EXPECT_FALSE(std::isfinite(value)) << what << " is " << value;
}

TEST(ScalarMath, EdgeFailsOrHasAValue)
{
    constexpr std::tuple<double (*)(double), double, double, const char*> kFunctions[] = {
        {Sine, kInfinity, kNan, "sin inf"},
        {Cosine, kNan, kNan, "cos nan"},
        {Tangent, -kInfinity, kNan, "tan -inf"},
        {Logarithm, 0, kNan, "log 0"},
        {Logarithm, -0.0, kNan, "log -0"},
        {Logarithm, -1, kNan, "log -1"},
        {Logarithm, 1, 0, "log 1"},
        {Logarithm, kInfinity, kNan, "log inf"},
        {ArcSine, 1, kNan, "asin 1"},
        {ArcSine, -1, kNan, "asin -1"},
        {ArcCosine, 1, kNan, "acos 1"},
        {ArcSine, 1.5, kNan, "asin 1.5"},
        {ArcSine, 0, 0, "asin 0"},
        {ArcCosine, 0, kPi / 2, "acos 0"},
        {ArcTangent, 1, kPi / 4, "atan 1"},
        {ArcTangent, -1e300, -kPi / 2, "atan -1e300"},
        {SquareRoot, -1, kNan, "sqrt -1"},
        {SquareRoot, 6.25, 2.5, "sqrt 6.25"},
        {Cosine, 0, 1, "cos 0"},
        {Sine, 5e-324, 5e-324, "sin 5e-324"}};
    for (const auto& [function, a, value, what] : kFunctions)
        ExpectEdge(function(a), value, what);
    constexpr std::tuple<double, double, double> kPowers[] = {{0, 0, 1},
                                                              {0, 2.5, 0},
                                                              {0, -2.5, kInfinity},
                                                              {0, -3, kInfinity},
                                                              {-8, 0.5, kNan},
                                                              {-2, 2.5, kNan},
                                                              {-2, 3, -8},
                                                              {-2, 33, -8589934592.0},
                                                              {-2, 34, 17179869184.0},
                                                              {-1, 0x1p60, 1},
                                                              {2, 1024, kInfinity},
                                                              {2, -1074, 5e-324},
                                                              {2, -1080, 0},
                                                              {4, -0.5, 0.5},
                                                              {9, 0.5, 3},
                                                              {10, 308.5, kInfinity},
                                                              {2, 1e300, kInfinity},
                                                              {2, -1e300, 0},
                                                              {1, 1e300, 1},
                                                              {-2, -3, -0.125}};
    for (const auto& [a, b, value] : kPowers)
        ExpectEdge(Power(a, b), value,
                   (std::to_string(a) + " to the power of " + std::to_string(b)).c_str());
}

} // namespace
} // namespace kelvane
