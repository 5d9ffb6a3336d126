#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

// Files that are read and written whole.

namespace kelvane {

// Puts new content in the place of a plain file or of none: whole and flushed, or not at all. False
// where that fails, with the reason in why; what was there before is then unchanged. A device, a
// pipe or a folder is left alone.
bool ReplaceFile(const QString& path, const QByteArray& content, QString* why = nullptr);

// The content of a plain file of at most this many bytes; nothing when it is larger, is no plain
// file or cannot be read.
std::optional<QByteArray> ReadFile(const QString& path, qint64 mostBytes);

// The folder of what the program remembers between its runs, of this user alone; made when missing.
// Empty when it cannot be made.
QString StateFolder();

} // namespace kelvane
