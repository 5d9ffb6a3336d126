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
    FileFailed = 3  // a file (or standard output) cannot be read or written
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

inline constexpr const char* kEquationHelp =
    "One line of formula, for example \"y=x^2\", or an equation file, FILE.rtf.";

// Whether the text names an equation file: it ends in ".rtf".
bool IsEquationFile(const QString& text);

// Equations given as arguments: a sheet of one page, and all its lines ticked.
struct EquationArguments {
    SheetText Sheet;
    EquationTicks Ticks;
    int Count = 0;
};

// Reads equations, each one line, and equation files, whose lines all count but for the empty ones.
// Gives an exit code, after a line that says why, when that fails.
std::optional<ExitCode> ReadEquations(const QStringList& texts, EquationArguments& equations);

// The plain lines of an equation file that are not empty. Nothing, after a line that says why, when
// it cannot be opened.
std::optional<QStringList> ReadEquationLines(const QString& path);

// A formula as typed on a command line, with decimal exponents in brackets: a power is typed as in
// the editor, where a decimal number is raised as a whole.
QString RaiseDecimals(QString text);

// The options --mode, --double, --multi and --slope-mode; reading them gives what is wrong with
// them, if anything. Double and multi choose Advanced mode by themselves.
void AddModeOptions(QCommandLineParser& parser);
QString ReadModes(const QCommandLineParser& parser, CalculationModes& modes);

// Prints one line that says what is wrong with a command line, or with a file. Gives WrongUsage,
// and FileFailed.
ExitCode WrongUsage(const QString& what);
ExitCode FileFailed(const QString& what);

// Parses a command's arguments, its own name first; usage is the line that its help begins with.
// Gives an exit code when the command is already finished: help was asked for, or the command line
// is wrong.
std::optional<ExitCode> ParseArguments(QCommandLineParser& parser, const QStringList& arguments,
                                       const QString& usage);

} // namespace kelvane
