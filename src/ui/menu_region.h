#pragma once

#include <QString>
#include <QWidget>

class QAbstractButton;

namespace kelvane {

struct CalculationModes;

// The commands of the menu, in the order of its panels.
enum class Command {
    New,
    Open,
    Save,
    SaveAs,
    Recent,
    Help,
    Graph2D,
    Graph3D,
    SlopeMode,
    AxisSetup,
    Setup3D,
    FullScreen,
    PrintSheet,
    Complexity,
    DrawSetup,
    Range,
    Zoom,
    AutoClean,
    SheetColor,
    PrintDraw,
    Trace,
    Slope,
    Area,
    Matrix,
    Rotate,
    ValueTable,
    SearchValue
};

// The menu ("MenuFrame"): a tab strip ("MainMenuTabStrip") over four panels of commands
// ("MenuBar(i)"), each an icon with a caption and a tool tip. Commands whose feature this version
// lacks are disabled.
class MenuRegion : public QWidget {
    Q_OBJECT

public:
    explicit MenuRegion(QWidget* parent = nullptr);

    // The button of a command, named as in "File(0)" or "DrawChk".
    QAbstractButton& Button(Command command);

    // Presses the buttons of what is chosen: the sheet, and the slope mode, which 2D sheets have.
    void ShowModes(const CalculationModes& modes);

Q_SIGNALS:
    void chosen(kelvane::Command command);
};

} // namespace kelvane
