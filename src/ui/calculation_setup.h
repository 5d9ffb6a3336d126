#pragma once

#include <array>

#include "engine/calculation_modes.h"
#include "ui/settings_dialog.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QRadioButton;

namespace kelvane {

class ScoreBar;

// The calculation-mode dialog: Simple or Advanced for 2D and for 3D, the additions of Advanced 2D,
// and a chart that compares what is chosen. Mode3D and AltFamily are left alone.
class CalculationSetup : public SettingsDialog {
    Q_OBJECT

public:
    // Writes to modes, which must outlive the dialog.
    CalculationSetup(CalculationModes& modes, QWidget* parent);

protected:
    void ShowAccepted() override;
    void ShowDefaults() override;
    bool TakeOver() override;
    QWidget* FirstField() override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* target, QEvent* event) override; // clicks on greyed tick boxes

private:
    QGroupBox* Build2D();
    QGroupBox* Build3D();
    QGroupBox* BuildChart();
    QGroupBox* BuildDescription();
    void ConnectChoices();

    // The controls' states as settings, and back.
    CalculationModes Draft() const;
    void Show(const CalculationModes& modes, ChartChoice chart);
    ChartChoice Chart() const;

    void ShowTicks(const CalculationModes& modes);
    void Describe(int index);
    void DrawChart();
    void FitDescription();

    CalculationModes& m_modes;
    ChartChoice m_acceptedChart = ChartChoice::Mode2D;  // with OK
    QRadioButton* m_simple2D = nullptr;                 // "Option1", CalcMode2D
    QRadioButton* m_advanced2D = nullptr;               // "Option2"
    QCheckBox* m_doubleDraw = nullptr;                  // "Check1", DoubleDraw
    QCheckBox* m_multiDraw = nullptr;                   // "Check2", MultiDraw
    QRadioButton* m_simple3D = nullptr;                 // "Option3", CalcMode3D
    QRadioButton* m_advanced3D = nullptr;               // "Option4"
    QRadioButton* m_chart2D = nullptr;                  // "Option5": the chart shows the 2D choice
    QRadioButton* m_chart3D = nullptr;                  // "Option6"
    std::array<ScoreBar*, kScoreNames.size()> m_bars{}; // "Shape1(0)" to "Shape1(3)"
    QLabel* m_description = nullptr;                    // "Description"
};

} // namespace kelvane
