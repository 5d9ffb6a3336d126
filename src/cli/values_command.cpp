#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "cli/commands.h"
#include "engine/number_text.h"
#include "engine/point_evaluation.h"
#include "graph/draw_driver.h"

namespace kelvane {

namespace {

constexpr double kMaxRows = 1e7;

// Abscissae From, From + Step, ... Count of them.
struct Rows {
    double From = 0;
    double Step = 1;
    std::int64_t Count = 0;
};

// What the command line asks for.
struct TableOrder {
    Rows X;
    float Y = 0; // of all rows, on a 3D sheet
    CalculationModes Modes;
    PointRule Rule;
    std::vector<float> Tolerances; // to be tried in turn
};

void AddOptions(QCommandLineParser& parser)
{
    parser.addOptions({
        {"from", "First x.", "A"},
        {"to", "Last x.", "B"},
        {"step", "Distance between rows.", "S"},
        {"mode",
         "simple, if not given, takes equations that begin with \"y=\" (\"z=\"); advanced any "
         "equation, solved for y (z).",
         "simple|advanced"},
        {"sheet", "2d, if not given, for x,y; 3d for x,y,z.", "2d|3d"},
        {"y", "The y of all rows of a 3D sheet.", "V"},
        {"search", "Where Advanced mode looks for the value; -10:10 if not given.", "LOW:HIGH"},
        {"resolution",
         "How well both sides must agree in Advanced mode: to a quarter of 1/resolution. If not "
         "given, the first of 1000, 100 and 10 that finds a value.",
         "PIX/UNIT"},
    });
}

std::optional<Rows> ReadRows(const QCommandLineParser& parser)
{
    const auto from = ReadNumber(parser.value("from"));
    const auto to = ReadNumber(parser.value("to"));
    const auto step = ReadNumber(parser.value("step"));
    if (!from || !to || !step || *step == 0)
        return std::nullopt;
    // A step like 0.1 is not exact: the last row must not be lost to its rounding.
    const double steps = std::floor((*to - *from) / *step * (1 + 1e-12) + 1e-9);
    const bool single =
        std::isfinite(static_cast<float>(*from)) && std::isfinite(static_cast<float>(*to));
    if (!(steps >= 0 && steps < kMaxRows) || !single)
        return std::nullopt;
    return Rows{*from, *step, static_cast<std::int64_t>(steps) + 1};
}

// Each of the following reads a group of options into the order; the text says what is wrong, if
// anything.

QString ReadPlace(const QCommandLineParser& parser, TableOrder& order)
{
    const auto rows = ReadRows(parser);
    if (!rows)
        return "values needs numbers for --from, --to and --step that lead from A to B in 1 to "
               "10000000 rows";
    order.X = *rows;
    const QString sheet = parser.isSet("sheet") ? parser.value("sheet") : "2d";
    if (sheet != "2d" && sheet != "3d")
        return "--sheet needs 2d or 3d";
    order.Modes.Mode3D = sheet == "3d";
    if (order.Modes.Mode3D != parser.isSet("y"))
        return "--y V belongs to --sheet 3d, which needs it";
    const auto y = ReadNumber(parser.isSet("y") ? parser.value("y") : "0");
    order.Y = static_cast<float>(y.value_or(NAN));
    return std::isfinite(order.Y) ? "" : "--y needs a number that single precision can hold";
}

QString ReadRule(const QCommandLineParser& parser, TableOrder& order)
{
    if (QString wrong = ReadModes(parser, order.Modes); !wrong.isEmpty())
        return wrong;
    order.Rule.Variable = order.Modes.Mode3D ? Dependent::Z : Dependent::Y;
    order.Rule.Mode = order.Modes.CalcMode2D;
    const auto search = ReadInterval(parser.isSet("search") ? parser.value("search") : "-10:10");
    if (!search)
        return "--search needs LOW:HIGH, such as -10:10";
    order.Rule.Range = {static_cast<float>(search->Low), static_cast<float>(search->High)};
    std::vector<double> resolutions{1000, 100, 10};
    if (parser.isSet("resolution"))
        resolutions = {ReadNumber(parser.value("resolution")).value_or(0)};
    for (const double resolution : resolutions) {
        const auto step = StepFromResolution(resolution);
        if (!step)
            return "--resolution needs a number above 0";
        order.Tolerances.push_back(*step / 4);
    }
    return {};
}

bool FindValue(EvalState& state, const Equation& equation, const TableOrder& order)
{
    return std::any_of(order.Tolerances.begin(), order.Tolerances.end(), [&](float tolerance) {
        PointRule rule = order.Rule;
        rule.Range.Tolerance = tolerance;
        return EvaluatePoint(state, equation, rule);
    });
}

void PrintTable(const Equation& equation, const TableOrder& order)
{
    EvalState state{.EvalY = order.Y};
    BeginPoints(state, equation, order.Rule);
    std::puts(order.Modes.Mode3D ? "x,y,z" : "x,y");
    for (std::int64_t i = 0; i < order.X.Count && std::ferror(stdout) == 0; ++i) {
        state.EvalX = static_cast<float>(order.X.From + static_cast<double>(i) * order.X.Step);
        std::string row = ShortestText(state.EvalX) + ",";
        if (order.Modes.Mode3D)
            row += ShortestText(order.Y) + ",";
        if (FindValue(state, equation, order))
            row += ShortestText(order.Modes.Mode3D ? state.EvalZ : state.EvalY);
        std::puts(row.c_str());
    }
}

} // namespace

ExitCode RunValues(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Prints a table of x and y, or x, y and z, as comma-separated "
                                     "text; the last field is empty where the equation has no "
                                     "value.");
    AddOptions(parser);
    parser.addPositionalArgument("EQUATION", kEquationHelp);
    if (const auto finished =
            ParseArguments(parser, arguments, "values [options] --from A --to B --step S EQUATION"))
        return *finished;
    TableOrder order;
    for (const auto read : {ReadPlace, ReadRule}) {
        if (const QString wrong = read(parser, order); !wrong.isEmpty())
            return WrongUsage(wrong);
    }
    EquationArguments equations;
    if (const auto failed = ReadEquations(parser.positionalArguments(), equations))
        return *failed;
    if (equations.Count != 1)
        return WrongUsage("values needs exactly one equation");
    EquationTable table;
    if (const auto fault = FindFault(table, equations.Sheet, equations.Ticks, order.Modes)) {
        PrintMessage(DescribeFault(*fault, table));
        return ExitCode::Refused;
    }
    PrintTable(table.At(1), order);
    return ExitCode::Done;
}

} // namespace kelvane
