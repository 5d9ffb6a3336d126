#include "ui/setup_commands.h"

#include "engine/checks.h"
#include "engine/point_evaluation.h"
#include "ui/axis3d_setup_dialog.h"
#include "ui/axis_setup_dialog.h"
#include "ui/calculation_setup.h"
#include "ui/color_setup_dialog.h"
#include "ui/draw_setup_dialog.h"
#include "ui/editor_region.h"
#include "ui/graph_sheet.h"
#include "ui/matrix_dialog.h"
#include "ui/menu_region.h"
#include "ui/rotate_dialog.h"
#include "ui/value_tables.h"
#include "ui/view_dialogs.h"

namespace kelvane {

namespace {

// The line of an equation's number as it was typed, powers in "^(" and ")".
std::string LineOf(const SheetText& sheet, int number)
{
    const int slots = sheet.LinesPerPage + 1;
    const std::string& page = sheet.PagePlain[static_cast<std::size_t>((number - 1) / slots)];
    std::size_t begin = 0;
    for (int line = (number - 1) % slots; line > 0; --line)
        begin = std::min(page.find('\r', begin), page.size() - 1) + 1;
    return page.substr(begin, page.find('\r', begin) - begin);
}

} // namespace

SetupCommands::SetupCommands(SharedState& state, GraphSheet& sheet, EditorRegion& editor,
                             QWidget& window)
    : QObject(&window)
    , m_state(state)
    , m_sheet(sheet)
    , m_editor(editor)
    , m_window(window)
{
}

bool SetupCommands::Carry(Command command)
{
    switch (command) {
    case Command::Graph2D:
    case Command::Graph3D:
        m_sheet.ShowSheet(command == Command::Graph3D);
        Q_EMIT viewChanged();
        return true;
    case Command::SlopeMode:
        m_state.Modes.AltFamily = !m_state.Modes.AltFamily;
        m_sheet.DrawAgain();
        return true;
    case Command::Range:
        if (AskForRange(m_sheet, &m_window))
            Q_EMIT viewChanged();
        return true;
    case Command::Zoom:
        if (AskForZoom(m_state.View, &m_window))
            Q_EMIT viewChanged();
        return true;
    case Command::ValueTable:
        ShowValues();
        return true;
    default:
        return CarrySetup(command);
    }
}

bool SetupCommands::CarrySetup(Command command)
{
    using Asker = void (SetupCommands::*)();
    constexpr std::pair<Command, Asker> kAskers[] = {
        {Command::Complexity, &SetupCommands::AskForModes},
        {Command::AxisSetup, &SetupCommands::AskForAxes},
        {Command::Setup3D, &SetupCommands::AskForAxes3D},
        {Command::DrawSetup, &SetupCommands::AskForDrawing},
        {Command::SheetColor, &SetupCommands::AskForColor},
        {Command::Rotate, &SetupCommands::AskForRotation},
        {Command::Matrix, &SetupCommands::AskForMatrix},
    };
    for (const auto& [known, ask] : kAskers) {
        if (known != command)
            continue;
        (this->*ask)();
        return true;
    }
    return false;
}

void SetupCommands::AskForModes()
{
    if (m_modes == nullptr)
        m_modes = new CalculationSetup(m_state.Modes, &m_window);
    if (m_modes->Ask())
        m_sheet.DrawAgain();
}

void SetupCommands::AskForAxes()
{
    if (m_axes == nullptr)
        m_axes = new AxisSetupDialog(m_state.AxisScale, &m_window);
    m_sheet.PrepareAxisSetup();
    m_axes->SetDrawArea(m_sheet.AxisHalfSpan(), m_sheet.Area());
    while (m_axes->Ask()) {
        if (m_sheet.TakeAxisSetup())
            return Q_EMIT viewChanged();
        Q_EMIT messageWanted("Axis Setup", "So far out, or so small, neighbouring points cannot be "
                                           "told apart.");
    }
}

void SetupCommands::AskForAxes3D()
{
    if (m_axes3D == nullptr)
        m_axes3D = new Axis3DSetupDialog(m_state.Axis3D, m_state.AxisScale, &m_window);
    m_sheet.PrepareAxisSetup();
    if (!m_axes3D->Ask())
        return;
    m_sheet.FitArea();
    Q_EMIT viewChanged();
}

void SetupCommands::AskForDrawing()
{
    if (m_drawing == nullptr)
        m_drawing = new DrawSetupDialog(m_state.Settings,
                                        {m_state.View.Step2D, m_state.View.Step3D,
                                         m_state.Colors.Graph2DColor, m_state.Colors.Graph3DColor},
                                        &m_window);
    if (!m_drawing->Ask())
        return;
    m_sheet.TakeResolution();
    if (m_drawing->RedrawDue())
        Q_EMIT viewChanged();
}

void SetupCommands::AskForColor()
{
    if (m_color == nullptr) {
        m_color = new ColorSetupDialog(m_state.Settings, &m_window);
        connect(m_color, &ColorSetupDialog::sheetColorChanged, this, [this](Rgb color) {
            Q_EMIT sheetColorChanged(color);
            Q_EMIT viewChanged();
        });
    }
    m_color->Ask();
}

void SetupCommands::AskForRotation()
{
    if (m_rotation == nullptr)
        m_rotation = new RotateDialog(m_state.ViewMatrix, &m_window);
    if (m_rotation->AskFor(m_state.Modes.Mode3D ? Dimensions::Three : Dimensions::Two))
        Q_EMIT viewChanged();
}

void SetupCommands::AskForMatrix()
{
    const bool is3D = m_state.Modes.Mode3D;
    MatrixDialog*& dialog = m_matrices[is3D ? 1 : 0];
    if (dialog == nullptr)
        dialog = new MatrixDialog(m_state.ViewMatrix, is3D ? Dimensions::Three : Dimensions::Two,
                                  &m_window);
    dialog->Ask();
    if (dialog->HasChanged())
        Q_EMIT viewChanged();
}

void SetupCommands::ShowValues()
{
    const bool is3D = m_state.Modes.Mode3D;
    ValueTableBase*& table = m_tables[is3D ? 1 : 0];
    if (table == nullptr && is3D)
        table = new ValueTable3D([this] { return FirstEquation(); }, &m_window);
    else if (table == nullptr)
        table = new ValueTable([this] { return FirstEquation(); }, &m_window);
    table->Open();
}

// The first ticked equation and how its values are found; nothing, after a message, when there is
// none or the equations are refused.
std::optional<TableSource> SetupCommands::FirstEquation()
{
    m_editor.Store();
    const CalculationModes& modes = m_state.Modes;
    EquationTable table;
    auto fault = FindFault(table, m_state.Sheet, m_state.Ticks, modes);
    const int number = FirstTickedEquation(table, m_state.Ticks);
    if (!fault && number > table.EquationCount)
        fault = EquationFault{Fault::NothingTicked};
    if (fault) {
        const Message message = DescribeFault(*fault, table);
        Q_EMIT messageWanted(QString::fromStdString(message.Title),
                             QString::fromStdString(message.Text));
        return std::nullopt;
    }
    const PointRule rule =
        modes.Mode3D ? PointRule{Dependent::Z, modes.CalcMode3D, SolveRangeZ(m_state.View)}
                     : PointRule{Dependent::Y, modes.CalcMode2D, SolveRangeY(m_state.View)};
    return TableSource{table.At(number), rule, LineOf(m_state.Sheet, number)};
}

} // namespace kelvane
