#pragma once

#include "ui/settings_dialog.h"
#include "view3d/draw_settings.h"

class QRadioButton;

namespace kelvane {

class ColorSample;
class SheetPreview;

// Color Setup: the colour on which graphs and formulas lie.
class ColorSetupDialog : public SettingsDialog {
    Q_OBJECT

public:
    // The settings must outlive the dialog.
    explicit ColorSetupDialog(DrawSettings& settings, QWidget* parent = nullptr);

    // Makes the colour chosen in the controls the sheet's and says so. OK does it before it accepts
    // the choice.
    void ApplyColor();

Q_SIGNALS:
    // The drawing area and the formula editor must take this colour, and the sheet be redrawn
    // through InitAxis. DrawSettings::SheetColor has it already.
    void sheetColorChanged(kelvane::Rgb color);

protected:
    void ShowAccepted() override;
    bool TakeOver() override;
    QWidget* FirstField() override;

private:
    SheetGround Ground() const;
    void ShowPreview();

    DrawSettings& m_settings;
    QRadioButton* m_white = nullptr;  // "Option1(0)"
    QRadioButton* m_custom = nullptr; // "Option2"
    ColorSample* m_sample = nullptr;  // "Sample(0)"
    SheetPreview* m_preview = nullptr;
};

} // namespace kelvane
