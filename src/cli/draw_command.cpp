#include <QGuiApplication>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <tuple>

#include "app/shared_state.h"
#include "cli/commands.h"
#include "cli/look_options.h"
#include "engine/point_evaluation.h"
#include "graph/axes_3d.h"
#include "ui/picture_file.h"
#include "ui/steady_clock.h"

namespace kelvane {

namespace {

constexpr double kMilli = 1000;       // in a second
constexpr double kMostBudget = 3.6e6; // milliseconds, an hour

// Messages go to standard error; nobody watches the progress and nobody stops the draw.
class CommandHost : public DrawHost {
public:
    void ShowMessage(const Message& message) override { PrintMessage(message); }
    void PercentGo(double) override {}
    void InitPerc() override {}
    void SetProgressColor(Rgb) override {}
    void Breathe() override {}
    bool IsWatched() const override { return false; }
    void ShowSoFar() override {}
    bool MayGoOn() const override { return true; }
};

// What the command line asks for.
struct DrawOrder {
    SharedState State;
    PictureOrder Picture;
    bool ShowStats = false;
};

void AddOptions(QCommandLineParser& parser)
{
    AddModeOptions(parser);
    AddLookOptions(parser);
    parser.addOptions({
        {{"o", "output"}, "The picture to write; its ending says how.", "FILE.png|.svg|.pdf"},
        {"size", "Size in pixels, 1000x800 if not given.", "WxH"},
        {"range",
         "What the picture shows, from edge to edge; x from -10 to 10 with equal units if not "
         "given.",
         "X0:X1,Y0:Y1[,Z0:Z1]"},
        {"zoom", "Zoom factor: 2 shows twice as much.", "FACTOR"},
        {"centre", "World point where the axes cross.", "X,Y"},
        {"resolution",
         "Samples per unit; 100 if not given, but at least 250 and at most 2000000 in all.",
         "PIX/UNIT"},
        {"pixels", "Draw samples as dots, not joined."},
        {"width", "Draw width in pixels, 1 to 100; 2 if not given.", "N"},
        {"grid", "Draw grid lines."},
        {"no-axes", "Draw the curves on the bare sheet."},
        {"no-antialias", "Draw curves with hard edges."},
        {"budget",
         "With --slope-mode: how long to search for the curves in all, in milliseconds; 2000 if "
         "not "
         "given.",
         "MS"},
        {"stats", "Print one line of counts and times on standard error."},
    });
}

// Each of the following reads a group of options into the order; the text says what is wrong, if
// anything.

QString ReadPicture(const QCommandLineParser& parser, DrawOrder& order)
{
    order.Picture.Path = parser.value("output");
    if (order.Picture.Path.contains(QChar::ReplacementCharacter))
        return "the picture's name is not UTF-8";
    if (order.Picture.Path.isEmpty())
        return "draw needs -o FILE.png, FILE.svg or FILE.pdf";
    if (!PictureFormatOf(order.Picture.Path))
        return QString("'%1' does not end in .png, .svg or .pdf").arg(order.Picture.Path);
    const auto size = ReadPictureSize(parser.isSet("size") ? parser.value("size") : "1000x800");
    if (!size)
        return "--size needs WxH, such as 1000x800, up to 20000 each and 100 million pixels";
    order.Picture.Size = {static_cast<double>(size->first), static_cast<double>(size->second)};
    order.Picture.Smooth = parser.isSet("no-antialias") ? Antialias::Off : Antialias::On;
    order.ShowStats = parser.isSet("stats");
    return {};
}

QString ReadLookOptions(const QCommandLineParser& parser, DrawOrder& order)
{
    return ReadLook(parser, order.State);
}

// On a 3D sheet the range is what the axes span.
QString ReadRangeOption(const QCommandLineParser& parser, DrawOrder& order)
{
    SharedState& state = order.State;
    ViewState& view = state.View;
    const PixelSize size = order.Picture.Size;
    const bool in3D = state.Modes.Mode3D;
    const auto fits3D = [&] { return !in3D || FitSpace(view, state.Axis3D, size); };
    if (!parser.isSet("range")) {
        const bool fits = FitEqualUnits(view, {-10, 10}, size);
        if (in3D)
            std::tie(view.YMin, view.YMax) = std::tie(view.XMin, view.XMax);
        return fits && fits3D() ? "" : "--size leaves no room for the range";
    }
    const auto range = ReadRange(parser.value("range"));
    if (!range || !FitRange(view, range->X, range->Y, size))
        return "--range needs X0:X1,Y0:Y1[,Z0:Z1] such as -10:10,-5:5, each first number below its "
               "second as far as single precision can tell";
    view.ZMin = static_cast<float>(range->Z.Low);
    view.ZMax = static_cast<float>(range->Z.High);
    if (in3D)
        view.YRatio = 1;
    return fits3D() ? "" : "--range cannot be shown on a 3D sheet";
}

QString ReadView(const QCommandLineParser& parser, DrawOrder& order)
{
    ViewState& view = order.State.View;
    if (parser.isSet("zoom")) {
        view.ZoomFactor = static_cast<float>(ReadNumber(parser.value("zoom")).value_or(0));
        const bool finite = std::isfinite(view.ZoomFactor * (view.XMax - view.XMin)) &&
                            std::isfinite(view.ZoomFactor * (view.YMax - view.YMin));
        if (!(view.ZoomFactor > 0) || !finite || !UpdatePixPerStep(view))
            return "--zoom needs a number above 0 that single precision can hold with the range";
    }
    if (parser.isSet("centre")) {
        const auto centre = ReadPoint(parser.value("centre"));
        view.CenterX = static_cast<float>(centre ? centre->X : NAN);
        view.CenterY = static_cast<float>(centre ? -centre->Y : NAN);
        if (!std::isfinite(view.CenterX) || !std::isfinite(view.CenterY))
            return "--centre needs X,Y, such as 2,-1.5";
    }
    const double span = static_cast<double>(view.XMax) - view.XMin;
    const auto resolution = parser.isSet("resolution") ? ReadNumber(parser.value("resolution"))
                                                       : std::optional(ResolutionFor(span));
    const auto step = StepFromResolution(resolution.value_or(0));
    if (!step)
        return "--resolution needs a number above 0";
    view.Step2D = *step;
    return {};
}

QString ReadSettings(const QCommandLineParser& parser, DrawOrder& order)
{
    DrawSettings& settings = order.State.Settings;
    settings.Style = parser.isSet("pixels") ? PointStyle::Pixel : PointStyle::Line;
    settings.DrawWidth = parser.isSet("width") ? parser.value("width").toInt() : 2;
    if (!IsDrawWidth(settings.DrawWidth))
        return "--width needs a whole number from 1 to 100";
    if (parser.isSet("budget")) {
        const double budget = ReadNumber(parser.value("budget")).value_or(0);
        if (!(budget > 0) || budget > kMostBudget)
            return "--budget needs a number of milliseconds above 0, up to 3600000";
        settings.BudgetSeconds = budget / kMilli;
    }
    order.State.Axes.ShowGrid = parser.isSet("grid") && !parser.isSet("no-axes");
    order.State.Axes.ShowAxes = !parser.isSet("no-axes");
    return {};
}

QString ReadCalculation(const QCommandLineParser& parser, DrawOrder& order)
{
    return ReadModes(parser, order.State.Modes);
}

std::optional<ExitCode> ReadSheet(const QCommandLineParser& parser, DrawOrder& order)
{
    const QStringList texts = parser.positionalArguments();
    if (texts.isEmpty() && !order.State.Modes.Mode3D)
        return WrongUsage("draw needs at least one equation");
    EquationArguments equations;
    if (const auto failed = ReadEquations(texts, equations))
        return failed;
    order.State.Sheet = std::move(equations.Sheet);
    order.State.Ticks = equations.Ticks;
    if (equations.Count > 1 && !parser.isSet("color") && !parser.isSet("colors") &&
        order.State.Settings.Coloring == Coloring2D::Solid)
        order.State.Settings.Coloring = Coloring2D::Random;
    return std::nullopt;
}

struct PaintTimes {
    double WhileSweeping = 0; // seconds
    double Total = 0;
};

void PrintStats(const SharedState& state, const PaintTimes& paint)
{
    const DrawStats& stats = state.Stats;
    std::fprintf(stderr,
                 "samples: %lld, compiled: %lld, points: %lld, failed: %lld, prepare: %.2f ms, "
                 "sweep: %.2f ms, paint: %.2f ms",
                 static_cast<long long>(stats.Samples), static_cast<long long>(stats.Compiled),
                 static_cast<long long>(stats.Points), static_cast<long long>(stats.Failed),
                 stats.PrepareSeconds * kMilli, (stats.SweepSeconds - paint.WhileSweeping) * kMilli,
                 paint.Total * kMilli);
    if (state.Modes.AltFamily) // the first family does not know what it misses
        std::fprintf(stderr, ", unresolved: %lld px",
                     static_cast<long long>(stats.UnresolvedPixels));
    std::fputc('\n', stderr);
}

// This version draws the axes of a 3D sheet; its equations are only checked.
bool IsDrawable(SharedState& state)
{
    const auto fault = FindFault(state.Table, state.Sheet, state.Ticks, state.Modes);
    if (fault)
        PrintMessage(DescribeFault(*fault, state.Table));
    else if (FirstTickedEquation(state.Table, state.Ticks) <= state.Table.EquationCount)
        std::fputs("kelvane: this version draws no surfaces, only the axes\n", stderr);
    return !fault;
}

bool PaintSheet(SharedState& state, QtSurface& surface, PaintTimes& times)
{
    CommandHost host;
    const SteadyClock clock;
    if (state.Modes.Mode3D) {
        InitAxis3D(surface, state.View, state.Axes, state.Axis3D, state.ViewMatrix,
                   state.Settings.SheetColor);
        surface.Finish();
        times.Total = surface.PaintSeconds();
        return IsDrawable(state);
    }
    InitAxis(surface, state.View, state.Axes, state.Settings.SheetColor);
    const double before = surface.PaintSeconds();
    if (Draw(MakeDrawContext(state, surface, host, clock)) != DrawEnd::Complete)
        return false;
    times.WhileSweeping = surface.PaintSeconds() - before;
    surface.Finish();
    times.Total = surface.PaintSeconds();
    return true;
}

} // namespace

ExitCode RunDraw(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Draws the equations into a picture file.");
    parser.addPositionalArgument("EQUATION", kEquationHelp);
    AddOptions(parser);
    if (const auto finished =
            ParseArguments(parser, arguments, "draw [options] EQUATION|FILE.rtf... -o FILE"))
        return *finished;
    DrawOrder order;
    for (const auto read :
         {ReadPicture, ReadLookOptions, ReadRangeOption, ReadView, ReadSettings, ReadCalculation}) {
        if (const QString wrong = read(parser, order); !wrong.isEmpty())
            return WrongUsage(wrong);
    }
    if (const auto failed = ReadSheet(parser, order))
        return *failed;
    std::string name = "kelvane"; // Qt would take options of its own out of our arguments
    char* ownName[] = {name.data(), nullptr};
    int count = 1;
    const QGuiApplication application(count, ownName); // fonts need one
    PaintTimes times;
    const auto paint = [&](QtSurface& surface) { return PaintSheet(order.State, surface, times); };
    switch (WritePicture(order.Picture, paint)) {
    case PictureResult::Written:
        if (order.ShowStats)
            PrintStats(order.State, times);
        return ExitCode::Done;
    case PictureResult::Abandoned:
        return ExitCode::Refused;
    case PictureResult::CannotWrite:
        break;
    }
    return FileFailed("cannot write " + order.Picture.Path);
}

} // namespace kelvane
