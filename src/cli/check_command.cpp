#include "cli/commands.h"
#include "graph/draw_driver.h"

namespace kelvane {

ExitCode RunCheck(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Says what is wrong with the equations, if anything.");
    parser.addPositionalArgument("EQUATION", kEquationHelp);
    AddModeOptions(parser);
    if (const auto finished =
            ParseArguments(parser, arguments, "check [options] EQUATION|FILE.rtf..."))
        return *finished;
    const QStringList texts = parser.positionalArguments();
    if (texts.isEmpty())
        return WrongUsage("check needs at least one equation");
    EquationArguments equations;
    if (const auto failed = ReadEquations(texts, equations))
        return *failed;
    CalculationModes modes;
    if (const QString wrong = ReadModes(parser, modes); !wrong.isEmpty())
        return WrongUsage(wrong);
    EquationTable table;
    if (const auto fault = FindFault(table, equations.Sheet, equations.Ticks, modes)) {
        PrintMessage(DescribeFault(*fault, table));
        return ExitCode::Refused;
    }
    return ExitCode::Done;
}

} // namespace kelvane
