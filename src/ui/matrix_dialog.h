#pragma once

#include <vector>

#include "ui/settings_dialog.h"
#include "view3d/matrix_setup.h"

class QGridLayout;
class QLabel;

namespace kelvane {

// The "Matrix 2D" and "Matrix 3D" dialogs: on the left a grid of boxes for a matrix T ("Text1(k)"),
// on the right the current matrix ("Label4(k)"), between them what to do with the two. Numbers go
// down the columns.
//
// "Multiply =>", "Add =>" and Default write the matrix at once; Cancel puts back the labels but not
// the matrix. So the caller draws again whenever HasChanged(), however the dialog was closed.
class MatrixDialog : public SettingsDialog {
    Q_OBJECT

public:
    // The matrix outlives the dialog.
    MatrixDialog(Matrix3& matrix, Dimensions dimensions, QWidget* parent);

    // True when the matrix is another one than when the dialog opened.
    bool HasChanged() const { return m_matrix != m_opened; }

    bool eventFilter(QObject* target, QEvent* event) override;

protected:
    void ShowAccepted() override;
    void ShowDefaults() override;
    bool TakeOver() override;
    QWidget* FirstField() override;
    void showEvent(QShowEvent* event) override;

private:
    void AddTyped(QGridLayout& table);
    void AddOperations(QGridLayout& table);
    void AddCurrent(QGridLayout& table);
    void Apply(MatrixOperation operation);
    void ShowLabels();

    const Matrix3& m_matrix;
    Matrix3 m_opened;
    MatrixSetup m_setup;
    QLabel* m_hint = nullptr;
    std::vector<QLineEdit*> m_boxes;
    std::vector<QLabel*> m_labels;
};

} // namespace kelvane
