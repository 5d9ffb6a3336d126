#include "ui/setup_commands.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QSlider>
#include <functional>

#include "ui/graph_sheet.h"
#include "window.h"

namespace kelvane {
namespace {

// Works in the next dialog, once it is open, and presses OK.
class DialogUser {
public:
    explicit DialogUser(std::function<void(QDialog&)> work)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, work = std::move(work)] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr)
                return;
            m_timer.stop();
            work(*dialog);
            dialog->findChild<QPushButton*>("Command1")->click();
        });
        m_timer.start(5);
    }

private:
    QTimer m_timer;
};

void SetText(QDialog& dialog, const char* name, const QString& text)
{
    dialog.findChild<QLineEdit*>(name)->setText(text);
}

void Press(QDialog& dialog, const char* name)
{
    dialog.findChild<QAbstractButton*>(name)->click();
}

struct DrawnWindow : Window {
    explicit DrawnWindow(const QString& line)
    {
        Type(line);
        Click("Check1(0)");
        Click("TopKey(0)");
    }

    QRgb PixelAt(WorldPoint world)
    {
        const PixelPoint at = WorldToPixel(State().View, world);
        const QImage image = Area().Image().convertToFormat(QImage::Format_RGB32);
        return image.pixel(static_cast<int>(at.X + 0.5), static_cast<int>(at.Y + 0.5));
    }
};

} // namespace

TEST(SetupCommands, DrawSetupIsForgottenOrNotDrawn)
{
    DrawnWindow window("y=2");
    {
        const DialogUser user([](QDialog& dialog) {
            SetText(dialog, "Text1(0)", "50");
            Press(dialog, "Option5(0)"); // solid
            dialog.findChild<QComboBox*>("Combo1")->setCurrentIndex(2);
        });
        window.Click("Setup(1)");
    }
    EXPECT_EQ(window.State().View.Step2D, 0.02F);
    EXPECT_EQ(window.State().Settings.DrawWidth, 3);
    const Rgb solid = window.State().Settings.SolidColor;
    EXPECT_EQ(window.PixelAt({1, 2}), qRgb(solid.R, solid.G, solid.B)) << "drawn again at once";
    ASSERT_TRUE(window.Sheet().SetRange({-5, 5}, std::nullopt));
    EXPECT_EQ(window.State().View.Step2D, 0.02F) << "the range forgets the resolution";
    ASSERT_TRUE(window.Sheet().SetRange({0, 0.01}, std::nullopt));
    const DialogUser user([](QDialog&) {});
    window.Click("Setup(1)");
    EXPECT_FLOAT_EQ(window.State().View.Step2D, 0.01F / 250) << "a curve of two samples";
}

TEST(SetupCommands, AxisSetupScalesOrClipsOtherwise)
{
    DrawnWindow window("y=x");
    const auto setUp = [&window](int divisions, bool square, const QString& centerX) {
        const DialogUser user([=](QDialog& dialog) {
            for (const char* slider : {"Slider1(6)", "Slider1(7)", "Slider1(8)"})
                dialog.findChild<QSlider*>(slider)->setValue(divisions);
            if (dialog.findChild<QAbstractButton*>("Check1")->isChecked() != square)
                Press(dialog, "Check1");
            SetText(dialog, "Text1(0)", centerX);
        });
        window.Click("Draw(3)");
    };
    setUp(5, false, "1");
    const ViewState& view = window.State().View;
    const double width = window.Area().Extent().Width;
    EXPECT_NEAR(view.UnitPixels, (width / 2 - 1) / 5, 1e-3);
    EXPECT_NEAR(view.XMax, width / 2 / view.UnitPixels, 0.02) << "the range fills the area";
    EXPECT_EQ(view.YRatio, 1);
    EXPECT_EQ(view.CenterX, 1);
    EXPECT_EQ(window.PixelAt({2, 2}), window.PixelAt({3, 3}));
    {
        const DialogUser user([](QDialog& dialog) {
            dialog.findChild<QSlider*>("Slider1(3)")->setValue(333); // no whole divisions
            SetText(dialog, "Text1(2)", "4");
        });
        window.Click("Draw(3)");
    }
    EXPECT_FLOAT_EQ(view.UnitPixels, 33.3F);
    EXPECT_EQ(view.CenterZ, 4);
    {
        const DialogUser user([](QDialog&) {});
        window.Click("Draw(3)");
    }
    EXPECT_FLOAT_EQ(view.UnitPixels, 33.3F) << "an unchanged setup changes the units";
    ASSERT_TRUE(window.Sheet().SetRange({0, 10}, Interval{0, 5}));
    {
        const DialogUser user([](QDialog&) {});
        window.Click("Draw(3)");
    }
    EXPECT_EQ(view.XMin, 0) << "an unchanged setup moves the view";
    EXPECT_EQ(view.XMax, 10);
    setUp(10, true, "0");
    const PixelSize area = window.Area().Extent();
    const QImage image = window.Area().Image().convertToFormat(QImage::Format_RGB32);
    const double side = std::min(area.Width, area.Height);
    EXPECT_NEAR(view.UnitPixels, (side / 2 - 1) / 10, 0.1);
    const int outside = static_cast<int>((area.Width - side) / 4);
    if (area.Width > area.Height + 20) {
        for (int row = 0; row < image.height(); row += 7)
            EXPECT_EQ(image.pixel(outside, row), 0xFFFFFFFF) << "beside the square";
    }
    EXPECT_NE(window.PixelAt({9, 9}), 0xFFFFFFFF);
}

TEST(SetupCommands, SheetColorReachesHalfOfTheWindow)
{
    DrawnWindow window("y=2");
    window.State().Settings.CustomSheetColor = {20, 40, 60};
    {
        const DialogUser user([](QDialog& dialog) { Press(dialog, "Option2"); });
        window.Click("Setup(5)");
    }
    EXPECT_EQ(window.PixelAt({1.3, 1}), qRgb(20, 40, 60));
    EXPECT_EQ(window.PixelAt({1.3, 0}), 0xFFFFFFFF) << "axes that can be seen";
    EXPECT_EQ(window.Text().palette().color(QPalette::Text), QColor(Qt::white));
    const QImage editor = window.Text().viewport()->grab().toImage();
    EXPECT_EQ(editor.pixelColor(5, editor.height() - 5), QColor(20, 40, 60));
}

TEST(SetupCommands, TransformsDoNotTurnTheGraph)
{
    DrawnWindow window("y=2");
    {
        const DialogUser user([](QDialog& dialog) { SetText(dialog, "Text1(0)", "90"); });
        window.Click("Options(4)");
    }
    EXPECT_EQ(window.PixelAt({1, 2}), 0xFFFFFFFF);
    EXPECT_NE(window.PixelAt({-2, 1}), 0xFFFFFFFF);
    {
        const DialogUser user([](QDialog& dialog) {
            const char* const identity[] = {"2", "0", "0", "2"};
            for (int k = 0; k < 4; ++k)
                SetText(dialog, qPrintable(QString("Text1(%1)").arg(k)), identity[k]);
            Press(dialog, "Command5");
        });
        window.Click("Options(3)");
    }
    EXPECT_NE(window.PixelAt({-4, 1}), 0xFFFFFFFF);
    EXPECT_EQ(window.PixelAt({-2, 1}), 0xFFFFFFFF);
}

TEST(SetupCommands, SheetsShareAxesOrZoom)
{
    DrawnWindow window("y=2");
    window.Click("TopKey(1)");
    window.Click("DrawOption(1)");
    EXPECT_TRUE(window.State().Modes.Mode3D);
    EXPECT_EQ(window.State().View.ZoomFactor, 1);
    const QImage real = window.Area().Image();
    EXPECT_FALSE(window.Sheet().ShowsCurves());
    {
        const DialogUser user([](QDialog& dialog) { Press(dialog, "Option2"); });
        window.Click("Draw(4)");
    }
    EXPECT_NE(window.Area().Image(), real) << "another model of the axes";
    QTest::mouseMove(&window.Area(), {200, 300});
    window.Click("TopKey(1)"); // zooms about the crossing
    EXPECT_LT(window.State().View.ZoomFactor, 1);
    window.Click("DrawOption(0)");
    EXPECT_FALSE(window.State().Modes.Mode3D);
    window.Click("TopKey(0)");
    EXPECT_NE(window.PixelAt({1, 2}), 0xFFFFFFFF);
}

TEST(SetupCommands, SlopeModeIsNotSeenOrNotLeft)
{
    DrawnWindow window("y=abs(x-1)/(x-1)");
    auto& key = window.Get<QAbstractButton>("DrawChk");
    auto& unresolved = window.Get<QLabel>("Unresolved");
    const QRgb curve = window.PixelAt({2, 1});
    ASSERT_NE(curve, 0xFFFFFFFF);
    EXPECT_NE(window.PixelAt({1, 0.5}), 0xFFFFFFFF) << "the first family joins across the jump";
    key.click();
    EXPECT_TRUE(key.isChecked() && window.State().Modes.AltFamily);
    EXPECT_EQ(window.PixelAt({1, 0.5}), 0xFFFFFFFF) << "not drawn again at once";
    EXPECT_EQ(window.PixelAt({2, 1}), curve);
    EXPECT_EQ(unresolved.text(), "");

    window.State().Settings.BudgetSeconds = 1e-9;
    window.Click("TopKey(0)");
    EXPECT_NE(window.PixelAt({1, 0.5}), 0xFFFFFFFF) << "the unknown is hatched";
    const auto pixels = QString::number(window.State().Stats.UnresolvedPixels);
    EXPECT_EQ(unresolved.text(), "unresolved: " + pixels + " px");
    EXPECT_TRUE(unresolved.toolTip().contains("hatched"));
    EXPECT_TRUE(window.Area().accessibleDescription().contains("hatched: " + pixels + " pixels"));
    window.Click("TopKey(4)");
    EXPECT_EQ(unresolved.text(), "") << "of a graph that has been cleared";
    window.State().Settings.BudgetSeconds = 2;

    window.Click("DrawOption(1)");
    EXPECT_FALSE(key.isEnabled()) << "3D sheets have no slope mode";
    window.Click("DrawOption(0)");
    EXPECT_TRUE(key.isEnabled() && key.isChecked());
    window.Click("TopKey(0)");
    key.click();
    EXPECT_FALSE(key.isChecked() || window.State().Modes.AltFamily);
    EXPECT_NE(window.PixelAt({1, 0.5}), 0xFFFFFFFF) << "the first family is not back";
}

TEST(SetupCommands, CopiedGraphIsNotTheOneShown)
{
    DrawnWindow window("y=2");
    QTimer choose;
    QObject::connect(&choose, &QTimer::timeout, [&choose] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr)
            return;
        choose.stop();
        menu->findChild<QAction*>("CopyGraph")->trigger();
        menu->close();
    });
    choose.start(5);
    Q_EMIT window.Area().menuWanted({10, 10});
    const QMimeData* copied = QApplication::clipboard()->mimeData();
    ASSERT_TRUE(copied->hasImage());
    EXPECT_EQ(copied->imageData().value<QImage>().convertToFormat(QImage::Format_RGB32),
              window.Area().Image().convertToFormat(QImage::Format_RGB32));
    const QByteArray svg = copied->data("image/svg+xml");
    EXPECT_TRUE(svg.contains("<svg"));
    EXPECT_TRUE(svg.contains("polyline") || svg.contains("<path")) << "the curve is in it";
}

} // namespace kelvane
