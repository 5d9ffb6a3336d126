#include "graph/axes_3d.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

#include "graph/layout.h"
#include "recording.h"

namespace kelvane {

namespace {

constexpr AxisModel kSimple{false, 22};

// Sixty pixels a unit, the crossing in the middle of 400 x 300 pixels.
ViewState SmallView(float range)
{
    ViewState view{.OriginX = 200, .OriginY = 150, .UnitPixels = 60, .ColumnCache = {}};
    view.XMin = view.YMin = view.ZMin = -range;
    view.XMax = view.YMax = view.ZMax = range;
    return view;
}

std::string FrameOf(ViewState view, const AxisSettings& settings, const std::string& word,
                    const Matrix3& matrix = kIdentity)
{
    RecordingSurface surface;
    surface.Extent = {400, 300};
    InitAxis3D(surface, view, settings, kSimple, matrix, kWhite);
    return surface.Transcript(word);
}

} // namespace

TEST(Axes3D, FrameOfTheSimpleModelDiffers)
{
    const ViewState view = SmallView(3);
    EXPECT_EQ(FrameOf(view, {}, "line"), // x, thirty pixels a unit, at 45 degrees; its ticks
              "line 263.64,86.3604 126.461,223.539 000000\n"
              "line 239.598,104.745 245.255,110.402 000000\n"
              "line 218.385,125.958 224.042,131.615 000000\n"
              "line 175.958,168.385 181.615,174.042 000000\n"
              "line 154.745,189.598 160.402,195.255 000000\n"
              "line 133.532,210.811 139.189,216.468 000000\n");
    EXPECT_EQ(FrameOf(view, {}, "rect"), // y and z with their ticks
              "rect 20,150 360x1 000000\n"
              "rect 80,146 1x9 000000\nrect 140,146 1x9 000000\n"
              "rect 260,146 1x9 000000\nrect 320,146 1x9 000000\n"
              "rect 200,20 1x280 000000\n"
              "rect 196,270 9x1 000000\nrect 196,210 9x1 000000\n"
              "rect 196,90 9x1 000000\nrect 196,30 9x1 000000\n");
    EXPECT_EQ(FrameOf(view, {}, "text"),
              "text 118.175,231.825 CC x\ntext 387.554,150 CC y\ntext 200,8.94622 CC z\n"
              "text 204.165,160.054 CC 0\n"
              "text 186,270 CC −2\ntext 186,210 CC −1\ntext 189.5,90 CC 1\ntext 189.5,30 CC 2\n"
              "text 80,163 CC −2\ntext 140,163 CC −1\ntext 260,163 CC 1\ntext 320,163 CC 2\n"
              "text 253.876,119.023 CC −2\ntext 232.663,140.237 CC −1\n"
              "text 188.487,180.913 CC 1\ntext 167.273,202.126 CC 2\ntext 146.06,223.339 CC 3\n");
}

TEST(Axes3D, GridLeavesTheGroundOrItsTick)
{
    EXPECT_EQ(FrameOf(SmallView(1), {.ShowAxes = false, .ShowGrid = true}, ""),
              "clear FFFFFF\nrect 161,129 121x1 C8C8C8\nrect 140,150 121x1 C8C8C8\n"
              "rect 119,171 121x1 C8C8C8\n"
              "line 161.213,128.787 118.787,171.213 C8C8C8\n"
              "line 221.213,128.787 178.787,171.213 C8C8C8\n"
              "line 281.213,128.787 238.787,171.213 C8C8C8\n");
    EXPECT_EQ(FrameOf(SmallView(1), {.ShowAxes = false}, ""), "clear FFFFFF\n");
    ViewState unusable = SmallView(1);
    unusable.ZoomFactor = 0;
    EXPECT_EQ(FrameOf(unusable, {.ShowGrid = true}, ""), "clear FFFFFF\n");
    // The ground upright and seen from its edge: y runs to the right, x as well.
    const Matrix3 edgeOn{0, 0, 1, 1, 1, 0, 0, 0, 0};
    EXPECT_EQ(FrameOf(SmallView(1), {.ShowAxes = false, .ShowGrid = true}, "", edgeOn),
              "clear FFFFFF\n");
}

TEST(Axes3D, NumbersIgnoreTheCentreOrTheZoom)
{
    ViewState view = SmallView(3);
    view.CenterX = 10;
    view.CenterY = -20;
    view.ZoomFactor = 2;
    RecordingSurface surface;
    surface.Extent = {400, 300};
    EXPECT_EQ(InitAxis3D(surface, view, {}, kSimple, kIdentity, kWhite), 2);
    const std::string texts = surface.Transcript("text");
    EXPECT_NE(texts.find(" CC (10, 20, 0)\n"), std::string::npos) << texts;
    for (const char* line :
         {"80,163 CC 16\n", "140,163 CC 18\n", "260,163 CC 22\n", "320,163 CC 24\n",
          "186,270 CC −4\n", "189.5,90 CC 2\n", "252.126,117.273 CC 6\n", "CC 12\n"})
        EXPECT_NE(texts.find(line), std::string::npos) << line << texts;
}

TEST(Axes3D, AxisThatPointsAtTheViewerIsNumbered)
{
    // World z becomes the direction in which the simple model's eye looks; x runs down.
    const float half = std::sqrt(0.125F);
    const Matrix3 lookingDown{0, 0, 1, 0, 1, half, -1, 0, half};
    const std::string texts = FrameOf(SmallView(3), {}, "text", lookingDown);
    const auto count = [&](const std::string& label) {
        int n = 0;
        for (auto at = texts.find(label); at != std::string::npos; at = texts.find(label, at + 1))
            ++n;
        return n;
    };
    for (const char* label : {" x\n", " y\n", " z\n", " 0\n"})
        EXPECT_EQ(count(label), 1) << texts;
    EXPECT_EQ(count(" 1\n"), 2) << "of x and y\n" << texts;
    EXPECT_EQ(count(" −1\n"), 2) << texts;
}

TEST(Axes3D, AxesOnOneLineShareASide)
{
    RecordingSurface surface;
    surface.Extent = {400, 300};
    ViewState view = SmallView(3);
    InitAxis3D(surface, view, {}, {true, 0}, kIdentity, kWhite); // y runs down, 42.4264 a unit
    const std::string texts = surface.Transcript("text");
    for (const char* line : {" 189.5,90 CC 1\n", " 186,210 CC −1\n", " 210.5,192.426 CC 1\n",
                             " 210.5,234.853 CC 2\n", " 214,107.574 CC −1\n"})
        EXPECT_NE(texts.find(line), std::string::npos) << line << texts;
}

namespace {

// Complains about marks that a frame must not make.
class WatchedSurface : public RecordingSurface {
public:
    void Line(PixelPoint from, PixelPoint to, Rgb) override
    {
        Check({std::min(from.X, to.X), std::min(from.Y, to.Y), std::max(from.X, to.X),
               std::max(from.Y, to.Y)},
              5); // half a tick
    }
    void FillRect(PixelRect r, Rgb) override
    {
        Check({1.0 * r.X, 1.0 * r.Y, 1.0 * r.X + r.Width, 1.0 * r.Y + r.Height}, 5);
    }
    void Text(const TextPlace& place, std::string_view text, Rgb) override
    {
        const Box box = BoxOf(place, TextSize(text));
        Check(box, 0);
        for (const Box& other : Texts)
            EXPECT_FALSE(Overlap(box, other)) << text;
        Texts.push_back(box);
    }

    std::vector<Box> Texts;
    int Marks = 0;

private:
    void Check(const Box& box, double margin)
    {
        ++Marks;
        EXPECT_TRUE(box.Left >= -margin && box.Top >= -margin &&
                    box.Right <= Extent.Width + margin && box.Bottom <= Extent.Height + margin)
            << box.Left << ' ' << box.Top << ' ' << box.Right << ' ' << box.Bottom;
    }
};

} // namespace

TEST(Axes3D, LabelsOverlapOrMarksLeaveTheSurface)
{
    const Matrix3 slanted{0.8138F, -0.4698F, 0.342F, 0.5F, 0.866F, 0, -0.2962F, 0.171F, 0.9397F};
    for (const int angle : {-1, 0, 1, 15, 22, 30, 45, 60, 89, 90, 250}) { // -1: the simple model
        for (const Matrix3& matrix : {kIdentity, slanted, Matrix3{1, 1, 1, 0, 0, 0, 0, 0, 1}}) {
            for (const PixelPoint origin : {PixelPoint{200, 150}, {1, 299}, {-90, 400}}) {
                for (const float zoom : {0.001F, 1.0F, 1.5F, 4000.0F}) {
                    SCOPED_TRACE(testing::Message() << angle << ' ' << origin.X << ' ' << zoom
                                                    << ' ' << matrix[0] << ' ' << matrix[1]);
                    WatchedSurface surface;
                    surface.Extent = {400, 300};
                    ViewState view = SmallView(10);
                    view.UnitPixels = 20;
                    view.OriginX = static_cast<float>(origin.X);
                    view.OriginY = static_cast<float>(origin.Y);
                    view.ZoomFactor = zoom;
                    view.CenterX = 0.125F * zoom;
                    const AxisModel model{angle >= 0, static_cast<std::int16_t>(angle)};
                    InitAxis3D(surface, view, {.ShowGrid = true}, model, matrix, kWhite);
                    EXPECT_LT(surface.Marks, 1000);
                    EXPECT_GE(surface.Texts.size(), origin.X == 200 ? 6U : 0U);
                }
            }
        }
    }
}

TEST(Axes3D, ExtremeViewIsDrawnBeyondAllBounds)
{
    constexpr float kHuge = std::numeric_limits<float>::max();
    constexpr float kTiny = std::numeric_limits<float>::denorm_min();
    float ViewState::*const fields[] = {
        &ViewState::OriginX, &ViewState::OriginY, &ViewState::UnitPixels, &ViewState::ZoomFactor,
        &ViewState::YRatio,  &ViewState::ZRatio,  &ViewState::CenterX,    &ViewState::CenterY,
        &ViewState::XMin,    &ViewState::XMax,    &ViewState::YMax,       &ViewState::ZMin};
    for (const auto& field : fields) {
        for (const float value : {kHuge, -kHuge, kTiny, 0.0F, 1e-30F, 1e15F, INFINITY, NAN}) {
            for (const float factor : {1.0F, kHuge, 0.0F}) {
                SCOPED_TRACE(testing::Message()
                             << (&field - &fields[0]) << ' ' << value << ' ' << factor);
                WatchedSurface surface;
                ViewState view = SmallView(10);
                view.*field = value;
                Matrix3 matrix = kIdentity;
                matrix[4] = factor;
                InitAxis3D(surface, view, {.ShowGrid = true}, {}, matrix, kWhite);
                EXPECT_LT(surface.Marks, 1000);
            }
        }
    }
    for (const PixelSize size : {PixelSize{1, 1}, {0, 0}, {12, 300}}) {
        WatchedSurface surface;
        surface.Extent = size;
        ViewState view = SmallView(10);
        view.OriginX = view.OriginY = 0;
        InitAxis3D(surface, view, {.ShowGrid = true}, {}, kIdentity, kWhite);
    }
}

TEST(Layout, ClippedLineIsAnother)
{
    struct Case {
        PixelLine Line;
        const char* Expected;
    };
    const Case cases[] = {
        {{{-10, 5}, {30, 25}}, "0,10 20,20"}, // turned round it keeps its direction
        {{{30, 25}, {-10, 5}}, "20,20 0,10"},
        {{{5, 5}, {6, 7}}, "5,5 6,7"},
        {{{5, -9}, {5, 1e9}}, "5,0 5,20"},
        {{{-1, 5}, {-1, 6}}, ""},
        {{{-5, 4}, {4, -5}}, ""}, // past the corner
        {{{20, 20}, {40, 40}}, "20,20 20,20"},
    };
    for (const auto& [line, expected] : cases) {
        std::ostringstream text;
        if (const auto part = ClipLine(line, {0, 0, 20, 20}))
            text << part->From.X << ',' << part->From.Y << ' ' << part->To.X << ',' << part->To.Y;
        EXPECT_EQ(text.str(), expected);
    }
    EXPECT_FALSE(ClipLine({{-9, 1}, {9, 1}}, {5, 0, 3, 2})) << "a box without inside";
}

} // namespace kelvane
