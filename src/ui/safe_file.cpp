#include "ui/safe_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace kelvane {

namespace {

// On a full disk a first write may take a part, without an error; only the next one knows why.
bool WriteAll(QIODevice& file, const QByteArray& content)
{
    for (qsizetype written = 0; written < content.size();) {
        const qint64 more = file.write(content.data() + written, content.size() - written);
        if (more <= 0)
            return false;
        written += more;
    }
    return true;
}

} // namespace

// On a full disk QSaveFile would put a file cut short in the old one's place, unless it is asked at
// each step whether everything was written; and it would put one in the place of a device or a
// pipe.
bool ReplaceFile(const QString& path, const QByteArray& content, QString* why)
{
    const QFileInfo old(path);
    QSaveFile file(path);
    const bool plain = !old.exists() || old.isFile();
    const bool written = plain && file.open(QIODevice::WriteOnly) && WriteAll(file, content) &&
                         file.flush() && file.commit();
    if (!written && why != nullptr)
        *why = plain ? file.errorString() : QStringLiteral("this is not a plain file");
    return written;
}

std::optional<QByteArray> ReadFile(const QString& path, qint64 mostBytes)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > mostBytes)
        return std::nullopt;
    // One byte more tells files that grow, or do not know their size.
    const QByteArray content = file.read(mostBytes + 1);
    if (content.size() > mostBytes || file.error() != QFileDevice::NoError)
        return std::nullopt;
    return content;
}

QString StateFolder()
{
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (base.isEmpty())
        base = QDir::homePath() + "/.local/state";
    QString folder = base + "/kelvane";
    if (!QDir().mkpath(folder))
        return {};
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return folder;
}

} // namespace kelvane
