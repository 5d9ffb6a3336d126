#include <cstdio>

#include "app/equation_pages.h"
#include "cli/commands.h"
#include "doc/equation_file.h"
#include "ui/safe_file.h"

namespace kelvane {

namespace {

constexpr int kLinesPerPage = 10; // fewer than the window's pages have, even on small screens

// The equations on as few pages as they fill, at least one.
std::vector<RichPage> PagesOf(const QStringList& equations)
{
    std::vector<RichPage> pages(1);
    for (const QString& equation : equations) {
        if (pages.back().size() == kLinesPerPage)
            pages.emplace_back();
        pages.back().push_back(PlainToRich(RaiseDecimals(equation).toStdString()));
    }
    return pages;
}

} // namespace

ExitCode RunText(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Prints the equations of equation files as plain lines.");
    parser.addPositionalArgument("FILE.rtf", "The equation file.");
    if (const auto finished = ParseArguments(parser, arguments, "text FILE.rtf..."))
        return *finished;
    if (parser.positionalArguments().isEmpty())
        return WrongUsage("text needs an equation file");
    for (const QString& path : parser.positionalArguments()) {
        const auto lines = ReadEquationLines(path);
        if (!lines)
            return ExitCode::FileFailed;
        for (const QString& line : *lines)
            std::puts(qUtf8Printable(line));
    }
    return ExitCode::Done;
}

ExitCode RunNew(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Writes the equations, which may have any form, into an "
                                     "equation file, in place of one that is there.");
    parser.addPositionalArgument("FILE.rtf", "The equation file.");
    parser.addPositionalArgument("EQUATION", "One line of formula, for example \"y=x^2\".");
    if (const auto finished = ParseArguments(parser, arguments, "new FILE.rtf EQUATION..."))
        return *finished;
    const QString path = parser.positionalArguments().value(0);
    if (!IsEquationFile(path))
        return WrongUsage("new needs a file whose name ends in .rtf");
    const QStringList equations = parser.positionalArguments().mid(1);
    for (const QString& equation : equations) {
        if (equation.contains('\r') || equation.contains('\n'))
            return WrongUsage("an equation must be one line");
        if (equation.size() > kMaxLineLength)
            return WrongUsage(QString("an equation has at most %1 characters").arg(kMaxLineLength));
    }
    const std::vector<RichPage> pages = PagesOf(equations);
    if (pages.size() > EquationPages::kLastPossible + 1)
        return WrongUsage("a file has room for 1000 equations");
    const std::string text = WriteEquationFile(pages, kLinesPerPage);
    QString why;
    if (!ReplaceFile(path, QByteArray::fromStdString(text), &why))
        return FileFailed("cannot write " + path + ": " + why);
    return ExitCode::Done;
}

} // namespace kelvane
