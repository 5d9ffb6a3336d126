#include "ui/resolution_box.h"

#include <QPainter>

#include "view3d/draw_setup.h"

namespace kelvane {

ResolutionBox::ResolutionBox(const QString& accessibleName, double highest)
    : m_highest(highest)
{
    constexpr int kLongest = 40;
    setMinimumWidth(104);
    lineEdit()->setMaxLength(kLongest);
    setAccessibleName(accessibleName); // the box has the keyboard, the text in it the name, too
    lineEdit()->setAccessibleName(accessibleName);
    connect(lineEdit(), &QLineEdit::textChanged, this, [this] {
        m_wrong = false;
        update();
    });
}

void ResolutionBox::Focus()
{
    lineEdit()->setFocus();
    lineEdit()->selectAll();
}

void ResolutionBox::MarkWrong()
{
    m_wrong = true;
    update();
}

void ResolutionBox::stepBy(int steps)
{
    const std::string text = lineEdit()->text().toStdString();
    lineEdit()->setText(QString::fromStdString(StepResolution(text, steps, m_highest)));
    lineEdit()->selectAll();
}

void ResolutionBox::paintEvent(QPaintEvent* event)
{
    QAbstractSpinBox::paintEvent(event);
    if (!m_wrong)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(0xc0, 0x39, 0x2b), 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 3, 3);
}

} // namespace kelvane
