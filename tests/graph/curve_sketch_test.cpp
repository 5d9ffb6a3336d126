#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

#include "graph/curve_sketch.h"
#include "graph/draw_pace.h"
#include "graph/pixel_lattice.h"
#include "recording.h"

namespace kelvane {

namespace {

// A lattice of whole steps: ten pixels a unit, (0, 0) at the surface's (80, 100).
struct SketchSheet : TestSheet {
    SketchSheet()
        : TestSheet("")
    {
        View.PixPerStep = 10;
        Colors.Graph2DColor = kBlack;
        Lattice = {
            .Width = 40, .Height = 100, .StartS = -2, .StartT = -5, .UnitS = 0.1, .UnitT = 0.1};
    }

    DrawContext Context() { return MakeDrawContext(*this, Target, Host, Time); }

    // What is drawn of the pieces.
    std::string Draw(std::initializer_list<std::vector<LatticePoint>> pieces)
    {
        Target = {};
        const DrawContext context = Context();
        CurveSketch sketch(context, Lattice);
        for (const auto& piece : pieces)
            sketch.AddPiece(piece);
        sketch.Plot();
        return Target.Transcript();
    }

    PixelLattice Lattice;
};

std::string Line(int x0, int y0, int x1, int y1)
{
    return "line " + std::to_string(x0) + "," + std::to_string(y0) + " " + std::to_string(x1) +
           "," + std::to_string(y1) + " 000000\n";
}

std::string Dot(int x, int y)
{
    return "pixel " + std::to_string(x) + "," + std::to_string(y) + " 000000\n";
}

struct LatticeCase {
    const char* What;
    float YRatio;
    Matrix3 Matrix;
    float ZoomFactor;
    PixelLattice Expected; // Width, Height, StartS, StartT, UnitS, UnitT
};

} // namespace

// x from -2 to 2, y from -5 to 5, the crossing in pixel (100, 50) of 200 x 100, ten pixels a unit
// at zoom factor 1.
TEST(PixelLattice, LatticeMissesThePixelsOfTheRange)
{
    const LatticeCase cases[] = {
        {"pixels 80 to 120, 0 to 100", 1, kIdentity, 1, {41, 101, -2.05, -5.05, 0.1, 0.1}},
        {"twice as high: to two pixels around the surface",
         2,
         kIdentity,
         1,
         {41, 104, -2.05, -2.575, 0.1, 0.05}},
        {"upside down", -1, kIdentity, 1, {41, 101, -2.05, -5.05, 0.1, 0.1}},
        {"zoomed out, the pixels are the same", 1, kIdentity, 2, {41, 101, -4.1, -10.1, 0.2, 0.2}},
        {"doubled: finer, and y as far as it is seen",
         1,
         {2, 0, 0, 0, 2, 0, 0, 0, 1},
         1,
         {81, 104, -2.025, -2.575, 0.05, 0.05}},
        {"a quarter turn", 1, {0, -1, 0, 1, 0, 0, 0, 0, 1}, 1, {41, 101, -2.05, -5.05, 0.1, 0.1}},
    };
    for (const LatticeCase& c : cases) {
        TestSheet sheet("");
        sheet.View.YRatio = c.YRatio;
        sheet.View.ZoomFactor = c.ZoomFactor;
        ASSERT_TRUE(UpdatePixPerStep(sheet.View));
        const PixelLattice lattice = MakeLattice(sheet.View, c.Matrix, {200, 100});
        EXPECT_EQ(lattice.Width, c.Expected.Width) << c.What;
        EXPECT_EQ(lattice.Height, c.Expected.Height) << c.What;
        EXPECT_NEAR(lattice.StartS, c.Expected.StartS, 1e-6) << c.What;
        EXPECT_NEAR(lattice.StartT, c.Expected.StartT, 1e-6) << c.What;
        EXPECT_NEAR(lattice.UnitS, c.Expected.UnitS, 1e-6) << c.What;
        EXPECT_NEAR(lattice.UnitT, c.Expected.UnitT, 1e-6) << c.What;
    }
    TestSheet away("");
    UpdatePixPerStep(away.View);
    away.View.OriginX = 1000;
    EXPECT_EQ(MakeLattice(away.View, kIdentity, {200, 100}).Width, 0) << "range off the surface";
    away.View.OriginX = 100;
    away.View.PixPerStep = 1e6F;
    const PixelLattice huge = MakeLattice(away.View, {1, 1, 0, 1, 1, 0, 0, 0, 1}, {200, 100});
    EXPECT_LE(huge.Width, kMaxLattice);
    EXPECT_LE(huge.Height, kMaxLattice) << "singular transforms show all of the range";
    EXPECT_NEAR(huge.SampleT(huge.Height), 5, 0.01);
}

TEST(CurveSketch, PiecesOfOneCurveAreDrawnApart)
{
    SketchSheet sheet;
    EXPECT_EQ(sheet.Draw({{{10, 0}, {20, 0}}, {{0, 0}, {10, 0.01}}, {{30, 0}, {20, 0.01}}}),
              Dot(80, 100) + "line 80,100 90,99.99 000000\nline 90,99.99 100,100 000000\n" +
                  Line(100, 100, 110, 100))
        << "in any order and direction";
    EXPECT_EQ(sheet.Draw({{{0, 0}, {10, 0}}, {{10, 0.03}, {20, 0}}}).find("pixel", 1),
              Dot(80, 100).size() + Line(80, 100, 90, 100).size())
        << "further apart than a joint";
    const std::string loop =
        sheet.Draw({{{0, 0}, {10, 0}}, {{10, 0}, {10, 10}}, {{10, 10}, {0, 0}}});
    EXPECT_EQ(loop, Dot(80, 100) + Line(80, 100, 90, 100) + Line(90, 100, 90, 90) +
                        Line(90, 90, 80, 100));
    EXPECT_EQ(sheet.Draw({{{5, 5}}}), Dot(85, 95));
    EXPECT_EQ(sheet.Draw({{{0, 0}, {0.01, 0}}, {{0.01, 0}, {10, 0}}}).find("pixel", 1),
              std::string::npos)
        << "a tiny piece is joined to others, not to itself";
}

TEST(CurveSketch, WhatLiesBeyondTheRangeBreaksTheCurve)
{
    SketchSheet sheet;
    sheet.View.YMax = 0;
    EXPECT_EQ(sheet.Draw({{{0, 40}, {0, 50.5}}}), Dot(80, 60) + Line(80, 60, 80, 50));
}

TEST(CurveSketch, AreasHaveHolesOrCountTwice)
{
    SketchSheet sheet;
    const DrawContext context = sheet.Context();
    CurveSketch sketch(context, sheet.Lattice);
    for (const LatticeBox& box :
         {LatticeBox{2, 0, 4, 2}, LatticeBox{0, 0, 2, 2}, LatticeBox{0, 2, 1, 3}})
        sketch.AddArea(box);
    sketch.Plot();
    EXPECT_EQ(sheet.Target.Transcript(), "pixel 80.5,99.5 000000\nline 80.5,99.5 83.5,99.5 000000\n"
                                         "pixel 80.5,98.5 000000\nline 80.5,98.5 83.5,98.5 000000\n"
                                         "pixel 80.5,97.5 000000\n");
    sketch.AddUnresolved({0, 10, 8, 20});
    sketch.AddUnresolved({8, 10, 12, 20});
    sketch.AddUnresolved({30, 50, 31, 51});
    sheet.Target = {};
    sketch.PlotUnresolved();
    EXPECT_EQ(sheet.Stats.UnresolvedPixels, 121);
    EXPECT_EQ(sheet.Target.Transcript("hatch"), "hatch 80,90 92,90 92,80 80,80 000000\n"
                                                "hatch 108,52 113,52 113,47 108,47 000000\n")
        << "tiny ones large enough to be seen";
}

TEST(CurveSketch, GradientsAndDotsSkipLongLines)
{
    SketchSheet sheet;
    sheet.Flags.JoinPoints = false;
    EXPECT_EQ(sheet.Draw({{{0, 0}, {3, 0}}}),
              Dot(80, 100) + Dot(81, 100) + Dot(82, 100) + Dot(83, 100));
    sheet.Flags.JoinPoints = true;
    sheet.Flags.GradientOn = true;
    EXPECT_EQ(sheet.Draw({{{0, 0}, {0, 2}}}).substr(0, 5), "pixel");
    EXPECT_EQ(sheet.Stats.Points, 4 + 3);
}

// A transform that nearly flattens the plane shows a long lattice in a narrow strip.
TEST(CurveSketch, SqueezedAreasTakePointsThatNobodySees)
{
    SketchSheet sheet;
    sheet.Flags.JoinPoints = false;
    sheet.Flags.Matrix2DOn = true;
    sheet.ViewMatrix[0] = sheet.ViewMatrix[4] = 100;
    sheet.ViewMatrix[1] = sheet.ViewMatrix[3] = 99;
    const double unit = 1 / (10 * std::hypot(100, 99));
    sheet.Lattice = {.Width = 30'000,
                     .Height = 30'000,
                     .StartS = -10,
                     .StartT = -10,
                     .UnitS = unit,
                     .UnitT = unit};
    const DrawContext context = sheet.Context();
    CurveSketch sketch(context, sheet.Lattice);
    sketch.AddArea({0, 0, 30'000, 30'000});
    sketch.Plot();
    // Rows half a pixel apart, of at most a pixel's step: twice as many points as pixels, and ends.
    const PixelSize size = sheet.Target.Size();
    EXPECT_LT(sheet.Stats.Points, 4 * size.Width * size.Height + 4 * 30'000);
    EXPECT_GT(sheet.Stats.Points, 0);
}

// The clock moves on by a millisecond whenever it is read.
TEST(DrawPace, SearchGoesOnAfterItsTimeOrAStop)
{
    SketchSheet sheet;
    sheet.Host.Watched = true;
    const DrawContext context = sheet.Context();
    CurveSketch sketch(context, sheet.Lattice);
    DrawPace pace(context, sketch, 0.5);
    sketch.AddPiece(std::vector<LatticePoint>{{0, 0}, {10, 0}});
    int asked = 0;
    while (pace.Ask(0.25) == Pace::GoOn && asked < 1000) {
        ++asked;
        const int looks = asked <= 10 ? 0 : asked == 60 ? 1 : sheet.Host.Looks;
        EXPECT_EQ(sheet.Host.Looks, looks) << asked;
    }
    EXPECT_EQ(pace.Ask(0.3), Pace::TimeUp);
    EXPECT_GT(asked, 300);
    EXPECT_LT(asked, 512);
    EXPECT_NE(sheet.Target.Transcript("line"), "") << "found before the first look";
    ASSERT_FALSE(sheet.Host.Fractions.empty());
    EXPECT_EQ(sheet.Host.Fractions.back(), 0.25);
    EXPECT_LE(sheet.Host.Fractions.size(), 11U) << "reports every 50 ms";

    sheet.Host.StopAfter = sheet.Host.Questions + 2;
    DrawPace stopped(context, sketch, 10);
    EXPECT_EQ(stopped.Ask(0), Pace::GoOn);
    EXPECT_EQ(stopped.Ask(0), Pace::GoOn);
    EXPECT_EQ(stopped.Ask(0), Pace::Stop);
    sheet.Host.StopAfter = 1'000'000;
    EXPECT_EQ(stopped.Ask(0), Pace::Stop);
    DrawPace never(context, sketch, -1);
    EXPECT_EQ(never.Ask(0), Pace::TimeUp);
}

} // namespace kelvane
