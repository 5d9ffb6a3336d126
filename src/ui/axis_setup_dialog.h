#pragma once

#include <QSize>
#include <array>

#include "ui/settings_dialog.h"
#include "view3d/axis_setup.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QSlider;
class QTabWidget;

namespace kelvane {

class NumberSpin;
class PreviewBox;

// "Axis Setup": where the axes cross, how long their units are, how their marks look. OK writes the
// setup and emits accepted(); the view takes over ScalingOf(setup), and what has to be drawn anew
// is up to whoever listens.
class AxisSetupDialog : public SettingsDialog {
    Q_OBJECT

public:
    // The setup must outlive the dialog.
    explicit AxisSetupDialog(AxisSetup& accepted, QWidget* parent);

    // Tells the half span that ties divisions and units together and the drawing area's size in
    // pixels, for the preview's shape; before the first use and whenever the area is sized, after
    // FollowHalfSpan(accepted). In an open dialog the units follow the divisions.
    void SetDrawArea(float axisHalfSpan, const QSize& area);

    // OK, for other windows: accepts what the controls say, also while the dialog is hidden.
    void Command1_Click(); // NOLINT(readability-identifier-naming): its public name

protected:
    void ShowAccepted() override;
    void ShowDefaults() override;
    bool TakeOver() override;
    QWidget* FirstField() override;

private:
    // The indices of the sliders and their value labels, from X on.
    enum SliderIndex { UnitX = 3, DivisionX = 6, Thickness = 9, SliderEnd = 10 };

    QWidget* MakeCenterPage();
    QWidget* MakeDivisionsPage();
    QWidget* MakeUnitPage();
    QWidget* MakeThicknessPage();
    void AddSlider(QGridLayout& grid, int index, const QString& caption, Qt::Key key);
    void ConnectControls();
    void MoveDivision(std::size_t axis, int divisions);
    void MoveUnit(std::size_t axis, int unit);
    void ShowSlider(int index, int value);
    void ShowUnit(std::size_t axis, float unit);
    void ShowPreview();
    AxisDraft Draft() const;
    bool Refuse(const AxisProblem& problem);
    QSlider& Slider(std::size_t index) const { return *m_sliders[index]; }

    AxisSetup& m_accepted;
    AxisSetup m_shown; // what the preview shows: the draft as far as it is good
    float m_halfSpan = 500;
    QSize m_area{1000, 700};

    QTabWidget* m_tabs = nullptr;                // "TabStrip1"
    QLabel* m_centerText = nullptr;              // "Label7", "Center = (0,0,0)"
    std::array<NumberSpin*, 3> m_center{};       // "UpDown1(i)" with "Text1(i)": Center
    std::array<QSlider*, SliderEnd> m_sliders{}; // "Slider1(i)" from 3: Units, Divisions,
    std::array<QLabel*, SliderEnd> m_values{};   // UnitThickness; "Label3(i)" beside each
    QCheckBox* m_square = nullptr;               // "Check1": SquareWorkSheet
    QCheckBox* m_hide = nullptr;                 // "Check2": HideAxis
    PreviewBox* m_preview = nullptr;
};

} // namespace kelvane
