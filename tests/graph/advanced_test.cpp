#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "engine/point_evaluation.h"
#include "graph/plotting.h"
#include "graph/sweep.h"
#include "recording.h"

namespace kelvane {

namespace {

CalculationModes Advanced(bool doubleDraw, bool multiDraw)
{
    return {.CalcMode2D = CalcMode::Advanced,
            .DoubleDraw = doubleDraw ? TickState::On : TickState::Off,
            .MultiDraw = multiDraw ? TickState::On : TickState::Unavailable};
}

struct AdvancedSheet : TestSheet {
    AdvancedSheet(const std::string& lines, const CalculationModes& modes)
        : TestSheet(lines)
    {
        Modes = modes;
    }
};

// One equation drawn sample by sample with the plain point evaluation: what the routines promise.
class PlainDraw {
public:
    PlainDraw(AdvancedSheet& sheet, RecordingSurface& target)
        : m_context(MakeDrawContext(sheet, target, sheet.Host, sheet.Time))
        , m_doubles(sheet.Modes.DoubleDraw == TickState::On)
    {
        PrepareEquations(sheet.Table, sheet.Sheet);
        m_forms[0] = m_forms[1] = sheet.Table.At(1);
        SwapXY(m_forms[1]);
        sheet.Table.Clear();
        UpdatePixPerStep(sheet.View);
        EvalState& eval = m_context.Eval;
        eval = {};
        eval.EvalX = sheet.View.CenterX;
        eval.RightStart = EquationsStart(m_forms[0]);
        const std::size_t passes = sheet.Modes.MultiDraw == TickState::On ? 2 : 1;
        for (std::size_t pass = 0; pass < passes; ++pass)
            m_directions[pass] = DirectionY(eval, m_forms[pass]);
        const Sweep sweep = MakeSweep(sheet.View);
        for (std::int64_t i = 0; i < sweep.Count; ++i) {
            for (std::size_t pass = 0; pass < passes; ++pass)
                Sample(pass, i, sweep.At(i));
        }
    }

private:
    void Sample(std::size_t pass, std::int64_t index, float s)
    {
        EvalState& eval = m_context.Eval;
        ViewState& view = m_context.View;
        const std::size_t branch = m_doubles && index % 2 == 1 ? 1 : 0;
        eval.SolveDirection = m_directions[pass];
        if (m_doubles && index > 0)
            eval.SolveDirection = branch == 1 ? SolveHalf::Rising : SolveHalf::Falling;
        eval.EvalX = view.CenterX + s;
        eval.EvalError = false;
        eval.EvalY = SolveY(eval, m_forms[pass], SolveRangeY(view));
        if (eval.EvalError)
            return;
        auto& [x, y] = m_previous[pass * 2 + branch];
        std::tie(view.PrevX, view.PrevY) = std::tie(x, y);
        if (pass == 0)
            PlotPoint2D(m_context, eval.EvalX - view.CenterX, view.CenterY + eval.EvalY);
        else
            PlotPoint2D(m_context, eval.EvalY - view.CenterX, view.CenterY + eval.EvalX);
        std::tie(x, y) = std::tie(view.PrevX, view.PrevY);
    }

    const DrawContext m_context;
    bool m_doubles;
    Equation m_forms[2];
    SolveHalf m_directions[2]{};
    std::pair<float, float> m_previous[4] = {
        {kNoPoint, 0}, {kNoPoint, 0}, {kNoPoint, 0}, {kNoPoint, 0}};
};

} // namespace

TEST(Advanced2D, BranchesAreSolvedOrJoinedOtherwise)
{
    // The circle's bisections from -5:5, worked out by a model of its own.
    const std::tuple<CalculationModes, const char*> cases[] = {
        {Advanced(false, false),
         "pixel 80,40.625 000000\nline 80,40.625 90,29.6875 000000\n"
         "line 90,29.6875 100,28.125 000000\nline 100,28.125 110,29.6875 000000\n"
         "line 110,29.6875 120,40.625 000000\n"},
        {Advanced(true, false),
         "pixel 80,40.625 000000\npixel 90,70.3125 000000\nline 80,40.625 100,28.125 000000\n"
         "line 90,70.3125 110,70.3125 000000\nline 100,28.125 120,40.625 000000\n"},
        {Advanced(false, true),
         "pixel 80,40.625 000000\npixel 109.375,70 000000\nline 80,40.625 90,29.6875 000000\n"
         "line 109.375,70 120.312,60 000000\nline 90,29.6875 100,28.125 000000\n"
         "line 120.312,60 121.875,50 000000\nline 100,28.125 110,29.6875 000000\n"
         "line 121.875,50 120.312,40 000000\nline 110,29.6875 120,40.625 000000\n"
         "line 120.312,40 109.375,30 000000\n"},
        {Advanced(true, true),
         "pixel 80,40.625 000000\npixel 109.375,70 000000\npixel 90,70.3125 000000\n"
         "pixel 79.6875,60 000000\nline 80,40.625 100,28.125 000000\n"
         "line 109.375,70 121.875,50 000000\nline 90,70.3125 110,70.3125 000000\n"
         "line 79.6875,60 79.6875,40 000000\nline 100,28.125 120,40.625 000000\n"
         "line 121.875,50 109.375,30 000000\n"},
    };
    for (const auto& [modes, marks] : cases) {
        AdvancedSheet sheet("x^2+y^2=5", modes);
        EXPECT_EQ(sheet.Run(), DrawEnd::Complete);
        EXPECT_EQ("width 1\n" + std::string(marks), sheet.Target.Transcript());
        EXPECT_EQ(sheet.Host.Messages, "");
    }
}

TEST(Advanced2D, ExchangedPassForgetsTheCentre)
{
    AdvancedSheet sheet("y=2x", Advanced(false, true));
    sheet.View.CenterX = 1;
    sheet.View.CenterY = -2;
    sheet.Run();
    // The exchanged pass (every second mark) solves x = y/2 for y = s + 1 and plots it 1 to the
    // left and 2 down.
    EXPECT_EQ(sheet.Target.Transcript(),
              "width 1\npixel 80,90.625 000000\npixel 85,80 000000\n"
              "line 80,90.625 90,68.75 000000\nline 85,80 89.6875,70 000000\n"
              "line 90,68.75 100,50 000000\nline 89.6875,70 94.375,60 000000\n"
              "line 100,50 110,31.25 000000\nline 94.375,60 100.625,50 000000\n"
              "line 110,31.25 120,9.375 000000\nline 100.625,50 105.312,40 000000\n");
}

TEST(Advanced2D, BlocksDifferFromSampleBySample)
{
    const char* lines[] = {"x^2+y^2=4", "x=Siny",       "x=xy+Siny", "x^3+y^3=6xy",
                           "y=x^2",     "1/x=1/y",      "y=1/(x-1)", "xy=0",
                           "x=y",       "y^2=x^3-2x+1", "log(x)=y",  "2=3",
                           "y=",        "x=2ey",        "tany=sinx", "y=3y-x"};
    const std::tuple<float, float, float, float> views[] = {
        {1 / 64.0F, 1, 0, 0}, {1 / 20.0F, 2, 1, -3}, {1 / 300.0F, 0.5F, -0.5F, 0.25F}};
    int points = 0;
    for (const char* line : lines) {
        for (const auto& [step, zoom, centerX, centerY] : views) {
            for (int mode = 0; mode < 4; ++mode) {
                AdvancedSheet sheet(line, Advanced(mode % 2 == 1, mode > 1));
                std::tie(sheet.View.Step2D, sheet.View.ZoomFactor, sheet.View.CenterX,
                         sheet.View.CenterY) = std::tie(step, zoom, centerX, centerY);
                RecordingSurface plain;
                PlainDraw(sheet, plain);
                sheet.Run();
                ASSERT_EQ(sheet.Target.Transcript(), "width 1\n" + plain.Transcript())
                    << line << ", step " << step << ", mode " << mode;
                points += static_cast<int>(sheet.Stats.Points);
            }
        }
    }
    EXPECT_GT(points, 10000);
}

TEST(Advanced2D, PointsLieOffTheCurve)
{
    using Side = double (*)(double, double); // left minus right
    const std::tuple<const char*, Side> curves[] = {
        {"x^2+y^2=100", [](double x, double y) { return x * x + y * y - 100; }},
        {"x=Siny", [](double x, double y) { return x - std::sin(y); }},
        {"x=xy+Siny", [](double x, double y) { return x - x * y - std::sin(y); }},
        {"x^3+y^3=6xy", [](double x, double y) { return x * x * x + y * y * y - 6 * x * y; }},
    };
    for (const auto& [line, side] : curves) {
        for (int mode = 0; mode < 4; ++mode) {
            AdvancedSheet sheet(line, Advanced(mode % 2 == 1, mode > 1));
            // No sample at 0, where a product with x is the rest of it by the notation.
            std::tie(sheet.View.XMin, sheet.View.XMax) = std::tuple(-12.02F, 12);
            std::tie(sheet.View.YMin, sheet.View.YMax) = std::tuple(-12, 12);
            sheet.View.Step2D = 1 / 20.0F;
            sheet.Settings.Style = PointStyle::Pixel;
            sheet.Run();
            int points = 0;
            for (const std::string& mark : sheet.Target.Lines) {
                double x = 0;
                double y = 0;
                if (std::sscanf(mark.c_str(), "pixel %lf,%lf", &x, &y) != 2)
                    continue;
                ++points;
                // Six digits were written of each coordinate.
                EXPECT_NEAR(side((x - 100) / 10, (50 - y) / 10), 0, 0.0125 + 0.02)
                    << line << ", mode " << mode << ": " << mark;
            }
            EXPECT_GT(points, 10) << line << ", mode " << mode;
        }
    }
}

TEST(Advanced2D, PictureDependsOnWhatWasDrawnBefore)
{
    AdvancedSheet alone("x=xy+Siny", Advanced(true, true));
    alone.Run();
    const std::string marks = alone.Target.Transcript();
    alone.Run();
    EXPECT_EQ(alone.Target.Transcript(), marks);
    AdvancedSheet second("x+y=1\rx=xy+Siny\rx+y=2", Advanced(true, true));
    second.Run();
    const std::string all = second.Target.Transcript();
    EXPECT_NE(all.find(marks.substr(marks.find('\n'))), std::string::npos);
    EXPECT_EQ(second.Host.Resets, 3);
}

TEST(Advanced2D, StopComesLateOrLeavesSomethingBehind)
{
    AdvancedSheet sheet("x=Siny\rx=y", Advanced(true, true));
    sheet.View.Step2D = 1e-5F;
    sheet.Host.StopAfter = 2;
    EXPECT_EQ(sheet.Run(), DrawEnd::Stopped);
    EXPECT_EQ(sheet.Stats.Samples, 2 * (1 + 128 + 128)); // asked after each block
    EXPECT_TRUE(sheet.Table.Equations.empty());
    ASSERT_EQ(sheet.Host.Fractions.size(), 1U);
    EXPECT_EQ(sheet.Host.Fractions[0], 0);
}

} // namespace kelvane
