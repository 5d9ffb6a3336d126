#pragma once

#include <QAbstractSlider>
#include <QLineF>

#include "view3d/rotation.h"

namespace kelvane {

// A round dial with a needle on which an angle is read and set, in whole degrees: by pressing and
// dragging inside the square around the circle, with the arrow keys (1 degree) and with PageUp and
// PageDown (15 degrees). Angles grow counterclockwise from the direction to the right.
//
// The slider's value is the angle in whole degrees, 0 to 360, as assistive technology reads and
// sets it; the needle itself may stand anywhere.
class AngleDial : public QAbstractSlider {
    Q_OBJECT
    Q_PROPERTY(QLineF Line3 READ Line3) // the needle, from the centre to the rim, in pixels

public:
    explicit AngleDial(QWidget* parent = nullptr);

    // Points the needle to an angle, of any size and sign. No signal.
    void Aim(double radians);

    // The square around the circle, in this widget's pixels.
    DialFace Face() const;
    QLineF Line3() const;

    QSize sizeHint() const override;

Q_SIGNALS:
    // The user has turned the needle to this many degrees, "0" to "360".
    void turned(const QString& degrees);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void sliderChange(SliderChange change) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void Follow(const QMouseEvent& event);
    void Step(int degrees);
    void PaintFace(QPainter& painter) const;
    void PaintNeedle(QPainter& painter) const;

    double m_radians = 0;
    bool m_aiming = false; // the value follows the needle, not the reverse
};

} // namespace kelvane
