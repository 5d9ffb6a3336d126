#pragma once

#include <QTimer>
#include <array>

#include "ui/settings_dialog.h"
#include "view3d/rotation.h"

class QHBoxLayout;
class QLabel;

namespace kelvane {

class AngleDial;

// The "Rotate" dialog: two angles, typed into a box or set on the dial beside it. OK makes the
// matrix that rotation, whatever it was before; nothing else changes it. Box and dial 0 turn about
// Z, 1 about Y.
class RotateDialog : public SettingsDialog {
    Q_OBJECT

public:
    // The matrix is written by OK and outlives the dialog.
    RotateDialog(Matrix3& matrix, QWidget* parent);

    // Shows the dialog for a sheet of 2 or 3 dimensions; true when OK has written the matrix.
    // In the plane there is no turn about Y.
    bool AskFor(Dimensions dimensions);

protected:
    void ShowAccepted() override;
    void ShowDefaults() override;
    bool TakeOver() override;
    QWidget* FirstField() override;

private:
    struct Angle {
        QWidget* Panel = nullptr;
        QLineEdit* Box = nullptr;  // "Text1(i)"
        AngleDial* Dial = nullptr; // "Shape1(i)", its needle the property "Line3"
        QString Accepted = "0";
    };

    void AddAngle(QHBoxLayout& row, std::size_t i, const QString& caption);
    void Show(std::size_t i, const QString& text);
    void ReadBox(std::size_t i);
    void Complain();
    void Refuse(std::size_t i);

    Matrix3& m_matrix;
    Dimensions m_dimensions = Dimensions::Three;
    QLabel* m_hint = nullptr;
    std::array<Angle, 2> m_angles;
    std::size_t m_wrong = 0; // the box that the complaint is about
    QTimer m_complaint;      // fires when the change that cannot be read is over
};

} // namespace kelvane
