#pragma once

#include <functional>
#include <vector>

#include "ui/draw_preview.h"
#include "ui/settings_dialog.h"
#include "view3d/draw_setup.h"

class QCheckBox;
class QComboBox;
class QRadioButton;
class QStackedWidget;
class QTabWidget;

namespace kelvane {

class GradientBar;
class NumberSpin;

// Draw Setup: how finely, in what style and in which colours graphs are drawn. The settings are
// seen through six groups of controls, one for each tab and dimension.
class DrawSetupDialog : public SettingsDialog {
    Q_OBJECT

public:
    // What the settings hold now is what "Default" shows later. The settings and what "shared"
    // refers to must outlive the dialog.
    DrawSetupDialog(DrawSettings& settings, const DrawShared& shared, QWidget* parent = nullptr);

    // Shows the group of the selected tab and dimension.
    void FixTab();

    // Whether the OK that Ask() has reported asks for a redraw through InitAxis.
    bool RedrawDue() const { return m_redrawDue; }

protected:
    void ShowAccepted() override;
    void ShowDefaults() override;
    bool TakeOver() override;
    QWidget* FirstField() override;

private:
    // Between a control and its field of the draft.
    struct Binding {
        std::function<void(const DrawDraft&)> Show;
        std::function<void(DrawDraft&)> Read;
    };

    template <class Control, class Field>
    void Bind(Control* control, const QString& name, Field field);

    QLayout* BuildLeftSide();
    void AddTab(const QString& caption, QWidget* group2D, QWidget* group3D);
    QLayout* BuildRightSide();
    QWidget* BuildQuality2D();
    QWidget* BuildQuality3D();
    QWidget* BuildTechnique2D();
    QWidget* BuildTechnique3D();
    QWidget* BuildColor2D();
    QWidget* BuildColor3D();

    DrawDraft Read() const;
    void Show(const DrawDraft& draft);
    void ShowDependent(const DrawDraft& draft); // what follows from other controls
    void OnChange();
    void OnStyle3D(int style, bool chosen);
    void OnFill(bool ticked);
    void OnScheme();
    SheetKind Kind() const;
    bool Refuse(SheetKind kind); // the resolution is invalid

    DrawSettings& m_settings;
    DrawShared m_shared;
    DrawDraft m_defaults;
    SheetKind m_acceptedKind = SheetKind::Sheet2D; // shown when OK was last pressed
    bool m_redrawDue = false;
    bool m_showing = false; // controls are being filled: their signals mean nothing

    std::vector<Binding> m_bindings;
    QRadioButton* m_show2D = nullptr;      // "Option1"
    QRadioButton* m_show3D = nullptr;      // "Option2"
    QTabWidget* m_tabs = nullptr;          // its bar is "TabStrip1"
    std::vector<QStackedWidget*> m_groups; // of each tab: for 2D and for 3D
    NumberSpin* m_resolution2D = nullptr;  // "Text1(0)"
    NumberSpin* m_resolution3D = nullptr;  // "Text1(7)"
    QCheckBox* m_vertical = nullptr;       // "Check3(0)"
    QCheckBox* m_horizontal = nullptr;     // "Check3(1)"
    QComboBox* m_technique = nullptr;      // "Combo2"
    QComboBox* m_scheme = nullptr;         // "ColorCombo"
    GradientBar* m_gradient2D = nullptr;
    GradientBar* m_gradient3D = nullptr;
    DrawPreview* m_preview = nullptr;
};

} // namespace kelvane
