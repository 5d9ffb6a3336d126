#include "ui/bracket_hints.h"

#include <QTextBlock>

namespace kelvane {

QString BracketHint(const QTextCursor& caret)
{
    const QString line = caret.block().text();
    const int column = caret.positionInBlock();
    const auto at = [&line](int index) { return line.mid(index, 1); };
    const QString before = column > 0 ? at(column - 1) : QString();
    // Curly and square brackets are not part of the notation.
    if (before == "{" || before == "}" || before == "[" || before == "]")
        return QString("Use ( and ) for brackets");
    int open = 0;
    for (int i = 0; i < column; ++i) {
        if (at(i) == "(")
            ++open;
        else if (at(i) == ")" && --open < 0)
            return QString("This ')' has no '('");
    }
    const auto rest = line.size() - column;
    int closing = 0;
    for (int i = column; i < line.size(); ++i)
        closing += at(i) == ")" ? 1 : at(i) == "(" ? -1 : 0;
    if (open > closing && (before == "(" || rest == 0))
        return open - closing == 1 ? QString("A bracket is open: close it with ')'")
                                   : QString("%1 brackets are open").arg(open - closing);
    if (before == "^" || (before == "+" && column > 1 && QString("+-*/^").contains(at(column - 2))))
        return before == "^" ? QString("Type the exponent") : QString("Two operators in a row");
    return {};
}

} // namespace kelvane
