#include "ui/splash.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <cmath>

namespace kelvane {

Splash::Splash()
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    setObjectName("Splash");
    setAccessibleName("Kelvane " KELVANE_VERSION);
    setFixedSize(460, 260);
    move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
}

void Splash::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = palette().color(QPalette::Highlight);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    // A damped wave runs under the text.
    QPainterPath wave;
    for (int x = 0; x <= width(); ++x) {
        const double y = 196 + 46 * std::exp(-x / 260.0) * std::sin(x / 22.0);
        x == 0 ? wave.moveTo(x, y) : wave.lineTo(x, y);
    }
    QColor axis = palette().color(QPalette::Text);
    axis.setAlphaF(0.25F);
    painter.setPen(QPen(axis, 1));
    painter.drawLine(QPointF(0, 196.5), QPointF(width(), 196.5));
    painter.setPen(QPen(accent, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(wave);
    QFont name = font();
    name.setPixelSize(44);
    name.setWeight(QFont::DemiBold);
    painter.setFont(name);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(QRect(32, 28, 400, 60), Qt::AlignLeft | Qt::AlignVCenter, "Kelvane");
    QFont small = font();
    small.setPixelSize(15);
    painter.setFont(small);
    painter.drawText(QRect(34, 88, 400, 24), Qt::AlignLeft | Qt::AlignVCenter,
                     "Type equations, see their curves");
    QColor soft = palette().color(QPalette::Text);
    soft.setAlphaF(0.6F);
    painter.setPen(soft);
    painter.drawText(QRect(34, 112, 400, 24), Qt::AlignLeft | Qt::AlignVCenter,
                     "Version " KELVANE_VERSION);
    painter.setPen(QPen(axis, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

bool Splash::eventFilter(QObject* target, QEvent* event)
{
    const bool isInput =
        event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress;
    if (!isVisible() || !isInput || !target->isWidgetType())
        return false;
    m_dismissed = true;
    return true;
}

} // namespace kelvane
