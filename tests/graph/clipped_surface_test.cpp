#include "graph/clipped_surface.h"

#include <gtest/gtest.h>

#include "recording.h"

namespace kelvane {

TEST(ClippedSurface, MarkOutsideIsDrawnOrOneInsideMissing)
{
    RecordingSurface target; // 200 by 100
    ClippedSurface part(target, CentredSquare(target.Size()));
    part.Clear(kWhite);
    part.SetLineWidth(2);
    part.Pixel({50, 99}, kBlack);
    part.Pixel({49.5, 50}, kBlack);
    part.Line({0, 10}, {200, 10}, kBlack);
    part.Line({0, 0}, {49, 50}, kBlack);
    part.FillRect({0, 20, 200, 1}, kBlack);
    part.FillRect({100, -5, 1, 500}, kBlack);
    part.FillRect({160, 0, 9, 9}, kBlack);
    const PixelPoint triangle[] = {{0, 0}, {99, 0}, {99, 99}};
    part.Hatch(triangle, kBlack);
    const PixelPoint beside[] = {{0, 0}, {40, 0}, {40, 99}};
    part.Hatch(beside, kBlack);
    part.Text({{149, 50}, HorizontalAlign::Right, VerticalAlign::Center}, "in", kBlack);
    part.Text({{149, 50}, HorizontalAlign::Left, VerticalAlign::Center}, "out", kBlack);
    part.DrawFrame(kBlack);
    EXPECT_EQ(target.Transcript(),
              "clear FFFFFF\nwidth 2\npixel 50,99 000000\nline 50,10 149,10 000000\n"
              "rect 50,20 100x1 000000\nrect 100,0 1x100 000000\n"
              "hatch 49.5,49.5 49.5,0 99,0 99,99 000000\ntext 149,50 RC in\n"
              "rect 50,0 100x1 000000\nrect 50,99 100x1 000000\nrect 50,0 1x100 000000\n"
              "rect 149,0 1x100 000000\n");
    EXPECT_EQ(part.Size().Width, 200);
}

} // namespace kelvane
