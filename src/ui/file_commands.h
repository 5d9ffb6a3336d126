#pragma once

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QString>
#include <string>
#include <vector>

#include "app/equation_pages.h"
#include "app/shared_state.h"
#include "doc/equation_file.h"
#include "ui/recent_files.h"
#include "ui/recovery.h"

class QMessageBox;
class QTimer;
class QWidget;

namespace kelvane {

class EditorRegion;
enum class Command;

// The name of a file as the status bar shows it: without as many characters as the current
// directory and a separator have, whether or not the file lies there.
QString ShownFileName(const QString& path, const QString& currentDirectory);

// New, Open and Save of equation files, with all that keeps the user's work from being lost: what
// has changed since the last save, the recovery file, and the recent files.
//
// While there are unsaved changes the pages are kept in the recovery file, two seconds after the
// last change, or ten after the first one. A file that cannot be opened leaves the pages as they
// are; one that is damaged shows what could be read of it, without its name, so that saving does
// not replace the file. A name counts only when its file has been opened or saved.
class FileCommands : public QObject {
    Q_OBJECT

public:
    FileCommands(SharedState& state, EquationPages& pages, EditorRegion& editor, QWidget& window);
    ~FileCommands() override;

    // Carries out a command of the File panel, with its questions and file dialogs; a menu opens at
    // the place, in global coordinates. False when it is none of these.
    bool Carry(Command command, QPoint menuPlace);

    // Opens a file that was named otherwise, as by dropping it; asks before.
    void OpenFile(const QString& path);

    // The window has opened, with an empty page: offers what an earlier run has left behind when it
    // crashed, and opens the file, if one is named.
    void Begin(const QString& path);

    // A normal end of the program: nothing is left behind.
    void Forget();

    // Adds to a question what is at stake, if anything.
    void WarnOfChanges(QMessageBox& question);

    // While a file is opened or saved, windows may live but nothing else may be begun.
    bool IsBusy() const { return m_busy; }

    const QString& CurrentFileName() const { return m_currentFileName; } // full path, or empty

Q_SIGNALS:
    void panelChanged(const QString& text);                   // of the status bar
    void titleChanged(const QString& fileName, bool changed); // without folder; empty when none
    void progressed(double fraction);
    void progressReset();

private:
    void New();
    void Open();
    void Save();
    void SaveAs();
    void OpenRecent(QPoint place);
    bool ConfirmReplacing(const QString& path);
    bool Confirm(const QString& title, const QString& question);
    QString AskForFile(const QString& title, bool toSave);
    void SaveFile(const QString& path);
    void ReadPages(const QString& path);
    void TakeName(const QString& path);
    void ShowPages(std::vector<RichPage> pages);
    std::vector<RichPage> Typable(std::vector<RichPage> pages);
    void ShowName();
    void ShowProgress();
    void ShowMessage(const QString& text);

    std::string FileText() const;
    void NoteSaved();
    void LookForChanges();
    void KeepChanges();
    void OfferLeftovers();
    bool ConfirmDiscarding();
    void BringBack(const Recovery::Leftover& leftover, EquationFileText text);

    SharedState& m_state;
    EquationPages& m_pages;
    EditorRegion& m_editor;
    QWidget& m_window;
    QString m_currentFileName;
    QDateTime m_savedTime;   // when the file was changed last, as far as we know
    std::string m_savedText; // what the file holds, or an empty document
    bool m_changed = false;
    bool m_busy = false;
    Recovery m_recovery;
    RecentFiles m_recent;
    QTimer* m_changeTimer = nullptr;
    QTimer* m_keepTimer = nullptr;
    QTimer* m_keptTimer = nullptr; // to see whether that worked
    QElapsedTimer m_unkept;        // since the first change that is not kept
};

} // namespace kelvane
