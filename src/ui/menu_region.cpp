#include "ui/menu_region.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <array>

#include "engine/calculation_modes.h"
#include "ui/icon_theme.h"

namespace kelvane {

namespace {

enum class Kind { Push, Choice, Toggle };

struct MenuRow {
    Command What;
    int Tab;
    const char* Name; // of the control
    const char* Label;
    const char* ToolTip;
    const char* Icon;
    Kind Is = Kind::Push;
};

constexpr const char* kTabs[] = {"File", "Sheet", "Draw", "Tools"};
constexpr int kColumns = 5;

constexpr MenuRow kRows[] = {
    {Command::New, 0, "File(0)", "New", "New", "new"},
    {Command::Open, 0, "File(1)", "Open", "Open", "open"},
    {Command::Save, 0, "File(2)", "Save", "Save", "save"},
    {Command::SaveAs, 0, "File(3)", "Save As", "Save As...", "save_as"},
    {Command::Recent, 0, "File(4)", "Recent", "Recent Files", "recent"},
    {Command::Help, 0, "File(5)", "Help", "Help", "help"},
    {Command::Graph2D, 1, "DrawOption(0)", "2D Graph", "", "sheet_2d", Kind::Choice},
    {Command::Graph3D, 1, "DrawOption(1)", "3D Graph", "", "sheet_3d", Kind::Choice},
    {Command::SlopeMode, 1, "DrawChk", "SlopeMod", "Slope Mode", "slope_mode", Kind::Toggle},
    {Command::AxisSetup, 1, "Draw(3)", "Axis", "Axis Setup...", "axis_setup"},
    {Command::Setup3D, 1, "Draw(4)", "3D Setup", "3D Setup", "axis_setup_3d"},
    {Command::FullScreen, 1, "Draw(5)", "FullScreen", "Full Screen", "full_screen"},
    {Command::PrintSheet, 1, "Draw(6)", "Print", "Printer", "print"},
    {Command::Complexity, 2, "Setup(0)", "Complexity", "Calculations", "complexity"},
    {Command::DrawSetup, 2, "Setup(1)", "Draw Set", "Draw Setup", "draw_setup"},
    {Command::Range, 2, "Setup(2)", "Range", "Range Setup", "range"},
    {Command::Zoom, 2, "Setup(3)", "Zoom", "Zoom Setup", "zoom"},
    {Command::AutoClean, 2, "Setup(4)", "AutoClean", "Auto Clean", "auto_clean"},
    {Command::SheetColor, 2, "Setup(5)", "Color", "Sheet Color", "color"},
    {Command::PrintDraw, 2, "Setup(6)", "Print", "Printer", "print"},
    {Command::Trace, 3, "OptionChk(0)", "Trace", "Trace", "trace", Kind::Toggle},
    {Command::Slope, 3, "OptionChk(1)", "Slope", "Trace", "slope", Kind::Toggle},
    {Command::Area, 3, "Options(2)", "Area", "Area Division", "area"},
    {Command::Matrix, 3, "Options(3)", "Matrix", "Matrix", "matrix"},
    {Command::Rotate, 3, "Options(4)", "Rotate", "Rotate", "rotate"},
    {Command::ValueTable, 3, "Options(5)", "Values", "Value Table", "value_table"},
    {Command::SearchValue, 3, "Options(6)", "Find Val", "Search Value", "search_value"},
};

constexpr Command kLater[] = {Command::FullScreen, Command::PrintSheet, Command::AutoClean,
                              Command::PrintDraw,  Command::Trace,      Command::Slope,
                              Command::Area,       Command::SearchValue};

const MenuRow& RowOf(Command command)
{
    return *std::find_if(std::begin(kRows), std::end(kRows),
                         [command](const MenuRow& row) { return row.What == command; });
}

QToolButton* MakeButton(const MenuRow& row)
{
    auto* button = new QToolButton;
    button->setObjectName(row.Name);
    button->setText(row.Label);
    button->setToolTip(row.ToolTip);
    button->setAccessibleName(row.Label);
    button->setAccessibleDescription(row.ToolTip);
    button->setIcon(ThemeIcon(row.Icon));
    button->setIconSize({24, 24});
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus); // a click leaves the focus where typing goes
    button->setCheckable(row.Is != Kind::Push);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QFont small = button->font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    button->setFont(small);
    return button;
}

} // namespace

MenuRegion::MenuRegion(QWidget* parent)
    : QWidget(parent)
{
    auto* frame = new QGroupBox("Menu");
    frame->setObjectName("MenuFrame");
    auto* tabs = new QTabBar;
    tabs->setObjectName("MainMenuTabStrip");
    tabs->setAccessibleName(tr("Menu"));
    tabs->setExpanding(true);
    tabs->setDrawBase(false);
    auto* panels = new QStackedWidget;
    auto* sheets = new QButtonGroup(this);
    std::array<QGridLayout*, std::size(kTabs)> grids{};
    for (std::size_t i = 0; i < grids.size(); ++i) {
        tabs->addTab(kTabs[i]);
        auto* panel = new QWidget;
        panel->setObjectName(QString("MenuBar(%1)").arg(i));
        grids[i] = new QGridLayout(panel);
        grids[i]->setContentsMargins(0, 0, 0, 0);
        grids[i]->setSpacing(0);
        for (int column = 0; column < kColumns; ++column)
            grids[i]->setColumnStretch(column, 1);
        grids[i]->setRowStretch(2, 1);
        panels->addWidget(panel);
    }
    for (const MenuRow& row : kRows) {
        QToolButton* button = MakeButton(row);
        QGridLayout* grid = grids[static_cast<std::size_t>(row.Tab)];
        const int place = grid->count();
        grid->addWidget(button, place / kColumns, place % kColumns);
        if (row.Is == Kind::Choice)
            sheets->addButton(button);
        connect(button, &QToolButton::clicked, this, [this, &row] { Q_EMIT chosen(row.What); });
    }
    connect(tabs, &QTabBar::currentChanged, panels, &QStackedWidget::setCurrentIndex);
    auto* inner = new QVBoxLayout(frame);
    inner->setContentsMargins(4, 4, 4, 4);
    inner->setSpacing(4);
    inner->addWidget(tabs);
    inner->addWidget(panels);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);
    for (const Command later : kLater)
        Button(later).setEnabled(false);
    ShowModes({});
}

void MenuRegion::ShowModes(const CalculationModes& modes)
{
    Button(modes.Mode3D ? Command::Graph3D : Command::Graph2D).setChecked(true);
    Button(Command::SlopeMode).setChecked(modes.AltFamily);
    Button(Command::SlopeMode).setEnabled(!modes.Mode3D);
}

QAbstractButton& MenuRegion::Button(Command command)
{
    return *findChild<QAbstractButton*>(RowOf(command).Name);
}

} // namespace kelvane
