#pragma once

#include <QAbstractSpinBox>
#include <QLineEdit>

namespace kelvane {

// A number box with a spinner. The text is free, so that whoever reads it can say what is wrong
// with it; the arrows, Up, Down, the wheel (1) and PageUp, PageDown (10) go on from the number in
// it or, if there is none, from the last one, and stay within the bounds, unless it is beyond.
class NumberSpin : public QAbstractSpinBox {
    Q_OBJECT

public:
    enum class Steps { Whole, Any }; // whether a step rounds to a whole number

    // The accessible name is that of the box and of the text in it.
    NumberSpin(double low, double high, Steps steps, const QString& accessibleName = {});

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
