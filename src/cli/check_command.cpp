#include "cli/commands.h"
#include "graph/draw_driver.h"

namespace kelvane {

ExitCode RunCheck(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Says what is wrong with the equations, if anything.");
    parser.addPositionalArgument("EQUATION", "One line of formula, for example \"y=x^2\".");
    AddModeOptions(parser);
    if (const auto finished = ParseArguments(parser, arguments, "check [options] EQUATION..."))
        return *finished;
    const QStringList texts = parser.positionalArguments();
    const auto equations = ReadEquations(texts);
    if (texts.isEmpty())
        return WrongUsage("check needs at least one equation");
    if (!equations)
        return WrongUsage("an equation must be one line");
    CalculationModes modes;
    if (const QString wrong = ReadModes(parser, modes); !wrong.isEmpty())
        return WrongUsage(wrong);
    EquationTable table;
    if (const auto fault = FindFault(table, equations->Sheet, equations->Ticks, modes)) {
        PrintMessage(DescribeFault(*fault, table));
        return ExitCode::Refused;
    }
    return ExitCode::Done;
}

} // namespace kelvane
