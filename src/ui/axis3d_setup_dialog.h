#pragma once

#include "ui/settings_dialog.h"
#include "view3d/axis_model.h"
#include "view3d/axis_setup.h"

class QRadioButton;

namespace kelvane {

class NumberSpin;
class PreviewBox;

// "Axis3D Setup": how the axes of 3D mode are laid out. OK writes the model; what has to be drawn
// anew is then up to whoever asked, or listens to accepted().
class Axis3DSetupDialog : public SettingsDialog {
    Q_OBJECT

public:
    // Both must outlive the dialog. The setup gives the lengths in the preview.
    Axis3DSetupDialog(AxisModel& accepted, const AxisSetup& setup, QWidget* parent);

protected:
    void ShowAccepted() override;
    void ShowDefaults() override;
    bool TakeOver() override;
    QWidget* FirstField() override;

private:
    QWidget* MakeFrame();
    QWidget* MakeAngleRow();
    void ChooseModel();
    void ShowPreview();

    AxisModel& m_accepted;
    const AxisSetup& m_setup;
    int m_acceptedAngle = kUsualAxisAngle; // as typed, which the model's half does not tell
    int m_angle = kUsualAxisAngle;         // the last good one in the box

    QRadioButton* m_realWorld = nullptr; // "Option1": RealWorldAxis
    QRadioButton* m_simple = nullptr;    // "Option2"
    QWidget* m_angleRow = nullptr;
    NumberSpin* m_spin = nullptr;    // "UpDown1", whose text is "Text1": Axis3DHalfAngle
    PreviewBox* m_preview = nullptr; // "DrawBox"
};

} // namespace kelvane
