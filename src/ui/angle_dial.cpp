#include "ui/angle_dial.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>

namespace kelvane {

namespace {

constexpr int kFullTurn = 360;
constexpr int kPageStep = 15;
constexpr int kMargin = 8; // around the circle: room for the grip and the focus ring
constexpr int kSize = 160;

double ToRadians(double degrees)
{
    return degrees * kPiSingle / 180;
}

// Within one turn, with the sign of the angle.
double DegreesInTurn(double radians)
{
    return std::fmod(radians * 180 / kPiSingle, kFullTurn);
}

QPointF ToQt(DialPoint point)
{
    return {point.X, point.Y};
}

QColor Softened(QColor color, float strength)
{
    color.setAlphaF(strength);
    return color;
}

} // namespace

AngleDial::AngleDial(QWidget* parent)
    : QAbstractSlider(parent)
{
    setRange(0, kFullTurn);
    setSingleStep(1);
    setPageStep(kPageStep);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void AngleDial::Aim(double radians)
{
    m_radians = radians;
    const double degrees = DegreesInTurn(radians);
    m_aiming = true;
    setValue(static_cast<int>(std::nearbyint(degrees < 0 ? degrees + kFullTurn : degrees)));
    m_aiming = false;
    update();
}

DialFace AngleDial::Face() const
{
    const int size = std::min(width(), height()) - 2 * kMargin;
    return {(width() - size) / 2.0, (height() - size) / 2.0, static_cast<double>(size)};
}

QLineF AngleDial::Line3() const
{
    return {ToQt(Face().Center()), ToQt(NeedleEnd(Face(), m_radians))};
}

QSize AngleDial::sizeHint() const
{
    return {kSize, kSize};
}

void AngleDial::mousePressEvent(QMouseEvent* event)
{
    Follow(*event);
}

void AngleDial::mouseMoveEvent(QMouseEvent* event)
{
    Follow(*event);
}

// Whichever button is held.
void AngleDial::Follow(const QMouseEvent& event)
{
    const DialPoint pointer{event.position().x(), event.position().y()};
    if (!Face().Contains(pointer))
        return;
    const double radians = PointerAngle(Face(), pointer);
    Aim(radians);
    Q_EMIT turned(QString::fromStdString(DegreesText(radians)));
}

void AngleDial::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        return Step(1);
    case Qt::Key_Down:
    case Qt::Key_Left:
        return Step(-1);
    case Qt::Key_PageUp:
        return Step(kPageStep);
    case Qt::Key_PageDown:
        return Step(-kPageStep);
    case Qt::Key_Home:
        return Step(-value());
    default:
        QAbstractSlider::keyPressEvent(event);
    }
}

// A wheel that turns over the dialog by chance changes nothing.
void AngleDial::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

// By whole degrees, round and round.
void AngleDial::Step(int degrees)
{
    setValue((value() + degrees + kFullTurn) % kFullTurn);
}

void AngleDial::sliderChange(SliderChange change)
{
    if (change == SliderValueChange && !m_aiming) {
        m_radians = ToRadians(value());
        Q_EMIT turned(QString::number(value()));
    }
    QAbstractSlider::sliderChange(change);
}

void AngleDial::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintFace(painter);
    PaintNeedle(painter);
}

void AngleDial::PaintFace(QPainter& painter) const
{
    const QColor ink = palette().color(QPalette::WindowText);
    const QPointF center = ToQt(Face().Center());
    const double radius = Face().Radius();
    painter.setPen(QPen(Softened(ink, 0.45F), 1));
    painter.setBrush(palette().color(isEnabled() ? QPalette::Base : QPalette::Window));
    painter.drawEllipse(center, radius, radius);
    for (int degrees = 0; degrees < kFullTurn; degrees += kPageStep) {
        const double length = degrees % 90 == 0 ? 9 : degrees % 45 == 0 ? 7 : 4;
        DialFace inner = Face();
        inner = {inner.Left + length, inner.Top + length, inner.Size - 2 * length};
        const double angle = ToRadians(degrees);
        painter.setPen(QPen(Softened(ink, degrees % 45 == 0 ? 0.6F : 0.35F), 1));
        painter.drawLine(ToQt(NeedleEnd(inner, angle)), ToQt(NeedleEnd(Face(), angle)));
    }
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    painter.setFont(small);
    painter.setPen(Softened(ink, 0.6F));
    constexpr double kNumbers = 22; // their distance from the rim
    constexpr double kNear = 0.974; // 13 degrees: the needle would strike the number through
    const DialFace ring{Face().Left + kNumbers, Face().Top + kNumbers, Face().Size - 2 * kNumbers};
    for (int degrees = 0; degrees < kFullTurn; degrees += 90) {
        if (std::cos(m_radians - ToRadians(degrees)) > kNear)
            continue;
        QRectF room(0, 0, 40, 20);
        room.moveCenter(ToQt(NeedleEnd(ring, ToRadians(degrees))));
        painter.drawText(room, Qt::AlignCenter, QString::number(degrees));
    }
}

void AngleDial::PaintNeedle(QPainter& painter) const
{
    constexpr double kGrip = 5;
    constexpr int kUnits = 16; // a degree for drawPie
    const QColor accent = palette().color(isEnabled() ? QPalette::Highlight : QPalette::WindowText);
    const QLineF needle = Line3();
    const double radius = Face().Radius();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Softened(accent, 0.2F));
    painter.drawPie(QRectF(Face().Left, Face().Top, Face().Size, Face().Size), 0,
                    static_cast<int>(DegreesInTurn(m_radians) * kUnits));
    painter.setPen(QPen(accent, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(needle);
    painter.setBrush(accent);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(needle.p1(), kGrip / 2 + 0.5, kGrip / 2 + 0.5);
    painter.setPen(QPen(palette().color(QPalette::Window), 1.5));
    painter.drawEllipse(needle.p2(), kGrip + 0.75, kGrip + 0.75);
    if (!hasFocus())
        return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(accent, 1.5));
    painter.drawEllipse(needle.p1(), radius + 3, radius + 3);
}

} // namespace kelvane
