#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <optional>

#include "engine/value_table.h"

class QBoxLayout;
class QGridLayout;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace kelvane {

// What a value table shows: the first ticked equation, prepared, and how its values are found.
struct TableSource {
    Equation Shown;
    PointRule Rule;
    std::string Line; // the equation as typed, powers in "^(" and ")"
};

// Gives what to show; nothing, after telling the user why, where there is no such equation.
using TableProvider = std::function<std::optional<TableSource>()>;

// A window beside the main window with five rows of values. It asks for its equation when it is
// opened and keeps a copy: later changes of the equation, the modes or the view show when it is
// opened again. While it is open, the step can be typed and pages turned.
class ValueTableBase : public QDialog {
    Q_OBJECT

public:
    // Shows the table around 0 with a step of 1 and comes to the front. False, and nothing
    // happens, where there is no equation.
    bool Open();

    // The table as comma-separated text, as the command "values" writes it: a new file in the place
    // of an old one, whole or not at all. False where it cannot be written, after a message.
    bool writeCsv(const QString& path);

    // The table with tabs between the columns and a header, onto the clipboard.
    void copyTable();

    void nextPage();
    void previousPage();

protected:
    ValueTableBase(Dependent variable, TableProvider provider, QWidget* parent);

    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* target, QEvent* event) override; // Ctrl+C in a box

private:
    QWidget* BuildHeading();
    QGridLayout* BuildRows();
    QBoxLayout* BuildPaging();
    QBoxLayout* BuildAxisChoice();
    QWidget* BuildButtons();
    QLineEdit* MakeBox(const QString& name, int column, int row);

    void Fill();
    void ShowEquation();
    void Turn(PageTurn turn);
    void TakeStep();
    void MarkStep(const QString& problem);
    void AskForCsv();
    void Say(const QString& text);

    const Dependent m_variable;
    const int m_columns; // x, y and, on a 3D sheet, z
    TableProvider m_provider;
    TableSource m_source;
    TableState m_state;
    TableRows m_rows;
    std::array<std::array<QLineEdit*, 3>, kTableRows> m_boxes{}; // "Text1(0)" ... by row, column
    QLabel* m_equation = nullptr;                                // "EquationText"
    QLineEdit* m_step = nullptr;                                 // 2D "Text3", 3D "StepText"
    QRadioButton* m_alongX = nullptr;                            // 3D: "Option1"
    QRadioButton* m_alongY = nullptr;                            // 3D: "Option2"
};

// x and y of an equation on a 2D sheet.
class ValueTable : public ValueTableBase {
    Q_OBJECT

public:
    ValueTable(TableProvider provider, QWidget* parent);
};

// x, y and z of an equation on a 3D sheet; pages move along x or along y.
class ValueTable3D : public ValueTableBase {
    Q_OBJECT

public:
    ValueTable3D(TableProvider provider, QWidget* parent);
};

} // namespace kelvane
