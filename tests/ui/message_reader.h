#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>
#include <utility>

namespace kelvane {

// Presses OK in every message box that comes up, and notes what it said.
class MessageReader : public QObject {
public:
    MessageReader()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr)
                return;
            Titles << box->windowTitle();
            Said << box->text();
            box->button(QMessageBox::Ok)->click();
        });
        m_timer.start(1);
    }

    // The last text, once.
    QString TakeSaid()
    {
        const QString said = Said.isEmpty() ? QString() : Said.back();
        Said.clear();
        return said;
    }

    QStringList Said;
    QStringList Titles;

private:
    QTimer m_timer;
};

} // namespace kelvane
