#include "engine/field_runner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <iostream>
#include <limits>
#include <memory>
#include <numbers>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "engine/formula_generator.h"
#include "engine/support.h"

namespace kelvane {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
constexpr int kBoth = kPartlyUndefined | kMayJump;

struct Span {
    double Low = 0;
    double High = 0;

    bool Holds(double value) const { return Low <= value && value <= High; }
};

std::ostream& operator<<(std::ostream& out, const Span& span)
{
    return out << '[' << span.Low << ", " << span.High << ']';
}

struct Box {
    Span X;
    Span Y;
};

// What a field is over one box.
struct Known {
    Span F;
    Span AlongX;
    Span AlongY;
    std::int64_t Marks = 0;
};

// A field with all it takes to run it.
class Bench {
public:
    explicit Bench(const std::string& line, VectorLevel level = BestLevel())
        : Formula(CompileField(Prepared(line)))
        , m_runner(level)
    {
    }

    Known Over(std::size_t at) const
    {
        const auto span = [at](const IntervalColumn& column) {
            return Span{column.Low.At[at], column.High.At[at]};
        };
        return {span(Ranges->F), span(Ranges->AlongX), span(Ranges->AlongY), Ranges->Marks[at]};
    }
    Known Over(const Box& box)
    {
        Put(0, box);
        RunBoxes(1);
        return Over(0);
    }
    double ValueAt(double x, double y)
    {
        Points->X.At[0] = x;
        Points->Y.At[0] = y;
        RunPoints(1);
        return Values->F.At[0];
    }

    void Put(std::size_t at, const Box& box) const
    {
        Boxes->X.Low.At[at] = box.X.Low;
        Boxes->X.High.At[at] = box.X.High;
        Boxes->Y.Low.At[at] = box.Y.Low;
        Boxes->Y.High.At[at] = box.Y.High;
    }
    Box At(std::size_t at) const
    {
        return {{Boxes->X.Low.At[at], Boxes->X.High.At[at]},
                {Boxes->Y.Low.At[at], Boxes->Y.High.At[at]}};
    }
    void RunBoxes(int count)
    {
        m_runner.OverBoxes(Formula, *Boxes, count, FieldPart::WithGradient, *Ranges);
    }
    void RunPoints(int count)
    {
        m_runner.AtPoints(Formula, *Points, count, FieldPart::WithGradient, *Values);
    }

    Field Formula;
    std::unique_ptr<FieldBoxes> Boxes = std::make_unique<FieldBoxes>();
    std::unique_ptr<FieldRanges> Ranges = std::make_unique<FieldRanges>();
    std::unique_ptr<FieldPoints> Points = std::make_unique<FieldPoints>();
    std::unique_ptr<FieldValues> Values = std::make_unique<FieldValues>();

private:
    FieldRunner m_runner;
};

// An expression as the left side of an equation whose right side is 0.
std::string EqualsNothing(const std::string& expression)
{
    return expression + "=0";
}

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

// ---- boxes

// The range is at least what it should be, and at most a few roundings wider.
void ExpectSpan(const Span& span, const Span& expected, const std::string& what)
{
    const double room = 1e-14 * (std::isfinite(expected.Low + expected.High)
                                     ? std::abs(expected.Low) + std::abs(expected.High)
                                     : 1);
    EXPECT_LE(span.Low, expected.Low) << what << span;
    EXPECT_GE(span.High, expected.High) << what << span;
    EXPECT_GE(span.Low, expected.Low - room) << what << span;
    EXPECT_LE(span.High, expected.High + room) << what << span;
}

TEST(Field, RangeIsWiderThanItNeedsToBeOrUnmarked)
{
    const double sin1 = std::sin(1.0);
    static const struct {
        const char* Expression;
        Box Where;
        Span Expected;
        std::int64_t Marks;
    } kCases[] = {
        {"x^2", {{-1, 2}, {}}, {0, 4}, 0},
        {"xx", {{-1, 2}, {}}, {0, 4}, 0},
        {"xxx", {{-1, 2}, {}}, {-1, 8}, 0},
        {"x*y", {{-1, 2}, {-3, 1}}, {-6, 3}, 0},
        {"x(x+1)", {{1, 2}, {}}, {2, 6}, 0},
        {"(x-x)(x+1)", {{-1, 2}, {}}, {0, 3}, 0},
        {"x-x", {{-1, 2}, {}}, {0, 0}, 0},
        {"sinx", {{1, 2}, {}}, {sin1, 1}, 0},
        {"sinx", {{-2, -1}, {}}, {-1, -sin1}, 0},
        {"sinx", {{4, 8}, {}}, {-1, 1}, 0},
        {"sinx", {{-1e9, 1e9}, {}}, {-1, 1}, 0},
        {"sinx", {{1e9, 1e9}, {}}, {-1, 1}, 0},
        {"cosx", {{-1, 0.5}, {}}, {std::cos(1.0), 1}, 0},
        {"cosx", {{3, 4}, {}}, {-1, std::cos(4.0)}, 0},
        {"tanx", {{1, 2}, {}}, {-kInfinity, kInfinity}, kBoth},
        {"tanx", {{-1, 1}, {}}, {-std::tan(1.0), std::tan(1.0)}, 0},
        {"tanx", {{2, 4}, {}}, {std::tan(2.0), std::tan(4.0)}, 0},
        {"1/x", {{0, 1}, {}}, {1, kInfinity}, kBoth},
        {"1/x", {{-4, 0}, {}}, {-kInfinity, -0.25}, kBoth},
        {"1/x", {{-1, 1}, {}}, {-kInfinity, kInfinity}, kBoth},
        {"1/x", {{2, 4}, {}}, {0.25, 0.5}, 0},
        {"y/x", {{-4, -2}, {1, 3}}, {-1.5, -0.25}, 0},
        {"y/x", {{0, 2}, {-1, 3}}, {-kInfinity, kInfinity}, kBoth},
        {"1/x^2", {{-2, 1}, {}}, {0.25, kInfinity}, kBoth},
        {"1/x", {{0, 0}, {}}, {-kInfinity, kInfinity}, kBoth | kNowhereDefined},
        {"x^(-1)", {{-4, 0}, {}}, {-kInfinity, -0.25}, kBoth},
        {"x^(-2)", {{-2, 1}, {}}, {0.25, kInfinity}, kBoth},
        {"x^(-1.5)", {{0, 4}, {}}, {0.125, kInfinity}, kBoth},
        {"x^.5", {{-1, 4}, {}}, {0, 2}, kPartlyUndefined},
        {"x^.5", {{-4, -1}, {}}, {-kInfinity, kInfinity}, kPartlyUndefined | kNowhereDefined},
        {"x^.5", {{0, 4}, {}}, {0, 2}, 0},
        {"(x^.5)^2", {{-1, 4}, {}}, {0, 4}, kPartlyUndefined},
        {"x^(1/3)", {{-1, 8}, {}}, {0, 2}, kPartlyUndefined},
        {"x^17", {{-1, 1}, {}}, {-1, 1}, 0},
        {"x^18", {{-1, 1}, {}}, {0, 1}, 0},
        {"2^x", {{-1, 3}, {}}, {0.5, 8}, 0},
        {"(1/2)^x", {{-1, 3}, {}}, {0.125, 2}, 0},
        {"x^y", {{2, 3}, {-1, 2}}, {1.0 / 3, 9}, 0},
        {"x^y", {{0, 3}, {1, 2}}, {0, 9}, 0},
        {"x^y", {{-1, 3}, {1, 2}}, {0, 9}, kPartlyUndefined},
        {"x^y", {{0, 3}, {-1, 2}}, {0, kInfinity}, kBoth},
        {"logx", {{-1, 2}, {}}, {-kInfinity, std::log(2.0)}, kPartlyUndefined},
        {"logx", {{1, 2}, {}}, {0, std::log(2.0)}, 0},
        {"logx", {{-1, 0}, {}}, {-kInfinity, kInfinity}, kPartlyUndefined | kNowhereDefined},
        {"log(abs(sinx))", {{-0.5, 1}, {}}, {-kInfinity, std::log(sin1)}, kPartlyUndefined},
        {"absx", {{-3, 2}, {}}, {0, 3}, 0},
        {"9-x^2-y^2-abs(9-x^2-y^2)", {{-1, 2}, {0, 2}}, {0, 0}, 0},
        {"x-absx", {{-1, 2}, {}}, {-2, 0}, 0},
        {"abs(x-y)+x-y", {{2, 3}, {0, 1}}, {2, 6}, 0},
        {"absx", {{-3, -2}, {}}, {2, 3}, 0},
        {"asinx", {{-2, 0.5}, {}}, {-std::numbers::pi / 2, std::numbers::pi / 6}, kPartlyUndefined},
        {"acosx", {{0.5, 2}, {}}, {0, std::numbers::pi / 3}, kPartlyUndefined},
        {"asinx", {{1, 2}, {}}, {-kInfinity, kInfinity}, kPartlyUndefined | kNowhereDefined},
        {"atanx", {{-1, 1}, {}}, {-std::numbers::pi / 4, std::numbers::pi / 4}, 0},
        {"sin(1/x)", {{-1, 1}, {}}, {-1, 1}, kBoth},
        {"sin(e^(x^2))", {{30, 31}, {}}, {-1, 1}, kPartlyUndefined | kNowhereDefined},
        {"log(1-2)+x", {{1, 2}, {}}, {-kInfinity, kInfinity}, kBoth | kNowhereDefined},
    };
    for (const auto& [expression, where, expected, marks] : kCases) {
        std::ostringstream what;
        what << expression << " over " << where.X << " times " << where.Y << ": ";
        const Known known = Bench(EqualsNothing(expression)).Over(where);
        EXPECT_EQ(known.Marks, marks) << what.str();
        ExpectSpan(known.F, expected, what.str());
    }
}

TEST(Field, SlopesOverABoxAreWrong)
{
    static const struct {
        const char* Expression;
        Box Where;
        Span AlongX;
        Span AlongY;
    } kCases[] = {
        {"x^2y", {{-1, 2}, {1, 3}}, {-6, 12}, {0, 4}},
        {"absx", {{-1, 2}, {}}, {-1, 1}, {0, 0}},
        {"absx", {{0, 2}, {}}, {0, 1}, {0, 0}},
        {"absx", {{1, 2}, {}}, {1, 1}, {0, 0}},
        {"1/x", {{-1, 2}, {}}, {-kInfinity, -0.25}, {0, 0}},
        {"tanx", {{1, 2}, {}}, {1, kInfinity}, {0, 0}},
        {"x^.5", {{-1, 4}, {}}, {0.25, kInfinity}, {0, 0}},
        {"x^.5", {{0, 0}, {}}, {-kInfinity, kInfinity}, {0, 0}},
        {"(x^.5)^2+y", {{-1, 4}, {}}, {1, 1}, {1, 1}},
        {"81-x^2-y^2-abs(81-x^2-y^2)", {{1, 2}, {-1, 1}}, {0, 0}, {0, 0}},
        {"x+absx", {{-1, 2}, {}}, {0, 2}, {0, 0}},
        {"sin(x)^2+cos(x)^2+y", {{1, 2}, {}}, {0, 0}, {1, 1}},
        {"(x^2-4)*x^2", {{1, 2}, {}}, {-8, 16}, {0, 0}},
        {"asinx", {{-1, 0.6}, {}}, {1, kInfinity}, {0, 0}},
    };
    for (const auto& [expression, where, alongX, alongY] : kCases) {
        const Known known = Bench(EqualsNothing(expression)).Over(where);
        ExpectSpan(known.AlongX, alongX, std::string(expression) + " along x: ");
        ExpectSpan(known.AlongY, alongY, std::string(expression) + " along y: ");
    }
}

// Functions in long double, over boxes without extent: the truth about the kernels' error bounds.
TEST(Field, ValueLiesOutsideItsOwnRange)
{
    using Real = long double;
    static const struct {
        const char* Expression;
        Real (*Truth)(Real x, Real y);
        double Scale; // of x
        double Width; // of the range, at most, relative to the larger of the value and 1
    } kCases[] = {
        {"sinx", [](Real x, Real) { return std::sin(x); }, 1e7, 1e-8},
        {"sinx", [](Real x, Real) { return std::sin(x); }, 10, 1e-14},
        {"cosx", [](Real x, Real) { return std::cos(x); }, 10, 1e-14},
        {"tanx", [](Real x, Real) { return std::tan(x); }, 1.5, 1e-14},
        {"tanx", [](Real x, Real) { return std::tan(x); }, 1e6, 1e-14},
        {"logx", [](Real x, Real) { return std::log(x); }, 3, 1e-14},
        {"logx", [](Real x, Real) { return std::log(x); }, 1e300, 1e-14},
        {"asinx", [](Real x, Real) { return std::asin(x); }, 1, 1e-7},
        {"acosx", [](Real x, Real) { return std::acos(x); }, 1, 1e-7},
        {"asinx", [](Real x, Real) { return std::asin(x); }, 0.5, 1e-14},
        {"atanx", [](Real x, Real) { return std::atan(x); }, 5, 1e-14},
        {"x+y", [](Real x, Real y) { return x + y; }, 5, 1e-15},
        {"x*y-1", [](Real x, Real y) { return x * y - 1; }, 5, 2e-15},
        {"x/y", [](Real x, Real y) { return x / y; }, 5, 1e-15},
        {"x^3", [](Real x, Real) { return x * x * x; }, 5, 3e-15},
        {"x^16", [](Real x, Real) { return std::pow(x, Real{16}); }, 5, 2e-14},
        {"x^(1.5)", [](Real x, Real) { return x * std::sqrt(x); }, 5, 3e-15},
        {"x^(-7)", [](Real x, Real) { return 1 / std::pow(x, Real{7}); }, 5, 1e-14},
        {"x^(.3)", [](Real x, Real) { return std::pow(x, Real{0.3F}); }, 1e5, 3e-14},
        {"x^21", [](Real x, Real) { return std::pow(x, Real{21}); }, 50, 3e-14},
        {"2^x", [](Real x, Real) { return std::exp2(x); }, 1000, 3e-14},
        {"absx^y", [](Real x, Real y) { return std::pow(std::fabs(x), y); }, 20, 3e-14},
    };
    std::mt19937_64 random(Generator::kSeed);
    for (const auto& [expression, truth, scale, width] : kCases) {
        Bench bench(EqualsNothing(expression));
        std::uniform_real_distribution<double> place(-scale, scale);
        for (std::size_t at = 0; at < kBlockPoints; ++at) {
            const double near = scale * std::exp2(-static_cast<double>(at) / 5);
            const double x = at % 4 == 0 ? scale - near : at % 4 == 1 ? near : place(random);
            const double y = place(random);
            bench.Put(at, {{x, x}, {y, y}});
        }
        bench.RunBoxes(kBlockPoints);
        for (std::size_t at = 0; at < kBlockPoints; ++at) {
            const Known known = bench.Over(at);
            const Box box = bench.At(at);
            if ((known.Marks & kNowhereDefined) != 0)
                continue;
            const Real value = truth(box.X.Low, box.Y.Low);
            std::ostringstream what;
            what << expression << " at " << std::hexfloat << box.X.Low << ", " << box.Y.Low
                 << " marks " << known.Marks;
            EXPECT_TRUE(known.F.Low <= value && value <= known.F.High)
                << what.str() << ": " << static_cast<double>(value) << known.F;
            EXPECT_LE(known.F.High - known.F.Low, width * std::max(std::fabs(value), Real{1}))
                << what.str();
        }
    }
}

// ---- boxes and the points in them

constexpr int kGenerated = 1500;
constexpr int kPointsInABox = 6;

const char* const kNasties[] = {
    "81-x^2-y^2=abs(81-x^2-y^2)",
    "y=sin(40/x)",
    "tan(y)=tan(x)",
    "y^2=x^3-x^2",
    "x^3+y^3=3*x*y",
    "(x^2+y^2-1)^3=x^2*y^3",
    "y=(x-3)^0.5*(1-x)^0.5",
    "1/x=1/(y-1)",
    "y=x^x",
    "x^y=y^x",
    "y=log(abs(sin(x)))",
    "y=abs(x)/x",
    "y=sin(e^x)",
    "sin(100*x*y)=0",
    "x+abs(x)=y+abs(y)",
    "sin(x)^2+cos(x)^2=1",
    "y=asin(x)^acos(y)",
    "y=(x^2)^.5",
    "y=(x-absx)^.5",
    "y=1/tan(x^2)",
    "y=x^(-3)+y^(-1.5)",
    "y=absx^(1.7)",
    "y=x^19/(y^18-x)",
    "y=e^(-1/x^2)",
    "y=atan(1/x)acos(x-y)",
    "y=1/(x^.5-y^.5)",
    "y=10^(x^3)",
};

// A place that is likely to be a special one.
double SpecialPlace(Generator& generator)
{
    static constexpr double kPlaces[] = {0,
                                         1,
                                         -1,
                                         std::numbers::pi / 2,
                                         std::numbers::pi,
                                         3,
                                         -2,
                                         0.5,
                                         std::numbers::pi * 8,
                                         1e-9,
                                         700,
                                         -0.7,
                                         9,
                                         1e6};
    return generator.OneIn(2) ? kPlaces[generator.Below(std::size(kPlaces))]
                              : static_cast<double>(generator.Below(20001)) / 1000 - 10;
}

// A side of any size about a place, or with it as a border; some without extent.
Span Side(Generator& generator)
{
    const double place = SpecialPlace(generator);
    const auto size = [&] {
        return std::pow(10.0, -static_cast<double>(generator.Below(140)) / 10 + 1);
    };
    switch (generator.Below(5)) {
    case 0:
        return {place, place};
    case 1:
        return {place, place + size()};
    case 2:
        return {place - size(), place};
    default:
        return {place - size(), place + size()};
    }
}

double PlaceIn(const Span& side, Generator& generator)
{
    const double part = static_cast<double>(generator.Below(1001)) / 1000;
    return std::clamp(side.Low + part * (side.High - side.Low), side.Low, side.High);
}

// A formula in x and y.
std::string PlaneFormula(Generator& generator)
{
    std::string line = generator.Formula();
    std::replace(line.begin(), line.end(), 'z', 'y');
    std::replace(line.begin(), line.end(), 'Z', 'x');
    return line;
}

struct Tally {
    int Values = 0;
    int Whole = 0;   // values in boxes without marks
    int Nowhere = 0; // boxes
    int Slopes = 0;
};

std::string Where(const std::string& line, const Box& box, const Known& known)
{
    std::ostringstream where;
    where.precision(17);
    where << testing::PrintToString(line) << " over " << box.X << " times " << box.Y << " f "
          << known.F << " slopes " << known.AlongX << known.AlongY << " marks " << known.Marks;
    return where.str();
}

// The values at a point in each box.
void ExpectValues(Bench& bench, const std::string& line, Tally& tally)
{
    bench.RunPoints(kBlockPoints);
    for (std::size_t at = 0; at < kBlockPoints; ++at) {
        const Known known = bench.Over(at);
        const double value = bench.Values->F.At[at];
        const auto where = [&] {
            std::ostringstream point;
            point.precision(17);
            point << value << " at " << bench.Points->X.At[at] << ", " << bench.Points->Y.At[at];
            return Where(line, bench.At(at), known) + ": " + point.str();
        };
        const bool defined = !std::isnan(value);
        ASSERT_TRUE(!defined || known.F.Holds(value)) << where();
        ASSERT_TRUE(defined || known.Marks != 0) << where();
        ASSERT_TRUE(!defined || (known.Marks & kNowhereDefined) == 0) << where();
        ASSERT_TRUE(!defined || std::isnan(bench.Values->AlongX.At[at]) ||
                    known.AlongX.Holds(bench.Values->AlongX.At[at]))
            << where() << " slope " << bench.Values->AlongX.At[at];
        ASSERT_TRUE(!defined || std::isnan(bench.Values->AlongY.At[at]) ||
                    known.AlongY.Holds(bench.Values->AlongY.At[at]))
            << where() << " slope " << bench.Values->AlongY.At[at];
        tally.Values += defined ? 1 : 0;
        tally.Whole += defined && known.Marks == 0 ? 1 : 0;
        tally.Nowhere += (known.Marks & kNowhereDefined) != 0 ? 1 : 0;
    }
}

// f at two points of each box that differ along one variable: what lies between its exact values is
// within the slopes times the distance.
void ExpectSlopes(Bench& bench, const std::string& line, Generator& generator, Tally& tally)
{
    Bench ends(line);
    const bool alongX = generator.OneIn(2);
    std::vector<Known> boxes;
    std::vector<Box> places;
    for (std::size_t at = 0; at < kBlockPoints; ++at) {
        boxes.push_back(bench.Over(at));
        places.push_back(bench.At(at));
    }
    std::vector<Known> values[2];
    for (const int end : {0, 1}) {
        for (std::size_t at = 0; at < kBlockPoints; ++at) {
            const Box& box = places[at];
            const double x = !alongX ? box.X.Low : end == 0 ? box.X.Low : box.X.High;
            const double y = alongX ? box.Y.High : end == 0 ? box.Y.Low : box.Y.High;
            ends.Put(at, {{x, x}, {y, y}});
        }
        ends.RunBoxes(kBlockPoints);
        for (std::size_t at = 0; at < kBlockPoints; ++at)
            values[end].push_back(ends.Over(at));
    }
    for (std::size_t at = 0; at < kBlockPoints; ++at) {
        const Span& side = alongX ? places[at].X : places[at].Y;
        const Span& slopes = alongX ? boxes[at].AlongX : boxes[at].AlongY;
        const double distance = side.High - side.Low;
        if (boxes[at].Marks != 0 || distance == 0)
            continue;
        const Span& first = values[0][at].F;
        const Span& last = values[1][at].F;
        const double least = last.Low - first.High;
        const double most = last.High - first.Low;
        const double room = 1e-15 * (std::abs(least) + std::abs(most));
        ++tally.Slopes;
        ASSERT_TRUE(!(least - room > slopes.High * distance) &&
                    !(most + room < slopes.Low * distance))
            << Where(line, places[at], boxes[at]) << (alongX ? " along x " : " along y ") << least
            << " to " << most;
    }
}

void ExpectEnclosure(const std::string& line, Generator& generator, Tally& tally)
{
    Bench bench(line);
    ASSERT_TRUE(bench.Formula.IsCompiled()) << line;
    for (std::size_t at = 0; at < kBlockPoints; ++at)
        bench.Put(at, {Side(generator), Side(generator)});
    bench.RunBoxes(kBlockPoints);
    for (int i = 0; i < kPointsInABox && !testing::Test::HasFatalFailure(); ++i) {
        for (std::size_t at = 0; at < kBlockPoints; ++at) {
            bench.Points->X.At[at] = PlaceIn(bench.At(at).X, generator);
            bench.Points->Y.At[at] = PlaceIn(bench.At(at).Y, generator);
        }
        ExpectValues(bench, line, tally);
    }
    if (!testing::Test::HasFatalFailure())
        ExpectSlopes(bench, line, generator, tally);
}

TEST(Field, RangeOverABoxMissesAPoint)
{
    Generator generator;
    Tally tally;
    for (const char* const line : kNasties)
        ExpectEnclosure(line, generator, tally);
    for (int i = 0; i < kGenerated && !HasFatalFailure(); ++i)
        ExpectEnclosure(PlaneFormula(generator), generator, tally);
    std::cout << tally.Values << " values, " << tally.Whole << " of them without marks, "
              << tally.Nowhere << " boxes without, " << tally.Slopes << " slopes\n";
    EXPECT_GT(tally.Whole, tally.Values / 4);
    EXPECT_GT(tally.Nowhere, kGenerated);
    EXPECT_GT(tally.Slopes, 20 * kGenerated);
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
