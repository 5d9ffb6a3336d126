#include "ui/stroke_mask.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "ui/points.h"

namespace kelvane {
namespace {

constexpr int kSize = 64;

int LargestDifference(const StrokeMask& a, const StrokeMask& b)
{
    int largest = 0;
    for (int row = 0; row < kSize; ++row)
        for (int column = 0; column < kSize; ++column)
            largest =
                std::max(largest, std::abs(a.Coverage(column, row) - b.Coverage(column, row)));
    return largest;
}

StrokeMask MaskOf(const Points& polyline, double width)
{
    StrokeMask mask(kSize, kSize);
    mask.AddPolyline(polyline, width);
    return mask;
}

// The distance by turning the stroke level, in long double.
double ExpectedCoverage(const Points& stroke, double width, int column, int row)
{
    const long double angle = std::atan2(static_cast<long double>(stroke[1].Y - stroke[0].Y),
                                         static_cast<long double>(stroke[1].X - stroke[0].X));
    const long double length = std::hypot(stroke[1].X - stroke[0].X, stroke[1].Y - stroke[0].Y);
    const long double dx = column - stroke[0].X;
    const long double dy = row - stroke[0].Y;
    const long double along = dx * std::cos(angle) + dy * std::sin(angle);
    const long double across = dy * std::cos(angle) - dx * std::sin(angle);
    const long double beyond = along < 0 ? -along : along > length ? along - length : 0;
    return std::clamp(static_cast<double>(width / 2 + 0.5L - std::hypot(across, beyond)), 0.0, 1.0);
}

TEST(StrokeMask, CoverageIsNotThatOfTheDistance)
{
    std::mt19937 random(20240607);
    std::uniform_real_distribution<double> place(-20, kSize + 20);
    std::vector<Points> strokes{{{10, 20}, {50, 20}},  {{30, 5}, {30, 60}},
                                {{20, 50}, {20, 10}},  {{5, 5}, {60, 60}},
                                {{60, 3}, {3, 60}},    {{10, 10}, {10.2, 60}},
                                {{5, 30}, {60, 30.3}}, {{32.4, 31.7}, {32.4, 31.7}}};
    for (int i = 0; i < 200; ++i)
        strokes.push_back({{place(random), place(random)}, {place(random), place(random)}});
    for (const Points& stroke : strokes)
        for (double width : {1.0, 2.0, 3.0, 10.0}) {
            const StrokeMask mask = MaskOf(stroke, width);
            double worst = 0;
            for (int row = 0; row < kSize; ++row)
                for (int column = 0; column < kSize; ++column)
                    worst = std::max(worst, std::abs(mask.Coverage(column, row) / 255.0 -
                                                     ExpectedCoverage(stroke, width, column, row)));
            EXPECT_LE(worst, 2.0 / 255) << testing::PrintToString(stroke) << " width " << width;
        }
}

TEST(StrokeMask, PiecesOfALineShowSeams)
{
    for (double width : {1.0, 2.0, 3.0, 10.0}) {
        Points pieces;
        for (int i = 0; i <= 90; ++i)
            pieces.push_back({5 + i * 0.6, 10 + i * 0.4});
        const StrokeMask whole = MaskOf({pieces.front(), pieces.back()}, width);
        EXPECT_LE(LargestDifference(MaskOf(pieces, width), whole), 2) << "width " << width;
    }
}

TEST(StrokeMask, LineDrawnTwiceIsBolder)
{
    const Points once{{5, 10.3}, {50, 47.8}};
    const Points thereAndBack{once[0], once[1], once[0]};
    for (double width : {1.0, 3.0}) {
        const StrokeMask single = MaskOf(once, width);
        EXPECT_LE(LargestDifference(MaskOf(thereAndBack, width), single), 2) << "there and back";
        StrokeMask twice = MaskOf(once, width);
        twice.AddPolyline(once, width);
        EXPECT_EQ(LargestDifference(twice, single), 0) << "again";
    }
}

TEST(StrokeMask, DenseZigzagIsPale)
{
    Points zigzag; // neighbouring ways are less than a pixel apart everywhere
    for (int i = 0; i < 80; ++i)
        zigzag.push_back({10 + i * 0.5, i % 2 == 0 ? 5.0 : 60.0});
    const StrokeMask mask = MaskOf(zigzag, 1);
    for (int column = 12; column < 48; ++column)
        for (int row = 10; row < 55; ++row)
            ASSERT_GE(mask.Coverage(column, row), 250) << "column " << column << " row " << row;
}

TEST(StrokeMask, ClearLeavesTraces)
{
    StrokeMask mask = MaskOf({{-5, -5}, {70, 70}, {3, 60}}, 5);
    mask.AddRect({-3, 40, 100, 4});
    EXPECT_EQ(mask.Coverage(0, 43), 255);
    EXPECT_EQ(mask.Coverage(kSize - 1, 40), 255);
    EXPECT_EQ(mask.Coverage(0, 44), 0);
    mask.Clear();
    EXPECT_EQ(LargestDifference(mask, StrokeMask(kSize, kSize)), 0);
    EXPECT_TRUE(mask.TouchedColumns().IsEmpty());
}

} // namespace
} // namespace kelvane
