#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <string>

#include "doc/rich_page.h"
#include "ui/draw_box.h"
#include "ui/editor_region.h"
#include "ui/formula_editor.h"
#include "ui/graph_region.h"
#include "ui/plexa.h"

namespace kelvane {

// A window, and what a user's hands and eyes need.
class Window : public Plexa {
public:
    Window()
    {
        Start();
        showNormal();
        resize(1000, 700);
        QTest::qWait(200); // the area's new size
    }

    FormulaEditor& Text() { return Editor().Editor(); }
    DrawBox& Area() { return Graph().Box(); }
    // A control of the window itself, not of one of its dialogs.
    template <class Control>
    Control& Get(const QString& name)
    {
        for (Control* control : findChildren<Control*>(name)) {
            if (control->window() == this || control->isWindow())
                return *control;
        }
        std::abort();
    }

    void Type(const QString& keys)
    {
        Text().setFocus();
        for (const QChar& key : keys) {
            if (key == '\n')
                QTest::keyClick(&Text(), Qt::Key_Return);
            else
                QTest::keyClick(&Text(), key.toLatin1());
        }
    }
    void Click(const QString& name) { Get<QAbstractButton>(name).click(); }
    std::string PlainText()
    {
        const std::string text = PowerToPlain(Text().Page());
        return text.substr(0, text.find_last_not_of('\r') + 1);
    }
    // Whether a pixel has nearly the colour: smooth thin lines hardly ever have it quite.
    bool ShowsColor(QRgb color)
    {
        constexpr int kNear = 150;
        const QImage image = Area().Image().convertToFormat(QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                if (std::abs(qRed(pixel) - qRed(color)) + std::abs(qGreen(pixel) - qGreen(color)) +
                        std::abs(qBlue(pixel) - qBlue(color)) <
                    kNear)
                    return true;
            }
        }
        return false;
    }
};

// Presses a button of the next message boxes and notes what they said; a file dialog gets a path.
class Answerer : public QObject {
public:
    explicit Answerer(QMessageBox::StandardButton button, const QString& path = {})
    {
        connect(&m_timer, &QTimer::timeout, this, [this, button, path] {
            QWidget* open = QApplication::activeModalWidget();
            if (auto* dialog = qobject_cast<QFileDialog*>(open)) {
                dialog->selectFile(path);
                QDialog* answered = dialog;
                path.isEmpty() ? answered->reject() : answered->accept();
            }
            if (auto* box = qobject_cast<QMessageBox*>(open)) {
                Said += box->windowTitle() + ": " + box->text() + "\n";
                Informed += box->informativeText() + "\n";
                box->button(button)->click();
            }
        });
        m_timer.start(5);
    }
    QString Said;
    QString Informed; // the smaller text

private:
    QTimer m_timer;
};

} // namespace kelvane
