#include "ui/file_commands.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QUrl>

#include "doc/equation_file.h"
#include "ui/safe_file.h"
#include "window.h"

namespace kelvane {
namespace {

class FileCommandsTest : public testing::Test {
protected:
    FileCommandsTest() { m_window.BeginWork({}); }

    QString Path(const char* name) const { return m_folder.filePath(name); }
    QString Panel() { return m_window.statusBar()->findChild<QLabel*>()->text(); }

    QByteArray Content(const char* name) const
    {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void Write(const char* name, const QByteArray& content) const
    {
        QFile file(Path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir m_folder;
    bool m_isClean = QDir(StateFolder()).removeRecursively(); // of what other tests have left
    Window m_window;
};

std::string LinesOf(const QByteArray& file)
{
    std::string lines;
    for (const std::string& line : EquationLines(ReadEquationFile(file.toStdString(), 9, 9).Pages))
        lines += line + "\n";
    return lines;
}

} // namespace

TEST_F(FileCommandsTest, SavedPagesComeBackOtherwise)
{
    m_window.Type("y=x^2\n+p\n");
    m_window.Click("Check1(0)");
    for (int line = 1; line <= m_window.Pages().LinesPerPage - 2; ++line)
        m_window.Type("\n");
    m_window.Type("\ny=3\n");
    ASSERT_EQ(m_window.Pages().LastPage, 1);
    QTest::qWait(150);
    EXPECT_TRUE(m_window.isWindowModified());
    {
        const Answerer answer(QMessageBox::Yes, Path("a.rtf"));
        m_window.Click("File(2)"); // asks for the name
        EXPECT_EQ(answer.Said, "");
    }
    EXPECT_EQ(Panel(), "File Name:  a.rtf");
    EXPECT_FALSE(m_window.isWindowModified());
    EXPECT_EQ(LinesOf(Content("a.rtf")), "y=x^(2)+p\ny=3\n");
    const QByteArray saved = Content("a.rtf");
    {
        const Answerer answer(QMessageBox::Yes);
        m_window.Click("File(0)");
        EXPECT_EQ(answer.Said, "New: Creating new file ... Are you sure?\n");
    }
    EXPECT_EQ(Panel(), "File Name:  None");
    EXPECT_EQ(m_window.Pages().LastPage, 0);
    EXPECT_EQ(m_window.PlainText(), "");
    EXPECT_FALSE(m_window.State().Ticks.On(1));
    {
        const Answerer answer(QMessageBox::Yes, Path("a.rtf"));
        m_window.Click("File(1)");
        EXPECT_EQ(answer.Said, "Open: Opening new file ... Are you sure?\n");
    }
    EXPECT_EQ(Panel(), "File Name:  a.rtf");
    EXPECT_EQ(m_window.windowTitle(), "a.rtf[*] - Kelvane");
    EXPECT_EQ(m_window.PlainText(), "y=x^(2)+p");
    EXPECT_EQ(m_window.Pages().LastPage, 1);
    EXPECT_EQ(m_window.Pages().CurrentPage, 0);
    EXPECT_EQ(m_window.State().Sheet.PagePlain[1].substr(0, 4), "y=3\r") << "drawn without a visit";
    EXPECT_FALSE(m_window.State().Ticks.On(1));
    QFile::remove(Path("a.rtf"));
    m_window.Click("File(2)"); // without a question
    EXPECT_EQ(Content("a.rtf"), saved);
}

TEST_F(FileCommandsTest, RefusalOrFailureLosesWork)
{
    const QByteArray old = QByteArray::fromStdString(WriteEquationFile({{PlainToRich("y=1")}}, 5));
    Write("old.rtf", old);
    m_window.Type("y=5");
    {
        const Answerer answer(QMessageBox::No, Path("old.rtf"));
        m_window.Click("File(1)");
        m_window.Click("File(0)");
    }
    EXPECT_EQ(m_window.PlainText(), "y=5");
    EXPECT_EQ(m_window.Files().CurrentFileName(), "") << "saving would replace the other file";
    {
        const Answerer answer(QMessageBox::Yes, Path("nowhere/a.rtf"));
        m_window.Click("File(3)");
        EXPECT_EQ(answer.Said, "");
    }
    EXPECT_EQ(Panel().left(11), "Not saved: ");
    EXPECT_EQ(m_window.Files().CurrentFileName(), "");
    {
        const Answerer answer(QMessageBox::Ok);
        m_window.Files().Begin(Path("missing.rtf"));
        EXPECT_EQ(answer.Said, "Kelvane: Error Opening File!\n");
    }
    EXPECT_EQ(m_window.PlainText(), "y=5");
    Write("cut.rtf", old.left(old.indexOf("y=1") + 3));
    {
        const Answerer answer(QMessageBox::Ok);
        m_window.Files().Begin(Path("cut.rtf"));
        EXPECT_EQ(answer.Said, "Kelvane: Error Opening File!\n");
    }
    EXPECT_EQ(m_window.PlainText(), "y=1");
    EXPECT_EQ(Panel(), "File Name:  None") << "saving would replace what is left of the file";
    EXPECT_TRUE(m_window.isWindowModified());
    EXPECT_EQ(Content("old.rtf"), old);
}

TEST_F(FileCommandsTest, ChangeIsNotNoticedOrNotUndone)
{
    const auto changed = [this] {
        QTest::qWait(150);
        return m_window.isWindowModified();
    };
    EXPECT_FALSE(changed());
    m_window.Type("y");
    EXPECT_TRUE(changed());
    m_window.Text().undo();
    EXPECT_FALSE(changed());
    m_window.Click("Check1(0)");
    EXPECT_FALSE(changed()) << "ticks are not in the file";
}

TEST_F(FileCommandsTest, SteadyTypingHidesTheChange)
{
    for (int i = 0; i < 12; ++i) {
        m_window.Type("x");
        QTest::qWait(40);
    }
    EXPECT_TRUE(m_window.isWindowModified());
    const Answerer answer(QMessageBox::No);
    m_window.close();
    EXPECT_TRUE(m_window.isVisible());
    EXPECT_TRUE(answer.Informed.contains("will be lost")) << "exit is how work is lost";
}

TEST_F(FileCommandsTest, OtherProgramsFileIsReplaced)
{
    Write("shared.rtf", QByteArray::fromStdString(WriteEquationFile({{PlainToRich("y=1")}}, 5)));
    m_window.Files().Begin(Path("shared.rtf"));
    EXPECT_EQ(m_window.PlainText(), "y=1");
    QTest::qWait(20); // for another time of the file
    Write("shared.rtf", "theirs");
    m_window.Type("+");
    {
        const Answerer answer(QMessageBox::No);
        m_window.Click("File(2)");
        EXPECT_TRUE(answer.Said.contains("changed by another program"))
            << answer.Said.toStdString();
    }
    EXPECT_EQ(Content("shared.rtf"), "theirs");
    {
        const Answerer answer(QMessageBox::Yes);
        m_window.Click("File(2)");
    }
    EXPECT_EQ(LinesOf(Content("shared.rtf")), "+y=1\n");
    const Answerer answer(QMessageBox::No);
    m_window.Click("File(2)");
    EXPECT_EQ(answer.Said, "") << "our own change";
}

TEST_F(FileCommandsTest, LeftOutBlanksGoUnnoticed)
{
    Write("blanks.rtf", QByteArray::fromStdString(WriteEquationFile(
                            {{PlainToRich("y=1")}, {}, {PlainToRich("y = 2 x")}}, 5)));
    m_window.Files().Begin(Path("blanks.rtf"));
    EXPECT_TRUE(m_window.isWindowModified());
    EXPECT_EQ(m_window.State().Sheet.PagePlain[2].substr(0, 6), "y=2x\r\r");
}

// Presses buttons of the next message boxes, by their texts.
class Presser {
public:
    explicit Presser(QStringList texts)
        : m_texts(std::move(texts))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr || m_texts.isEmpty())
                return;
            for (QAbstractButton* button : box->buttons()) {
                if (button->text().remove('&') == m_texts.front()) {
                    m_texts.removeFirst();
                    return button->click();
                }
            }
        });
        m_timer.start(5);
    }
    bool AllPressed() const { return m_texts.isEmpty(); }

private:
    QStringList m_texts;
    QTimer m_timer;
};

std::size_t CountLeftovers()
{
    return Recovery(StateFolder()).FindLeftovers().size();
}

TEST_F(FileCommandsTest, CrashLosesWhatWasTyped)
{
    {
        Window crashing;
        crashing.BeginWork({});
        crashing.Type("y=sinx");
        QTest::qWait(2500);
        EXPECT_EQ(CountLeftovers(), 0U) << "it still runs";
    } // it is gone without having been closed
    EXPECT_EQ(CountLeftovers(), 1U);
    {
        const Presser press({"Ask Later"});
        Window later;
        later.BeginWork({});
        EXPECT_EQ(later.PlainText(), "");
    }
    Window next;
    const Presser press({"Discard", "No"});
    next.BeginWork({});
    EXPECT_TRUE(press.AllPressed());
    EXPECT_EQ(CountLeftovers(), 1U) << "discarded by a slip";
    const Presser bring({"Bring Back"});
    next.BeginWork({});
    EXPECT_EQ(next.PlainText(), "y=sinx");
    EXPECT_TRUE(next.isWindowModified());
    EXPECT_EQ(CountLeftovers(), 0U) << "the new window has them now";
    {
        const Answerer answer(QMessageBox::Yes);
        next.close();
    }
    EXPECT_EQ(QDir(StateFolder()).entryList({"*.recovery"}).size(), 0) << "a normal end";
}

TEST_F(FileCommandsTest, LeftoverThatDoesNotFitIsThrownAway)
{
    const RichPage high(58, PlainToRich("y=x"));
    {
        Recovery crashed(StateFolder());
        crashed.Keep("", WriteEquationFile(std::vector(100, high), 58));
    }
    ASSERT_LT(m_window.Pages().LinesPerPage, 58);
    {
        const Presser press({"Bring Back", "OK"});
        m_window.Files().Begin({});
        EXPECT_TRUE(press.AllPressed());
    }
    EXPECT_EQ(m_window.Pages().LastPage, 99);
    EXPECT_EQ(CountLeftovers(), 1U);
    const Presser press({"Discard", "Yes"});
    Window next;
    next.BeginWork({});
    EXPECT_EQ(CountLeftovers(), 0U);
}

TEST_F(FileCommandsTest, DroppedFileIsTypedOrIgnored)
{
    Write("drop.rtf", QByteArray::fromStdString(WriteEquationFile({{PlainToRich("y=7")}}, 5)));
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(Path("drop.rtf"))});
    for (QWidget* target : {static_cast<QWidget*>(&m_window), m_window.Text().viewport()}) {
        QDragEnterEvent enter({9, 9}, Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &enter);
        EXPECT_TRUE(enter.isAccepted()) << "the window takes it, wherever it is dropped";
    }
    QDropEvent drop({9, 9}, Qt::CopyAction, &file, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&m_window, &drop);
    const Answerer answer(QMessageBox::Yes);
    QTest::qWait(100);
    EXPECT_EQ(m_window.PlainText(), "y=7");
    EXPECT_EQ(answer.Said, "Open: Opening new file ... Are you sure?\n");
}

TEST(ShownFileName, CutDependsOnTheFolder)
{
    EXPECT_EQ(ShownFileName("/home/a/b.rtf", "/home/a"), "b.rtf");
    EXPECT_EQ(ShownFileName("/data/x/b.rtf", "/home"), "x/b.rtf") << "cut by length alone";
    EXPECT_EQ(ShownFileName("/b.rtf", "/"), "b.rtf");
    EXPECT_EQ(ShownFileName("", "/home"), "");
}

TEST(RecentFiles, OrderOrLengthDiffers)
{
    const QTemporaryDir folder;
    const RecentFiles recent(folder.path());
    for (int i = 0; i < 12; ++i)
        recent.Add(QString("/a/%1.rtf").arg(i));
    recent.Add("/a/5.rtf");
    recent.Add("/a/line\nbreak.rtf");
    recent.Remove("/a/11.rtf");
    const QStringList list = RecentFiles(folder.path()).List();
    EXPECT_EQ(list.size(), 9);
    EXPECT_EQ(list.join(' '), "/a/5.rtf /a/10.rtf /a/9.rtf /a/8.rtf /a/7.rtf /a/6.rtf /a/4.rtf "
                              "/a/3.rtf /a/2.rtf");
    RecentFiles({}).Add("/a/1.rtf");
    EXPECT_TRUE(RecentFiles({}).List().isEmpty());
    recent.Clear();
    EXPECT_TRUE(recent.List().isEmpty());
}

} // namespace kelvane
