#include "ui/hatching.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "ui/points.h"

namespace kelvane {
namespace {

constexpr Box kSheet{-1, -1, 120, 80};

// The polygon's corners in their order, from the leftmost on, the upper one of two.
Points FromTheLeft(std::span<const PixelPoint> polygon)
{
    Points corners(polygon.begin(), polygon.end());
    const auto first =
        std::min_element(corners.begin(), corners.end(), [](PixelPoint a, PixelPoint b) {
            return std::pair(a.X, a.Y) < std::pair(b.X, b.Y);
        });
    std::rotate(corners.begin(), first, corners.end());
    return corners;
}

TEST(Hatching, AreaOrLineIsElsewhere)
{
    const struct {
        const char* Fault;
        std::vector<Points> Polygons;
        const char* Areas;
        const char* Lines; // sums of x and y that are multiples of 6
    } cases[] = {
        {"wrong lines",
         {{{0, 0}, {12, 0}, {12, 12}, {0, 12}}},
         "0,0 12,0 12,12 0,12",
         "0,6-6,0 0,12-12,0 6,12-12,6"},
        {"lines broken at a border",
         {{{0, 0}, {5, 0}, {5, 4}, {0, 4}}, {{5, 0}, {9, 0}, {9, 4}, {5, 4}}},
         "0,0 5,0 5,4 0,4; 5,0 9,0 9,4 5,4",
         "2,4-6,0 8,4-9,3"},
        {"lines across a gap",
         {{{7, 0}, {9, 0}, {9, 9}, {7, 9}}, {{0, 0}, {2, 0}, {2, 9}, {0, 9}}},
         "7,0 9,0 9,9 7,9; 0,0 2,0 2,9 0,9",
         "0,6-2,4 7,5-9,3"},
        {"goes round the other way",
         {{{10, 10}, {10, 14}, {14, 10}}},
         "10,10 14,10 10,14",
         "10,14-14,10"},
        {"far corners",
         {{{-1e30, 20}, {1e30, 20}, {1e30, 23}, {-1e30, 23}}},
         "-1,20 120,20 120,23 -1,23",
         nullptr},
        {"around the sheet",
         {{{-1e9, -1e9}, {1e9, -1e9}, {1e9, 1e9}, {-1e9, 1e9}}},
         "-1,-1 120,-1 120,80 -1,80",
         nullptr},
        {"beside the sheet", {{{-9, 0}, {-2, 0}, {-2, 9}}, {{0, 90}, {9, 90}, {0, 99}}}, "", ""},
        {"side along a line", {{{3, 3}, {6, 0}, {8, 1}}}, "3,3 6,0 8,1", "3,3-6,0"},
        {"no area", {{{1, 1}, {2, 2}, {1, 1}}}, "1,1 2,2 1,1", ""},
    };
    for (const auto& test : cases) {
        Hatching hatching;
        for (const Points& polygon : test.Polygons)
            hatching.Add(polygon, kSheet);
        std::ostringstream areas;
        for (std::size_t i = 0; i < hatching.Count(); ++i) {
            const char* before = i == 0 ? "" : "; ";
            for (const PixelPoint& corner : FromTheLeft(hatching.Polygon(i))) {
                areas << before << corner.X << ',' << corner.Y;
                before = " ";
            }
        }
        std::ostringstream lines;
        for (const PixelLine& line : hatching.Lines())
            lines << (lines.tellp() > 0 ? " " : "") << line.From.X << ',' << line.From.Y << '-'
                  << line.To.X << ',' << line.To.Y;
        EXPECT_EQ(areas.str(), test.Areas) << test.Fault;
        if (test.Lines != nullptr) {
            EXPECT_EQ(lines.str(), test.Lines) << test.Fault;
        }
    }
}

} // namespace
} // namespace kelvane
