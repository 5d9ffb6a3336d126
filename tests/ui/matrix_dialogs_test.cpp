#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <functional>

#include "message_reader.h"
#include "ui/angle_dial.h"
#include "ui/matrix_dialog.h"
#include "ui/rotate_dialog.h"

namespace kelvane {
namespace {

// A dialog with a user's hands.
template <class Dialog>
class Hands : public Dialog {
public:
    using Dialog::Dialog;

    template <class Control>
    Control& Get(const QString& name)
    {
        return *this->template findChild<Control*>(name);
    }
    QLineEdit& Box(int i) { return Get<QLineEdit>(QString("Text1(%1)").arg(i)); }
    AngleDial& Dial(int i) { return Get<AngleDial>(QString("Shape1(%1)").arg(i)); }
    void Click(const QString& name) { Get<QPushButton>(name).click(); }
    QStringList Labels()
    {
        QStringList texts;
        for (int k = 0;
             auto* label = this->template findChild<QLabel*>(QString("Label4(%1)").arg(k)); ++k)
            texts << label->text();
        return texts;
    }
    void Fill(const QStringList& texts)
    {
        for (int k = 0; k < texts.size(); ++k)
            Box(k).setText(texts[k]);
    }
    // Does something while the dialog is open, which it must close.
    template <class Ask>
    bool While(const Ask& ask, const std::function<void()>& act)
    {
        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, this, act);
        timer.start(0);
        return ask();
    }
};

class RotateHands : public Hands<RotateDialog> {
public:
    explicit RotateHands(Matrix3& matrix)
        : Hands(matrix, nullptr)
    {
    }
    bool Open(Dimensions dimensions, const std::function<void()>& act)
    {
        return While([&] { return AskFor(dimensions); }, act);
    }
    bool Points(int dial, double x, double y)
    {
        const QLineF needle = Dial(dial).property("Line3").toLineF();
        const double radius = Dial(dial).Face().Radius();
        return std::abs(needle.dx() - radius * x) < 1e-3 &&
               std::abs(needle.dy() + radius * y) < 1e-3;
    }
};

class MatrixHands : public Hands<MatrixDialog> {
public:
    MatrixHands(Matrix3& matrix, Dimensions dimensions)
        : Hands(matrix, dimensions, nullptr)
    {
    }
    bool Open(const std::function<void()>& act)
    {
        return While([&] { return Ask(); }, act);
    }
};

TEST(RotateDialog, MatrixIsWrittenWithoutOkOrNotWithIt)
{
    Matrix3 matrix = kIdentity;
    RotateHands dialog(matrix);
    EXPECT_TRUE(dialog.Open(Dimensions::Three, [&] {
        EXPECT_EQ(dialog.Box(0).text() + dialog.Box(1).text(), "00");
        dialog.Fill({"0", "30"});
        dialog.Click("Command1");
    }));
    EXPECT_NEAR(matrix[6], -0.5, 1e-7);
    const Matrix3 turned = matrix;
    EXPECT_FALSE(dialog.Open(Dimensions::Three, [&] {
        dialog.Fill({"45", "-45"});
        EXPECT_TRUE(dialog.Points(1, 0.70710678, -0.70710678));
        dialog.Click("Command3");
        EXPECT_EQ(dialog.Box(0).text() + dialog.Box(1).text(), "00");
        EXPECT_TRUE(dialog.Points(0, 1, 0) && dialog.Points(1, 1, 0));
        dialog.Fill({"45", "12"});
        dialog.Click("Command2");
    }));
    EXPECT_EQ(matrix, turned);
    EXPECT_EQ(dialog.Box(0).text(), "0");
    EXPECT_EQ(dialog.Box(1).text(), "30");
    EXPECT_TRUE(dialog.Points(0, 1, 0) && dialog.Points(1, 0.8660254, 0.5));
    EXPECT_TRUE(dialog.Open(Dimensions::Two, [&] {
        EXPECT_FALSE(dialog.Box(1).isEnabled() || dialog.Dial(1).isEnabled());
        dialog.Box(0).setText("90");
        dialog.Click("Command1");
    }));
    EXPECT_EQ(matrix[1], -1);
    EXPECT_EQ(matrix[6], turned[6]);
}

TEST(RotateDialog, UnreadableAngleIsTakenOrReportedTwice)
{
    for (const QString& text : {QString("abc"), QString("1e999"), QString("nan"), QString(" x")}) {
        for (int i = 0; i < 2; ++i) {
            Matrix3 matrix = kIdentity;
            RotateHands dialog(matrix);
            dialog.Open(Dimensions::Three, [&] {
                MessageReader reader;
                dialog.Box(i).setText("90");
                dialog.Box(i).setText(text);
                QTest::qWait(20);
                EXPECT_EQ(reader.Titles.value(0), QGuiApplication::applicationDisplayName());
                EXPECT_EQ(reader.Said, QStringList{"Invalid rotation degrees!"})
                    << qPrintable(text);
                EXPECT_TRUE(dialog.Points(i, 0, 1)) << "the needle moved";
                dialog.Click("Command1");
                EXPECT_EQ(reader.Said.size(), 2) << qPrintable(text);
                EXPECT_TRUE(dialog.isVisible());
                dialog.Box(i).setText("90");
                dialog.Box(i).setText(text);
                dialog.Click("Command1"); // at once
                QTest::qWait(20);
                EXPECT_EQ(reader.Said.size(), 3) << qPrintable(text);
                dialog.reject();
            });
            EXPECT_EQ(matrix, kIdentity);
        }
    }
}

TEST(RotateDialog, TypingIsInterruptedOrOkTakesHalfANumber)
{
    Matrix3 matrix = kIdentity;
    RotateHands dialog(matrix);
    dialog.Open(Dimensions::Three, [&] {
        MessageReader reader;
        for (const char* text : {"", "-", "1e", "-."}) {
            dialog.Box(0).setText("180");
            dialog.Box(0).setText(text);
            QTest::qWait(10);
            EXPECT_TRUE(reader.Said.isEmpty()) << text;
            EXPECT_TRUE(dialog.Points(0, -1, 0)) << text;
            dialog.Click("Command1");
            EXPECT_EQ(reader.Said, QStringList{"Invalid rotation degrees!"}) << text;
            reader.Said.clear();
        }
        dialog.Fill({QString(200, '9'), "-5"});
        dialog.Click("Command1");
        EXPECT_TRUE(reader.Said.isEmpty());
        EXPECT_FALSE(dialog.isVisible());
    });
}

TEST(RotateDialog, DialDoesNotFollowMouseOrKeys)
{
    Matrix3 matrix = kIdentity;
    RotateHands dialog(matrix);
    dialog.Open(Dimensions::Three, [&] {
        AngleDial& dial = dialog.Dial(1);
        const DialFace face = dial.Face();
        const QPoint center(static_cast<int>(face.Center().X), static_cast<int>(face.Center().Y));
        const int reach = static_cast<int>(face.Radius());
        QTest::mousePress(&dial, Qt::RightButton, {}, center + QPoint(0, -reach));
        EXPECT_EQ(dialog.Box(1).text(), "90");
        QTest::mouseMove(&dial, center + QPoint(-30, 30));
        QTest::mouseRelease(&dial, Qt::RightButton, {}, center + QPoint(-30, 30));
        QTest::mousePress(&dial, Qt::LeftButton, {}, center + QPoint(-30, 30));
        EXPECT_EQ(dialog.Box(1).text(), "225");
        EXPECT_TRUE(dialog.Points(1, -0.70710678, -0.70710678));
        QTest::mousePress(&dial, Qt::LeftButton, {}, center + QPoint(0, -reach - 2));
        EXPECT_EQ(dialog.Box(1).text(), "225") << "outside the square";
        EXPECT_EQ(dialog.Box(0).text(), "0") << "the other dial";

        struct Row {
            Qt::Key Key;
            const char* Degrees;
        };
        const Row rows[] = {{Qt::Key_Up, "226"},       {Qt::Key_Left, "225"},
                            {Qt::Key_PageUp, "240"},   {Qt::Key_Home, "0"},
                            {Qt::Key_Down, "359"},     {Qt::Key_Right, "0"},
                            {Qt::Key_PageDown, "345"}, {Qt::Key_PageUp, "0"}};
        for (const Row& row : rows) {
            QTest::keyClick(&dial, row.Key);
            EXPECT_EQ(dialog.Box(1).text(), row.Degrees) << row.Key;
        }
        dialog.Box(1).setText("-90,25");
        EXPECT_EQ(dial.value(), 270) << "what is read aloud";
        dialog.reject();
    });
}

TEST(MatrixDialog, ControlIsMissingOrSaysSomethingElse)
{
    for (const Dimensions size : {Dimensions::Two, Dimensions::Three}) {
        Matrix3 matrix{1, 2, 3, 4, 5, 6, 7, 8, 9};
        MatrixHands dialog(matrix, size);
        const bool plane = size == Dimensions::Two;
        EXPECT_EQ(dialog.windowTitle(), plane ? "Matrix 2D" : "Matrix 3D");
        EXPECT_EQ(dialog.Get<QPushButton>("Command5").text(), "Multiply =>");
        EXPECT_EQ(dialog.Get<QPushButton>("Command6").text(), "Add =>");
        QSignalSpy help(&dialog, &SettingsDialog::helpRequested);
        dialog.Click("Command4");
        ASSERT_EQ(help.size(), 1);
        EXPECT_EQ(help[0][0], "Matrix");
        EXPECT_EQ(dialog.Labels().join(' '), plane ? "1 4 2 5" : "1 4 7 2 5 8 3 6 9");
        QStringList texts;
        for (const QLabel* label : dialog.findChildren<QLabel*>())
            texts << label->text();
        EXPECT_TRUE(texts.contains("Matrix"));
        EXPECT_EQ(texts.count("[  X        Y  ]"), plane ? 2 : 0);
    }
}

TEST(MatrixDialog, OperationDoesNotReachMatrixLabelsAndBoxes)
{
    Matrix3 matrix = kIdentity;
    MatrixHands dialog(matrix, Dimensions::Two);
    EXPECT_TRUE(dialog.Open([&] {
        dialog.Fill({"2", "0", "0", "3"});
        dialog.Click("Command5");
        EXPECT_EQ(dialog.Labels().join(' '), "2 0 0 3");
        for (int k = 0; k < 4; ++k)
            EXPECT_EQ(dialog.Box(k).text(), "") << k;
        dialog.Fill({"0", "1", "0", "0"});
        dialog.Click("Command6");
        dialog.Click("Command1");
    }));
    EXPECT_EQ(matrix, (Matrix3{2, 0, 0, 1, 3, 0, 0, 0, 1}));
    EXPECT_TRUE(dialog.HasChanged());
    EXPECT_FALSE(dialog.Open([&] {
        EXPECT_FALSE(dialog.HasChanged());
        dialog.Click("Command3");
        EXPECT_EQ(dialog.Labels().join(' '), "1 0 0 1");
        dialog.Click("Command2");
    }));
    EXPECT_EQ(matrix, kIdentity) << "Cancel undid it";
    EXPECT_TRUE(dialog.HasChanged());
    EXPECT_EQ(dialog.Labels().join(' '), "2 1 0 3");
    dialog.Open([&] {
        EXPECT_EQ(dialog.Labels().join(' '), "2 1 0 3") << "restored labels are the next operand";
        dialog.Fill({"1", "1", "1", "1"});
        dialog.Click("Command6");
        dialog.reject();
    });
    EXPECT_EQ(matrix, (Matrix3{3, 1, 0, 2, 4, 0, 0, 0, 1}));
    matrix = kIdentity;
    dialog.Open([&] {
        EXPECT_EQ(dialog.Labels().join(' '), "1 0 0 1") << "changed by someone else";
        dialog.reject();
    });
}

TEST(MatrixDialog, BadBoxIsTakenOrEmptiesTheOthers)
{
    for (const QString& text :
         {QString(), QString("abc"), QString("1e999"), QString("nan"), QString(200, '9')}) {
        for (const char* button : {"Command5", "Command6"}) {
            Matrix3 matrix{1, 2, 3, 4, 5, 6, 7, 8, 9};
            MatrixHands dialog(matrix, Dimensions::Three);
            dialog.Open([&] {
                MessageReader reader;
                dialog.Fill({"-5", "0", "1", "1", "1", "1", "1", "1", text});
                dialog.Click(button);
                EXPECT_EQ(reader.Said, QStringList{"Invalid Matrix!"}) << qPrintable(text);
                EXPECT_EQ(dialog.Labels().join(' '), "1 4 7 2 5 8 3 6 9");
                EXPECT_EQ(dialog.Box(0).text(), "-5");
                EXPECT_EQ(dialog.focusWidget(), &dialog.Box(8)) << qPrintable(text);
                dialog.reject();
            });
            EXPECT_EQ(matrix[8], 9);
            EXPECT_TRUE(dialog.HasChanged()) << "the entries before keep their new values";
        }
    }
}

} // namespace
} // namespace kelvane
