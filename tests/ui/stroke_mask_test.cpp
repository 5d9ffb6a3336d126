#include "ui/stroke_mask.h"

#include <gtest/gtest.h>

#include <random>

#include "ui/points.h"

namespace kelvane {
namespace {

constexpr int kSize = 64;

// The largest difference between a mask and the coverage that a straight stroke has by its distance
// from the middles of the pixels.
double LargestError(const StrokeMask& mask, const Points& stroke, double width)
{
    double largest = 0;
    for (int row = 0; row < kSize; ++row)
        for (int column = 0; column < kSize; ++column) {
            const double distance = Distance({1.0 * column, 1.0 * row}, stroke[0], stroke[1]);
            const double expected = std::clamp(width / 2 + 0.5 - distance, 0.0, 1.0);
            largest = std::max(largest, std::abs(mask.Coverage(column, row) / 255.0 - expected));
        }
    return largest;
}

TEST(StrokeMask, CoverageIsNotThatOfTheDistance)
{
    std::mt19937 random(20240607);
    std::uniform_real_distribution<double> place(-20, kSize + 20);
    std::vector<Points> strokes{{{10, 20}, {50, 20}},
                                {{20, 50}, {20, 10}},
                                {{5, 5}, {60, 60}},
                                {{32.4, 31.7}, {32.4, 31.7}}};
    for (int i = 0; i < 200; ++i)
        strokes.push_back({{place(random), place(random)}, {place(random), place(random)}});
    for (const Points& stroke : strokes) {
        Points pieces;
        for (int i = 0; i <= 90; ++i)
            pieces.push_back({std::lerp(stroke[0].X, stroke[1].X, i / 90.0),
                              std::lerp(stroke[0].Y, stroke[1].Y, i / 90.0)});
        for (double width : {1.0, 2.0, 3.0, 10.0}) {
            StrokeMask mask(kSize, kSize);
            for (const Points& again : {stroke, {stroke[0], stroke[1], stroke[0]}, pieces}) {
                mask.AddPolyline(again, width);
                EXPECT_LE(LargestError(mask, stroke, width), 2.0 / 255)
                    << testing::PrintToString(again) << " width " << width;
            }
        }
    }
}

} // namespace
} // namespace kelvane
