#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/calculation_modes.h"
#include "engine/equations.h"
#include "engine/preparation.h"
#include "graph/view.h"
#include "view3d/rgb.h"

// What the commands have in common in reading their command lines.

namespace kelvane {

enum class ExitCode : std::uint8_t {
    Done = 0,
    Refused = 1,    // an equation was refused; its message is on standard error
    WrongUsage = 2, // one line on standard error says what is wrong
    CannotWrite = 3 // the file (or standard output) cannot be written
};

// A range in world units; Z is -10 to 10 where only two were given.
struct RangeArgument {
    Interval X;
    Interval Y;
    Interval Z;
};

// Each reads a whole text; nothing when it is not of the form.
std::optional<double> ReadNumber(const QString& text);                   // finite
std::optional<Interval> ReadInterval(const QString& text);               // LOW:HIGH
std::optional<RangeArgument> ReadRange(const QString& text);             // X0:X1,Y0:Y1[,Z0:Z1]
std::optional<WorldPoint> ReadPoint(const QString& text);                // X,Y
std::optional<std::pair<int, int>> ReadPictureSize(const QString& text); // WxH, up to 20000 each
                                                                         // and 100 million pixels
std::optional<Rgb> ReadColor(const QString& text);                       // RRGGBB

// Equations given as arguments: a sheet of one page, and all its lines ticked.
struct EquationArguments {
    SheetText Sheet;
    EquationTicks Ticks;
};

// Nothing when a text holds a line break: an equation is one line.
std::optional<EquationArguments> ReadEquations(const QStringList& texts);

// The options --mode, --double and --multi; reading them gives what is wrong with them, if
// anything. The two additions choose Advanced mode by themselves.
void AddModeOptions(QCommandLineParser& parser);
QString ReadModes(const QCommandLineParser& parser, CalculationModes& modes);

// Prints one line that says what is wrong with a command line. Gives WrongUsage.
ExitCode WrongUsage(const QString& what);

// Parses a command's arguments, its own name first; usage is the line that its help begins with.
// Gives an exit code when the command is already finished: help was asked for, or the command line
// is wrong.
std::optional<ExitCode> ParseArguments(QCommandLineParser& parser, const QStringList& arguments,
                                       const QString& usage);

} // namespace kelvane
