#include "ui/column_reducer.h"

#include <gtest/gtest.h>

#include "ui/points.h"

namespace kelvane {
namespace {

Points Reduced(ColumnReducer& reducer, const Points& curve)
{
    Points kept;
    for (const PixelPoint& point : curve)
        for (const PixelPoint& settled : reducer.Add(point))
            kept.push_back(settled);
    for (const PixelPoint& settled : reducer.Finish())
        kept.push_back(settled);
    return kept;
}

struct Case {
    const char* Fault;
    double Width;
    Points Curve;
    Points Kept;
};

TEST(ColumnReducer, KeepsWrongPoints)
{
    const Case cases[] = {
        {"something from nothing", 1, {}, {}},
        {"single point lost", 1, {{3, 4}}, {{3, 4}}},
        {"peak lost",
         1,
         {{0.1, 5}, {0.2, -9}, {0.3, 5}, {0.4, 6}},
         {{0.1, 5}, {0.2, -9}, {0.4, 6}}},
        {"trough before peak swapped",
         1,
         {{0.1, 5}, {0.2, 9}, {0.3, 4}, {0.4, -9}, {0.5, 4}, {0.6, 5}},
         {{0.1, 5}, {0.2, 9}, {0.4, -9}, {0.6, 5}}},
        {"peak before trough swapped",
         1,
         {{0.1, 5}, {0.2, -9}, {0.3, 4}, {0.4, 9}, {0.6, 5}},
         {{0.1, 5}, {0.2, -9}, {0.4, 9}, {0.6, 5}}},
        {"first point doubled as extreme", 1, {{0, 1}, {0.5, 2}, {0.9, 3}}, {{0, 1}, {0.9, 3}}},
        {"point at rest doubled", 1, {{2, 2}, {2, 2}, {2, 2}}, {{2, 2}}},
        {"next column merged", 1, {{0.9, 1}, {1.0, 2}, {1.1, 3}}, {{0.9, 1}, {1.0, 2}, {1.1, 3}}},
        {"columns about zero merged",
         1,
         {{-0.5, 1}, {-0.1, 2}, {0.5, 3}},
         {{-0.5, 1}, {-0.1, 2}, {0.5, 3}}},
        {"return to a column merged",
         1,
         {{0.5, 1}, {1.5, 2}, {1.2, 7}, {0.7, 3}, {0.2, 4}},
         {{0.5, 1}, {1.5, 2}, {1.2, 7}, {0.7, 3}, {0.2, 4}}},
        {"upright line bent", 1, {{5, 0}, {5, 10}, {5, 20}, {5, 30}}, {{5, 0}, {5, 30}}},
        {"narrow columns merged",
         0.1,
         {{0.01, 1}, {0.12, 2}, {0.13, 3}, {0.14, 4}},
         {{0.01, 1}, {0.12, 2}, {0.14, 4}}},
        {"huge coordinates overflow",
         0.1,
         {{-1e38, 1e38}, {1e38, -1e38}, {1e38, 0}, {1e38, 1e38}, {0, 0}},
         {{-1e38, 1e38}, {1e38, -1e38}, {1e38, 1e38}, {0, 0}}},
    };
    for (const Case& test : cases) {
        ColumnReducer reducer(test.Width);
        EXPECT_EQ(Reduced(reducer, test.Curve), test.Kept) << test.Fault;
        EXPECT_EQ(Reduced(reducer, test.Curve), test.Kept) << test.Fault << ", second curve";
    }
}

TEST(ColumnReducer, KeepsMoreThanFourPointsOfAColumn)
{
    ColumnReducer reducer(1);
    Points curve;
    for (int i = 0; i < 1000; ++i)
        curve.push_back({i / 1000.0, (i * 7919 + 500) % 1000 * 1.0});
    EXPECT_EQ(Reduced(reducer, curve).size(), 4U);
}

} // namespace
} // namespace kelvane
