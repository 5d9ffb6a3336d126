#include "cli/arguments.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "doc/equation_file.h"
#include "graph/color.h"
#include "ui/safe_file.h"

namespace kelvane {

namespace {

constexpr int kMaxPictureSide = 20000;
constexpr double kMaxPicturePixels = 1e8;

} // namespace

std::optional<double> ReadNumber(const QString& text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<Interval> ReadInterval(const QString& text)
{
    const QStringList ends = text.split(':');
    if (ends.size() != 2)
        return std::nullopt;
    const auto low = ReadNumber(ends[0]);
    const auto high = ReadNumber(ends[1]);
    if (!low || !high || !(static_cast<float>(*low) < static_cast<float>(*high)))
        return std::nullopt;
    const bool single =
        std::isfinite(static_cast<float>(*low)) && std::isfinite(static_cast<float>(*high));
    return single ? std::optional(Interval{*low, *high}) : std::nullopt;
}

std::optional<RangeArgument> ReadRange(const QString& text)
{
    const QStringList parts = text.split(',');
    if (parts.size() != 2 && parts.size() != 3)
        return std::nullopt;
    const auto x = ReadInterval(parts[0]);
    const auto y = ReadInterval(parts[1]);
    const auto z = ReadInterval(parts.value(2, "-10:10"));
    return x && y && z ? std::optional(RangeArgument{*x, *y, *z}) : std::nullopt;
}

std::optional<WorldPoint> ReadPoint(const QString& text)
{
    const QStringList parts = text.split(',');
    if (parts.size() != 2)
        return std::nullopt;
    const auto x = ReadNumber(parts[0]);
    const auto y = ReadNumber(parts[1]);
    return x && y ? std::optional(WorldPoint{*x, *y}) : std::nullopt;
}

std::optional<std::pair<int, int>> ReadPictureSize(const QString& text)
{
    const QStringList parts = text.split('x');
    if (parts.size() != 2)
        return std::nullopt;
    const int width = parts[0].toInt();
    const int height = parts[1].toInt();
    const bool sound = width >= 1 && height >= 1 && width <= kMaxPictureSide &&
                       height <= kMaxPictureSide &&
                       static_cast<double>(width) * height <= kMaxPicturePixels;
    return sound ? std::optional(std::pair(width, height)) : std::nullopt;
}

std::optional<Rgb> ReadColor(const QString& text)
{
    const std::string digits = text.toStdString();
    if (digits.size() != 6)
        return std::nullopt;
    const int red = HexPair(digits.substr(0, 2));
    const int green = HexPair(digits.substr(2, 2));
    const int blue = HexPair(digits.substr(4, 2));
    if (red < 0 || green < 0 || blue < 0)
        return std::nullopt;
    return Rgb{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
               static_cast<std::uint8_t>(blue)};
}

bool IsEquationFile(const QString& text)
{
    return text.endsWith(".rtf", Qt::CaseInsensitive);
}

std::optional<QStringList> ReadEquationLines(const QString& path)
{
    constexpr int kLinesPerPage = 1000; // in a command pages mean nothing
    const auto content = ReadFile(path, static_cast<qint64>(kMaxFileSize));
    if (!content) {
        FileFailed("cannot open " + path);
        return std::nullopt;
    }
    const EquationFileText text = ReadEquationFile(
        {content->data(), static_cast<std::size_t>(content->size())}, kLinesPerPage, kMaxPages);
    if (text.Fault != FileFault::None) {
        FileFailed(path + " is not an equation file, or damaged");
        return std::nullopt;
    }
    QStringList lines;
    for (const std::string& line : EquationLines(text.Pages))
        lines += QString::fromStdString(line);
    return lines;
}

QString RaiseDecimals(QString text)
{
    static const QRegularExpression decimal("\\^([0-9]*\\.[0-9]+|[0-9]+\\.)");
    return text.replace(decimal, "^(\\1)");
}

std::optional<ExitCode> ReadEquations(const QStringList& texts, EquationArguments& equations)
{
    QStringList lines;
    for (const QString& text : texts) {
        if (text.contains('\r') || text.contains('\n'))
            return WrongUsage("an equation must be one line");
        const auto read =
            IsEquationFile(text) ? ReadEquationLines(text) : QStringList(RaiseDecimals(text));
        if (!read)
            return ExitCode::FileFailed;
        lines += *read;
    }
    equations.Count = static_cast<int>(lines.size());
    equations.Sheet.LinesPerPage = std::max(equations.Count, 1);
    equations.Sheet.PagePlain[0] = lines.join('\r').toStdString();
    auto& on = equations.Ticks.EquationOn;
    for (std::size_t i = 1; i <= static_cast<std::size_t>(equations.Count) && i < on.size(); ++i)
        on[i] = true;
    return std::nullopt;
}

void AddModeOptions(QCommandLineParser& parser)
{
    parser.addOptions({
        {"mode",
         "simple takes equations that begin with \"y=\"; advanced any equation. Simple if not "
         "given, advanced with --double, --multi or --slope-mode.",
         "simple|advanced"},
        {"double", "Advanced mode: draw two branches, from every other sample each."},
        {"multi", "Advanced mode: draw a second time, with x and y exchanged."},
        {"slope-mode",
         "Draw complete curves, all branches of any mode, and hatch what remains unknown."},
    });
}

QString ReadModes(const QCommandLineParser& parser, CalculationModes& modes)
{
    const QStringList given = parser.optionNames(); // not every command has all of them
    const bool doubleDraw = given.contains("double");
    const bool multiDraw = given.contains("multi");
    modes.AltFamily = given.contains("slope-mode");
    const bool anyForm = doubleDraw || multiDraw || modes.AltFamily; // mean Advanced mode
    const QString mode =
        parser.isSet("mode") ? parser.value("mode") : QString(anyForm ? "advanced" : "simple");
    if (mode != "simple" && mode != "advanced")
        return "--mode needs simple or advanced";
    if (mode == "simple")
        return doubleDraw || multiDraw ? "--double and --multi need --mode advanced" : "";
    modes.CalcMode2D = CalcMode::Advanced;
    modes.CalcMode3D = CalcMode::Advanced;
    modes.DoubleDraw = doubleDraw ? TickState::On : TickState::Off;
    modes.MultiDraw = multiDraw ? TickState::On : TickState::Off;
    return {};
}

ExitCode WrongUsage(const QString& what)
{
    std::fprintf(stderr, "kelvane: %s\n", qUtf8Printable(what));
    return ExitCode::WrongUsage;
}

ExitCode FileFailed(const QString& what)
{
    std::fprintf(stderr, "kelvane: %s\n", qUtf8Printable(what));
    return ExitCode::FileFailed;
}

std::optional<ExitCode> ParseArguments(QCommandLineParser& parser, const QStringList& arguments,
                                       const QString& usage)
{
    const QCommandLineOption help({"h", "help"}, "Show this help.");
    parser.addOption(help);
    if (!parser.parse(arguments))
        return WrongUsage(parser.errorText());
    if (parser.isSet(help)) {
        // The first line of Qt's text speaks of the program; we know the command better.
        const QString text = parser.helpText();
        const QString rest = text.mid(text.indexOf('\n'));
        std::fputs(qUtf8Printable("Usage: kelvane " + usage + rest), stdout);
        return ExitCode::Done;
    }
    return std::nullopt;
}

} // namespace kelvane
