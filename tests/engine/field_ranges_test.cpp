#include "engine/field_runner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iostream>
#include <numbers>
#include <numeric>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "engine/field_bench.h"

namespace kelvane {
namespace {

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
        {"x/x", {{2, 5}, {}}, {1, 1}, 0},
        {"absx/x", {{2, 5}, {}}, {1, 1}, 0},
        {"x/absx", {{-5, 2}, {}}, {-1, 1}, kBoth},
        {"(x^2)^(1.5)", {{-2, 1}, {}}, {0, 8}, 0},
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
        {"absx/x", {{-1, 2}, {}}, {0, 0}, {0, 0}},
        {"(x^2)^.5", {{-1, 2}, {}}, {-1, 1}, {0, 0}},
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

constexpr int kGenerated = 1000;
constexpr int kPointsInABox = 6;

double PlaceIn(const Span& side, Generator& generator)
{
    const double part = static_cast<double>(generator.Below(1001)) / 1000;
    return std::clamp(side.Low + part * (side.High - side.Low), side.Low, side.High);
}

struct Tally {
    int Values = 0;
    int Whole = 0;   // values in boxes without marks
    int Nowhere = 0; // boxes
    int Slopes = 0;
    int PartSlopes = 0; // in boxes with marks
};

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

std::vector<Known> Over(Bench& bench, const std::vector<Box>& boxes)
{
    std::vector<Known> all;
    for (std::size_t at = 0; at < boxes.size(); ++at)
        bench.Put(at, boxes[at]);
    bench.RunBoxes(static_cast<int>(boxes.size()));
    for (std::size_t at = 0; at < boxes.size(); ++at)
        all.push_back(bench.Over(at));
    return all;
}

// How f changes between two points of each box that differ along one variable is within the slopes
// times the distance, where f is whole between them. It may lack values elsewhere in the box.
void ExpectSlopes(Bench& bench, const std::string& line, Generator& generator, Tally& tally)
{
    const bool alongX = generator.OneIn(2);
    std::vector<Box> boxes;
    std::vector<Box> ways; // from the middle of a side to its end
    std::vector<Box> starts;
    std::vector<Box> ends;
    for (std::size_t at = 0; at < kBlockPoints; ++at) {
        boxes.push_back(bench.At(at));
        const auto [x, y] = boxes.back();
        const double middle = alongX ? std::midpoint(x.Low, x.High) : std::midpoint(y.Low, y.High);
        ways.push_back(alongX ? Box{{middle, x.High}, {y.High, y.High}}
                              : Box{{x.Low, x.Low}, {middle, y.High}});
        const auto& [wayX, wayY] = ways.back();
        starts.push_back({{wayX.Low, wayX.Low}, {wayY.Low, wayY.Low}});
        ends.push_back({{wayX.High, wayX.High}, {wayY.High, wayY.High}});
    }
    const std::vector<Known> first = Over(bench, starts);
    const std::vector<Known> last = Over(bench, ends);
    const std::vector<Known> between = Over(bench, ways);
    const std::vector<Known> whole = Over(bench, boxes);
    for (std::size_t at = 0; at < kBlockPoints; ++at) {
        const Span& side = alongX ? ways[at].X : ways[at].Y;
        const Span& slopes = alongX ? whole[at].AlongX : whole[at].AlongY;
        const double distance = side.High - side.Low;
        if (between[at].Marks != 0 || distance == 0)
            continue;
        const double least = last[at].F.Low - first[at].F.High;
        const double most = last[at].F.High - first[at].F.Low;
        const double room = 1e-15 * (std::abs(least) + std::abs(most));
        (whole[at].Marks == 0 ? tally.Slopes : tally.PartSlopes) += 1;
        ASSERT_TRUE(!(least - room > slopes.High * distance) &&
                    !(most + room < slopes.Low * distance))
            << Where(line, boxes[at], whole[at]) << (alongX ? " along x " : " along y ") << least
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
              << tally.Nowhere << " boxes without, " << tally.Slopes << " slopes, "
              << tally.PartSlopes << " in boxes with marks\n";
    EXPECT_GT(tally.Whole, tally.Values / 4);
    EXPECT_GT(tally.Nowhere, kGenerated);
    EXPECT_GT(tally.Slopes, 20 * kGenerated);
    EXPECT_GT(tally.PartSlopes, kGenerated);
}

} // namespace
} // namespace kelvane
