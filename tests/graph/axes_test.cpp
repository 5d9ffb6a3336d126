#include "graph/axes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>

#include "graph/ticks.h"
#include "recording.h"

namespace kelvane {

TEST(Ticks, StepIsNotOneTwoFive)
{
    constexpr std::pair<double, double> kSteps[] = {
        {1, 1},       {1.01, 2},  {2, 2},         {2.1, 5},     {5.5, 10},
        {0.03, 0.05}, {0.3, 0.5}, {1e-30, 1e-30}, {7e20, 1e21}, {99, 100}};
    for (const auto& [minimum, step] : kSteps)
        EXPECT_NEAR(NiceStep(minimum), step, 1e-12 * step) << minimum;
}

TEST(Ticks, NumberIsLongWrongOrHasAHyphen)
{
    constexpr std::tuple<double, double, const char*> kNumbers[] = {
        {0, 1, "0"},
        {-0.0, 1, "0"},
        {3e-17, 0.1, "0"},
        {-2, 1, "−2"},
        {0.1 + 0.2, 0.1, "0.3"},
        {5.2499998, 1, "5.25"},
        {1.0 / 3, 0.5, "0.333333"},
        {100000, 20000, "100000"},
        {1e6, 2e5, "10⁶"},
        {-1.5e12, 5e11, "−1.5×10¹²"},
        {2e-7, 1e-7, "2×10⁻⁷"},
        {1000000.5, 0.5, "1000000.5"}, // six digits would repeat the neighbour
    };
    for (const auto& [value, step, text] : kNumbers)
        EXPECT_EQ(AxisNumber(value, step), text) << value;
}

namespace {

std::string LabelsOf(const AxisScale& scale, double minimumPixels)
{
    std::string all;
    for (const Division& d : ChooseDivisions(scale, minimumPixels, [](const std::string& label) {
             return 7.0 * static_cast<double>(label.size());
         }))
        all += std::to_string(d.Pixel) + ":" + d.Label + " ";
    return all;
}

} // namespace

TEST(Ticks, DivisionsStandElsewhereThanTheirValues)
{
    EXPECT_EQ(LabelsOf({100, 20, 0, 200}, 35), "20:−4 60:−2 100:0 140:2 180:4 ");
    EXPECT_EQ(LabelsOf({100, -20, 0, 200}, 35), "180:−4 140:−2 100:0 60:2 20:4 ");
    EXPECT_EQ(LabelsOf({100, 20, 0.25, 200}, 95), "0:−4.75 100:0.25 ");
    EXPECT_EQ(LabelsOf({-1000, 20, 0, 100}, 35), "0:50 40:52 80:54 ");
    EXPECT_EQ(LabelsOf({-1e9, 1, 0, 400}, 10), "0:10⁹ 200:1.0000002×10⁹ "); // widened to fit
    for (const AxisScale& hopeless :
         {AxisScale{1e30, 1, 0, 100}, AxisScale{0, 1e-320, 0, 100}, AxisScale{0, NAN, 0, 100}})
        EXPECT_EQ(LabelsOf(hopeless, 10), "");
}

namespace {

std::string FrameOf(const AxisSettings& settings, const std::string& word, PixelPoint origin,
                    float zoom = 1, PixelPoint centre = {})
{
    RecordingSurface surface;
    surface.Extent = {400, 200};
    ViewState view{.UnitPixels = 60, .ZoomFactor = zoom, .ColumnCache = {}};
    view.OriginX = static_cast<float>(origin.X);
    view.OriginY = static_cast<float>(origin.Y);
    view.CenterX = static_cast<float>(centre.X);
    view.CenterY = static_cast<float>(centre.Y);
    InitAxis(surface, view, settings, kWhite);
    return surface.Transcript(word);
}

} // namespace

TEST(Axes, FrameDiffersFromTheDivisions)
{
    EXPECT_EQ(FrameOf({}, "rect", {200, 100}),
              "rect 0,100 400x1 000000\nrect 200,0 1x200 000000\n" // axes
              "rect 20,96 1x9 000000\nrect 80,96 1x9 000000\nrect 140,96 1x9 000000\n"
              "rect 200,96 1x9 000000\nrect 260,96 1x9 000000\nrect 320,96 1x9 000000\n"
              "rect 380,96 1x9 000000\n"
              "rect 196,160 9x1 000000\nrect 196,100 9x1 000000\nrect 196,40 9x1 000000\n");
    EXPECT_EQ(FrameOf({.ShowAxes = false, .ShowGrid = true}, "", {200, 100}),
              "clear FFFFFF\n"
              "rect 20,0 1x200 C8C8C8\nrect 80,0 1x200 C8C8C8\nrect 140,0 1x200 C8C8C8\n"
              "rect 200,0 1x200 C8C8C8\nrect 260,0 1x200 C8C8C8\nrect 320,0 1x200 C8C8C8\n"
              "rect 380,0 1x200 C8C8C8\nrect 0,160 400x1 C8C8C8\nrect 0,100 400x1 C8C8C8\n"
              "rect 0,40 400x1 C8C8C8\n");
    EXPECT_EQ(FrameOf({}, "", {200, 100}, 0), "clear FFFFFF\n");
    EXPECT_EQ(FrameOf({.ShowGrid = true}, "rect", {200, 100}),
              FrameOf({.ShowAxes = false, .ShowGrid = true}, "rect", {200, 100}) +
                  FrameOf({}, "rect", {200, 100}));
}

TEST(Axes, NumberTellsAnotherValueThanTheWorlds)
{
    EXPECT_EQ(FrameOf({}, "text", {200, 100}),
              "text 192,108 RT 0\n"
              "text 20,108 CT −3\ntext 80,108 CT −2\ntext 140,108 CT −1\n"
              "text 260,108 CT 1\ntext 320,108 CT 2\ntext 380,108 CT 3\n"
              "text 192,160 RC −1\ntext 192,40 RC 1\n");
    // Zoomed out twice and centred on (10, 20): steps of 2, the crossing's own values beside it.
    EXPECT_EQ(FrameOf({}, "text", {200, 100}, 2, {10, -20}),
              "text 208,108 LT 10\ntext 192,96 RB 20\n"
              "text 20,108 CT 4\ntext 80,108 CT 6\ntext 140,108 CT 8\n"
              "text 260,108 CT 12\ntext 320,108 CT 14\ntext 380,108 CT 16\n"
              "text 192,160 RC 18\ntext 192,40 RC 22\n");
}

TEST(Axes, NumberIgnoresTheRatioOrIsCutByAnEdge)
{
    RecordingSurface surface;
    surface.Extent = {100, 100}; // too small for divisions of the usual distance
    ViewState view{.OriginX = 20, .OriginY = 50, .UnitPixels = 38, .YRatio = 10, .ColumnCache = {}};
    InitAxis(surface, view, {}, kWhite);
    EXPECT_EQ(surface.Transcript("text"), "text 28,58 LT 0\n" // no room left of the axis
                                          "text 58,58 CT 1\n" // and none for 2 at the edge
                                          "text 28,88 LC −0.1\n"
                                          "text 28,12 LC 0.1\n");
}

TEST(Axes, NumbersAreLostWithAnAxisOutside)
{
    // Both axes left of and below the surface: numbers at its left and lower edges, inside.
    EXPECT_EQ(FrameOf({}, "text", {-100, 500}),
              "text 20,191 CB 2\ntext 80,191 CB 3\ntext 140,191 CB 4\ntext 200,191 CB 5\n"
              "text 260,191 CB 6\ntext 320,191 CB 7\ntext 380,191 CB 8\n"
              "text 8,140 LC 6\ntext 8,80 LC 7\ntext 8,20 LC 8\n");
    const std::string far = FrameOf({}, "rect", {1e9, -1e9});
    for (const char* axis : {"400x1 ", "1x200 "})
        EXPECT_EQ(far.find(axis), std::string::npos) << "an axis outside is drawn at the edge";
}

TEST(Axes, FrameIsLostOnItsSheet)
{
    constexpr std::tuple<Rgb, Rgb, Rgb> kColors[] = {
        // sheet, ink, grid: 55 / 255 of the way from sheet to ink
        {kWhite, kBlack, {200, 200, 200}},          {kBlack, kWhite, {55, 55, 55}},
        {{255, 255, 0}, kBlack, {200, 200, 0}},     {{0, 0, 255}, kWhite, {55, 55, 255}},
        {{128, 128, 128}, kBlack, {100, 100, 100}}, // black on it is 5.3 : 1, white 3.9 : 1
        {{110, 110, 110}, kWhite, {141, 141, 141}}, // 4.1 : 1 and 5.1 : 1
        {{255, 0, 0}, kBlack, {200, 0, 0}},
    };
    for (const auto& [sheet, ink, grid] : kColors) {
        const FrameColors colors = FrameColorsOn(sheet);
        EXPECT_EQ(ColorHex(colors.Ink), ColorHex(ink)) << ColorHex(sheet);
        EXPECT_EQ(ColorHex(colors.Grid), ColorHex(grid)) << ColorHex(sheet);
    }
    RecordingSurface surface;
    ViewState view{.OriginX = 100, .OriginY = 50, .UnitPixels = 60, .ColumnCache = {}};
    InitAxis(surface, view, {.ShowGrid = true}, kBlack);
    const std::string frame = surface.Transcript("rect");
    EXPECT_NE(frame.find(" 373737"), std::string::npos);
    EXPECT_NE(frame.find(" FFFFFF"), std::string::npos);
    EXPECT_EQ(frame.find(" 000000"), std::string::npos);
}

TEST(Axes, TicksAreNotOfTheSizeAskedFor)
{
    constexpr std::pair<int, int> kSizes[] = {{6, 4},   {0, 0},   {1, 1}, {9, 6},
                                              {30, 20}, {99, 20}, {-5, 0}};
    for (const auto& [thickness, half] : kSizes)
        EXPECT_EQ(TickHalfLength({.UnitThickness = thickness}), half) << thickness;
    const std::string frame = FrameOf({.UnitThickness = 12}, "", {200, 100});
    EXPECT_NE(frame.find("rect 80,92 1x17 "), std::string::npos) << frame;
    EXPECT_NE(frame.find("text 80,112 CT "), std::string::npos) << "numbers keep off the ticks";
}

} // namespace kelvane
