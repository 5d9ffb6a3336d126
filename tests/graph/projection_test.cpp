#include "graph/layout.h"
#include "graph/projection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kelvane {

namespace {

constexpr AxisModel kSimple{false, 22};
constexpr Matrix3 kQuarterTurn{0, -1, 0, 1, 0, 0, 0, 0, 1}; // about z: x to y, y to -x
constexpr Matrix3 kSlanted{0.8138F, -0.4698F, 0.342F, 0.5F,   0.866F,
                           0,       -0.2962F, 0.171F, 0.9397F}; // 30 about z, 20 about y

AxisModel RealWorld(int degrees)
{
    return {true, static_cast<std::int16_t>(degrees)};
}

// A hundred pixels a unit, the crossing at pixel (0, 0).
ViewState PlainView()
{
    return {.UnitPixels = 100, .PixPerStep = 100, .ColumnCache = {}};
}

// All that a view can set: the crossing is the world point (1, 2, 0).
ViewState RichView(float zoom)
{
    ViewState view{.OriginX = 200, .OriginY = 100, .UnitPixels = 60, .ColumnCache = {}};
    view.ZoomFactor = zoom;
    view.YRatio = 2;
    view.ZRatio = 0.5F;
    view.CenterX = 1;
    view.CenterY = -2;
    UpdatePixPerStep(view);
    return view;
}

void ExpectNear(const ProjectedPoint& got, const ProjectedPoint& expected, const char* what)
{
    constexpr double kTolerance = 2e-4;
    EXPECT_NEAR(got.Pixel.X, expected.Pixel.X, kTolerance) << what;
    EXPECT_NEAR(got.Pixel.Y, expected.Pixel.Y, kTolerance) << what;
    EXPECT_NEAR(got.Depth, expected.Depth, kTolerance) << what;
}

} // namespace

TEST(Projection, PointLiesElsewhere)
{
    struct Case {
        const char* What;
        AxisModel Model;
        Matrix3 Matrix;
        SpacePoint World;
        ProjectedPoint Expected;
    };
    const Case cases[] = {
        {"simple x", kSimple, kIdentity, {1, 0, 0}, {{-35.35534, 35.35534}, 100}},
        {"simple y", kSimple, kIdentity, {0, 1, 0}, {{100, 0}, 0}},
        {"simple z", kSimple, kIdentity, {0, 0, 1}, {{0, -100}, 0}},
        {"isometric x", RealWorld(30), kIdentity, {1, 0, 0}, {{-86.60254, 50}, 70.71068}},
        {"isometric y", RealWorld(30), kIdentity, {0, 1, 0}, {{86.60254, 50}, 70.71068}},
        {"isometric z", RealWorld(30), kIdentity, {0, 0, 1}, {{0, -100}, 70.71068}},
        {"x at 45", RealWorld(45), kIdentity, {1, 0, 0}, {{-61.23724, 61.23724}, 86.60254}},
        {"y at 45", RealWorld(45), kIdentity, {0, 1, 0}, {{106.06602, 35.35534}, 50}},
        {"x at 0", RealWorld(0), kIdentity, {1, 0, 0}, {{-122.47449, 0}, 0}},
        {"y at 0", RealWorld(0), kIdentity, {0, 1, 0}, {{0, 70.71068}, 100}},
        {"turned x", kSimple, kQuarterTurn, {1, 0, 0}, {{100, 0}, 0}},
        {"turned y", kSimple, kQuarterTurn, {0, 1, 0}, {{35.35534, -35.35534}, -100}},
    };
    for (const Case& c : cases)
        ExpectNear(Project(MakeProjection(PlainView(), c.Model, c.Matrix), c.World), c.Expected,
                   c.What);
    // World (3, 5, 8): sample (2, 3, 8), stretched (2, 6, 4), thirty pixels a unit.
    const ViewState view = RichView(2);
    ExpectNear(Project(MakeProjection(view, kSimple, kIdentity), {3, 5, 8}),
               {{358.78680, 1.21320}, 60}, "ratios, centre, zoom and origin");
    // The ratios come first: turned (-6, 2, 4).
    ExpectNear(Project(MakeProjection(view, kSimple, kQuarterTurn), {3, 5, 8}),
               {{323.63961, -83.63961}, -180}, "ratios before the matrix");
}

TEST(Projection, RealWorldCubeIsSkewAtSomeAngle)
{
    for (int degrees = -180; degrees <= 400; ++degrees) {
        const Projection p = MakeProjection(PlainView(), RealWorld(degrees), kIdentity);
        const double edges[3][3] = {{p.Right.X, -p.Down.X, p.Toward.X},
                                    {p.Right.Y, -p.Down.Y, p.Toward.Y},
                                    {p.Right.Z, -p.Down.Z, p.Toward.Z}};
        const auto dot = [&](int a, int b) {
            return edges[a][0] * edges[b][0] + edges[a][1] * edges[b][1] +
                   edges[a][2] * edges[b][2];
        };
        for (int a = 0; a < 3; ++a) {
            EXPECT_NEAR(dot(a, a), 15000, 1e-6) << degrees;
            EXPECT_NEAR(dot(a, (a + 1) % 3), 0, 1e-6) << degrees;
        }
        const double theta = degrees * 3.14159265358979 / 180; // x's angle below the horizontal
        EXPECT_NEAR(p.Right.X * std::sin(theta) + p.Down.X * std::cos(theta), 0, 2e-4) << degrees;
        EXPECT_LT(p.Right.X * std::cos(theta) - p.Down.X * std::sin(theta), -70) << degrees;
        EXPECT_LT(p.Right.X * p.Down.Y - p.Right.Y * p.Down.X, 0) << "left-handed " << degrees;
        EXPECT_NEAR(p.Down.Z, -100, 1e-9) << degrees;
    }
}

TEST(Projection, WayBackFromAPlaneLeadsElsewhere)
{
    std::vector<AxisModel> models{kSimple};
    for (const int degrees : {1, 15, 22, 30, 45, 60, 89, -30, 200})
        models.push_back(RealWorld(degrees));
    const SpacePoint world{3.25, -1.5, 0.75};
    for (const AxisModel& model : models) {
        for (const Matrix3& matrix : {kIdentity, kQuarterTurn, kSlanted}) {
            for (const float zoom : {1e-5F, 1.0F, 3.0F, 1e5F}) {
                const Projection p = MakeProjection(RichView(zoom), model, matrix);
                const PixelPoint pixel = Project(p, world).Pixel;
                for (const SpacePlane plane : {SpacePlane{SpaceAxis::X, world.X},
                                               {SpaceAxis::Y, world.Y},
                                               {SpaceAxis::Z, world.Z}}) {
                    const auto back = UnprojectToPlane(p, pixel, plane);
                    ASSERT_TRUE(back) << model.Axis3DHalfAngle << ' ' << zoom;
                    EXPECT_NEAR(back->X, world.X, 1e-6) << model.Axis3DHalfAngle << ' ' << zoom;
                    EXPECT_NEAR(back->Y, world.Y, 1e-6) << model.Axis3DHalfAngle << ' ' << zoom;
                    EXPECT_NEAR(back->Z, world.Z, 1e-6) << model.Axis3DHalfAngle << ' ' << zoom;
                }
            }
        }
    }
}

TEST(Projection, EdgeOnPlaneHasAPoint)
{
    const Projection along = MakeProjection(PlainView(), RealWorld(0), kIdentity);
    EXPECT_FALSE(UnprojectToPlane(along, {10, 10}, {SpaceAxis::X, 0}));
    EXPECT_TRUE(UnprojectToPlane(along, {10, 10}, {SpaceAxis::Y, 0}));
    const Projection flat = MakeProjection(PlainView(), kSimple, {1, 0, 0, 0, 1, 0, 1, 1, 0});
    EXPECT_FALSE(UnprojectToPlane(flat, {10, 10}, {SpaceAxis::X, 0})) << "z is nowhere";
    const Projection nothing = MakeProjection(PlainView(), kSimple, Matrix3{});
    for (const SpaceAxis axis : {SpaceAxis::X, SpaceAxis::Y, SpaceAxis::Z})
        EXPECT_FALSE(UnprojectToPlane(nothing, {0, 0}, {axis, 0}));
    ViewState infinite = PlainView();
    infinite.ZRatio = INFINITY;
    EXPECT_FALSE(IsUsable(MakeProjection(infinite, kSimple, kIdentity)));
    EXPECT_TRUE(IsUsable(flat));
}

TEST(Projection, HiddenPointCountsAsNearer)
{
    // The eye looks down on the ground: what is seen at a pixel is nearer the higher it lies.
    for (const AxisModel& model : {kSimple, RealWorld(0), RealWorld(22), RealWorld(89)}) {
        const Projection p = MakeProjection(RichView(1), model, kIdentity);
        const auto low = UnprojectToPlane(p, {250, 30}, {SpaceAxis::Z, -1});
        const auto high = UnprojectToPlane(p, {250, 30}, {SpaceAxis::Z, 2});
        ASSERT_TRUE(low && high);
        EXPECT_LT(Project(p, *low).Depth + 1, Project(p, *high).Depth) << model.Axis3DHalfAngle;
    }
}

TEST(FitSpace, BoxOfTheRangesLeavesTheSurfaceOrIsLost)
{
    for (const PixelSize size : {PixelSize{1000, 800}, {300, 900}, {800, 90}}) {
        for (const bool real : {true, false}) {
            ViewState view{
                .ZoomFactor = 1, .XMin = -3, .XMax = 8, .YMin = 0, .YMax = 2, .ColumnCache = {}};
            ASSERT_TRUE(FitSpace(view, {real, 22}, size));
            ASSERT_TRUE(UpdatePixPerStep(view));
            const Projection projection = MakeProjection(view, {real, 22}, kIdentity);
            Box extent{1e9, 1e9, -1e9, -1e9};
            for (const double x : {-3, 8}) {
                for (const double y : {0, 2}) {
                    for (const double z : {-10, 10}) {
                        const PixelPoint at = Project(projection, {x, y, z}).Pixel;
                        extent = {std::min(extent.Left, at.X), std::min(extent.Top, at.Y),
                                  std::max(extent.Right, at.X), std::max(extent.Bottom, at.Y)};
                    }
                }
            }
            EXPECT_GE(extent.Left, 0);
            EXPECT_GE(extent.Top, 0);
            EXPECT_LE(extent.Right, size.Width);
            EXPECT_LE(extent.Bottom, size.Height);
            const double used = std::max((extent.Right - extent.Left) / size.Width,
                                         (extent.Bottom - extent.Top) / size.Height);
            EXPECT_NEAR(used, 0.86, 1e-3);
        }
    }
    ViewState flat{.UnitPixels = 7,
                   .XMin = 0,
                   .XMax = 0,
                   .YMin = 0,
                   .YMax = 0,
                   .ZMin = 0,
                   .ZMax = 0,
                   .ColumnCache = {}};
    EXPECT_FALSE(FitSpace(flat, {}, {100, 100}));
    EXPECT_EQ(flat.UnitPixels, 7);
}

} // namespace kelvane
