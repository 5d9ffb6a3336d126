#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <functional>
#include <tuple>

#include "engine/preparation.h"
#include "ui/calculation_setup.h"
#include "ui/help_viewer.h"
#include "ui/value_tables.h"

namespace kelvane {
namespace {

using enum CalcMode;
using enum TickState;

template <class Control>
Control& Get(const QWidget& window, const QString& name)
{
    return *window.findChild<Control*>(name);
}

void Click(const QWidget& window, const QString& name)
{
    auto& button = Get<QAbstractButton>(window, name);
    QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(10, button.height() / 2));
}

// Does something with the modal window that is about to open, once, and closes it if it is left
// open.
class Modal : public QObject {
public:
    explicit Modal(std::function<void(QWidget&)> act)
    {
        connect(&m_timer, &QTimer::timeout, this, [this, act = std::move(act)] {
            QWidget* window = QApplication::activeModalWidget();
            if (window == nullptr)
                return;
            m_timer.stop();
            ++Seen;
            EXPECT_TRUE(QTest::qWaitForWindowActive(window));
            act(*window);
            if (window->isVisible())
                window->close();
        });
        m_timer.start(5);
    }
    int Seen = 0;

private:
    QTimer m_timer;
};

// ---- calculation setup

// The controls as text, "S S -- 2": the modes, the ticks (0, 1 or -) and the chart.
std::string Shown(const QWidget& window)
{
    const auto mode = [&](const char* simple, const char* advanced) {
        const bool isSimple = Get<QRadioButton>(window, simple).isChecked();
        const bool isAdvanced = Get<QRadioButton>(window, advanced).isChecked();
        return isSimple == isAdvanced ? "?" : (isSimple ? "S" : "A");
    };
    const auto tick = [&](const char* name) {
        const auto& box = Get<QCheckBox>(window, name);
        const bool greyed = box.checkState() == Qt::PartiallyChecked;
        if (greyed == box.isEnabled())
            return "?";
        return greyed ? "-" : (box.isChecked() ? "1" : "0");
    };
    return std::string(mode("Option1", "Option2")) + mode("Option3", "Option4") + " " +
           tick("Check1") + tick("Check2") +
           (Get<QRadioButton>(window, "Option5").isChecked() ? " 2" : " 3");
}

std::string Stored(const CalculationModes& modes)
{
    const auto tick = [](TickState state) {
        return state == Unavailable ? "-" : (state == On ? "1" : "0");
    };
    return std::string(modes.CalcMode2D == Simple ? "S" : "A") +
           (modes.CalcMode3D == Simple ? "S " : "A ") + tick(modes.DoubleDraw) +
           tick(modes.MultiDraw);
}

std::string Bars(const QWidget& window)
{
    std::string bars;
    for (int i = 0; i < 4; ++i)
        bars += std::to_string(Get<QProgressBar>(window, QString("Shape1(%1)").arg(i)).value()) +
                (i < 3 ? "," : "");
    return bars;
}

TEST(CalculationSetup, ControlDoesNotDoWhatItSays)
{
    struct Step {
        const char* Control;
        const char* Shown;
        const char* Bars;
        const char* Description;
    };
    constexpr Step kSteps[] = {
        {"Option2", "AS 00 2", "90,75,50,75", "Advanced Mode: Kelvane uses"},
        {"Check1", "AS 10 2", "90,80,47,80", "Double Draw: To"},
        {"Check2", "AS 11 2", "90,100,27,100", "Multi Draw: To"},
        {"Option2", "AS 11 2", "90,100,27,100", "Advanced Mode: Kelvane uses"},
        {"Check1", "AS 01 2", "90,95,30,95", "Double Draw: To"},
        {"Option6", "AS 01 3", "100,75,100,20", "Double Draw: To"},
        {"Option4", "AA 01 3", "80,75,20,75", "Advanced Mode: This mode in 3D"},
        {"Option3", "AS 01 3", "100,75,100,20", "Simple Mode: This mode in 3D"},
        {"Option1", "SS -- 3", "100,75,100,20", "Simple Mode: This is"},
        {"Check2", "SS -- 3", "100,75,100,20", "Multi Draw: To"}, // greyed: explained all the same
        {"Option5", "SS -- 2", "100,75,100,20", "Multi Draw: To"},
        {"Option2", "AS 00 2", "90,75,50,75", "Advanced Mode: Kelvane uses"},
        {"Command3", "SS -- 2", "100,75,100,20", "Click On Each Mode"}};
    CalculationModes modes;
    CalculationSetup setup(modes, nullptr);
    const Modal modal([&](QWidget& window) {
        EXPECT_EQ(Shown(window), "SS -- 2");
        const QSize size = window.size();
        for (const Step& step : kSteps) {
            Click(window, step.Control);
            EXPECT_EQ(Shown(window), step.Shown) << step.Control;
            EXPECT_EQ(Bars(window), step.Bars) << step.Control;
            EXPECT_TRUE(Get<QLabel>(window, "Description").text().startsWith(step.Description))
                << step.Control;
        }
        QCoreApplication::processEvents();
        EXPECT_EQ(window.size(), size) << "a longer text moves everything";
        EXPECT_EQ(Stored(modes), "SS --") << "nothing counts before OK";
        Click(window, "Command1");
    });
    EXPECT_TRUE(setup.Ask());
    EXPECT_EQ(modal.Seen, 1);
}

TEST(CalculationSetup, ClosingTakesOrForgetsTheWrongChoices)
{
    const CalculationModes start{true, true, Advanced, Simple, On, Off};
    const auto escape = [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); };
    const auto enter = [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Return); };
    const std::tuple<const char*, std::function<void(QWidget&)>, bool> ways[] = {
        {"OK", [](QWidget& window) { Click(window, "Command1"); }, true},
        {"Enter", enter, true},
        {"Cancel", [](QWidget& window) { Click(window, "Command2"); }, false},
        {"Esc", escape, false},
        {"closing", [](QWidget& window) { window.close(); }, false}};
    for (const auto& [name, leave, takes] : ways) {
        CalculationModes modes = start;
        CalculationSetup setup(modes, nullptr);
        const Modal modal([&, &close = leave](QWidget& window) {
            EXPECT_EQ(Shown(window), "AS 10 2");
            for (const char* control : {"Check2", "Option4", "Option6"})
                Click(window, control);
            close(window);
        });
        EXPECT_EQ(setup.Ask(), takes) << name;
        EXPECT_FALSE(setup.isVisible()) << name;
        EXPECT_EQ(Stored(modes), takes ? "AA 11" : "AS 10") << name;
        EXPECT_EQ(Shown(setup), takes ? "AA 11 3" : "AS 10 2") << name;
        EXPECT_TRUE(modes.Mode3D && modes.AltFamily) << name;
        const Modal again([&, taken = takes](QWidget& window) {
            EXPECT_EQ(Shown(window), taken ? "AA 11 3" : "AS 10 2");
            Click(window, "Command3");
            Click(window, "Command2");
        });
        EXPECT_FALSE(setup.Ask()) << name;
        EXPECT_EQ(Stored(modes), takes ? "AA 11" : "AS 10") << "Default, then Cancel";
    }
}

TEST(CalculationSetup, KeyboardCannotChoose)
{
    CalculationModes modes;
    CalculationSetup setup(modes, nullptr);
    const Modal modal([&](QWidget& window) {
        const auto press = [](int key) {
            QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
        };
        press(Qt::Key_Down);
        EXPECT_EQ(Shown(window), "AS 00 2");
        EXPECT_TRUE(Get<QLabel>(window, "Description").text().startsWith("Advanced Mode: Kelvane"));
        press(Qt::Key_Tab);
        press(Qt::Key_Space);
        EXPECT_EQ(Shown(window), "AS 10 2");
        QTest::keyClick(&window, Qt::Key_M, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return Shown(window) == "AS 11 2"; }, 1000));
        press(Qt::Key_Return);
    });
    EXPECT_TRUE(setup.Ask());
    EXPECT_EQ(Stored(modes), "AS 11");
}

TEST(CalculationSetup, BarIsNotAsLongAsItsScore)
{
    CalculationModes modes{.CalcMode2D = Advanced, .DoubleDraw = On, .MultiDraw = On};
    CalculationSetup setup(modes, nullptr);
    setup.ensurePolished();
    setup.adjustSize();
    constexpr double kShares[] = {0.9, 1, 0.27, 1};
    const QRgb accent = setup.palette().color(QPalette::Active, QPalette::Highlight).rgb();
    for (int i = 0; i < 4; ++i) {
        const auto& bar = Get<QProgressBar>(setup, QString("Shape1(%1)").arg(i));
        const QImage image =
            const_cast<QProgressBar&>(bar).grab().toImage().convertToFormat(QImage::Format_RGB32);
        int length = 0;
        while (length < image.width() && image.pixel(length, image.height() / 2) == accent)
            ++length;
        EXPECT_NEAR(length, kShares[i] * image.width(), 1) << i;
        EXPECT_GT(image.width(), 150) << i;
    }
}

// ---- value tables

TableProvider Provide(const char* line, Dependent variable = Dependent::Y)
{
    return [line, variable] {
        SheetText sheet{.PagePlain = {line}, .LinesPerPage = 1};
        EquationTable table;
        PrepareEquations(table, sheet);
        return TableSource{table.At(1), {variable, Simple, {}}, line};
    };
}

// A column of boxes as text, "-2 -1 0 1 2"; boxes without value in brackets.
std::string Column(const QWidget& window, int column)
{
    QString all;
    for (int i = 0; i < 5; ++i) {
        const auto& box = Get<QLineEdit>(window, QString("Text%1(%2)").arg(column).arg(i));
        const bool missing = box.toolTip() == "no value here";
        EXPECT_EQ(box.isEnabled(), !missing);
        EXPECT_TRUE(box.isReadOnly());
        all += (missing ? "[" + box.text() + "]" : box.text()) + " ";
    }
    return all.trimmed().toStdString();
}

void TypeStep(QWidget& window, const QString& name, const QString& text)
{
    auto& step = Get<QLineEdit>(window, name);
    step.setFocus();
    step.selectAll();
    QTest::keyClicks(&step, text);
}

TEST(ValueTableWindow, RowsDoNotFollowPagesOrStep)
{
    ValueTable table(Provide("y=x^(2)+p-p"), nullptr);
    ASSERT_TRUE(table.Open() && QTest::qWaitForWindowActive(&table));
    EXPECT_EQ(Column(table, 1), "-2 -1 0 1 2");
    EXPECT_EQ(Column(table, 2), "4 1 0 1 4");
    EXPECT_EQ(Get<QLabel>(table, "EquationText").text(), "y=x<sup>2</sup>+\u03c0-\u03c0");
    Click(table, "Command5");
    EXPECT_EQ(Column(table, 1), "3 4 5 6 7");
    EXPECT_EQ(Column(table, 2), "9 16 25 36 49");
    QTest::keyClick(&table, Qt::Key_PageUp);
    QTest::keyClick(&table, Qt::Key_PageUp);
    EXPECT_EQ(Column(table, 1), "-7 -6 -5 -4 -3");
    QTest::keyClick(&table, Qt::Key_PageDown);
    TypeStep(table, "Text3", "0.5");
    EXPECT_EQ(Column(table, 1), "-1 -0.5 0 0.5 1");
    Click(table, "Command6");
    EXPECT_EQ(Column(table, 1), "-3.5 -3 -2.5 -2 -1.5");
    TypeStep(table, "Text3", "0");
    EXPECT_EQ(Column(table, 2), "6.25 6.25 6.25 6.25 6.25");
    QTest::keyClick(&table, Qt::Key_Return);
    EXPECT_TRUE(table.isVisible()) << "Enter in the step presses a button";
    Click(table, "Command1");
    EXPECT_FALSE(table.isVisible());
    ASSERT_TRUE(table.Open() && QTest::qWaitForWindowActive(&table));
    EXPECT_EQ(Column(table, 1), "-2 -1 0 1 2") << "opened again: from the start";
    EXPECT_EQ(Get<QLineEdit>(table, "Text3").text(), "1");
}

TEST(ValueTableWindow, OverflowingStepIsTakenOrNotReported)
{
    ValueTable table(Provide("y=x"), nullptr);
    ASSERT_TRUE(table.Open() && QTest::qWaitForWindowActive(&table));
    auto& step = Get<QLineEdit>(table, "Text3");
    QString said;
    Modal message([&](QWidget& window) {
        auto* box = qobject_cast<QMessageBox*>(&window);
        ASSERT_NE(box, nullptr);
        said = box->text();
        EXPECT_EQ(box->standardButtons(), QMessageBox::Ok);
    });
    TypeStep(table, "Text3", "2e38");
    EXPECT_EQ(said, "Invalid step sequence!");
    EXPECT_EQ(Column(table, 1), "-4000 -2000 0 2000 4000") << "as after 2e3";
    EXPECT_EQ(step.accessibleDescription(), said) << "not marked";
    EXPECT_EQ(table.focusWidget(), &step);
    Click(table, "Command5");
    EXPECT_EQ(Column(table, 1), "6000 8000 10000 12000 14000");
    TypeStep(table, "Text3", "2");
    EXPECT_EQ(step.accessibleDescription(), "");
    EXPECT_EQ(Column(table, 1), "9996 9998 10000 10002 10004");
}

TEST(ValueTableWindow, RowWithoutValueLooksLikeOneWithAValue)
{
    ValueTable table(Provide("y=1/x"), nullptr);
    ASSERT_TRUE(table.Open() && QTest::qWaitForWindowActive(&table));
    EXPECT_EQ(Column(table, 2), "-0.5 -1 [-1] 1 0.5");
    Click(table, "Command5");
    EXPECT_EQ(Column(table, 2).find('['), std::string::npos);
}

TEST(ValueTableWindow, PagesMoveAlongTheOtherVariable)
{
    ValueTable3D table(Provide("z=x+10y", Dependent::Z), nullptr);
    ASSERT_TRUE(table.Open() && QTest::qWaitForWindowActive(&table));
    EXPECT_EQ(Column(table, 3), "-22 -11 0 11 22");
    Click(table, "Command5");
    EXPECT_EQ(Column(table, 1), "3 4 5 6 7");
    EXPECT_EQ(Column(table, 2), "-2 -1 0 1 2");
    Click(table, "Option2");
    Click(table, "Command6");
    EXPECT_EQ(Column(table, 1), "3 4 5 6 7");
    EXPECT_EQ(Column(table, 2), "-7 -6 -5 -4 -3");
    EXPECT_EQ(Column(table, 3), "-67 -56 -45 -34 -23");
    TypeStep(table, "StepText", "0,5");
    EXPECT_EQ(Column(table, 1), "4 4.5 5 5.5 6");
    EXPECT_EQ(Column(table, 2), "-6 -5.5 -5 -4.5 -4");
}

TEST(ValueTableWindow, TableOpensWithoutEquation)
{
    ValueTable table([] { return std::nullopt; }, nullptr);
    EXPECT_FALSE(table.Open());
    EXPECT_FALSE(table.isVisible());
}

TEST(ValueTableWindow, CopyTakesTooMuchOrTooLittle)
{
    ValueTable table(Provide("y=1/x"), nullptr);
    ASSERT_TRUE(table.Open() && QTest::qWaitForWindowActive(&table));
    const QString whole = "x\ty\n-2\t-0.5\n-1\t-1\n0\t\n1\t1\n2\t0.5\n";
    QClipboard& clipboard = *QGuiApplication::clipboard();
    Click(table, "CopyTable");
    EXPECT_EQ(clipboard.text(), whole);
    auto& box = Get<QLineEdit>(table, "Text1(0)");
    for (const bool selected : {true, false}) {
        clipboard.setText("old");
        box.setFocus();
        box.setSelection(0, selected ? 1 : 0);
        QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(clipboard.text(), selected ? "-" : whole);
    }
}

TEST(ValueTableWindow, CsvFileIsWrongOrItsFailureSilent)
{
    ValueTable3D table(Provide("z=y/x", Dependent::Z), nullptr);
    ASSERT_TRUE(table.Open() && QTest::qWaitForWindowActive(&table));
    const QTemporaryDir folder;
    const QString path = folder.filePath("values.csv");
    for (int i = 0; i < 2; ++i) // the second in the place of the first
        EXPECT_TRUE(table.writeCsv(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "x,y,z\n-2,-2,1\n-1,-1,1\n0,0,\n1,1,1\n2,2,1\n");
    for (const QString& bad : {folder.filePath("missing/values.csv"), folder.path()}) {
        const Modal message([&](QWidget& window) {
            auto* box = qobject_cast<QMessageBox*>(&window);
            EXPECT_TRUE(box != nullptr && box->text().contains(bad));
        });
        EXPECT_FALSE(table.writeCsv(bad));
        EXPECT_EQ(message.Seen, 1) << bad.toStdString();
    }
}

// ---- help

TEST(Help, TopicOpensAnotherPageOrASecondWindow)
{
    QWidget parent;
    const std::tuple<const char*, const char*> topics[] = {{"Calculation Setup", "Double Draw"},
                                                           {"slope mode", "Hatched places"},
                                                           {"Value Table", "Step and pages"},
                                                           {"No Such Topic", "Kelvane Help"}};
    HelpViewer* first = nullptr;
    for (const auto& [topic, words] : topics) {
        ShowHelp(&parent, topic);
        const auto viewers = parent.findChildren<HelpViewer*>();
        ASSERT_EQ(viewers.size(), 1);
        EXPECT_TRUE(first == nullptr || first == viewers[0]);
        first = viewers[0];
        EXPECT_TRUE(first->isVisible());
        EXPECT_TRUE(Get<QTextBrowser>(*first, "HelpPage").toPlainText().contains(words)) << topic;
    }
    ASSERT_TRUE(QTest::qWaitForWindowActive(first));
    QTest::keyClick(first, Qt::Key_Left, Qt::AltModifier);
    const auto& page = Get<QTextBrowser>(*first, "HelpPage");
    EXPECT_TRUE(
        QTest::qWaitFor([&page] { return page.toPlainText().startsWith("Value Table"); }, 1000));
}

TEST(Help, LinkLeadsNowhere)
{
    HelpViewer viewer(nullptr);
    auto& page = Get<QTextBrowser>(viewer, "HelpPage");
    int followed = 0;
    for (const char* topic : {"", "Calculation Setup", "Slope Mode", "Value Table"}) {
        viewer.Open(topic);
        const QString text = page.toHtml();
        for (qsizetype at = text.indexOf("href=\""); at >= 0;
             at = text.indexOf("href=\"", at + 1)) {
            const QString link = text.mid(at + 6, text.indexOf('"', at + 6) - at - 6);
            page.setSource(page.source().resolved(QUrl(link)));
            EXPECT_GT(page.toPlainText().size(), 100) << link.toStdString();
            page.backward();
            ++followed;
        }
    }
    EXPECT_GE(followed, 6);
}

TEST(Help, ModalDialogBlocksItsHelp)
{
    CalculationModes modes;
    CalculationSetup setup(modes, nullptr);
    const Modal modal([&](QWidget& window) {
        Click(window, "Command4");
        auto* viewer = window.findChild<HelpViewer*>();
        ASSERT_NE(viewer, nullptr);
        EXPECT_TRUE(
            Get<QTextBrowser>(*viewer, "HelpPage").toPlainText().startsWith("Calculation Setup"));
        Click(*viewer, "HelpContents");
        EXPECT_TRUE(
            Get<QTextBrowser>(*viewer, "HelpPage").toPlainText().startsWith("Kelvane Help"));
        viewer->close();
    });
    EXPECT_FALSE(setup.Ask());
}

} // namespace
} // namespace kelvane
