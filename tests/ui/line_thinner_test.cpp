#include "ui/line_thinner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "ui/points.h"

namespace kelvane {
namespace {

constexpr double kTolerance = 0.05;

Points Thinned(const Points& curve)
{
    LineThinner thinner(kTolerance);
    Points vertices;
    for (const PixelPoint& point : curve)
        if (const auto vertex = thinner.Add(point))
            vertices.push_back(*vertex);
    if (const auto vertex = thinner.Finish())
        vertices.push_back(*vertex);
    return vertices;
}

double Distance(PixelPoint point, PixelPoint from, PixelPoint to)
{
    const double dx = to.X - from.X;
    const double dy = to.Y - from.Y;
    const double square = dx * dx + dy * dy;
    const double share =
        square > 0 ? ((point.X - from.X) * dx + (point.Y - from.Y) * dy) / square : 0;
    const double nearest = std::clamp(share, 0.0, 1.0);
    return std::hypot(from.X + nearest * dx - point.X, from.Y + nearest * dy - point.Y);
}

TEST(LineThinner, KeepsWrongVertices)
{
    const struct {
        const char* Fault;
        Points Curve;
        Points Kept;
    } cases[] = {
        {"something from nothing", {}, {}},
        {"single point lost", {{1, 2}}, {{1, 2}}},
        {"straight points kept", {{0, 0}, {1, 1}, {2, 2}, {9, 9}}, {{0, 0}, {9, 9}}},
        {"corner cut", {{0, 0}, {5, 0}, {5, 5}}, {{0, 0}, {5, 0}, {5, 5}}},
        {"turning point lost", {{0, 0}, {5, 0}, {9, 0}, {4, 0}, {2, 0}}, {{0, 0}, {9, 0}, {2, 0}}},
        {"return to the start lost", {{0, 0}, {9, 0}, {0, 0}}, {{0, 0}, {9, 0}, {0, 0}}},
        {"leap over the start taken for straight",
         {{0, 0}, {1, 0}, {-8, 0}},
         {{0, 0}, {1, 0}, {-8, 0}}},
        {"small leap sideways lost", {{0, 0}, {0, 0.2}, {9, 0.2}}, {{0, 0}, {0, 0.2}, {9, 0.2}}},
    };
    for (const auto& test : cases)
        EXPECT_EQ(Thinned(test.Curve), test.Kept) << test.Fault;
}

TEST(LineThinner, LeavesOutMoreThanTheToleranceAllows)
{
    const struct {
        const char* Name;
        std::function<PixelPoint(double)> Curve; // from 0 to 1
        std::size_t MostVertices;
    } cases[] = {
        {"sine",
         [](double t) {
             return PixelPoint{1600 * t, 400 * std::sin(16 * t)};
         },
         400},
        {"spiral",
         [](double t) {
             return PixelPoint{300 * t * std::cos(40 * t), 300 * t * std::sin(40 * t)};
         },
         800},
        {"noisy line",
         [](double t) {
             return PixelPoint{1600 * t, 0.02 * std::sin(1e5 * t)};
         },
         200},
        {"zigzag",
         [](double t) {
             return PixelPoint{100 * t, 50 * std::sin(3000 * t)};
         },
         20001},
    };
    for (const auto& test : cases) {
        Points curve;
        for (int i = 0; i <= 20000; ++i)
            curve.push_back(test.Curve(i / 20000.0));
        const Points vertices = Thinned(curve);
        EXPECT_LE(vertices.size(), test.MostVertices) << test.Name;
        double worst = 0;
        std::size_t piece = 0; // the vertices are points of the curve, in its order
        for (const PixelPoint& point : curve) {
            ASSERT_LT(piece + 1, vertices.size()) << test.Name;
            worst = std::max(worst, Distance(point, vertices[piece], vertices[piece + 1]));
            if (point == vertices[piece + 1] && piece + 2 < vertices.size())
                ++piece;
        }
        EXPECT_LE(worst, kTolerance * (1 + 1e-9)) << test.Name;
    }
}

} // namespace
} // namespace kelvane
