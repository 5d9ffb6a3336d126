#include "ui/recovery.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include "doc/equation_file.h"
#include "ui/safe_file.h"

namespace kelvane {

namespace {

constexpr const char* kEnding = ".recovery";
constexpr const char* kLockEnding = ".lock";
constexpr const char* kFileKey = "file";
constexpr const char* kTextKey = "equations";

// A lock is stale only when the program that made it no longer runs.
std::unique_ptr<QLockFile> TryLock(const QString& base)
{
    auto lock = std::make_unique<QLockFile>(base + kLockEnding);
    lock->setStaleLockTime(0);
    return lock->tryLock(0) ? std::move(lock) : nullptr;
}

QByteArray ContentOf(const QString& fileName, const std::string& text)
{
    return QJsonDocument(
               QJsonObject{{kFileKey, fileName}, {kTextKey, QString::fromStdString(text)}})
        .toJson();
}

} // namespace

Recovery::Recovery(const QString& folder)
    : m_folder(folder)
{
    m_writer.setMaxThreadCount(1);
    if (folder.isEmpty())
        return;
    const QString base = QString("%1/%2-%3")
                             .arg(folder)
                             .arg(QDateTime::currentMSecsSinceEpoch())
                             .arg(QCoreApplication::applicationPid());
    m_lock = TryLock(base);
    if (m_lock != nullptr)
        m_path = base + kEnding;
}

Recovery::~Recovery()
{
    Finish();
}

void Recovery::Keep(const QString& fileName, const std::string& text)
{
    if (m_path.isEmpty())
        return;
    m_writer.clear();
    m_writer.start(
        [this, fileName, text] { m_failed = !ReplaceFile(m_path, ContentOf(fileName, text)); });
}

bool Recovery::Finish()
{
    m_writer.waitForDone();
    return !HasFailed();
}

void Recovery::Forget()
{
    m_writer.clear();
    Finish();
    m_failed = false;
    if (!m_path.isEmpty())
        QFile::remove(m_path);
}

std::vector<Recovery::Leftover> Recovery::FindLeftovers() const
{
    std::vector<Leftover> leftovers;
    if (m_folder.isEmpty())
        return leftovers;
    const QDir folder(m_folder);
    for (const QString& name : folder.entryList({QString("*") + kLockEnding}, QDir::Files)) {
        const QString base = folder.filePath(name).chopped(QString(kLockEnding).size());
        if (!QFile::exists(base + kEnding))
            TryLock(base); // of a program that is gone: letting go removes it
    }
    // Names begin with the time.
    for (const QString& name :
         folder.entryList({QString("*") + kEnding}, QDir::Files, QDir::Name | QDir::Reversed)) {
        const QString path = folder.filePath(name);
        std::shared_ptr<QLockFile> claim =
            path == m_path ? nullptr : TryLock(path.chopped(QString(kEnding).size()));
        if (claim == nullptr)
            continue;
        // A character of the equations takes six bytes at the most.
        const auto content = ReadFile(path, 6 * static_cast<qint64>(kMaxFileSize));
        const QJsonObject kept = QJsonDocument::fromJson(content.value_or(QByteArray())).object();
        if (kept.contains(kTextKey))
            leftovers.push_back({kept[kFileKey].toString(), kept[kTextKey].toString().toStdString(),
                                 path, std::move(claim)});
    }
    return leftovers;
}

void Recovery::Discard(const Leftover& leftover)
{
    QFile::remove(leftover.Path);
}

} // namespace kelvane
