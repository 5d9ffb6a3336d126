#include <cmath>
#include <cstdint>
#include <cstdio>

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

void PrintTable(const Equation& equation, const Rows& rows)
{
    EvalState state;
    state.RightStart = EquationsStart(equation);
    std::puts("x,y");
    for (std::int64_t i = 0; i < rows.Count && std::ferror(stdout) == 0; ++i) {
        state.EvalX = static_cast<float>(rows.From + static_cast<double>(i) * rows.Step);
        state.EvalError = false;
        SimpleY(state, equation);
        const std::string y = state.EvalError ? "" : ShortestText(state.EvalY);
        std::printf("%s,%s\n", ShortestText(state.EvalX).c_str(), y.c_str());
    }
}

} // namespace

ExitCode RunValues(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Prints a table of x and y as comma-separated text; y is "
                                     "empty where the equation has no value.");
    parser.addOptions({{"from", "First x.", "A"},
                       {"to", "Last x.", "B"},
                       {"step", "Distance between rows.", "S"}});
    parser.addPositionalArgument("EQUATION", "One line of formula, for example \"y=x^2\".");
    if (const auto finished =
            ParseArguments(parser, arguments, "values [options] --from A --to B --step S EQUATION"))
        return *finished;
    const auto rows = ReadRows(parser);
    const auto equations = ReadEquations(parser.positionalArguments());
    if (!rows)
        return WrongUsage("values needs numbers for --from, --to and --step that lead from A to B "
                          "in 1 to 10000000 rows");
    if (parser.positionalArguments().size() != 1 || !equations)
        return WrongUsage("values needs exactly one equation, on one line");
    EquationTable table;
    if (const auto fault = FindFault(table, equations->Sheet, equations->Ticks, {})) {
        PrintMessage(DescribeFault(*fault, table));
        return ExitCode::Refused;
    }
    PrintTable(table.At(1), *rows);
    return ExitCode::Done;
}

} // namespace kelvane
