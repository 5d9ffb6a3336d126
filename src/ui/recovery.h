#pragma once

#include <QLockFile>
#include <QString>
#include <QThreadPool>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace kelvane {

// Keeps unsaved equations in a file of the state folder while the program runs, so that they are
// there after a crash. Every running program has a file of its own, and a lock that tells the
// others that it still runs.
class Recovery {
public:
    // Equations that a program left behind when it crashed.
    struct Leftover {
        QString FileName;                 // the equation file they belong to; empty when none
        std::string Text;                 // of an equation file
        QString Path;                     // where they are kept
        std::shared_ptr<QLockFile> Claim; // held so that no other program offers them too
    };

    // Without a folder nothing is kept.
    explicit Recovery(const QString& folder);
    ~Recovery();
    Recovery(const Recovery&) = delete;
    Recovery& operator=(const Recovery&) = delete;

    // Writes the text in the background; of several that wait, the last one counts.
    void Keep(const QString& fileName, const std::string& text);

    // Waits until everything is written. False when the last writing failed.
    bool Finish();

    // Whether the last writing failed, or nothing can be kept at all; while one is under way, how
    // the one before went.
    bool HasFailed() const { return m_path.isEmpty() || m_failed; }

    // Removes what is kept.
    void Forget();

    // What programs that no longer run have left, the newest first.
    std::vector<Leftover> FindLeftovers() const;
    static void Discard(const Leftover& leftover);

private:
    QString m_folder;
    QString m_path; // empty when nothing can be kept
    std::unique_ptr<QLockFile> m_lock;
    QThreadPool m_writer; // one thread
    std::atomic<bool> m_failed = false;
};

} // namespace kelvane
