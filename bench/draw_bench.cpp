// Whole draws on a picture of 1600 x 1000 pixels, from the text to the last pixel: a curve of
// 100,001 samples against Qt's painting of the same points alone, and a sheet that is heavy to
// redraw, and one whose equations are solved.

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <deque>
#include <string>
#include <vector>

#include "app/shared_state.h"
#include "report.h"
#include "ui/qt_surface.h"
#include "ui/steady_clock.h"

namespace {

using namespace kelvane;

constexpr int kWidth = 1600;
constexpr int kHeight = 1000;
constexpr PixelSize kSize{kWidth, kHeight};
constexpr const char* kReference = "y=5sin(x)+sin(13x)";

class QuietHost : public DrawHost {
public:
    void ShowMessage(const Message& message) override { Fail(message.Text); }
    void PercentGo(double) override {}
    void InitPerc() override {}
    void SetProgressColor(Rgb) override {}
    void Breathe() override {}
    bool IsWatched() const override { return false; }
    void ShowSoFar() override {}
    bool MayGoOn() const override { return true; }
};

// A sheet over 20 units with the picture it is drawn on. Must stay where it is.
struct Sheet {
    Sheet(const std::vector<const char*>& lines, double samplesAUnit, int width,
          const CalculationModes& modes = {})
    {
        State.Modes = modes;
        for (const char* line : lines)
            State.Sheet.PagePlain[0] += std::string(line) + "\r";
        State.Sheet.LinesPerPage = kMaxEquations;
        std::fill_n(&State.Ticks.EquationOn[1], lines.size(), true);
        State.View.Step2D = *StepFromResolution(samplesAUnit);
        State.Settings.DrawWidth = width;
        State.Settings.Coloring = Coloring2D::Random;
        if (!FitEqualUnits(State.View, {-10, 10}, kSize))
            Fail("the view does not fit");
        InitAxis(Target, State.View, State.Axes, State.Settings.SheetColor);
        Redraw(); // for the samples to be known
    }

    std::int64_t Redraw()
    {
        if (Draw(MakeDrawContext(State, Target, Host, Time)) != DrawEnd::Complete)
            Fail("the draw was not completed");
        Target.Finish();
        return 1;
    }

    SharedState State;
    QImage Picture{kWidth, kHeight, QImage::Format_RGB32};
    QtSurface Target{Picture, kSize, {Antialias::On, 1}};
    QuietHost Host;
    SteadyClock Time;
};

// The points of the reference curve where the sheet draws them.
QPolygonF ReferencePoints(const Sheet& sheet)
{
    QPolygonF points;
    for (std::int64_t i = 0; i < sheet.State.Stats.Samples; ++i) {
        const double x = -10 + static_cast<double>(i) * sheet.State.View.Step2D;
        const auto at = WorldToPixel(sheet.State.View, {x, 5 * std::sin(x) + std::sin(13 * x)});
        points.append({at.X + 0.5, at.Y + 0.5}); // Qt counts from the corner of a pixel
    }
    return points;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);

    Sheet heavy({"y=x-x^2+2sinx", "y=x^3-3x+1", "y=.1x^5-2x^3+7x-3", "y=(x^2-1)/(x^2+1)",
                 kReference, "y=e^(-.1x)*cos(5x)", "y=e^(-x^2)", "y=log(x^2+1)*(x^2+1)^(.5)",
                 "y=sin(x)/x", "y=tan(x/2)", "y=atan(3x)+asin(x/20)", "y=abs(x)^(2.5)",
                 "y=sin(x+2cos(3x+sin(x)))", "y=3cos(2x)-1", "y=x/3"},
                10000, 2);
    Sheet solved({"x^2+y^2=100", "x=Siny", "x=xy+Siny", "x^3+y^3=6xy", "x^2+y^2=50", "y=xy+Sinx",
                  "x^2+y^2=64", "x=2Siny", "x^3+y^3=9xy", "xy=1", "x^2-y^2=4", "x=Cosy", "y^2=x",
                  "x^2+xy+y^2=9", "x=y^3-3y"},
                 1000, 2,
                 {.CalcMode2D = CalcMode::Advanced,
                  .DoubleDraw = TickState::On,
                  .MultiDraw = TickState::On});
    Comparison comparison{
        .Title = "Drawing",
        .Text = std::string("Whole draws on 1600 x 1000 pixels, antialiased, evaluation and "
                            "painting included: ") +
                kReference +
                " against Qt's painting of the same points, evaluated beforehand, as one polyline; "
                "a sheet that is heavy to redraw, and one that is drawn in Advanced mode.",
        .Item = "draw",
        .Unit = benchmark::kMillisecond,
        .Ways = {"whole draw", "one polyline"},
        .Subjects = {"whole draw"},
        .References = {"one polyline"},
    };
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    std::deque<Sheet> references;
    for (const int width : {1, 3}) {
        Sheet& sheet = references.emplace_back(std::vector{kReference}, 5000, width);
        const QPolygonF points = ReferencePoints(sheet);
        const QPen pen(Qt::blue, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        const std::string row = "one curve, " + std::to_string(points.size()) + " samples, width " +
                                std::to_string(width);
        Add(comparison, row, "whole draw", [&sheet] { return sheet.Redraw(); });
        Add(comparison, row, "one polyline", [&painter, points, pen] {
            painter.setPen(pen);
            painter.drawPolyline(points);
            return std::int64_t{1};
        });
    }
    Add(comparison,
        "15 equations, " + std::to_string(heavy.State.Stats.Samples) + " samples, width 2",
        "whole draw", [&] { return heavy.Redraw(); });
    Add(comparison,
        "15 equations of any form, " + std::to_string(solved.State.Stats.Samples) +
            " solutions sought, Double and Multi Draw",
        "whole draw", [&] { return solved.Redraw(); });
    return Run(comparison, argc, argv);
}
