#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>

#include "graph/plotting.h"
#include "graph/sweep.h"
#include "recording.h"

namespace kelvane {

TEST(Simple2D, CurveIsDrawnOtherwiseThanItsSamplesSay)
{
    TestSheet sheet("y=x");
    EXPECT_EQ(sheet.Run(), DrawEnd::Complete);
    EXPECT_EQ(sheet.Target.Transcript(),
              "width 1\npixel 80,70 000000\nline 80,70 90,60 000000\nline 90,60 100,50 000000\n"
              "line 100,50 110,40 000000\nline 110,40 120,30 000000\n");
    EXPECT_EQ(sheet.Stats.Samples, 5);
    EXPECT_EQ(sheet.Stats.Points, 5);
    EXPECT_EQ(sheet.Host.Messages, "");
}

TEST(Simple2D, FailedSampleBreaksTheCurve)
{
    TestSheet sheet("y=1/x");
    sheet.Run();
    EXPECT_EQ(sheet.Target.Transcript("line"),
              "line 80,55 90,60 000000\nline 90,60 110,40 000000\nline 110,40 120,45 000000\n");
    EXPECT_EQ(sheet.Stats.Failed, 1);
}

TEST(Simple2D, LeavingTheRangeDoesNotBreakTheCurveOrItsEdgeDoes)
{
    TestSheet sheet("y=x^2");
    sheet.View.XMin = -3;
    sheet.View.XMax = 3;
    sheet.View.YMax = 4; // the value at 2, which counts as inside
    sheet.Run();
    EXPECT_EQ(sheet.Target.Lines[1], "pixel 80,10 000000");
    EXPECT_EQ(sheet.Target.Lines.size(), 2U + 4U); // the width, the first point and four lines
    EXPECT_EQ(sheet.Stats.Points, 5);
    sheet.View.YMax = 100;
    sheet.View.YMin = 4; // now only the ends are inside, with 4 itself: two pieces
    sheet.Run();
    EXPECT_EQ(sheet.Target.Transcript("pixel"), "pixel 70,-40 000000\npixel 120,10 000000\n");
    EXPECT_EQ(sheet.Stats.Points, 4) << "counted anew for each draw";
}

TEST(Simple2D, ZoomOrCentreMovesTheWrongWay)
{
    TestSheet sheet("y=x");
    sheet.View.ZoomFactor = 2;
    sheet.View.CenterX = 1;
    sheet.View.CenterY = -3;
    sheet.Run();
    // Sample abscissae -4, -2, 0, 2, 4 at the same pixels; x is 1 more, and y 3 less than x.
    EXPECT_EQ(sheet.Target.Transcript("pixel"), "pixel 80,80 000000\n");
    EXPECT_EQ(sheet.Target.Lines.back(), "line 110,50 120,40 000000");
    EXPECT_EQ(sheet.View.PixPerStep, 5);
    TestSheet high("y=9");
    high.View.ZoomFactor = 2;
    high.Run();
    EXPECT_EQ(high.Stats.Points, 5) << "the range of y grows with the zoom factor";
    // Far from 0 singles are coarse: a point is drawn at the x that it was evaluated at.
    TestSheet far("y=x-100000000");
    far.View.CenterX = 1e8F; // singles lie 8 apart here
    far.View.XMin = far.View.XMax = 3;
    far.Run();
    EXPECT_EQ(far.Target.Transcript("pixel"), "pixel 100,50 000000\n");
}

TEST(Simple2D, DotsAreJoinedOrWidthAndRatioIgnored)
{
    TestSheet sheet("y=x");
    sheet.Settings.Style = PointStyle::Pixel;
    sheet.Settings.DrawWidth = 3;
    sheet.View.YRatio = 0.5F;
    sheet.Run();
    EXPECT_EQ(sheet.Target.Transcript(),
              "width 3\npixel 80,60 000000\npixel 90,55 000000\npixel 100,50 000000\n"
              "pixel 110,45 000000\npixel 120,40 000000\n");
}

TEST(Simple2D, MatrixMixesTransformedCoordinates)
{
    TestSheet sheet("y=2");
    sheet.ViewMatrix = {0, -1, 0, 1, 1, 0, 0, 0, 1};
    sheet.View.XMin = sheet.View.XMax = 1;
    sheet.Run();
    EXPECT_EQ(sheet.Target.Transcript("pixel"), "pixel 80,20 000000\n"); // (-2, 3)
}

TEST(Simple2D, PointBeyondSinglesReachesTheSurface)
{
    TestSheet sheet("y=1");
    sheet.ViewMatrix[0] = 3e38F; // overflows at both ends of the sweep
    sheet.Run();
    EXPECT_EQ(sheet.Stats.Points, 3);
    EXPECT_EQ(sheet.Target.Transcript().find("inf"), std::string::npos);
}

TEST(Simple2D, EquationsShareAColourOrAreJoined)
{
    TestSheet sheet("y=1\r\ry=2\ry=3");
    sheet.Ticks.EquationOn[2] = false;
    sheet.Ticks.EquationOn[3] = false;
    sheet.Settings.Coloring = Coloring2D::Random;
    sheet.Run();
    EXPECT_EQ(sheet.Target.Transcript("pixel"), "pixel 80,40 FF0000\n"   // number 9, blue
                                                "pixel 80,20 000080\n"); // number 4, dark red
    EXPECT_EQ(sheet.Host.Resets, 2);
}

TEST(Simple2D, GradientIsMeasuredFromElsewhere)
{
    TestSheet sheet("y=x-1/2");
    sheet.View.XMin = -1.5F;
    sheet.View.XMax = 2.5F;
    sheet.View.Step2D = 0.25F;
    sheet.Settings.Coloring = Coloring2D::Gradual;
    sheet.Settings.GradientFrom = {0, 200, 10};
    sheet.Settings.GradientTo = {200, 0, 10};
    sheet.Run();
    // 50 a unit from x = -1.5; at -0.5 two units lie behind of the colour's start.
    const auto colorOf = [](const std::string& line) { return line.substr(line.size() - 6); };
    const auto lines = sheet.Target.Lines;  // the first line follows the width and a pixel
    EXPECT_EQ(colorOf(lines[2]), "0ABC0C"); // half to even: 12.5, 187.5
    EXPECT_EQ(colorOf(lines[5]), "0A9632"); // 50, 150
    EXPECT_EQ(colorOf(lines.back()), "0A00C8");
    // Along y the last point, at 2, keeps the colour of 1.75: it lies where that was rounded to.
    sheet.Settings.GradientAlong = GradientAxis::Y;
    sheet.View.YMin = -2;
    sheet.View.YMax = 2;
    sheet.Run();
    EXPECT_EQ(colorOf(sheet.Target.Lines.back()), "0A0CBC"); // 187.5 and 12.5
}

TEST(Simple2D, ProgressIsSilentOrFloodsTheWindow)
{
    TestSheet sheet("y=x\ry=1");
    sheet.View.Step2D = 0.0001F; // 40001 samples: one, and 157 blocks of 1/1024 s each
    int breaths = 0;
    sheet.Host.OnBreathe = [&] { ++breaths; };
    sheet.Run();
    // A report first and then whenever more than 50 ms have passed, that is, every 52nd block.
    ASSERT_EQ(sheet.Host.Fractions.size(), 8U);
    EXPECT_EQ(sheet.Host.Fractions[0], 0);
    EXPECT_NEAR(sheet.Host.Fractions[1], 52 * 256 / 40000.0, 1e-4);
    EXPECT_EQ(sheet.Host.ProgressColor, (Rgb{0, 255, 0}));
    EXPECT_EQ(sheet.Host.Resets, 2);
    // It breathes after more than 8 ms, that is, with every 9th block.
    EXPECT_EQ(breaths, 2 * (1 + 157 / 9));
}

TEST(Simple2D, SkippedPointDoesNotSkipAUnit)
{
    TestSheet sheet("y=1");
    sheet.View.Step2D = 1 / 1024.0F;
    sheet.Host.OnBreathe = [&] {
        sheet.Eval.EvalSkip = sheet.Stats.Samples == 1;
    }; // as a tool might
    sheet.Run();
    // From sample 0 to sample 1 + 1024, at -2 and -1 + 1/1024.
    EXPECT_EQ(sheet.Target.Transcript("line").substr(0, 19), "line 80,40 90.0098,");
    EXPECT_EQ(sheet.Stats.Samples, 1 + 3 * 1024);
    EXPECT_EQ(sheet.Stats.Failed, 0);
}

TEST(Draw, RefusedOrStoppedDrawLeavesTheTableFilled)
{
    const auto needsYEquals = [](const std::string& number) {
        return "Error: Equation " + number +
               " does not begin with 'y=' and therefore requires Advanced calculations. Please "
               "enable Advaced 2D calculation using 'Complexity' button from 'Draw Menu'!\n";
    };
    const std::tuple<const char*, DrawEnd, std::string> cases[] = {
        {"y=x", DrawEnd::Complete, ""},
        {"y=(x", DrawEnd::Refused, "Error: Error in Equation 1: missing right parenthesis ')'\n"},
        {"y=x\rx=3\ry=1", DrawEnd::Refused, needsYEquals("2")},
        {"", DrawEnd::Refused, needsYEquals("1")},
    };
    for (const auto& [lines, end, message] : cases) {
        TestSheet sheet(lines);
        EXPECT_EQ(sheet.Run(), end) << lines;
        EXPECT_EQ(sheet.Host.Messages, message) << lines;
        EXPECT_TRUE(sheet.Table.Equations.empty()) << lines;
        EXPECT_EQ(sheet.Table.EquationCount, 0) << lines;
        EXPECT_EQ(sheet.Run(), end) << lines << ", again";
    }
    TestSheet stopped("y=x\ry=1");
    stopped.View.Step2D = 0.0001F;
    stopped.Host.StopAfter = 2;
    EXPECT_EQ(stopped.Run(), DrawEnd::Stopped);
    EXPECT_EQ(stopped.Stats.Samples, 1 + 256 + 256);
    EXPECT_TRUE(stopped.Table.Equations.empty());
    EXPECT_EQ(stopped.Host.Messages, "");
}

TEST(Draw, NothingTickedOrAnUnknownModeDrawsOrSaysOtherWords)
{
    TestSheet sheet("y=x");
    sheet.Ticks = {};
    EXPECT_EQ(sheet.Run(), DrawEnd::Refused);
    EXPECT_EQ(sheet.Host.Messages, "Kelvane:     No equation is selected!\n");

    const CalculationModes missing[] = {{.Mode3D = true}, {.Mode3D = true, .AltFamily = true}};
    for (const CalculationModes& modes : missing) {
        TestSheet other("y=x");
        other.Modes = modes;
        EXPECT_EQ(other.Run(), DrawEnd::Refused);
        EXPECT_EQ(other.Host.Messages.rfind("Kelvane: This version", 0), 0U);
        EXPECT_EQ(other.Target.Transcript(), "");
    }
    TestSheet ticked("y=x"); // Simple mode is tested first, whatever else is ticked
    ticked.Modes.DoubleDraw = ticked.Modes.MultiDraw = TickState::On;
    EXPECT_EQ(ticked.Run(), DrawEnd::Complete);
    TestSheet zoom("y=x");
    zoom.View.ZoomFactor = 0;
    EXPECT_EQ(zoom.Run(), DrawEnd::Refused);
    EXPECT_NE(zoom.Host.Messages, "");
}

TEST(Draw, EarlierDrawShowsInTheNextOne)
{
    TestSheet sheet("y=1");
    sheet.Settings.Coloring = Coloring2D::Random;
    sheet.Run();
    const std::string first = sheet.Target.Transcript();
    sheet.View.PrevX = 0;
    sheet.View.ColumnCache[0] = 1;
    sheet.Eval.EvalSkip = sheet.Eval.EvalError = true;
    sheet.Run();
    EXPECT_EQ(sheet.Target.Transcript(), first);
    EXPECT_TRUE(IsNoPoint(sheet.View.ColumnCache[0]));
}

TEST(Sweep, SamplesAreLostOrNeverEnd)
{
    // From, to, step, zoom factor, and the count and the last sample.
    const std::tuple<float, float, float, float, std::int64_t, float> cases[] = {
        {-10, 10, 1 / 100.0F, 1, 2001, 10},
        {-10, 10, 1 / 3.0F, 1, 61, 10},
        {-10, 10, 1 / 7.0F, 4, 141, 40},
        {-10, 10, 1 / 10000.0F, 1, 200001, 10},
        {0, 1, 0.3F, 1, 4, 0.9F},
        {1, 1, 1, 1, 1, 1},
        {2, 1, 1, 1, 0, 0},
        {-10, 10, 1e-20F, 1, Sweep::kMaxSamples, 10},
        {-10, 10, 0, 1, Sweep::kMaxSamples, 10},
        {1e7F, 1e7F + 8, 1e-3F, 1, 8001, 1e7F + 8},
        {-3e38F, 3e38F, 1, 1e9F, 0, 0}, // not finite
    };
    for (const auto& [from, to, step, zoom, count, last] : cases) {
        const Sweep sweep = MakeSweep(
            {.ZoomFactor = zoom, .XMin = from, .XMax = to, .Step2D = step, .ColumnCache = {}});
        EXPECT_EQ(sweep.Count, count) << from << " to " << to << " by " << step;
        if (count > 0) {
            EXPECT_EQ(sweep.At(0), from * zoom);
            EXPECT_NEAR(sweep.At(sweep.Count - 1), last, 1e-6 * std::fabs(last));
            EXPECT_LE(sweep.At(sweep.Count - 1), sweep.End);
        }
    }
}

TEST(Color, TextAndChannelsDiffer)
{
    EXPECT_EQ(ColorHex({1, 0xAB, 0}), "00AB01");
    EXPECT_EQ(ColorHex({255, 255, 255}), "FFFFFF");
    EXPECT_EQ(ColorHex(kBlack), "000000");
    constexpr std::pair<const char*, int> kPairs[] = {
        {"00", 0},  {"fF", 255}, {"A0", 160}, {"-0", -1},  {"+1", -1},
        {"g0", -1}, {"0", -1},   {"", -1},    {"000", -1}, {" 1", -1}};
    for (const auto& [digits, value] : kPairs)
        EXPECT_EQ(HexPair(digits), value) << digits;
}

TEST(Color, PaletteRunsInAnotherOrder)
{
    const int order[] = {9, 4, 13, 8, 3, 12, 7, 2, 11, 6, 1, 10, 5, 9, 4};
    ColorState colors;
    const DrawSettings settings{.Coloring = Coloring2D::Random};
    for (const int number : order) {
        PrepareEquationColor(colors, settings, {});
        EXPECT_EQ(colors.Graph2DColor, PaletteColor(number)) << number;
    }
}

TEST(Color, GradientOverflowsAChannelOrDividesByZero)
{
    ColorState colors;
    DrawSettings settings;
    settings.Coloring = Coloring2D::Gradual;
    settings.GradientFrom = {0, 255, 0};
    settings.GradientTo = {255, 0, 0};
    ViewState view{.XMin = 1, .XMax = 1, .ZMin = 0, .ZMax = 255, .ColumnCache = {}};
    PrepareEquationColor(colors, settings, view);
    EXPECT_EQ(GradientColor(colors, 100), (Rgb{100, 155, 0}));
    EXPECT_EQ(GradientColor(colors, 1e9F), (Rgb{255, 255, 0})); // far, as when zoomed out
    EXPECT_EQ(GradientColor(colors, -10), (Rgb{10, 255, 0}));
    view.ZMax = 0;
    PrepareEquationColor(colors, settings, view);
    EXPECT_EQ(GradientColor(colors, 100), (Rgb{0, 255, 0}));
}

} // namespace kelvane
