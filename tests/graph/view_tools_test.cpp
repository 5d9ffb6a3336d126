#include "graph/view_tools.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kelvane {
namespace {

// 400 x 200 pixels, 10 a unit, world (2, 1) at the crossing in the middle.
ViewState View()
{
    ViewState view{.OriginX = 200, .OriginY = 100, .UnitPixels = 10, .ColumnCache = {}};
    EXPECT_TRUE(SetCenter(view, {2, 1}));
    return view;
}

void ExpectWorld(const ViewState& view, PixelPoint pixel, WorldPoint world)
{
    const WorldPoint found = PixelToWorld(view, pixel);
    EXPECT_NEAR(found.X, world.X, 1e-4);
    EXPECT_NEAR(found.Y, world.Y, 1e-4);
}

TEST(ViewTools, ZoomMovesWhatIsUnderThePointer)
{
    ViewState view = View();
    ExpectWorld(view, {300, 50}, {12, 6});
    EXPECT_TRUE(ZoomAround(view, 1 / kZoomStep, {300, 50}));
    EXPECT_TRUE(ZoomAround(view, 1 / kZoomStep, {300, 50}));
    EXPECT_NEAR(view.ZoomFactor, 0.5, 1e-6);
    ExpectWorld(view, {300, 50}, {12, 6});
    ExpectWorld(view, {200, 100}, {7, 3.5});
    view.YRatio = 2;
    ExpectWorld(view, {200, 60}, {7, 4.5});
    EXPECT_TRUE(ZoomAround(view, 4, {200, 60}));
    ExpectWorld(view, {200, 60}, {7, 4.5});
}

TEST(ViewTools, GraphMovesTheWrongWay)
{
    ViewState view = View();
    EXPECT_TRUE(MoveGraph(view, 30, -10)); // to the right and up
    ExpectWorld(view, {230, 90}, {2, 1});
    EXPECT_TRUE(CenterAt(view, {230, 90}));
    ExpectWorld(view, {200, 100}, {2, 1});
}

TEST(ViewTools, CenterStaysALongNumberOrMovesFar)
{
    ViewState view = View();
    view.YRatio = 3;
    EXPECT_TRUE(SetCenter(view, {-1.04777, 0.93605}));
    RoundCenter(view); // four pixels are 0.4 units across and 0.13 up
    EXPECT_FLOAT_EQ(view.CenterX, -1);
    EXPECT_FLOAT_EQ(view.CenterY, -1);
    EXPECT_TRUE(SetZoom(view, 0.01));
    EXPECT_TRUE(SetCenter(view, {-1.04777, 0.93605}));
    RoundCenter(view);
    EXPECT_FLOAT_EQ(view.CenterX, -1.05F);
    EXPECT_FLOAT_EQ(view.CenterY, -0.936F);
}

TEST(ViewTools, BoxIsShownInPart)
{
    ViewState view = View();
    // From world (2, 1) to (12, 11): the height decides.
    EXPECT_TRUE(ZoomToBox(view, {{300, 0}, {200, 100}}, {400, 200}));
    EXPECT_FLOAT_EQ(view.ZoomFactor, 0.5F);
    ExpectWorld(view, {200, 100}, {7, 6});
    ExpectWorld(view, {200, 0}, {7, 11});
    EXPECT_FALSE(ZoomToBox(view, {{10, 10}, {10, 90}}, {400, 200}));
}

TEST(ViewTools, ViewIsSpoiledByWhatCannotBeShown)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    ViewState view = View();
    for (const double zoom : {0.0, -1.0, 1e7, 1e-7, HUGE_VAL, nan})
        EXPECT_FALSE(SetZoom(view, zoom)) << zoom;
    for (const double x : {1e39, 1e9, nan}) // at 1e9 singles lie 64 units apart
        EXPECT_FALSE(SetCenter(view, {x, 0})) << x;
    EXPECT_FALSE(SetCenter(view, {0, -HUGE_VAL}));
    ExpectWorld(view, {200, 100}, {2, 1});
    EXPECT_EQ(view.ZoomFactor, 1);
    while (ZoomAround(view, 1 / kZoomStep, {399, 0}))
        ;
    EXPECT_LT(view.ZoomFactor, 1e-3);
    const WorldPoint here = PixelToWorld(view, {200, 100});
    EXPECT_LT(here.X, PixelToWorld(view, {201, 100}).X);
}

} // namespace
} // namespace kelvane
