#pragma once

#include <QAbstractSpinBox>
#include <QLineEdit>

namespace kelvane {

// A number box with a spinner for a resolution. It takes any text: OK says what is wrong.
class ResolutionBox : public QAbstractSpinBox {
    Q_OBJECT

public:
    // The spinner reaches from 1 to the highest resolution.
    ResolutionBox(const QString& accessibleName, double highest);

    QLineEdit& Edit() const { return *lineEdit(); }

    // Gives the keyboard to the box, its text selected.
    void Focus();

    // Until the text changes. A style sheet cannot do it, it would spoil the spinner.
    void MarkWrong();

    void stepBy(int steps) override;

protected:
    StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }
    void paintEvent(QPaintEvent* event) override;

private:
    double m_highest;
    bool m_wrong = false;
};

} // namespace kelvane
