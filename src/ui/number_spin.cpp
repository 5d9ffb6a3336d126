#include "ui/number_spin.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "engine/number_text.h"
#include "ui/settings_dialog.h"
#include "view3d/typed_number.h"

namespace kelvane {

NumberSpin::NumberSpin(double low, double high, Steps steps, const QString& accessibleName)
    : m_low(low)
    , m_high(high)
    , m_steps(steps)
{
    constexpr int kLongest = 400; // too long is for the reader to refuse
    Edit().setMaxLength(kLongest);
    setAccessibleName(accessibleName);
    Edit().setAccessibleName(accessibleName);
    connect(&Edit(), &QLineEdit::textChanged, this, [this] {
        m_last = Value();
        m_marked = false;
        update();
    });
}

void NumberSpin::SetValue(float value)
{
    Edit().setText(QString::fromStdString(ShortestText(value)));
}

void NumberSpin::Mark()
{
    m_marked = true;
    update();
}

double NumberSpin::Value() const
{
    return ReadTyped(Edit().text().toStdString()).value_or(m_last);
}

void NumberSpin::stepBy(int steps)
{
    const double value = Value();
    const double whole = steps > 0 ? std::floor(value) : std::ceil(value);
    const double from = m_steps == Steps::Whole ? whole : value;
    SetValue(static_cast<float>(std::clamp(from + steps, m_low, std::max(m_high, value))));
    selectAll();
}

void NumberSpin::paintEvent(QPaintEvent* event)
{
    QAbstractSpinBox::paintEvent(event);
    if (!m_marked)
        return;
    constexpr double kCorner = 2;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(kWrongColor), 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner, kCorner);
}

QAbstractSpinBox::StepEnabled NumberSpin::stepEnabled() const
{
    const double value = Value(); // from out of range every step leads back
    return (value != m_low ? StepDownEnabled : StepNone) |
           (value != m_high ? StepUpEnabled : StepNone);
}

} // namespace kelvane
