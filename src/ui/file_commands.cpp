#include "ui/file_commands.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTextDocument>
#include <QThread>
#include <QTimer>
#include <algorithm>

#include "doc/equation_file.h"
#include "ui/editor_region.h"
#include "ui/formula_editor.h"
#include "ui/menu_region.h"
#include "ui/safe_file.h"
#include "ui/start_up.h"

namespace kelvane {

namespace {

constexpr int kMostPages = EquationPages::kLastPossible + 1;
constexpr int kLookAfter = 100;  // ms after the last change of the text
constexpr int kKeepAfter = 2000; // ms
constexpr int kKeepAtLatest = 10000;
constexpr int kProgressPause = 4; // ms a page
constexpr int kMenuWidth = 480;   // pixels
constexpr const char* kPanel = "File Name:  ";

QString PlainText(const std::vector<RichPage>& pages)
{
    QString text;
    for (const std::string& line : EquationLines(pages))
        text += QString::fromStdString(line) + '\n';
    return text;
}

bool IsEmpty(const RichPage& page)
{
    return std::all_of(page.begin(), page.end(), [](const RichLine& line) { return line.empty(); });
}

} // namespace

QString ShownFileName(const QString& path, const QString& currentDirectory)
{
    const bool root = currentDirectory.endsWith('/');
    return path.mid(currentDirectory.size() + (root ? 0 : 1));
}

FileCommands::FileCommands(SharedState& state, EquationPages& pages, EditorRegion& editor,
                           QWidget& window)
    : QObject(&window)
    , m_state(state)
    , m_pages(pages)
    , m_editor(editor)
    , m_window(window)
    , m_recovery(StateFolder())
    , m_recent(StateFolder())
{
    m_changeTimer = new QTimer(this);
    m_changeTimer->setSingleShot(true);
    m_changeTimer->setInterval(kLookAfter);
    connect(m_changeTimer, &QTimer::timeout, this, &FileCommands::LookForChanges);
    m_keepTimer = new QTimer(this);
    m_keepTimer->setSingleShot(true);
    m_keepTimer->setInterval(kKeepAfter);
    connect(m_keepTimer, &QTimer::timeout, this, &FileCommands::KeepChanges);
    m_keptTimer = new QTimer(this);
    m_keptTimer->setSingleShot(true);
    m_keptTimer->setInterval(kKeepAfter / 2);
    connect(m_keptTimer, &QTimer::timeout, this, &FileCommands::ShowName);
    connect(m_editor.Editor().document(), &QTextDocument::contentsChanged, m_changeTimer, [this] {
        if (!m_changeTimer->isActive())
            m_changeTimer->start();
    });
}

FileCommands::~FileCommands() = default;

// ---- commands

bool FileCommands::Carry(Command command, QPoint menuPlace)
{
    switch (command) {
    case Command::New:
        New();
        break;
    case Command::Open:
        Open();
        break;
    case Command::Save:
        Save();
        break;
    case Command::SaveAs:
        SaveAs();
        break;
    case Command::Recent:
        OpenRecent(menuPlace);
        break;
    default:
        return false;
    }
    m_editor.Editor().setFocus();
    return true;
}

void FileCommands::New()
{
    if (!Confirm("New", "Creating new file ... Are you sure?"))
        return;
    m_currentFileName.clear();
    ShowPages({RichPage()});
    NoteSaved();
    ShowName();
}

// A cancelled file dialog leaves the name as it was, and the command carries on with it.
void FileCommands::Open()
{
    const QString chosen = AskForFile("Open", false);
    const QString path = chosen.isEmpty() ? m_currentFileName : chosen;
    if (!path.isEmpty())
        OpenFile(path);
}

void FileCommands::Save()
{
    if (m_currentFileName.isEmpty())
        SaveAs();
    else if (ConfirmReplacing(m_currentFileName))
        SaveFile(m_currentFileName);
}

void FileCommands::SaveAs()
{
    const QString chosen = AskForFile("Save", true);
    if (chosen.isEmpty() && !m_currentFileName.isEmpty())
        Save();
    else if (!chosen.isEmpty())
        SaveFile(chosen);
}

void FileCommands::OpenRecent(QPoint place)
{
    QMenu menu;
    menu.setObjectName("RecentFiles");
    const QStringList paths = m_recent.List();
    for (const QString& path : paths) {
        const QFileInfo file(path);
        QString text = file.fileName() + "   " + QDir::toNativeSeparators(file.path());
        text = menu.fontMetrics().elidedText(text.simplified(), Qt::ElideMiddle, kMenuWidth);
        QAction* action = menu.addAction(text.replace('&', "&&"));
        connect(action, &QAction::triggered, this, [this, path] { OpenFile(path); });
    }
    if (paths.isEmpty()) {
        menu.addAction("No file yet")->setEnabled(false);
    } else {
        menu.addSeparator();
        connect(menu.addAction("Clear List"), &QAction::triggered, this,
                [this] { m_recent.Clear(); });
    }
    menu.exec(place);
}

void FileCommands::Begin(const QString& path)
{
    NoteSaved();
    ShowName();
    OfferLeftovers();
    if (path.isEmpty())
        return;
    if (m_changed)
        OpenFile(path); // which asks
    else
        ReadPages(path);
}

// A file that another program has written since it was opened or saved is not ours to replace.
bool FileCommands::ConfirmReplacing(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists() || file.lastModified() == m_savedTime)
        return true;
    QMessageBox box(QMessageBox::NoIcon, "Save",
                    "The file has been changed by another program. Replace it?",
                    QMessageBox::Yes | QMessageBox::No, &m_window);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void FileCommands::WarnOfChanges(QMessageBox& question)
{
    LookForChanges();
    if (m_changed)
        question.setInformativeText("The changes that are not saved will be lost.");
}

bool FileCommands::Confirm(const QString& title, const QString& question)
{
    QMessageBox box(QMessageBox::NoIcon, title, question, QMessageBox::Yes | QMessageBox::No,
                    &m_window);
    WarnOfChanges(box);
    box.setDefaultButton(m_changed ? QMessageBox::No : QMessageBox::Yes);
    return box.exec() == QMessageBox::Yes;
}

// Empty when the dialog is cancelled.
QString FileCommands::AskForFile(const QString& title, bool toSave)
{
    QFileDialog dialog(&m_window, title);
    dialog.setAcceptMode(toSave ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(toSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilter("Rich Text Format (*.rtf)");
    dialog.setDefaultSuffix("rtf");
    const QString documents = AppFolder() + "Doc";
    if (!m_currentFileName.isEmpty())
        dialog.selectFile(m_currentFileName);
    else if (QDir(documents).exists())
        dialog.setDirectory(documents);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

// ---- opening

void FileCommands::OpenFile(const QString& path)
{
    if (Confirm("Open", "Opening new file ... Are you sure?"))
        ReadPages(path);
}

void FileCommands::ReadPages(const QString& path)
{
    const QScopedValueRollback busy(m_busy, true);
    Q_EMIT panelChanged("Opening ...");
    Q_EMIT progressReset();
    const auto content = ReadFile(path, static_cast<qint64>(kMaxFileSize));
    EquationFileText text;
    text.Fault = FileFault::Malformed;
    if (content)
        text = ReadEquationFile({content->data(), static_cast<std::size_t>(content->size())},
                                m_pages.LinesPerPage, kMostPages);
    const bool whole = text.Fault == FileFault::None;
    if (whole) {
        std::string held = WriteEquationFile(text.Pages, m_pages.LinesPerPage);
        ShowPages(std::move(text.Pages));
        TakeName(path);
        NoteSaved();
        m_savedText = std::move(held); // what the editor leaves out is a change
        LookForChanges();
        ShowProgress();
    } else if (!std::all_of(text.Pages.begin(), text.Pages.end(), IsEmpty)) {
        m_currentFileName.clear();
        ShowPages(std::move(text.Pages));
        m_savedText.clear(); // so that these pages count as changed
        LookForChanges();
    }
    ShowName();
    if (!content && !QFileInfo::exists(path))
        m_recent.Remove(QFileInfo(path).absoluteFilePath());
    if (!whole)
        ShowMessage("Error Opening File!");
}

void FileCommands::ShowPages(std::vector<RichPage> pages)
{
    SetPages(m_pages, m_state.Sheet, Typable(std::move(pages)));
    m_state.Ticks = {};
    m_editor.ShowPage();
}

// The pages as the editor shows and stores them: without blanks and what else cannot be typed.
std::vector<RichPage> FileCommands::Typable(std::vector<RichPage> pages)
{
    FormulaEditor& editor = m_editor.Editor();
    for (RichPage& page : pages) {
        if (IsEmpty(page))
            continue;
        page.resize(static_cast<std::size_t>(m_pages.LinesPerPage));
        editor.SetPage(page);
        page = editor.Page();
    }
    return pages;
}

// ---- saving

void FileCommands::SaveFile(const QString& path)
{
    const QScopedValueRollback busy(m_busy, true);
    Q_EMIT panelChanged("Saving ...");
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    m_editor.Store();
    const std::string text = FileText();
    QString why = "the equations are too long";
    const bool saved =
        text.size() <= kMaxFileSize && ReplaceFile(path, QByteArray::fromStdString(text), &why);
    if (!saved) {
        Q_EMIT panelChanged("Not saved: " + why);
        Q_EMIT progressReset();
        return;
    }
    TakeName(path);
    NoteSaved();
    ShowName();
    ShowProgress();
}

// Runs the progress display over the pages, slowly enough to be seen.
void FileCommands::ShowProgress()
{
    Q_EMIT progressReset();
    const int pages = m_pages.LastPage + 1;
    for (int page = 1; page <= pages; ++page) {
        QThread::msleep(kProgressPause);
        Q_EMIT progressed(static_cast<double>(page) / pages);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

// ---- what is shown

// As file dialogs do, this makes the file's folder current.
void FileCommands::TakeName(const QString& path)
{
    const QFileInfo file(path);
    m_currentFileName = file.absoluteFilePath();
    QDir::setCurrent(file.absolutePath());
    m_savedTime = file.lastModified();
    m_recent.Add(m_currentFileName);
}

void FileCommands::ShowName()
{
    const QString shown = ShownFileName(m_currentFileName, QDir::currentPath());
    QString panel = kPanel + (m_currentFileName.isEmpty() ? "None" : shown);
    if (m_changed && m_recovery.HasFailed())
        panel += "   (changes cannot be kept for a recovery)";
    Q_EMIT panelChanged(panel);
    Q_EMIT titleChanged(QFileInfo(m_currentFileName).fileName(), m_changed);
}

void FileCommands::ShowMessage(const QString& text)
{
    QMessageBox box(QMessageBox::NoIcon, "Kelvane", text, QMessageBox::Ok, &m_window);
    box.exec();
}

// ---- changes

// What a file would hold now.
std::string FileCommands::FileText() const
{
    std::vector<RichPage> pages = PagesInUse(m_pages);
    pages[static_cast<std::size_t>(m_pages.CurrentPage)] = m_editor.Editor().Page();
    return WriteEquationFile(pages, m_pages.LinesPerPage);
}

void FileCommands::NoteSaved()
{
    m_savedText = FileText();
    m_changed = false;
    Forget();
}

void FileCommands::LookForChanges()
{
    m_changeTimer->stop();
    const bool changed = FileText() != m_savedText;
    if (changed != m_changed) {
        m_changed = changed;
        Q_EMIT titleChanged(QFileInfo(m_currentFileName).fileName(), m_changed);
    }
    if (!changed)
        return Forget();
    // Who types without a pause is not left without anything kept.
    if (!m_keepTimer->isActive())
        m_unkept.start();
    const qint64 left = std::max<qint64>(kKeepAtLatest - m_unkept.elapsed(), 0);
    m_keepTimer->start(static_cast<int>(std::min<qint64>(left, kKeepAfter)));
}

void FileCommands::Forget()
{
    m_changeTimer->stop();
    m_keepTimer->stop();
    m_recovery.Forget();
}

void FileCommands::KeepChanges()
{
    m_recovery.Keep(m_currentFileName, FileText());
    m_keptTimer->start();
}

// ---- after a crash

void FileCommands::OfferLeftovers()
{
    for (const Recovery::Leftover& leftover : m_recovery.FindLeftovers()) {
        EquationFileText text = ReadEquationFile(leftover.Text, m_pages.LinesPerPage, kMostPages);
        QMessageBox box(QMessageBox::NoIcon, "Kelvane",
                        "Kelvane ended without a chance to save your equations. Bring them back?",
                        QMessageBox::NoButton, &m_window);
        if (!leftover.FileName.isEmpty())
            box.setInformativeText("They belong to " + QDir::toNativeSeparators(leftover.FileName));
        box.setDetailedText(PlainText(text.Pages));
        box.setTextFormat(Qt::PlainText);
        QPushButton* back = box.addButton("Bring Back", QMessageBox::AcceptRole);
        const QPushButton* discard = box.addButton("Discard", QMessageBox::DestructiveRole);
        QPushButton* later = box.addButton("Ask Later", QMessageBox::RejectRole);
        box.setDefaultButton(back);
        box.setEscapeButton(later);
        box.exec();
        if (box.clickedButton() == discard && ConfirmDiscarding())
            Recovery::Discard(leftover);
        if (box.clickedButton() != back)
            continue;
        BringBack(leftover, std::move(text));
        return;
    }
}

bool FileCommands::ConfirmDiscarding()
{
    QMessageBox box(QMessageBox::NoIcon, "Kelvane", "The equations will be gone. Discard them?",
                    QMessageBox::Yes | QMessageBox::No, &m_window);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

// The leftover goes only when all of its pages are kept anew.
void FileCommands::BringBack(const Recovery::Leftover& leftover, EquationFileText text)
{
    ShowPages(std::move(text.Pages));
    m_currentFileName = leftover.FileName;
    const QFileInfo file(leftover.FileName);
    if (!leftover.FileName.isEmpty() && QDir(file.absolutePath()).exists())
        QDir::setCurrent(file.absolutePath());
    m_savedText.clear();
    LookForChanges();
    ShowName();
    KeepChanges();
    if (text.Fault != FileFault::None)
        ShowMessage("Only these equations fit on the pages of this window. All of them are offered "
                    "again at the next start.");
    else if (m_recovery.Finish())
        Recovery::Discard(leftover);
}

} // namespace kelvane
