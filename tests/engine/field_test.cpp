#include "engine/field.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <numbers>
#include <string>

#include "engine/field_bench.h"

namespace kelvane {
namespace {

// ---- values

TEST(Field, PointHasAnotherValueThanTheNotationSays)
{
    static const struct {
        const char* Expression;
        double X;
        double Y;
        double Expected; // NaN: none
    } kCases[] = {
        {"x^2+y^2-25", 3, 4, 0},
        {"0.1x", 1, 0, 0.10000000149011612}, // the single next to 0.1
        {"x(x+1)", 2, 0, 6},
        {"x(x+1)", 0, 0, 0},      // multiplies: x is not zero by construction
        {"(x-x)(x+1)", 2, 0, 3},  // replaces
        {"(x-x)*(x+1)", 2, 0, 0}, // does not
        {"((x-x)/y)(x+1)", 2, 1, 3},
        {"((x-x)/y)(x+1)", 2, 0, kNothing},
        {"sin(x-x)(x+1)", 2, 0, 3},
        {"cos(x-x)(x+1)", 2, 0, 3},
        {"(x^.5-x^.5)(x+1)", -2, 0, kNothing},
        {"(1-1)*logx", -1, 0, kNothing},
        {"zx+y", 2, 5, 7}, // z is 0, and x replaces it
        {"1/x", 0, 0, kNothing},
        {"1/(1/x)", 0, 0, kNothing},
        {"atan(1/x)", 0, 0, kNothing},
        {"(1/x)^0", 0, 0, kNothing},
        {"(1/x)^(-2)", 0, 0, kNothing},
        {"2^(-1/x)", 0, 0, kNothing},
        {"1/(x-x)", 1, 1, kNothing},
        {"y/(1-1)", 1, 0, kNothing},
        {"log(1-2)+x", 1, 1, kNothing},
        {"logx", 0, 0, kNothing},
        {"logx", -1, 0, kNothing},
        {"x^.5", 0, 0, 0},
        {"x^.5", -1e-300, 0, kNothing},
        {"(x^.5)^2", 9, 0, 9},
        {"(x^.5)^2", -9, 0, kNothing},
        {"x^(1.5)", 4, 0, 8},
        {"x^(-1.5)", 4, 0, 0.125},
        {"x^(-1)", 0, 0, kNothing},
        {"x^(1/3)", -8, 0, kNothing},
        {"x^17", -1, 0, -1},
        {"x^18", -1, 0, 1},
        {"x^(-17)", 0, 0, kNothing},
        {"x^y", 2, -2, 0.25},
        {"x^y", 0, 0, 1},
        {"x^y", 0, -1, kNothing},
        {"x^y", -2, 2, kNothing}, // only constant powers of negative numbers
        {"(-2)^x", 2, 0, kNothing},
        {"2^x", -2, 0, 0.25},
        {"e^(x^2)/e^(x^2)", 30, 0, kNothing}, // an overflow
        {"asinx", 1, 0, kNothing},
        {"acosx", -1, 0, kNothing},
        {"asinx", 0, 0, 0},
        {"absx/x", -3, 0, -1},
        {"-x-absx", -2, 0, 0},
        {"atan(1/x)", 1e300, 0, 1e-300},
    };
    for (const auto& [expression, x, y, expected] : kCases) {
        const double value = Bench(EqualsNothing(expression)).ValueAt(x, y);
        SCOPED_TRACE(expression);
        EXPECT_EQ(std::isnan(value), std::isnan(expected)) << value << " at " << x << ", " << y;
        if (!std::isnan(expected)) {
            EXPECT_NEAR(value, expected, std::abs(expected) * 1e-15);
        }
    }
}

TEST(Field, SlopeIsNotTheDerivative)
{
    static const struct {
        const char* Expression;
        double X;
        double Y;
        double AlongX;
        double AlongY;
    } kCases[] = {
        {"x^2y^3", 2, 3, 108, 108},
        {"x/y", 3, 2, 0.5, -0.75},
        {"2/y", 0, 2, 0, -0.5},
        {"(x+1)/(x-1)", 3, 0, -0.5, 0},
        {"sin(xy)", 0.5, 0, 0, 0.5},
        {"cos(2x)", std::numbers::pi / 4, 0, -2, 0},
        {"tanx-tany", std::numbers::pi / 4, 0, 2, -1},
        {"log(x^2+y)", 2, 1, 0.8, 0.2},
        {"absx-absy", -3, 4, -1, -1},
        {"asinx+acosy", 0.6, 0.8, 1.25, -5.0 / 3},
        {"atan(3x)", 1, 0, 0.3, 0},
        {"x^.5", 4, 0, 0.25, 0},
        {"(x^.5)^2", 4, 0, 1, 0},
        {"x^(-1.5)", 4, 0, -3.0 / 64, 0},
        {"x^17", -1, 0, 17, 0},
        {"x^(1/3)", 8, 0, 1.0 / 12, 0},
        {"2^x", 3, 0, 8 * std::numbers::ln2, 0},
        {"x^y", 2, 3, 12, 8 * std::numbers::ln2},
        {"xxxx", 2, 0, 32, 0},
        {"x-x+y", 5, 5, 0, 1},
        {"-(x-2y)", 5, 5, -1, 2},
    };
    for (const auto& [expression, x, y, alongX, alongY] : kCases) {
        SCOPED_TRACE(expression);
        Bench bench(EqualsNothing(expression));
        bench.ValueAt(x, y);
        EXPECT_NEAR(bench.Values->AlongX.At[0], alongX, 1e-7 * std::abs(alongX) + 1e-15);
        EXPECT_NEAR(bench.Values->AlongY.At[0], alongY, 1e-7 * std::abs(alongY) + 1e-15);
    }
    Bench steep("x^.5=0"); // has a value where it has no slope
    EXPECT_EQ(steep.ValueAt(0, 0), 0);
    EXPECT_FALSE(std::isfinite(steep.Values->AlongX.At[0]));
}

TEST(Field, GraphOfAFunctionIsTakenForSomethingElse)
{
    static const struct {
        const char* Line;
        double AlongX; // NaN: not constant
        double AlongY;
    } kCases[] = {
        {"y=1/x", kNothing, 1},
        {"y=sin(x)/x", kNothing, 1},
        {"x=y^2", 1, kNothing},
        {"2y=x+3", -1, 2},
        {"y+y=x-y", -1, 3},
        {"(x+y)/4=1", 0.25, 0.25},
        {"x-x=0", 0, 0},
        {"x-x=y", 0, -1},
        {"x=2", 1, 0},
        {"y=2(y-1)", 0, -1},
        {"y(x-x)=5", 0, 0}, // y is first: the product with 0
        {"(x-x)y=5", 0, 1}, // y replaces it
        {"xy=1", kNothing, kNothing},
        {"y=(x^.5)^2", kNothing, 1}, // only for x >= 0
        {"y+logy-logy=x", -1, kNothing},
        {"y+1/(x-x)=0", kNothing, 1},
        {"y=log(1-2)", 0, 0},
        {"absy=x", -1, kNothing},
        {"y^2=e", 0, kNothing},
    };
    for (const auto& [line, alongX, alongY] : kCases) {
        SCOPED_TRACE(line);
        const Field field = CompileField(Prepared(line));
        EXPECT_TRUE(field.IsCompiled());
        EXPECT_EQ(field.ConstantAlongX.has_value(), !std::isnan(alongX));
        EXPECT_EQ(field.ConstantAlongY.has_value(), !std::isnan(alongY));
        if (!std::isnan(alongX)) {
            EXPECT_EQ(field.ConstantAlongX, alongX);
        }
        if (!std::isnan(alongY)) {
            EXPECT_EQ(field.ConstantAlongY, alongY);
        }
    }
}

TEST(Field, ZeroByConstructionIsNotSeenOrHidesSomething)
{
    static const struct {
        const char* Line;
        double X;
        double Y;
        bool IsIdentity;
    } kCases[] = {
        {"abs(x)^2=x^2", 0.3, 0, true},
        {"(x^2)^.5=abs(x)", 0.3, 0, true},
        {"x+1=1+x", 0.3, 0, true},
        {"x/x=1", 0.3, 0, true},
        {"(x+1)^2=x^2+2x+1.00001", 0.3, 0, false},
        {"x/10^30=0", 0.3, 0, false},
        {"abs(x-9000)=9000-x", 0.3, 0, false}, // only for x <= 9000
    };
    for (const auto& [line, x, y, isIdentity] : kCases) {
        const Known known = Bench(line).Over(Box{{x, x + 1e-3}, {y, y + 1e-3}});
        const bool isZero = known.F.Low == 0 && known.F.High == 0;
        EXPECT_EQ(isZero, isIdentity) << line << known.F;
        EXPECT_TRUE(!isIdentity || known.Marks == 0) << line;
    }
    Bench logs("log(x*y)=log(x)+log(y)"); // keeps its domain
    EXPECT_EQ(logs.ValueAt(2, 3), 0);
    EXPECT_TRUE(std::isnan(logs.ValueAt(-2, -3)));
    EXPECT_NE(logs.Over(Box{{-2, -1}, {-2, -1}}).Marks & kNowhereDefined, 0);
    EXPECT_EQ(Bench("x/x=1").Over(Box{{-1, 1}, {}}).Marks, kBoth);
}

TEST(Field, LongEquationHasNoFieldOrAWrongOne)
{
    Bench sines("y=x" + Repeated("+sinx", 600));
    EXPECT_NEAR(sines.ValueAt(0.5, 1), 0.5 - 600 * std::sin(0.5), 1e-9);
    EXPECT_NEAR(sines.Values->AlongX.At[0], -1 - 600 * std::cos(0.5), 1e-9);

    // x sin(y - x sin(y - ...)): the innermost value and slope are followed outwards.
    constexpr int kDepth = 180;
    Bench nested(Repeated("xsin(y-", kDepth) + "x" + Repeated(")", kDepth) + "=0");
    ASSERT_TRUE(nested.Formula.IsCompiled());
    double value = 0.75;
    double slope = 1;
    for (int i = 0; i < kDepth; ++i) {
        slope = std::sin(2 - value) - 0.75 * std::cos(2 - value) * slope;
        value = 0.75 * std::sin(2 - value);
    }
    EXPECT_NEAR(nested.ValueAt(0.75, 2), value, 1e-13);
    EXPECT_NEAR(nested.Values->AlongX.At[0], slope, 1e-12);
}

// ---- levels

template <class Column>
bool SameBits(const Column& a, const Column& b, std::size_t at)
{
    const auto bits = [](double value) {
        return std::isnan(value) ? 1 : std::bit_cast<std::uint64_t>(value);
    };
    return bits(a.At[at]) == bits(b.At[at]);
}

bool SameRange(const IntervalColumn& a, const IntervalColumn& b, std::size_t at)
{
    return SameBits(a.Low, b.Low, at) && SameBits(a.High, b.High, at);
}

void ExpectSameOnAllLevels(const std::string& line, Generator& generator)
{
    const int count = 1 + static_cast<int>(generator.Below(kBlockPoints));
    Bench plain(line, VectorLevel::Scalar);
    for (std::size_t at = 0; at < kBlockPoints; ++at) {
        plain.Put(at, {Side(generator), Side(generator)});
        plain.Points->X.At[at] = SpecialPlace(generator);
        plain.Points->Y.At[at] = SpecialPlace(generator);
    }
    plain.RunBoxes(count);
    plain.RunPoints(count);
    for (const VectorLevel level :
         {VectorLevel::Bits128, VectorLevel::Bits256, VectorLevel::Bits512}) {
        if (!HasLevel(level))
            continue;
        Bench wide(line, level);
        *wide.Boxes = *plain.Boxes;
        *wide.Points = *plain.Points;
        wide.RunBoxes(count);
        wide.RunPoints(count);
        for (std::size_t at = 0; at < static_cast<std::size_t>(count); ++at) {
            ASSERT_TRUE(SameRange(wide.Ranges->F, plain.Ranges->F, at) &&
                        SameRange(wide.Ranges->AlongX, plain.Ranges->AlongX, at) &&
                        SameRange(wide.Ranges->AlongY, plain.Ranges->AlongY, at) &&
                        wide.Ranges->Marks[at] == plain.Ranges->Marks[at])
                << Where(line, plain.At(at), plain.Over(at)) << " and " << wide.Over(at).F
                << wide.Over(at).AlongX << wide.Over(at).AlongY << wide.Over(at).Marks;
            ASSERT_TRUE(SameBits(wide.Values->F, plain.Values->F, at) &&
                        SameBits(wide.Values->AlongX, plain.Values->AlongX, at) &&
                        SameBits(wide.Values->AlongY, plain.Values->AlongY, at))
                << line;
        }
    }
}

TEST(Field, LevelGivesOtherBits)
{
    Generator generator;
    for (const char* const line : kNasties)
        ExpectSameOnAllLevels(line, generator);
    for (int i = 0; i < 600 && !HasFatalFailure(); ++i)
        ExpectSameOnAllLevels(PlaneFormula(generator), generator);
}

} // namespace
} // namespace kelvane
