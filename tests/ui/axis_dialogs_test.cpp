#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include "message_reader.h"
#include "ui/axis3d_setup_dialog.h"
#include "ui/axis_setup_dialog.h"

namespace kelvane {
namespace {

// A dialog that is open, and what a user's hands and eyes need.
template <class Dialog>
class Opened : public Dialog {
public:
    using Dialog::Dialog;

    void Open()
    {
        Dialog::ShowAccepted();
        Dialog::show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(this));
    }
    template <class Control>
    Control& Get(const QString& name)
    {
        return *Dialog::template findChild<Control*>(name);
    }
    QLineEdit& Edit(const QString& name) { return Get<QLineEdit>(name); }
    QSlider& Slider(int i) { return Get<QSlider>(QString("Slider1(%1)").arg(i)); }
    QString Value(int i) { return Get<QLabel>(QString("Label3(%1)").arg(i)).text(); }
    void Click(const QString& name) { Get<QAbstractButton>(name).click(); }
    QImage Picture(const QString& name) { return Get<QWidget>(name).grab().toImage(); }
};

class AxisSetupUse : public testing::Test {
protected:
    AxisSetupUse()
    {
        Dialog.SetDrawArea(299, {900, 600});
        Dialog.Open();
    }

    // Every control somewhere else.
    void ChangeAll()
    {
        for (const int i : {6, 7, 8})
            Dialog.Slider(i).setValue(i);
        Dialog.Slider(3).setValue(123);
        Dialog.Slider(9).setValue(17);
        Dialog.Get<QCheckBox>("Check1").toggle();
        Dialog.Get<QCheckBox>("Check2").toggle();
        for (const char* name : {"Text1(0)", "Text1(1)", "Text1(2)"})
            Dialog.Edit(name).setText("1.5");
    }
    QString Shown()
    {
        QStringList shown;
        for (int i = 3; i < 10; ++i)
            shown << Dialog.Value(i) << QString::number(Dialog.Slider(i).value());
        for (const char* name : {"Text1(0)", "Text1(1)", "Text1(2)"})
            shown << Dialog.Edit(name).text();
        for (const char* name : {"Check1", "Check2"})
            shown << (Dialog.Get<QCheckBox>(name).isChecked() ? "on" : "off");
        return shown.join(' ');
    }

    static constexpr const char* kFirst =
        "299 299 299 299 299 299 10 10 10 10 10 10 6 6 0 0 0 off off";

    AxisSetup Setup = DefaultAxisSetup(299);
    Opened<AxisSetupDialog> Dialog{Setup, nullptr};
    MessageReader Messages;
};

TEST_F(AxisSetupUse, ControlIsMissingOrSaysSomethingElse)
{
    EXPECT_EQ(Dialog.windowTitle(), "Axis Setup");
    auto& tabs = Dialog.Get<QTabWidget>("TabStrip1");
    QStringList captions;
    const QSize size = Dialog.size();
    for (int i = 0; i < tabs.count(); ++i) {
        captions += tabs.tabText(i);
        tabs.setCurrentIndex(i);
        QCoreApplication::processEvents();
        EXPECT_EQ(Dialog.size(), size) << i;
    }
    EXPECT_EQ(captions.join(' '), "Center Divisions Unit Thickness");
    EXPECT_TRUE(size.width() <= 1024 && size.height() <= 700);
    EXPECT_EQ(Dialog.Get<QLabel>("Label6").text(), "The Center of the Axis is at:");
    EXPECT_EQ(Dialog.Get<QLabel>("Label7").text(), "Center = (0,0,0)");
    EXPECT_EQ(Dialog.Get<QCheckBox>("Check1").text(), "Square Work Sheet");
    EXPECT_EQ(Dialog.Get<QCheckBox>("Check2").text(), "Hide Axis");
    const char* const buttons[] = {"OK", "Cancel", "Default", "Help"};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(Dialog.Get<QPushButton>(QString("Command%1").arg(i + 1)).text(), buttons[i]);
    QSignalSpy help(&Dialog, &SettingsDialog::helpRequested);
    Dialog.Click("Command4");
    ASSERT_EQ(help.size(), 1);
    EXPECT_EQ(help[0][0].toString(), "Axis Setup");
    EXPECT_EQ(Shown(), kFirst);
}

TEST_F(AxisSetupUse, SlidersAreNotCoupled)
{
    Dialog.Slider(7).setValue(3);
    EXPECT_EQ(Dialog.Value(4), "996.6667");
    EXPECT_EQ(Dialog.Value(7), "3");
    Dialog.Slider(3).setValue(500);
    EXPECT_EQ(Dialog.Value(3), "500");
    EXPECT_EQ(Dialog.Value(6), "6"); // 5.98
    EXPECT_EQ(Dialog.Slider(6).value(), 6);
    EXPECT_EQ(Dialog.Value(8) + Dialog.Value(5), "10299"); // Z as before
    Dialog.Command1_Click();
    EXPECT_EQ(Setup.Units, (std::array{500.0F, 996.6667F, 299.0F}));
    EXPECT_EQ(Setup.Divisions, (std::array{6, 3, 10}));
    Dialog.SetDrawArea(500, {1500, 1000});
    EXPECT_EQ(Dialog.Slider(3).maximum(), 5000);
    EXPECT_EQ(Dialog.Value(3), "500"); // as accepted
    Dialog.Open();
    Dialog.Slider(8).setValue(20);
    Dialog.SetDrawArea(400, {1500, 800});
    EXPECT_EQ(Dialog.Value(8) + " " + Dialog.Value(5), "20 200");
}

TEST_F(AxisSetupUse, AcceptedOrGivenUpValuesAreLost)
{
    QSignalSpy accepted(&Dialog, &QDialog::accepted);
    const QImage first = Dialog.Picture("Picture1");
    ChangeAll();
    EXPECT_NE(Dialog.Picture("Picture1"), first);
    EXPECT_EQ(Dialog.Get<QLabel>("Label7").text(), "Center = (1.5,1.5,1.5)");
    QTest::keyClick(&Dialog, Qt::Key_Escape);
    EXPECT_FALSE(Dialog.isVisible());
    EXPECT_EQ(Shown(), kFirst);
    EXPECT_EQ(accepted.size(), 0);

    Dialog.Open();
    ChangeAll();
    const QString changed = Shown();
    Dialog.Click("Command1");
    EXPECT_FALSE(Dialog.isVisible());
    EXPECT_EQ(accepted.size(), 1);
    EXPECT_EQ(Setup.Center, (std::array{1.5F, 1.5F, 1.5F}));
    EXPECT_EQ(Setup.Units[0], 123.0F);
    EXPECT_EQ(Setup.UnitThickness, 17);
    EXPECT_TRUE(Setup.SquareWorkSheet && Setup.HideAxis);
    Dialog.Open();
    Dialog.Slider(6).setValue(99);
    Dialog.Click("Command2");
    EXPECT_EQ(Shown(), changed);
    Dialog.Command1_Click(); // while hidden
    EXPECT_EQ(accepted.size(), 2);

    Dialog.Open();
    Dialog.Click("Command3");
    EXPECT_EQ(Shown(), kFirst);
    EXPECT_EQ(Setup.UnitThickness, 17); // not before OK
    Dialog.Slider(3).setValue(305);     // still 10 divisions
    Dialog.Click("Command3");
    Dialog.Click("Command1");
    EXPECT_EQ(Setup.Units, (std::array{299.0F, 299.0F, 299.0F}));
    EXPECT_EQ(Setup.Center, (std::array{0.0F, 0.0F, 0.0F}));
}

TEST_F(AxisSetupUse, BadTextIsTakenOrLeftUnmarked)
{
    const QString digits(200, '9');
    for (int i = 0; i < 3; ++i) {
        for (const QString& text : {QString(), QString("abc"), QString("1e999"), digits}) {
            const QString name = QString("Text1(%1)").arg(i);
            ChangeAll();
            Dialog.Edit(name).setText(text);
            Dialog.Click("Command1");
            EXPECT_EQ(Messages.TakeSaid(),
                      QString("XYZ").mid(i, 1) +
                          (text == digits ? " is too large." : " needs a number."));
            EXPECT_TRUE(Dialog.isVisible());
            EXPECT_EQ(Dialog.focusWidget(), Dialog.Edit(name).focusProxy());
            EXPECT_EQ(Dialog.Edit(name).selectedText(), Dialog.Edit(name).text());
            EXPECT_EQ(Setup.Divisions[0], 10);
            EXPECT_EQ(Setup.Center[0], 0.0F);
            Dialog.Get<QTabWidget>("TabStrip1").setCurrentIndex(3); // which must come back
        }
    }
    ChangeAll();
    Dialog.Get<QLabel>("Label3(5)").setText("0");
    Dialog.Click("Command1");
    EXPECT_EQ(Messages.TakeSaid(), "Z Axis Unit must be above 0.");
    EXPECT_EQ(Setup.Divisions[2], 10);
}

TEST_F(AxisSetupUse, SpinnerForgetsTheNumberItStartsFrom)
{
    QLineEdit& edit = Dialog.Edit("Text1(1)");
    QWidget& spin = Dialog.Get<QWidget>("UpDown1(1)");
    struct Row {
        const char* Text;
        Qt::Key Key;
        const char* After;
    };
    constexpr Row kRows[] = {
        {"1.5", Qt::Key_Up, "2.5"},      {"abc", Qt::Key_Up, "3.5"},
        {"\u22124", Qt::Key_Down, "-5"}, {"0.1", Qt::Key_PageUp, "10.1"},
        {"7", Qt::Key_PageDown, "-3"},   {"3.4028235e38", Qt::Key_Up, "3.4028235e+38"}};
    for (const Row& row : kRows) {
        edit.setText(row.Text);
        QTest::keyClick(&spin, row.Key);
        EXPECT_EQ(edit.text(), row.After) << row.Text;
    }
    QTest::keyClick(&Dialog, Qt::Key_X, Qt::AltModifier);
    EXPECT_EQ(Dialog.focusWidget(), &Dialog.Get<QWidget>("UpDown1(0)"));
    Dialog.Get<QTabWidget>("TabStrip1").setCurrentIndex(1);
    QTest::keyClick(&Dialog, Qt::Key_X, Qt::AltModifier);
    EXPECT_EQ(Dialog.focusWidget(), &Dialog.Slider(6));
}

TEST(Axis3DSetup, ModelIsWrittenWronglyOrTooEarly)
{
    AxisSetup setup;
    AxisModel model;
    Opened<Axis3DSetupDialog> dialog(model, setup, nullptr);
    dialog.Open();
    QLineEdit& text = dialog.Edit("Text1");
    EXPECT_EQ(dialog.windowTitle(), "Axis3D Setup");
    EXPECT_EQ(dialog.Get<QRadioButton>("Option1").text(), "Real World Axis");
    EXPECT_EQ(dialog.Get<QRadioButton>("Option2").text(), "Simple Axis");
    EXPECT_EQ(dialog.Get<QLabel>("Label2").text(), "Angle:");
    EXPECT_EQ(dialog.Get<QPushButton>("Command2").text(), "Default");
    EXPECT_EQ(text.text(), "45");

    const QImage first = dialog.Picture("DrawBox");
    text.setText("90");
    const QImage right = dialog.Picture("DrawBox");
    dialog.Click("Option2");
    const QImage simple = dialog.Picture("DrawBox");
    EXPECT_TRUE(first != right && right != simple && simple != first);
    EXPECT_FALSE(text.isEnabled());
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(model.RealWorldAxis && model.Axis3DHalfAngle == 22);
    EXPECT_EQ(text.text(), "45");

    dialog.Open();
    text.setText("47");
    dialog.Click("Command1");
    EXPECT_TRUE(model.RealWorldAxis && model.Axis3DHalfAngle == 24);
    dialog.Open();
    EXPECT_EQ(text.text(), "47");
    text.setText("abc");
    dialog.Click("Option2"); // the box is out of reach now
    EXPECT_EQ(text.text(), "47");
    dialog.Click("Command1");
    EXPECT_TRUE(!model.RealWorldAxis && model.Axis3DHalfAngle == 24);
    dialog.Open();
    dialog.Click("Command2");
    EXPECT_TRUE(dialog.Picture("DrawBox") == first && text.isEnabled());
    EXPECT_FALSE(model.RealWorldAxis);
    dialog.Click("Command1");
    EXPECT_TRUE(model.RealWorldAxis && model.Axis3DHalfAngle == 22);
    model.Axis3DHalfAngle = 30; // by others
    dialog.Open();
    EXPECT_EQ(text.text(), "60");
}

TEST(Axis3DSetup, BadAngleIsTakenOrSpunOutOfRange)
{
    const AxisSetup setup;
    AxisModel model;
    Opened<Axis3DSetupDialog> dialog(model, setup, nullptr);
    dialog.Open();
    MessageReader messages;
    QLineEdit& text = dialog.Edit("Text1");
    for (const char* bad : {"", "abc", "1e999", "-5", "0", "nan", "179", "99999999999999999999"}) {
        text.setText(bad);
        dialog.Click("Command1");
        EXPECT_EQ(messages.TakeSaid(), "Angle needs a number from 2 to 178.") << bad;
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(dialog.focusWidget(), text.focusProxy());
        EXPECT_EQ(model.Axis3DHalfAngle, 22);
    }
    QWidget& spin = dialog.Get<QWidget>("UpDown1");
    const std::pair<const char*, const char*> steps[] = {
        {"45", "46"}, {"45.5", "46"}, {"178", "178"}, {"500", "500"}}; // which OK refuses
    for (const auto& [before, after] : steps) {
        text.setText(before);
        QTest::keyClick(&spin, Qt::Key_Up);
        EXPECT_EQ(text.text(), after) << before;
    }
    text.setText("46.5"); // to even: 46
    QTest::keyClick(&spin, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(model.Axis3DHalfAngle, 23);
}

} // namespace
} // namespace kelvane
