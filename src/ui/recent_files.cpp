#include "ui/recent_files.h"

#include "ui/safe_file.h"

namespace kelvane {

namespace {

constexpr qint64 kMostBytes = 1 << 20;

} // namespace

RecentFiles::RecentFiles(const QString& folder)
    : m_path(folder.isEmpty() ? QString() : folder + "/recent_files")
{
}

QStringList RecentFiles::List() const
{
    const QByteArray content = ReadFile(m_path, kMostBytes).value_or(QByteArray());
    return QString::fromUtf8(content).split('\n', Qt::SkipEmptyParts).mid(0, kMost);
}

void RecentFiles::Add(const QString& path) const
{
    if (path.contains('\n'))
        return; // the list has one a line
    QStringList paths = List();
    paths.removeAll(path);
    paths.prepend(path);
    Write(paths.mid(0, kMost));
}

void RecentFiles::Remove(const QString& path) const
{
    QStringList paths = List();
    if (paths.removeAll(path) > 0)
        Write(paths);
}

void RecentFiles::Clear() const
{
    Write({});
}

void RecentFiles::Write(const QStringList& paths) const
{
    if (!m_path.isEmpty())
        ReplaceFile(m_path, paths.join('\n').toUtf8());
}

} // namespace kelvane
