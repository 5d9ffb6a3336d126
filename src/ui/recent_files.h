#pragma once

#include <QString>
#include <QStringList>

namespace kelvane {

// The equation files that were opened or saved last, the newest first, kept in the state folder.
// Each change reads and writes the list anew: several programs may share it.
class RecentFiles {
public:
    static constexpr int kMost = 10;

    // Without a folder the list stays empty.
    explicit RecentFiles(const QString& folder);

    QStringList List() const;            // full paths
    void Add(const QString& path) const; // to the front
    void Remove(const QString& path) const;
    void Clear() const;

private:
    void Write(const QStringList& paths) const;

    QString m_path;
};

} // namespace kelvane
