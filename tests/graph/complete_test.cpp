#include <gtest/gtest.h>

#include <string>

#include "graph/plotting.h"
#include "recording.h"

// The second family as routines of a draw; what they find is tested with the searches.

namespace kelvane {

namespace {

struct CompleteSheet : TestSheet {
    explicit CompleteSheet(const std::string& lines, CalcMode mode = CalcMode::Advanced)
        : TestSheet(lines)
    {
        Modes.AltFamily = true;
        Modes.CalcMode2D = mode;
    }
};

} // namespace

TEST(Complete, AdditionsChangeWhatTheSecondFamilyDraws)
{
    CompleteSheet plain("x^2+y^2=4\rx=siny\ry=x^2\ryx=1");
    ASSERT_EQ(plain.Run(), DrawEnd::Complete);
    ASSERT_NE(plain.Target.Transcript("line"), "");
    for (const bool doubles : {false, true}) {
        for (const bool multi : {false, true}) {
            CompleteSheet added("x^2+y^2=4\rx=siny\ry=x^2\ryx=1");
            added.Modes.DoubleDraw = doubles ? TickState::On : TickState::Off;
            added.Modes.MultiDraw = multi ? TickState::On : TickState::Off;
            EXPECT_EQ(added.Run(), DrawEnd::Complete);
            EXPECT_EQ(added.Target.Transcript(), plain.Target.Transcript());
        }
    }
}

TEST(Complete, SimpleModeAcceptsMoreOrLessThanTheFirstFamily)
{
    CompleteSheet sheet("y=x\rx=1\ry=2", CalcMode::Simple);
    EXPECT_EQ(sheet.Run(), DrawEnd::Refused);
    EXPECT_EQ(sheet.Host.Messages,
              "Error: Equation 2 does not begin with 'y=' and therefore requires Advanced "
              "calculations. Please enable Advaced 2D calculation using 'Complexity' button from "
              "'Draw Menu'!\n");
    EXPECT_NE(sheet.Target.Transcript("line"), "") << "the first equation stays";

    // y in front of the right side passes the checks: a curve like any other.
    CompleteSheet own("y=yx", CalcMode::Simple);
    EXPECT_EQ(own.Run(), DrawEnd::Complete);
    EXPECT_NE(own.Target.Transcript("line"), "");
}

TEST(Complete, TransformColoursOrStyleAreIgnored)
{
    for (const CalcMode mode : {CalcMode::Simple, CalcMode::Advanced}) {
        CompleteSheet turned("y=1", mode);
        turned.ViewMatrix = {0, -1, 0, 1, 0, 0, 0, 0, 1}; // a quarter turn: x = -1
        turned.Settings.Coloring = Coloring2D::Random;
        ASSERT_EQ(turned.Run(), DrawEnd::Complete);
        for (const std::string& line : turned.Target.Lines) {
            if (line.rfind("line ", 0) == 0) {
                EXPECT_EQ(line.substr(5, 3), "90,") << line;
                EXPECT_EQ(line.substr(line.size() - 6), "FF0000") << line; // palette colour 9
            }
        }
        EXPECT_NE(turned.Target.Transcript("line"), "");

        CompleteSheet dots("y=x", mode);
        dots.Settings.Style = PointStyle::Pixel;
        ASSERT_EQ(dots.Run(), DrawEnd::Complete);
        EXPECT_EQ(dots.Target.Transcript("line"), "");
        EXPECT_GE(dots.Stats.Points, 40) << "ten pixels a unit, four units";
    }
}

TEST(Complete, SearchIgnoresTheStopOrTheTime)
{
    CompleteSheet stopped("x^2+y^2=4\ry=x");
    stopped.Host.StopAfter = 0;
    EXPECT_EQ(stopped.Run(), DrawEnd::Stopped);
    EXPECT_EQ(stopped.Target.Transcript("hatch"), "") << "who stops a draw wants no further marks";

    CompleteSheet hasty("x^2+y^2=4");
    hasty.Settings.BudgetSeconds = 1e-9;
    EXPECT_EQ(hasty.Run(), DrawEnd::Complete);
    EXPECT_EQ(hasty.Target.Transcript("line"), "");
    EXPECT_EQ(hasty.Stats.UnresolvedPixels, 41 * 100) << "all of the range that is seen";
    CompleteSheet patient("x^2+y^2=4");
    EXPECT_EQ(patient.Run(), DrawEnd::Complete);
    EXPECT_EQ(patient.Stats.UnresolvedPixels, 0);
    EXPECT_EQ(patient.Target.Transcript("hatch"), "");
}

} // namespace kelvane
