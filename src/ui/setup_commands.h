#pragma once

#include <QObject>
#include <array>
#include <optional>

#include "app/shared_state.h"

class QWidget;

namespace kelvane {

class Axis3DSetupDialog;
class AxisSetupDialog;
class CalculationSetup;
class ColorSetupDialog;
class DrawSetupDialog;
class EditorRegion;
class GraphSheet;
class MatrixDialog;
class RotateDialog;
class ValueTableBase;
enum class Command;
struct TableSource;

// The commands that open a settings dialog or a value table or change the modes, and what follows
// from them. Dialogs are made when first asked for, and kept.
class SetupCommands : public QObject {
    Q_OBJECT

public:
    SetupCommands(SharedState& state, GraphSheet& sheet, EditorRegion& editor, QWidget& window);

    // Carries out the command; false when it is none of these.
    bool Carry(Command command);

Q_SIGNALS:
    void viewChanged(); // the sheet is to be drawn again
    void sheetColorChanged(kelvane::Rgb color);
    void messageWanted(QString title, QString text);

private:
    bool CarrySetup(Command command);
    void AskForModes();
    void AskForAxes();
    void AskForAxes3D();
    void AskForDrawing();
    void AskForColor();
    void AskForRotation();
    void AskForMatrix();
    void ShowValues();
    std::optional<TableSource> FirstEquation();

    SharedState& m_state;
    GraphSheet& m_sheet;
    EditorRegion& m_editor;
    QWidget& m_window;
    CalculationSetup* m_modes = nullptr;
    AxisSetupDialog* m_axes = nullptr;
    Axis3DSetupDialog* m_axes3D = nullptr;
    DrawSetupDialog* m_drawing = nullptr;
    ColorSetupDialog* m_color = nullptr;
    RotateDialog* m_rotation = nullptr;
    std::array<MatrixDialog*, 2> m_matrices{}; // of 2D and 3D sheets
    std::array<ValueTableBase*, 2> m_tables{}; // the same
};

} // namespace kelvane
