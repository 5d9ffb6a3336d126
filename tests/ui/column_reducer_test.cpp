#include "ui/column_reducer.h"

#include <gtest/gtest.h>

#include "ui/points.h"

namespace kelvane {
namespace {

Points Reduced(ColumnReducer& reducer, const Points& curve)
{
    Points kept;
    const auto keep = [&](auto settled) {
        kept.insert(kept.end(), settled.begin(), settled.end());
    };
    for (const PixelPoint& point : curve)
        keep(reducer.Add(point));
    keep(reducer.Finish());
    return kept;
}

TEST(ColumnReducer, KeepsWrongPoints)
{
    const struct {
        const char* Fault;
        double Width;
        Points Curve;
        std::vector<std::size_t> Kept; // which points of the curve
    } cases[] = {
        {"peak after trough", 1, {{0, 5}, {.1, 9}, {.3, 4}, {.4, -9}, {.6, 5}}, {0, 1, 3, 4}},
        {"peak before trough", 1, {{0, 5}, {.1, -9}, {.3, 4}, {.4, 9}, {.6, 5}}, {0, 1, 3, 4}},
        {"first point doubled", 1, {{0, 1}, {0.5, 2}, {0.9, 3}}, {0, 2}},
        {"point at rest doubled", 1, {{2, 2}, {2, 2}, {2, 2}}, {0}},
        {"next column merged", 1, {{0.9, 1}, {1.0, 2}, {1.1, 3}}, {0, 1, 2}},
        {"columns about zero merged", 1, {{-0.5, 1}, {-0.1, 2}, {0.5, 3}}, {0, 1, 2}},
        {"return merged", 1, {{.5, 1}, {1, 2}, {1, 7}, {.7, 3}, {.2, 4}}, {0, 1, 2, 3, 4}},
        {"narrow columns merged", 0.1, {{0, 1}, {0.12, 2}, {0.13, 3}, {0.14, 4}}, {0, 1, 3}},
        {"overflow", .1, {{-1e38, 1}, {1e38, -1e38}, {1e38, 0}, {1e38, 1e38}}, {0, 1, 2, 3}},
        {"upright arc flattened",
         1,
         {{.9, 0}, {.5, 1}, {.3, 2}, {.1, 4}, {0, 6}, {.1, 8}, {.6, 11}, {.9, 12}},
         {0, 2, 3, 4, 5, 6, 7}},
        {"turn of a narrow arc lost",
         1,
         {{.1, 0}, {.2, 9}, {.3, 9.5}, {.4, 9}, {.5, 0}},
         {0, 1, 2, 4}},
        {"zigzag kept", 1, {{0, 0}, {.1, 9}, {.2, 0}, {.3, 8}, {.4, 1}, {.5, 8}}, {0, 1, 5}},
    };
    for (const auto& test : cases) {
        ColumnReducer reducer(test.Width);
        Points kept;
        for (const std::size_t index : test.Kept)
            kept.push_back(test.Curve[index]);
        for (const char* curve : {"first curve", "second curve"})
            EXPECT_EQ(Reduced(reducer, test.Curve), kept) << test.Fault << ", " << curve;
    }
}

} // namespace
} // namespace kelvane
