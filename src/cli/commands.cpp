#include "cli/commands.h"

#include <cstdio>

namespace kelvane {

namespace {

constexpr const char* kHelp = R"(Kelvane, a graphing calculator.

Usage:
  kelvane [FILE.rtf]
  kelvane draw   [options] EQUATION|FILE.rtf... -o FILE.png|.svg|.pdf
  kelvane values [options] --from A --to B --step S EQUATION
  kelvane check  [options] EQUATION|FILE.rtf...
  kelvane text   FILE.rtf...
  kelvane new    FILE.rtf EQUATION...

Without a command the window opens, with the equations of the file.

Commands:
  draw    Draw the equations into a picture file.
  values  Print a table of x and y (and z) as comma-separated text.
  check   Say what is wrong with the equations, if anything.
  text    Print the equations of equation files as plain lines.
  new     Write equations into an equation file.

"kelvane COMMAND --help" lists a command's options.

Options:
  -h, --help     Show this help.
  -v, --version  Show the version.

An equation is one line, for example "y=x-x^2+2sinx". Put "--" in front of the equations when
one begins with a minus sign.

Exit codes: 0 done, 1 an equation was refused, 2 wrong usage, 3 a file cannot be read or written.
)";

// Keeps what Qt remarks about its surroundings off standard error, where only our own lines belong.
void ShowFatalOnly(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "kelvane: %s\n", qUtf8Printable(text));
}

// Commands need neither a display nor a locale: they work the same everywhere.
void ChooseSurroundings()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    for (const char* scale : {"QT_SCALE_FACTOR", "QT_FONT_DPI", "QT_SCREEN_SCALE_FACTORS"})
        qunsetenv(scale);
    qInstallMessageHandler(ShowFatalOnly);
}

ExitCode Run(const QStringList& arguments)
{
    const QString command = arguments.value(1);
    const QStringList rest = arguments.mid(1);
    constexpr std::pair<const char*, ExitCode (*)(const QStringList&)> kCommands[] = {
        {"draw", RunDraw},
        {"values", RunValues},
        {"check", RunCheck},
        {"text", RunText},
        {"new", RunNew}};
    for (const auto& [name, run] : kCommands) {
        if (command == name)
            return run(rest);
    }
    if (command.isEmpty() || command == "--help" || command == "-h") {
        std::fputs(kHelp, stdout);
        return ExitCode::Done;
    }
    if (command == "--version" || command == "-v") {
        std::puts("kelvane " KELVANE_VERSION);
        return ExitCode::Done;
    }
    if (IsEquationFile(command))
        return WrongUsage("there is no display to open a window on; see kelvane --help");
    return WrongUsage(QString("unknown command '%1'; see kelvane --help").arg(command));
}

} // namespace

int RunCommand(int argc, char** argv)
{
    ChooseSurroundings();
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromUtf8(argv[i]);
    const ExitCode code = Run(arguments);
    const bool shown = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    if (code == ExitCode::Done && !shown) {
        return static_cast<int>(FileFailed("standard output cannot be written"));
    }
    return static_cast<int>(code);
}

void PrintMessage(const Message& message)
{
    std::fprintf(stderr, "%s: %s\n", message.Title.c_str(), message.Text.c_str());
}

} // namespace kelvane
