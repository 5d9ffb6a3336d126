#include "ui/line_thinner.h"

#include <gtest/gtest.h>

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

Points Wave(double loop, double height, double frequency)
{
    Points curve;
    for (double t = 0; t <= 1; t += 1.0 / 20000)
        curve.push_back(
            {1600 * t + loop * t * std::cos(frequency * t), height * std::sin(frequency * t)});
    return curve;
}

TEST(LineThinner, LeavesOutTooMuchOrTooLittle)
{
    const struct {
        const char* Name;
        Points Curve;
        std::size_t MostVertices;
    } cases[] = {
        {"single point", {{1, 2}}, 1},
        {"straight line", {{0, 0}, {1, 1}, {2, 2}, {9, 9}}, 2},
        {"line that turns back", {{0, 0}, {5, 0}, {9, 0}, {4, 0}, {2, 0}}, 3},
        {"leap over the start", {{0, 0}, {1, 0}, {-8, 0}}, 3},
        {"small leap sideways", {{0, 0}, {0, 0.2}, {9, 0.2}}, 3},
        {"sine", Wave(0, 400, 16), 400},
        {"loops", Wave(300, 300, 40), 2000},
        {"noisy line", Wave(0, 0.02, 1e5), 200},
        {"zigzag", Wave(0, 50, 3000), 20001},
    };
    for (const auto& test : cases) {
        const Points vertices = Thinned(test.Curve);
        EXPECT_LE(vertices.size(), test.MostVertices) << test.Name;
        std::size_t next = 0; // the vertices are points of the curve, in its order
        for (const PixelPoint& point : test.Curve) {
            ASSERT_LT(next, vertices.size()) << test.Name;
            const PixelPoint last = vertices[next > 0 ? next - 1 : 0];
            ASSERT_LE(Distance(point, last, vertices[next]), kTolerance * (1 + 1e-9)) << test.Name;
            if (point == vertices[next] && next + 1 < vertices.size())
                ++next;
        }
        EXPECT_EQ(vertices.back(), test.Curve.back()) << test.Name;
    }
}

} // namespace
} // namespace kelvane
