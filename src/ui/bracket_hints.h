#pragma once

#include <QString>
#include <QTextCursor>

namespace kelvane {

// What helps with the line that the caret is in: a bracket that is open or too many, a power that
// waits for its exponent. Empty when there is nothing to say.
QString BracketHint(const QTextCursor& caret);

} // namespace kelvane
