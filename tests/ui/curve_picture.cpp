#include "ui/curve_picture.h"

#include <QImage>
#include <cstdlib>

#include "app/shared_state.h"
#include "graph/axes.h"
#include "ui/qt_surface.h"
#include "ui/steady_clock.h"

namespace kelvane {

namespace {

constexpr PixelSize kSize{kCurvePictureWidth, kCurvePictureHeight};

class SilentHost : public DrawHost {
public:
    void ShowMessage(const Message& message) override { Said += message.Text + ' '; }
    void PercentGo(double) override {}
    void InitPerc() override {}
    void SetProgressColor(Rgb) override {}
    void Breathe() override {}
    bool IsWatched() const override { return false; }
    void ShowSoFar() override {}
    bool MayGoOn() const override { return true; }

    std::string Said;
};

class UnhatchedSurface : public QtSurface {
public:
    using QtSurface::QtSurface;
    void Hatch(std::span<const PixelPoint>, Rgb) override {}
};

ViewState ViewOf(const CurveView& wanted)
{
    ViewState view;
    const Interval x{wanted.XLow, wanted.XHigh};
    const Interval y{wanted.YLow, wanted.YHigh};
    if (y.Low < y.High)
        FitRange(view, x, y, kSize);
    else
        FitEqualUnits(view, x, kSize);
    view.CenterX = static_cast<float>(wanted.CenterX);
    view.CenterY = static_cast<float>(-wanted.CenterY);
    UpdatePixPerStep(view);
    if (const auto step = StepFromResolution(ResolutionFor(x.High - x.Low)))
        view.Step2D = *step;
    return view;
}

} // namespace

TruthWindow WindowOf(const CurveCase& test)
{
    const ViewState view = ViewOf(test.View);
    const double stepX = 1.0 / static_cast<double>(view.PixPerStep);
    const double stepY = stepX / static_cast<double>(view.YRatio);
    return {.Width = kCurvePictureWidth,
            .Height = kCurvePictureHeight,
            .X0 = static_cast<double>(view.CenterX) - static_cast<double>(view.OriginX) * stepX,
            .StepX = stepX,
            .Y0 = static_cast<double>(view.OriginY) * stepY - static_cast<double>(view.CenterY),
            .StepY = -stepY};
}

CurvePicture DrawCurve(const CurveCase& test, CalcMode mode, double budgetSeconds)
{
    SharedState state;
    state.View = ViewOf(test.View);
    state.Sheet.PagePlain[0] = test.Equation;
    state.Ticks.EquationOn[1] = true;
    state.Modes.AltFamily = true;
    Choose2D(state.Modes, mode);
    state.Settings.DrawWidth = 1;
    state.Settings.SolidColor = kBlack;
    state.Settings.BudgetSeconds = budgetSeconds;
    state.Axes.ShowAxes = false;
    state.Axes.ShowGrid = false;

    QImage image(kCurvePictureWidth, kCurvePictureHeight, QImage::Format_RGB32);
    UnhatchedSurface surface(image, kSize, {});
    SilentHost host;
    const SteadyClock clock;
    InitAxis(surface, state.View, state.Axes, kWhite);
    const double start = clock.Seconds();
    const DrawEnd end = Draw(MakeDrawContext(state, surface, host, clock));
    surface.Finish();

    CurvePicture picture{.Window = WindowOf(test), .Ink = {}, .Trouble = host.Said};
    picture.Seconds = clock.Seconds() - start;
    picture.UnresolvedPixels = state.Stats.UnresolvedPixels;
    if (end != DrawEnd::Complete)
        picture.Trouble += "not complete";
    constexpr int kInk = 255 - 64; // a quarter of the way from white to black
    for (int row = 0; row < image.height(); ++row)
        for (int column = 0; column < image.width(); ++column)
            picture.Ink.push_back(qGreen(image.pixel(column, row)) <= kInk ? 1 : 0);
    return picture;
}

} // namespace kelvane
