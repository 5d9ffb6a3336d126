#include "ui/graph_menu.h"

#include "ui/icon_theme.h"
#include "ui/menu_region.h"

namespace kelvane {

GraphMenu::GraphMenu(bool showsGrid)
{
    setObjectName("DrawSheetPopup");
    setTitle("Draw Sheet");
    connect(Add("CleanItem", "Clean", "clear"), &QAction::triggered, this, &GraphMenu::cleanWanted);
    connect(Add("CopyGraph", "Copy &Graph", "copy"), &QAction::triggered, this,
            &GraphMenu::copyWanted);
    addSeparator();
    AddCommand("AxisItem", "Axis Setup...", "axis_setup", Command::AxisSetup);
    AddCommand("Setup3DItem", "3D Setup...", "axis_setup_3d", Command::Setup3D);
    AddCommand("ColorItem", "Background Color...", "color", Command::SheetColor);
    QAction* grid = Add("ShowGrids", "Show Grids", "grid");
    grid->setCheckable(true);
    grid->setChecked(showsGrid);
    connect(grid, &QAction::toggled, this, &GraphMenu::gridToggled);
    AddCommand("DrawItem", "Draw Setup...", "draw_setup", Command::DrawSetup);
}

QAction* GraphMenu::Add(const char* name, const char* text, const char* icon)
{
    QAction* action = addAction(ThemeIcon(icon), text);
    action->setObjectName(name);
    return action;
}

void GraphMenu::AddCommand(const char* name, const char* text, const char* icon, Command command)
{
    connect(Add(name, text, icon), &QAction::triggered, this,
            [this, command] { Q_EMIT chosen(command); });
}

} // namespace kelvane
