#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>

#include "ui/color_sample.h"
#include "ui/color_setup_dialog.h"
#include "ui/draw_setup_dialog.h"

namespace kelvane {
namespace {

// Answers every message box with a button and every colour picker with a colour, and notes what
// the boxes said.
class Answerer : public QObject {
public:
    explicit Answerer(QMessageBox::StandardButton button, const QColor& color = {})
    {
        connect(&m_timer, &QTimer::timeout, this, [this, button, color] {
            QWidget* top = QApplication::activeModalWidget();
            if (auto* box = qobject_cast<QMessageBox*>(top)) {
                Said += box->windowTitle() + ": " + box->text() + "\n";
                box->button(button)->click();
            } else if (auto* picker = qobject_cast<QColorDialog*>(top)) {
                Said += picker->objectName() + "\n";
                picker->setCurrentColor(color);
                color.isValid() ? picker->accept() : picker->reject();
            }
        });
        m_timer.start(5);
    }
    QString Said;

private:
    QTimer m_timer;
};

struct State {
    DrawSettings Settings;
    float Step2D = 7;
    float Step3D = 8;
    Rgb Graph2DColor;
    Rgb Graph3DColor;
};

// A dialog, and what a user's hands and eyes need.
template <class Dialog>
class Shown : public Dialog {
public:
    using Dialog::Dialog;

    template <class Control>
    Control& Get(const QString& name)
    {
        Control* control = this->template findChild<Control*>(name);
        if (control == nullptr)
            qFatal("no %s", qPrintable(name));
        return *control;
    }
    void Click(const QString& name) { Get<QAbstractButton>(name).click(); }
    bool IsTicked(const QString& name) { return Get<QAbstractButton>(name).isChecked(); }
    void Type(const QString& name, const QString& text) { Get<QLineEdit>(name).setText(text); }
    QString TextIn(const QString& name) { return Get<QLineEdit>(name).text(); }
    void Choose(const QString& list, const QString& item)
    {
        Get<QComboBox>(list).setCurrentText(item);
    }
    Rgb ColorOf(int sample) { return Get<ColorSample>(QString("Sample(%1)").arg(sample)).Color(); }
};

class DrawSetupShown : public Shown<DrawSetupDialog> {
public:
    explicit DrawSetupShown(State& state)
        : Shown(state.Settings,
                DrawShared{state.Step2D, state.Step3D, state.Graph2DColor, state.Graph3DColor})
    {
        show();
    }
};

TEST(DrawSetupDialog, ControlIsMissingOrSaysSomethingElse)
{
    constexpr std::pair<const char*, const char*> kCaptions[] = {
        {"Command5", "Wire Frame"},  {"Command6", "Render Fast"}, {"Command7", "Render Nice"},
        {"Command10", "Wire Frame"}, {"Command9", "Render Fast"}, {"Command8", "Render Nice"},
        {"Check2", "Fill"},          {"Check4", "Auto Redraw"},   {"Check3(0)", "Vertical"},
        {"Check3(1)", "Horizontal"}, {"Option3(0)", "Pixel"},     {"Option3(3)", "Line"},
        {"Option5(0)", "Solid"},     {"Option5(1)", "Gradual"},   {"Option5(2)", "Random"},
        {"Option5(3)", "Solid"},     {"Option5(4)", "Gradual"},   {"Option4(0)", "X Axis"},
        {"Option4(1)", "Y Axis"},    {"Option4(4)", "Z Axis"},    {"Command2", "Cancel"},
        {"Command3", "Default"},     {"Command4", "Help"}};
    State state;
    DrawSetupShown dialog(state);
    for (const auto& [name, caption] : kCaptions)
        EXPECT_EQ(dialog.Get<QAbstractButton>(name).text().remove('&'), caption) << name;
    EXPECT_EQ(dialog.windowTitle(), "Draw Setup");
    EXPECT_EQ(dialog.Get<QComboBox>("Combo1").count(), 10);
    EXPECT_EQ(dialog.Get<QComboBox>("Combo1").currentText(), "1");
    EXPECT_EQ(dialog.Get<QComboBox>("Combo2").currentText(), "Solid");
    EXPECT_EQ(dialog.Get<QComboBox>("ColorCombo").itemText(4), "Yellow-Blue");
    QString frames;
    for (const QGroupBox* frame : dialog.findChildren<QGroupBox*>())
        frames += frame->title() + "|";
    EXPECT_EQ(frames.count("Predefined Resolutions|"), 2);
    EXPECT_EQ(frames.count("Gradual Change Along:|"), 2);
    QString topic;
    QObject::connect(&dialog, &SettingsDialog::helpRequested, &dialog,
                     [&](const QString& wanted) { topic = wanted; });
    dialog.Click("Command4");
    EXPECT_EQ(topic, "Draw Setup");
}

TEST(DrawSetupDialog, TabShowsAnotherGroupOrTheDialogJumps)
{
    constexpr const char* kOneOfEach[2][3] = {{"Text1(0)", "Option3(0)", "Sample(0)"},
                                              {"Text1(7)", "Option3(2)", "Sample(5)"}};
    State state;
    DrawSetupShown dialog(state);
    const QSize size = dialog.size();
    for (int dimension = 0; dimension < 2; ++dimension) {
        dialog.Click(dimension == 0 ? "Option1" : "Option2");
        for (int tab = 0; tab < 3; ++tab) {
            dialog.Get<QTabBar>("TabStrip1").setCurrentIndex(tab);
            for (int i = 0; i < 6; ++i) {
                const char* name = kOneOfEach[i / 3][i % 3];
                EXPECT_EQ(dialog.Get<QWidget>(name).isVisible(), i == 3 * dimension + tab)
                    << name << " " << dimension << " " << tab;
            }
            QApplication::processEvents();
            EXPECT_EQ(dialog.size(), size);
        }
    }
}

// Chooses something else than the first values wherever there is a choice.
void ChangeAll(DrawSetupShown& dialog)
{
    for (const char* name : {"Check2", "Check4", "Check3(1)", "Option3(0)", "Option5(1)",
                             "Option4(1)", "Option5(4)", "Option4(3)"})
        dialog.Click(name);
    dialog.Type("Text1(0)", "50");
    dialog.Type("Text1(7)", "8");
    dialog.Choose("Combo2", "Super Solid");
    for (int i = 0; i < 6; ++i)
        dialog.Get<ColorSample>(QString("Sample(%1)").arg(i))
            .SetColor({static_cast<std::uint8_t>(10 + i), 0, 0});
}

TEST(DrawSetupDialog, ControlIsBoundToAnotherField)
{
    State state;
    DrawSetupShown dialog(state);
    dialog.Choose("Combo1", "7");
    ChangeAll(dialog);
    dialog.Click("Command1");
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_FALSE(dialog.RedrawDue());
    const DrawSettings& settings = state.Settings;
    EXPECT_EQ(state.Step2D, 0.02F);
    EXPECT_EQ(state.Step3D, 0.125F);
    EXPECT_EQ(settings.DrawWidth, 7);
    EXPECT_EQ(settings.Style, PointStyle::Pixel);
    EXPECT_EQ(settings.Coloring, Coloring2D::Gradual);
    EXPECT_EQ(settings.GradientAlong, GradientAxis::Y);
    EXPECT_TRUE(settings.In3D.Fill && settings.In3D.VerticalLines);
    EXPECT_FALSE(settings.In3D.HorizontalLines);
    EXPECT_EQ(settings.In3D.SurfaceQuality, -0.001);
    EXPECT_EQ(settings.In3D.Coloring, Coloring3D::Gradual);
    EXPECT_EQ(settings.In3D.GradientAlong, GradientAxis::Y);
    const Rgb samples[] = {settings.SolidColor,        settings.GradientFrom,
                           settings.GradientTo,        settings.In3D.GradientTo,
                           settings.In3D.GradientFrom, settings.In3D.SolidColor};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(samples[i].R, 10 + i);
    DrawSetupShown again(state);
    EXPECT_EQ(again.TextIn("Text1(7)"), "8");
    EXPECT_TRUE(again.IsTicked("Option4(3)") && !again.IsTicked("Check3(1)"));
    again.Click("Check4");
    again.Click("Command1");
    EXPECT_TRUE(again.RedrawDue());
}

TEST(DrawSetupDialog, CancelOrDefaultWritesOrForgetsWhatWasAccepted)
{
    State state;
    state.Settings.DrawWidth = 3;
    DrawSetupShown dialog(state);
    dialog.Type("Text1(0)", "40");
    dialog.Click("Command1");
    const auto expectAccepted = [&](const char* after) {
        EXPECT_EQ(state.Settings.Resolution, 40) << after;
        EXPECT_EQ(state.Step2D, 0.025F) << after;
        EXPECT_FALSE(state.Settings.In3D.Fill) << after;
        EXPECT_EQ(state.Settings.SolidColor, DrawSettings().SolidColor) << after;
    };
    for (const char* way : {"Cancel", "Esc"}) {
        dialog.show();
        dialog.Click("Option2");
        ChangeAll(dialog);
        way == std::string("Esc") ? QTest::keyClick(&dialog, Qt::Key_Escape)
                                  : dialog.Click("Command2");
        EXPECT_FALSE(dialog.isVisible()) << way;
        expectAccepted(way);
        EXPECT_TRUE(dialog.IsTicked("Option1") && dialog.IsTicked("Option3(1)")) << way;
        EXPECT_TRUE(dialog.IsTicked("Check3(1)") && !dialog.IsTicked("Check2")) << way;
        EXPECT_EQ(dialog.TextIn("Text1(0)"), "40") << way;
        EXPECT_EQ(dialog.ColorOf(3), DrawSettings().In3D.GradientTo) << way;
    }
    dialog.show();
    ChangeAll(dialog);
    dialog.Click("Command3");
    EXPECT_EQ(dialog.TextIn("Text1(0)"), "100");
    EXPECT_EQ(dialog.Get<QComboBox>("Combo1").currentText(), "3");
    expectAccepted("Default");
}

TEST(DrawSetupDialog, RefusedOkClosesOrHidesTheFault)
{
    State state;
    DrawSetupShown dialog(state);
    dialog.Get<QTabBar>("TabStrip1").setCurrentIndex(2);
    dialog.Click("Check4");
    for (const char* bad : {"", "abc", "1e999", "0"}) {
        Answerer answerer(QMessageBox::Ok);
        dialog.Click("Option1");
        dialog.Type("Text1(0)", "50");
        dialog.Type("Text1(7)", bad);
        dialog.Click("Command1");
        EXPECT_EQ(answerer.Said, "Draw Setup: Invalid Resolution value!\n") << bad;
        EXPECT_TRUE(dialog.isVisible()) << bad;
        EXPECT_TRUE(dialog.Get<QLineEdit>("Text1(7)").isVisible()) << bad;
        EXPECT_EQ(state.Step2D, bad == std::string("0") ? 0.02F : 7) << bad;
        EXPECT_EQ(state.Step3D, 8) << bad;
        EXPECT_FALSE(state.Settings.AutoRedraw) << bad;
    }
    Answerer answerer(QMessageBox::Ok);
    dialog.Type("Text1(0)", "-5");
    dialog.Click("Command1");
    EXPECT_TRUE(dialog.Get<QLineEdit>("Text1(0)").isVisible());
}

TEST(DrawSetupDialog, HighResolutionIsNotAskedAboutOrTheAnswerIgnored)
{
    const QString question = "Draw Setup: The resolution value is too high and is not recommended. "
                             "Are you sure you want to continue?\n";
    State state;
    DrawSetupShown dialog(state);
    dialog.Type("Text1(7)", "100.5");
    for (const bool agrees : {false, true}) {
        Answerer answerer(agrees ? QMessageBox::Yes : QMessageBox::No);
        dialog.Click("Command1");
        EXPECT_EQ(answerer.Said, question);
        EXPECT_EQ(dialog.isVisible(), !agrees);
        EXPECT_EQ(state.Settings.In3D.Resolution, agrees ? 100.5 : 20);
    }
}

TEST(DrawSetupDialog, FillGivesNoAdviceOrTooMuch)
{
    State state;
    DrawSetupShown dialog(state);
    const auto adviceOn = [&](const char* button) {
        Answerer answerer(QMessageBox::Ok);
        dialog.Click(button);
        return answerer.Said;
    };
    EXPECT_FALSE(dialog.Get<QWidget>("Combo2").isEnabled());
    EXPECT_EQ(adviceOn("Check2"),
              "Solid: To achieve a completely solid graph it is highly recommended to choose a "
              "Draw Width more than 1. The Draw Width combo is located at the right side of this "
              "form (Draw Setup form).\n");
    EXPECT_TRUE(dialog.IsTicked("Check2") && dialog.Get<QWidget>("Combo2").isEnabled());
    EXPECT_EQ(adviceOn("Check2"), "");
    dialog.Choose("Combo1", "2");
    EXPECT_EQ(adviceOn("Check2"), "");
    EXPECT_EQ(adviceOn("Command10"), ""); // width 1, but not filled
    EXPECT_FALSE(dialog.Get<QWidget>("Combo2").isEnabled());
    EXPECT_EQ(adviceOn("Command9"), ""); // filled, but wide
}

TEST(DrawSetupDialog, PresetSchemeOrStyleReachesOtherControls)
{
    State state;
    DrawSetupShown dialog(state);
    dialog.Click("Command6");
    EXPECT_EQ(dialog.TextIn("Text1(0)"), "20");
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Up);
    EXPECT_EQ(dialog.TextIn("Text1(0)"), "21") << "the focus is elsewhere, or the spinner dead";
    dialog.Click("Command9");
    EXPECT_EQ(dialog.TextIn("Text1(7)"), "3");
    EXPECT_EQ(dialog.Get<QComboBox>("Combo1").currentText(), "3");
    EXPECT_TRUE(dialog.IsTicked("Check2"));

    EXPECT_EQ(dialog.Get<QComboBox>("ColorCombo").currentIndex(), -1);
    dialog.Choose("ColorCombo", "Black-Red");
    EXPECT_EQ(dialog.ColorOf(4), kBlack);
    EXPECT_EQ(dialog.ColorOf(3), (Rgb{255, 0, 0}));
    dialog.Choose("ColorCombo", "Default");
    EXPECT_EQ(dialog.ColorOf(3), kBlack);
    EXPECT_EQ(state.Settings.In3D.GradientTo, DrawSettings().In3D.GradientTo) << "not before OK";

    for (const bool line : {false, true}) {
        dialog.Click(line ? "Option3(3)" : "Option3(2)");
        for (const char* name : {"Check3(0)", "Check3(1)"}) {
            EXPECT_EQ(dialog.IsTicked(name), line) << name;
            EXPECT_EQ(dialog.Get<QWidget>(name).isEnabled(), line) << name;
        }
    }
    EXPECT_TRUE(dialog.IsTicked("Option3(1)")) << "2D has a style of its own";
}

TEST(ColorSample, PickedColorIsLostOrARefusedOneTaken)
{
    State state;
    DrawSetupShown dialog(state);
    dialog.Get<QTabBar>("TabStrip1").setCurrentIndex(2);
    auto& sample = dialog.Get<ColorSample>("Sample(2)");
    {
        Answerer answerer(QMessageBox::Ok, QColor(1, 2, 3));
        QTest::keyClick(&sample, Qt::Key_Space);
        EXPECT_EQ(answerer.Said, "CommonDialog1\n");
    }
    EXPECT_EQ(sample.Color(), (Rgb{1, 2, 3}));
    EXPECT_EQ(sample.accessibleName(), "2D gradient end: #010203");
    Answerer answerer(QMessageBox::Ok);
    sample.click();
    EXPECT_EQ(sample.Color(), (Rgb{1, 2, 3}));
}

TEST(ColorSetupDialog, SheetTakesAnotherColorOrTakesItTooEarly)
{
    State state;
    Shown<ColorSetupDialog> dialog(state.Settings);
    QStringList applied;
    QObject::connect(&dialog, &ColorSetupDialog::sheetColorChanged, &dialog, [&](Rgb color) {
        applied += QString("%1,%2,%3").arg(color.R).arg(color.G).arg(color.B);
    });
    EXPECT_EQ(dialog.windowTitle(), "Color Setup");
    EXPECT_EQ(dialog.findChild<QGroupBox*>()->title(), "Sheet Color");
    EXPECT_EQ(dialog.Get<QAbstractButton>("Option1(0)").text(), "White");
    EXPECT_EQ(dialog.Get<QAbstractButton>("Option2").text(), "Custom");
    dialog.show();
    {
        Answerer answerer(QMessageBox::Ok, QColor(9, 8, 7));
        dialog.Click("Sample(0)");
    }
    EXPECT_TRUE(dialog.IsTicked("Option2"));
    dialog.Click("Command2");
    EXPECT_TRUE(dialog.IsTicked("Option1(0)"));
    EXPECT_EQ(dialog.ColorOf(0), DrawSettings().CustomSheetColor);
    EXPECT_EQ(applied, QStringList());

    dialog.show();
    dialog.Get<ColorSample>("Sample(0)").SetColor({9, 8, 7});
    dialog.Click("Command1"); // still white
    dialog.show();
    dialog.Click("Option2");
    dialog.Click("Command1");
    EXPECT_EQ(applied, QStringList({"255,255,255", "9,8,7"}));
    EXPECT_EQ(state.Settings.SheetColor, (Rgb{9, 8, 7}));
    dialog.show();
    dialog.Click("Option1(0)");
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog.IsTicked("Option2"));
    EXPECT_EQ(state.Settings.SheetColor, (Rgb{9, 8, 7}));
}

} // namespace
} // namespace kelvane
