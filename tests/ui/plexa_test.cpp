#include "ui/plexa.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <cmath>
#include <functional>
#include <iostream>
#include <random>

#include "doc/rich_page.h"
#include "ui/draw_box.h"
#include "ui/editor_region.h"
#include "ui/equ_panel.h"
#include "ui/formula_editor.h"
#include "ui/functions_list.h"
#include "ui/graph_region.h"
#include "ui/graph_sheet.h"
#include "ui/settings_region.h"
#include "ui/view_dialogs.h"
#include "window.h"

namespace kelvane {
namespace {

constexpr QRgb kFirstCurve = 0xff0000ff;

TEST(Plexa, ControlIsMissingOrSaysSomethingElse)
{
    struct Row {
        const char* Name;
        const char* Text;
        const char* ToolTip;
    };
    constexpr Row kRows[] = {{"TopKey(0)", "Draw", "Ctrl + ENTER"},
                             {"TopKey(1)", "ZoomIn (+)", "Ctrl + '+'"},
                             {"TopKey(2)", "ZoomOut (-)", "Ctrl + '-'"},
                             {"TopKey(3)", "WinZoom", ""},
                             {"TopKey(4)", "Clear", "Ctrl + DEL or Ctrl + C"},
                             {"TopKey(5)", "Center", "Ctrl + X"},
                             {"NewEqu", "New Equation ...", ""},
                             {"Command2", "Unselect All", ""},
                             {"ShortKeys", "Short Keys ...", ""},
                             {"Command1", "Tutorial", "Not in this version"},
                             {"File(3)", "Save As", "Save As..."},
                             {"DrawChk", "SlopeMod", "Slope Mode"},
                             {"Draw(5)", "FullScreen", "Full Screen"},
                             {"Setup(0)", "Complexity", "Calculations"},
                             {"OptionChk(1)", "Slope", "Trace"},
                             {"Options(6)", "Find Val", "Search Value"}};
    Window window;
    for (const Row& row : kRows) {
        auto* button = &window.Get<QAbstractButton>(row.Name);
        EXPECT_EQ(button->text(), row.Text) << row.Name;
        EXPECT_EQ(button->toolTip(), row.ToolTip) << row.Name;
    }
    EXPECT_FALSE(window.Get<QAbstractButton>("OptionChk(0)").isEnabled()) << "it would do nothing";
    for (const char* const name : {"Text1", "VScroll1", "Pager", "Label1", "Text2", "DrawBox",
                                   "Answer", "Slider1(1)", "Info(4)", "SpeedShape(2)", "NoteText",
                                   "Shape4(30)", "Digital", "MenuBar(3)", "Check1(57)", "ZoomBox"})
        EXPECT_NE(window.findChild<QWidget*>(name), nullptr) << name;
    for (const char* const timer :
         {"Timer2", "Timer5", "Timer6", "Timer11", "Timer13", "Timer14", "Timer15", "Timer18"})
        EXPECT_NE(window.findChild<QTimer*>(timer), nullptr) << timer;
    EXPECT_EQ(SettingsRegion().findChild<QLabel*>("Info(1)")->text(), "Zoom Factor:            1X");
    window.Click("TopKey(2)");
    EXPECT_EQ(window.Get<QLabel>("Info(1)").text(), "Zoom Factor:            1.41421X");
    EXPECT_EQ(window.Get<QLabel>("Info(1)").accessibleName(), "Zoom Factor: 1.41421X");
    for (QWidget* control : window.findChildren<QAbstractButton*>())
        EXPECT_FALSE(control->accessibleName().isEmpty() &&
                     qobject_cast<QAbstractButton*>(control)->text().isEmpty())
            << control->objectName().toStdString();
}

TEST(Plexa, FirstPageIsNotDrawnOrRedrawn)
{
    Window window;
    window.Type("y=x-x^2\n+2sx");
    EXPECT_EQ(window.PlainText(), "y=x-x^(2)+2sinx");
    window.Click("Check1(0)");
    QTest::keyClick(&window.Text(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(window.ShowsColor(kFirstCurve));
    EXPECT_TRUE(window.Area().accessibleDescription().contains("Equations drawn: 1."));
    // What is typed afterwards waits for Draw; a zoom shows what was drawn.
    window.Type("\ny=(");
    window.Click("Check1(1)");
    QTest::keyClick(&window.Text(), Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
    EXPECT_FLOAT_EQ(window.State().View.ZoomFactor, static_cast<float>(std::sqrt(0.5)));
    EXPECT_TRUE(window.ShowsColor(kFirstCurve));
    Answerer answerer(QMessageBox::Ok);
    window.Click("TopKey(0)");
    EXPECT_EQ(answerer.Said, "Error: Error in Equation 2: missing right parenthesis ')'\n");
    // What was drawn before the fault is redrawn, and the fault is not told again.
    window.Text().SetPage({{{"y=x", false}}, {{"x=1", false}}});
    window.Click("TopKey(0)");
    answerer.Said.clear();
    window.Click("TopKey(2)");
    EXPECT_TRUE(window.ShowsColor(kFirstCurve));
    EXPECT_EQ(answerer.Said, "");
    window.Click("TopKey(4)");
    EXPECT_FALSE(window.ShowsColor(kFirstCurve));
    window.Click("Command2");
    window.Click("TopKey(0)");
    EXPECT_TRUE(answerer.Said.endsWith(":     No equation is selected!\n"));
}

TEST(Plexa, PageOrItsTicksAreLost)
{
    Window window;
    const int lines = window.Pages().LinesPerPage;
    window.Type("y=x" + QString(lines, '\n'));
    EXPECT_EQ(window.Get<QLabel>("Pager").text(), "2/2");
    window.Type("y=2");
    window.Click("Check1(0)");
    EXPECT_TRUE(window.State().Ticks.On(lines + 2));
    window.Get<QScrollBar>("VScroll1").setValue(0);
    EXPECT_EQ(window.PlainText(), "y=x");
    EXPECT_FALSE(window.Get<QCheckBox>("Check1(0)").isChecked());
    window.Click("Check1(0)");
    window.Click("TopKey(0)");
    EXPECT_EQ(window.State().Stats.Samples, 2 * 2001) << "both pages are drawn";
    window.Click("Command2");
    EXPECT_FALSE(window.State().Ticks.On(1) || window.State().Ticks.On(lines + 2));
    QTest::keyClick(&window.Text(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(window.PlainText(), "y=2");
    EXPECT_EQ(window.Get<QLabel>("Pager").text(), "2/2");
}

// One notch away from the user.
void Turn(QWidget& area, QPoint at)
{
    QWheelEvent wheel(at, area.mapToGlobal(at), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&area, &wheel);
}

TEST(Plexa, LongDrawIsNotStoppedOrLosesWhatIsTyped)
{
    Window window;
    window.Type("y=sin(x)\ny=x");
    window.Click("Check1(0)");
    window.Click("Check1(1)");
    window.State().View.Step2D = 1e-6F; // 2^24 samples an equation
    QString keyDuring;
    QTimer::singleShot(40, &window, [&] {
        keyDuring = window.Get<QPushButton>("TopKey(0)").text();
        window.Click("TopKey(1)"); // another draw must not start within this one
        QTest::keyClick(&window.Text(), Qt::Key_Minus, Qt::ControlModifier);
        window.Get<QSlider>("Slider1(0)").setValue(2);
        QTest::mousePress(&window.Area(), Qt::MiddleButton, {}, {50, 50});
        QTest::mouseMove(&window.Area(), {90, 90});
        QTest::qWait(40);
        EXPECT_EQ(window.State().View.ZoomFactor, 1) << "the view changes under a draw";
        EXPECT_EQ(window.State().View.CenterX, 0);
        window.Text().setFocus();
        QTest::keyClick(&window.Text(), '1');
        QWidget other;
        other.show();
        other.close(); // stops nothing
        EXPECT_FALSE(other.isVisible());
        QTest::mouseClick(&window.Get<QCheckBox>("Check1(1)"), Qt::LeftButton);
        QTest::keyClick(&window.Text(), Qt::Key_Escape);
    });
    window.Click("TopKey(0)");
    EXPECT_EQ(keyDuring, "Stop");
    EXPECT_EQ(window.Get<QPushButton>("TopKey(0)").text(), "Draw");
    EXPECT_GT(window.State().Stats.Samples, 1000);
    EXPECT_LT(window.State().Stats.Samples, 1 << 25);
    EXPECT_EQ(window.Get<QLabel>("Unresolved").text(), "stopped");
    EXPECT_TRUE(window.Get<QCheckBox>("Check1(1)").isChecked());
    QTimer::singleShot(40, &window, [&] { QTest::keyClick(&window.Text(), Qt::Key_Escape); });
    QTest::qWait(60); // the slider's draw begins, and is stopped
    EXPECT_NEAR(window.State().View.ZoomFactor, 0.25, 1e-6);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.PlainText(), "y=sin(x)\ry=x1");

    QTimer::singleShot(40, &window, [&] { window.Get<QPushButton>("TopKey(0)").click(); });
    window.Click("TopKey(0)");
    EXPECT_LT(window.State().Stats.Samples, 1 << 25) << "the Stop key";

    // Turns of the wheel add up for afterwards.
    window.State().View.Step2D = 0.01F;
    window.Get<QSlider>("Slider1(0)").setValue(0);
    QTest::qWait(30);
    window.State().View.Step2D = 1e-5F;
    const QPoint middle = window.Area().rect().center();
    QTimer::singleShot(0, &window, [&] {
        for (int i = 0; i < 2; ++i)
            Turn(window.Area(), middle);
        EXPECT_TRUE(window.Sheet().IsDrawing());
    });
    window.Click("TopKey(0)");
    EXPECT_EQ(window.State().View.ZoomFactor, 1);
    window.State().View.Step2D = 0.01F;
    QCoreApplication::processEvents();
    EXPECT_NEAR(window.State().View.ZoomFactor, 0.5, 1e-6);
}

TEST(Plexa, WindowClosesAgainstTheAnswer)
{
    Window window;
    for (const auto& [button, stays] :
         {std::pair(QMessageBox::No, true), std::pair(QMessageBox::Yes, false)}) {
        Answerer answerer(button);
        window.close();
        EXPECT_EQ(window.isVisible(), stays);
        EXPECT_EQ(answerer.Said, "Exit: Exiting Kelvane II ... Are you sure?\n");
    }
}

WorldPoint WorldAt(Window& window, QPoint at)
{
    return PixelToWorld(window.State().View, {at.x() - 0.5, at.y() - 0.5});
}

TEST(Plexa, MouseMovesAnotherPointThanItsOwn)
{
    Window window;
    DrawBox& area = window.Area();
    const QPoint at(150, 100);
    const WorldPoint world = WorldAt(window, at);
    Turn(area, at);
    // The centre is rounded afterwards: to the nearest of steps of some pixels.
    const auto few = [&window] {
        return 5.0 / static_cast<double>(window.State().View.PixPerStep);
    };
    EXPECT_NEAR(WorldAt(window, at).X, world.X, few());
    EXPECT_LT(window.State().View.ZoomFactor, 0.8F);

    QTest::mousePress(&area, Qt::MiddleButton, {}, at);
    QTest::mouseMove(&area, at + QPoint(30, 40));
    QTest::mouseRelease(&area, Qt::MiddleButton, {}, at + QPoint(30, 40));
    EXPECT_NEAR(WorldAt(window, at + QPoint(30, 40)).Y, world.Y, 2 * few());

    QTest::keyPress(&window.Text(), Qt::Key_Space);
    const WorldPoint dragged = WorldAt(window, at);
    QTest::mousePress(&area, Qt::LeftButton, {}, at);
    QTest::mouseMove(&area, at - QPoint(30, 40));
    QTest::mouseRelease(&area, Qt::LeftButton, {}, at - QPoint(30, 40));
    QTest::keyRelease(&window.Text(), Qt::Key_Space);
    EXPECT_NEAR(WorldAt(window, at - QPoint(30, 40)).X, dragged.X, 2 * few());

    const WorldPoint corner = WorldAt(window, {100, 100});
    const WorldPoint opposite = WorldAt(window, {200, 180});
    QTest::mousePress(&area, Qt::LeftButton, {}, {100, 100});
    QTest::mouseMove(&area, {200, 180});
    QTest::mouseRelease(&area, Qt::LeftButton, {}, {200, 180});
    ASSERT_TRUE(window.Get<QWidget>("ZoomBox").isVisible());
    window.Click("TopKey(3)");
    EXPECT_NEAR(window.State().View.CenterX, (corner.X + opposite.X) / 2, few());
    EXPECT_FALSE(window.Get<QWidget>("ZoomBox").isVisible());

    QTest::keyClick(&window.Text(), Qt::Key_X, Qt::ControlModifier);
    const WorldPoint picked = WorldAt(window, {50, 60});
    QTest::mouseClick(&area, Qt::LeftButton, {}, {50, 60});
    EXPECT_NEAR(window.State().View.CenterX, picked.X, few());
    EXPECT_NEAR(window.State().View.CenterY, -picked.Y, few());
    QTest::mouseMove(&area, {0, 0});
    QTest::mouseMove(&area, {50, 60});
    EXPECT_NE(window.Get<QLabel>("Answer").text(), "(0,0)");

    window.Click("TopKey(5)");
    EXPECT_TRUE(area.IsPicking());
    QTest::keyClick(&window.Get<QPushButton>("TopKey(5)"), Qt::Key_Escape);
    EXPECT_FALSE(area.IsPicking());

    window.Get<QSlider>("Slider1(0)").setValue(3);
    window.Get<QSlider>("Slider1(1)").setValue(0);
    QTest::qWait(60);
    EXPECT_NEAR(window.State().View.ZoomFactor, 0.125, 1e-3);
}

TEST(Plexa, DragOrTurnWaitsForALongRedrawOrIsLost)
{
    Window window;
    window.Type("y=sin(x)");
    window.Click("Check1(0)");
    window.Click("TopKey(0)");
    DrawBox& area = window.Area();
    const QPoint at(150, 100);
    const QPoint to = at + QPoint(60, 80);
    const WorldPoint world = WorldAt(window, at);
    std::vector<std::int64_t> samples; // of the draws
    QObject::connect(&window.Sheet(), &GraphSheet::drawn,
                     [&] { samples.push_back(window.State().Stats.Samples); });
    const auto during = [&](const std::function<void()>& input) {
        samples.clear();
        window.State().View.Step2D = 1e-6F; // 2^24 samples
        QTimer::singleShot(20, &window, [&window, input] {
            EXPECT_TRUE(window.Sheet().IsDrawing());
            input();
            window.State().View.Step2D = 0.01F;
        });
    };
    during([&] {
        QTest::mouseMove(&area, at + QPoint(20, 20));
        QTest::mouseMove(&area, to);
        QTest::mouseRelease(&area, Qt::MiddleButton, {}, to);
    });
    QTest::mousePress(&area, Qt::MiddleButton, {}, at);
    QTest::mouseMove(&area, at + QPoint(5, 5)); // and the draw
    QTest::qWait(50);
    const double few = 5.0 / static_cast<double>(window.State().View.PixPerStep);
    EXPECT_NEAR(WorldAt(window, to).X, world.X, 2 * few);
    EXPECT_NEAR(WorldAt(window, to).Y, world.Y, 2 * few);
    ASSERT_GE(samples.size(), 2U);
    EXPECT_LT(samples.front(), 1 << 24) << "the redraw is finished first";
    EXPECT_EQ(samples.back(), 2001) << "the last redraw is whole";
    EXPECT_FALSE(area.IsMovingGraph());

    const float zoom = window.State().View.ZoomFactor;
    during([&] { Turn(area, at); });
    Turn(area, at);
    QTest::qWait(50);
    EXPECT_NEAR(window.State().View.ZoomFactor, zoom / 2, 1e-6);
    EXPECT_LT(samples.front(), 1 << 24);
    EXPECT_EQ(samples.back(), 2001);
}

// Fills the fields of the next dialog and presses OK; messages are closed, then Cancel.
void FillDialog(const QStringList& values, QString& said)
{
    QTimer::singleShot(20, qApp, [values, &said] {
        QWidget* dialog = QApplication::activeModalWidget();
        for (int i = 0; i < values.size(); ++i)
            dialog->findChild<QLineEdit*>(QString("Text1(%1)").arg(i))->setText(values[i]);
        Answerer answerer(QMessageBox::Ok);
        QTest::keyClick(dialog, Qt::Key_Return);
        said = answerer.Said;
        if (dialog->isVisible())
            QTest::keyClick(dialog, Qt::Key_Escape);
    });
}

TEST(Plexa, DialogTakesBadNumbersOrRefusesGoodOnes)
{
    struct Row {
        const char* Button;
        QStringList Values;
        bool Good;
    };
    const Row rows[] = {{"Setup(2)", {"0", "5", "-1", "1"}, true},
                        {"Setup(2)", {"0", "0,01", "", ""}, true},
                        {"Setup(2)", {"5", "0", "", ""}, false},
                        {"Setup(2)", {"0", "5", "1", ""}, false},
                        {"Setup(2)", {"0", "5", "2", "1"}, false},
                        {"Setup(2)", {"", "5", "", ""}, false},
                        {"Setup(2)", {"0", "1e999", "", ""}, false},
                        {"Setup(2)", {"1e30", "1.00000001e30", "", ""}, false},
                        {"Setup(3)", {"4"}, true},
                        {"Setup(3)", {"0"}, false},
                        {"Setup(3)", {"-1"}, false},
                        {"Setup(3)", {"nan"}, false},
                        {"Setup(3)", {"abc"}, false}};
    for (const Row& row : rows) {
        Window window;
        const ViewState before = window.State().View;
        QString said;
        FillDialog(row.Values, said);
        window.Click(row.Button);
        const ViewState& after = window.State().View;
        const bool same = after.XMin == before.XMin && after.XMax == before.XMax &&
                          after.YMin == before.YMin && after.ZoomFactor == before.ZoomFactor &&
                          after.UnitPixels == before.UnitPixels;
        EXPECT_EQ(said.isEmpty(), row.Good) << row.Values.join(';').toStdString();
        EXPECT_EQ(same, !row.Good) << row.Values.join(';').toStdString();
    }
    Window window;
    SetCenter(window.State().View, {3, 1});
    SetZoom(window.State().View, 0.5);
    QString said;
    FillDialog({"0", "10", "0", "5"}, said);
    window.Click("Setup(2)");
    EXPECT_NEAR(WorldAt(window, {0, 0}).X, 0, 0.05);
    EXPECT_NEAR(WorldAt(window, {0, 0}).Y, 5, 0.05);
}

TEST(Plexa, ModesOrTablesDoNotReachTheGraph)
{
    Window window;
    window.Type("x=y");
    window.Click("Check1(0)");
    QString said;
    {
        const Answerer answer(QMessageBox::Ok);
        window.Click("TopKey(0)");
        window.Click("Options(5)"); // no table of what is refused
        said = answer.Said;
    }
    EXPECT_EQ(said.count("Advaced 2D"), 2) << said.toStdString();
    EXPECT_FALSE(window.ShowsColor(kFirstCurve));
    QTimer choose;
    QObject::connect(&choose, &QTimer::timeout, [&] {
        choose.stop();
        window.Get<QDialog>("CalculationSetup").findChild<QAbstractButton*>("Option2")->click();
        window.Get<QDialog>("CalculationSetup").findChild<QPushButton*>("Command1")->click();
    });
    choose.start(20);
    window.Click("Setup(0)");
    EXPECT_EQ(window.State().Modes.CalcMode2D, CalcMode::Advanced);
    window.Click("TopKey(0)");
    EXPECT_TRUE(window.ShowsColor(kFirstCurve));
    window.Click("Options(5)");
    auto& table = window.Get<QDialog>("ValueTable");
    EXPECT_TRUE(table.isVisible());
    EXPECT_NEAR(table.findChild<QLineEdit*>("Text2(3)")->text().toDouble(), 1, 0.0025) << "x is 1";
    EXPECT_TRUE(window.State().Table.Equations.empty());
}

TEST(Plexa, KeypadTypesSomethingElseThanTheKeyboard)
{
    Window window;
    window.Click("NewEqu");
    auto& keypad = window.Get<EquPanel>("EquPanel");
    const auto press = [&](const char* name) { keypad.findChild<QPushButton*>(name)->click(); };
    for (const char* const name :
         {"Variables(1)", "Equal", "Functions(1)", "Pranthesis(0)", "Variables(0)", "Pranthesis(1)",
          "Operators(0)", "Numbers(2)", "Constants(0)", "Variables(0)", "Power", "Numbers(3)"})
        press(name);
    EXPECT_EQ(keypad.findChild<QPushButton*>("Power")->text(), ")");
    press("Power");
    EXPECT_EQ(keypad.findChild<QPushButton*>("Power")->text(), "^");
    press("Operators(3)");
    press("Numbers(4)");
    press("Dot");
    press("BackSpace");
    EXPECT_EQ(window.PlainText(), "y=asin(x)+2px^(3)/4");
    press("Power"); // and its end by the keyboard
    press("Numbers(5)");
    QTest::keyClick(&window.Text(), Qt::Key_Return);
    EXPECT_EQ(keypad.findChild<QPushButton*>("Power")->text(), "^");
    EXPECT_EQ(keypad.ScreenText(), "y=as(x)+2px^(3)/4^(5)");
    EXPECT_TRUE(window.Text().hasFocus());
    keypad.close();
    EXPECT_FALSE(keypad.IsOpen());
    window.Click("ShortKeys");
    EXPECT_TRUE(window.Get<FunctionsList>("FunctionsList").isVisible());
}

TEST(Plexa, RandomInputSpoilsTheDocument)
{
    constexpr unsigned kSeed = 20261121;
    std::cout << "seed " << kSeed << '\n';
    std::mt19937 random(kSeed);
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    Window window;
    Answerer answerer(QMessageBox::Ok);
    QTimer closer; // of the axis centre dialog
    QObject::connect(&closer, &QTimer::timeout, [] {
        if (auto* dialog = qobject_cast<NumberDialog*>(QApplication::activeModalWidget()))
            dialog->reject();
    });
    closer.start(5);
    const QString typed = "xyzsctlabpe^^()+-*/=.0123456789\n\n";
    constexpr Qt::Key kKeys[] = {Qt::Key_Left,      Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                                 Qt::Key_Backspace, Qt::Key_Home,  Qt::Key_Delete, Qt::Key_End,
                                 Qt::Key_Insert,    Qt::Key_C,     Qt::Key_X,      Qt::Key_Z,
                                 Qt::Key_Escape,    Qt::Key_Plus,  Qt::Key_Minus};
    constexpr Qt::KeyboardModifiers kModifiers[] = {Qt::NoModifier, Qt::NoModifier,
                                                    Qt::ShiftModifier, Qt::ControlModifier,
                                                    Qt::ControlModifier | Qt::ShiftModifier};
    const char* const pasted[] = {"y=x", "1\n2", "a\r\nb\r\nc", "", "\t \n", "x^2+\u03c0"};
    const auto click = [&](QWidget& target, Qt::MouseButton button) {
        const QPoint at(static_cast<int>(below(400)), static_cast<int>(below(300)));
        QTest::mouseClick(&target, button, kModifiers[below(2)], at);
    };
    for (int i = 0; i < 10'000; ++i) {
        switch (below(16)) {
        case 0:
            window.Get<QCheckBox>(QString("Check1(%1)").arg(below(12))).click();
            break;
        case 1:
            QGuiApplication::clipboard()->setText(pasted[below(std::size(pasted))]);
            break;
        case 2:
            click(*window.Text().viewport(), Qt::LeftButton);
            break;
        case 3:
            click(window.Area(), below(2) == 0 ? Qt::LeftButton : Qt::MiddleButton);
            break;
        case 4:
            window.Get<QScrollBar>("VScroll1").setValue(static_cast<int>(below(4)));
            break;
        case 5:
        case 6:
        case 7:
            QTest::keyClick(&window.Text(), kKeys[below(std::size(kKeys))],
                            kModifiers[below(std::size(kModifiers))]);
            break;
        default:
            window.Type(
                typed.mid(static_cast<int>(below(static_cast<std::size_t>(typed.size()))), 1));
        }
        const int lines = window.Pages().LinesPerPage;
        ASSERT_EQ(window.Text().document()->blockCount(), lines) << "event " << i;
        ASSERT_LE(window.Pages().CurrentPage, window.Pages().LastPage);
        if (i % 100 == 0) {
            for (int line = 0; line < lines; ++line)
                ASSERT_EQ(window.Get<QCheckBox>(QString("Check1(%1)").arg(line)).isChecked(),
                          window.State().Ticks.On(
                              EquationSlot(window.Pages(), window.Pages().CurrentPage, line)))
                    << "event " << i;
        }
    }
    EXPECT_GT(window.Pages().LastPage, 0) << "no page was ever filled";
}

} // namespace
} // namespace kelvane
