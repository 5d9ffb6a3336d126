#include "graph/view.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kelvane {

TEST(View, SentinelHasOtherBits)
{
    EXPECT_EQ(std::bit_cast<std::uint32_t>(kNoPoint), 0xFF7FFFFDU);
    EXPECT_TRUE(IsNoPoint(kNoPoint));
    EXPECT_FALSE(IsNoPoint(std::nextafter(kNoPoint, 0.0F)));
    ColumnCells cells;
    EXPECT_TRUE(IsNoPoint(cells[ColumnCells::kFirst]) && IsNoPoint(cells[ColumnCells::kLast]));
}

TEST(View, WorldAndPixelDisagree)
{
    ViewState view{.OriginX = 100,
                   .OriginY = 80,
                   .UnitPixels = 20,
                   .ZoomFactor = 2,
                   .YRatio = 0.5F,
                   .CenterX = 3,
                   .CenterY = -1,
                   .ColumnCache = {}};
    ASSERT_TRUE(UpdatePixPerStep(view));
    EXPECT_EQ(WorldToPixel(view, {3, 1}), (PixelPoint{100, 80})); // the axes' crossing
    EXPECT_EQ(WorldToPixel(view, {5, 5}), (PixelPoint{120, 60}));
    const WorldPoint back = PixelToWorld(view, {120, 60});
    EXPECT_EQ(back.X, 5);
    EXPECT_EQ(back.Y, 5);
    EXPECT_EQ(SampleToPixel(view, 2, 4), (PixelPoint{120, 40}));
}

TEST(View, UselessScaleIsAccepted)
{
    for (const float zoom : {0.0F, -1.0F, 1e-38F, static_cast<float>(NAN)}) {
        ViewState view{.UnitPixels = 100, .ZoomFactor = zoom, .ColumnCache = {}};
        EXPECT_FALSE(UpdatePixPerStep(view)) << zoom;
    }
}

TEST(View, RangeMissesTheEdgesOrEqualUnitsDiffer)
{
    ViewState view;
    ASSERT_TRUE(FitRange(view, {5, 15}, {-1, 3}, {1000, 800}));
    ASSERT_TRUE(UpdatePixPerStep(view));
    EXPECT_EQ(WorldToPixel(view, {5, 3}), (PixelPoint{0, 0}));
    EXPECT_EQ(WorldToPixel(view, {15, -1}), (PixelPoint{1000, 800}));
    ASSERT_TRUE(FitEqualUnits(view, {-10, 10}, {1000, 800}));
    ASSERT_TRUE(UpdatePixPerStep(view));
    EXPECT_EQ(WorldToPixel(view, {-10, 8}), (PixelPoint{0, 0}));
    EXPECT_EQ(view.YRatio, 1);
    EXPECT_EQ(view.YMin, -10);
    EXPECT_EQ(view.YMax, 10);
    ASSERT_TRUE(FitEqualUnits(view, {-10, 10}, {500, 1000}));
    EXPECT_EQ(view.YMax, 20); // a tall picture shows more than the range of x
}

TEST(View, UselessRangeIsAcceptedOrChangesTheView)
{
    const PixelSize size{1000, 800};
    const Interval good{-1, 1};
    const Interval bad[] = {{1, 1},          {2, 1},      {NAN, 1},          {0, HUGE_VAL},
                            {-1e300, 1e300}, {0, 1e-300}, {1e9, 1e9 + 1e-3}, {-3e38, 3e38}};
    for (const Interval& interval : bad) {
        ViewState view{.UnitPixels = 7, .ColumnCache = {}};
        EXPECT_FALSE(FitRange(view, interval, good, size)) << interval.Low << ':' << interval.High;
        EXPECT_FALSE(FitRange(view, good, interval, size)) << interval.Low << ':' << interval.High;
        EXPECT_EQ(view.UnitPixels, 7);
        EXPECT_EQ(view.XMin, -10);
    }
}

TEST(View, BisectionLooksOutsideTheVisibleRange)
{
    const ViewState view{.ZoomFactor = 2,
                         .CenterY = 3,
                         .YMin = -4,
                         .YMax = 5,
                         .ZMin = -6,
                         .ZMax = 7,
                         .Step2D = 0.5F,
                         .ColumnCache = {}};
    const SolveRange y = SolveRangeY(view);
    EXPECT_EQ(y.Low, -11);
    EXPECT_EQ(y.High, 7);
    EXPECT_EQ(y.Tolerance, 0.25F);
    EXPECT_EQ(SolveRangeZ(view).Low, -15);
    EXPECT_EQ(SolveRangeZ(view).High, 11);
}

} // namespace kelvane
