#pragma once

#include <QAbstractSpinBox>
#include <QSize>
#include <QWidget>
#include <functional>

#include "view3d/axis_model.h"
#include "view3d/axis_setup.h"

class QPainter;

// The parts that both axis dialogs are made of: the picture of the axes, and the number box.

namespace kelvane {

// A picture on a white sheet, which stays white on dark schemes, like the drawing area's.
class PreviewBox : public QWidget {
    Q_OBJECT

public:
    using Drawing = std::function<void(QPainter& painter, const QRectF& box)>;

    // Higher than this where the layout has more room.
    PreviewBox(const QSize& size, const QString& name, Drawing drawing);

    // Draws anew and tells assistive technology what is to be seen.
    void Show(const QString& description);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Drawing m_drawing;
};

// The work sheet with its axes: X to the right, Y up, Z towards the viewer, with marks at each unit
// (at each second, fifth or so where these would run together) and the centre in numbers. The
// drawing area's size in pixels gives the sheet's shape and scale.
void PaintSheet(QPainter& painter, const QRectF& box, const AxisSetup& setup,
                const QSize& drawArea);

// The axis cross of the 3D mode: the half axes towards the viewer, up and to the right with their
// names, the others dashed.
void PaintCross(QPainter& painter, const QRectF& box, const AxisModel& model, int angle,
                const CrossScale& scale);

// A number box with a spinner. The text is free, so that whoever reads it can say what is wrong
// with it; the arrows, Up, Down, the wheel (1) and PageUp, PageDown (10) go on from the number in
// it or, if there is none, from the last one.
class NumberSpin : public QAbstractSpinBox {
    Q_OBJECT

public:
    enum class Steps { Whole, Any }; // whether a step rounds to a whole number

    NumberSpin(double low, double high, Steps steps);

    QLineEdit& Edit() const { return *lineEdit(); }
    void SetValue(float value);

    // Marks the number as wrong until it is edited.
    void Mark();

    void stepBy(int steps) override;

protected:
    StepEnabled stepEnabled() const override;
    void paintEvent(QPaintEvent* event) override;

private:
    double Value() const;

    double m_low;
    double m_high;
    Steps m_steps;
    double m_last = 0; // the last number that was in the box
    bool m_marked = false;
};

} // namespace kelvane
