#include "ui/plexa.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <cmath>

#include "ui/calculation_setup.h"
#include "ui/draw_box.h"
#include "ui/editor_region.h"
#include "ui/equ_panel.h"
#include "ui/file_commands.h"
#include "ui/formula_editor.h"
#include "ui/functions_list.h"
#include "ui/graph_region.h"
#include "ui/graph_sheet.h"
#include "ui/icon_theme.h"
#include "ui/menu_region.h"
#include "ui/progress_display.h"
#include "ui/settings_region.h"
#include "ui/value_tables.h"
#include "ui/value_text.h"
#include "ui/view_dialogs.h"

namespace kelvane {

namespace {

constexpr int kLeftWidth = 380;
constexpr int kNarrowLeftWidth = 340;
constexpr int kNarrowScreen = 1200;
constexpr int kDrawWidth = 2;
constexpr int kFewSamples = 1000; // from fewer no speed can be told
constexpr int kTitleBar = 40;     // room for it, before the window is maximized
constexpr int kPatience = 200;    // ms, for the window manager

// Commands whose feature this version lacks: disabled, the tool tip stays.
constexpr Command kLater[] = {Command::Help,       Command::Graph3D,    Command::SlopeMode,
                              Command::AxisSetup,  Command::Setup3D,    Command::FullScreen,
                              Command::PrintSheet, Command::DrawSetup,  Command::AutoClean,
                              Command::SheetColor, Command::PrintDraw,  Command::Trace,
                              Command::Slope,      Command::Area,       Command::Matrix,
                              Command::Rotate,     Command::SearchValue};

// With three digits that mean something.
QString SpeedText(double speed)
{
    const double unit = std::pow(10, std::floor(std::log10(speed)) - 2);
    return QString::number(std::round(speed / unit) * unit, 'f', 0);
}

} // namespace

Plexa::Plexa()
{
    setObjectName("Plexa");
    setWindowTitle("Kelvane");
    setWindowIcon(QIcon(":/icons/kelvane.svg"));
    m_state.Settings.DrawWidth = kDrawWidth;
    m_state.Settings.Coloring = Coloring2D::Random;
    BuildRegions();
    BuildTimers();
    ConnectEditor();
    ConnectGraph();
    ConnectSheet();
    ConnectMenu();
    ConnectFiles();
    ConnectMouse();
}

Plexa::~Plexa() = default;

// ---- building

void Plexa::BuildRegions()
{
    QWidget* left = BuildLeftColumn(); // first, for the order of the keyboard's focus
    m_files = new FileCommands(m_state, m_pages, *m_editor, *this);
    m_graph = new GraphRegion;
    m_sheet = new GraphSheet(m_state, m_graph->Box(), this);
    m_sheet->SetStopKey(&m_graph->Key(TopKey::Draw));
    m_columns = new QSplitter(Qt::Horizontal);
    m_columns->setChildrenCollapsible(false);
    m_columns->addWidget(left);
    m_columns->addWidget(m_graph);
    m_columns->setStretchFactor(0, 0);
    m_columns->setStretchFactor(1, 1);
    setCentralWidget(m_columns);
    statusBar()->setObjectName("StatusBar1");
    statusBar()->setSizeGripEnabled(false);
    m_file = new QLabel("File Name:  None");
    m_file->setContentsMargins(8, 0, 0, 0);
    statusBar()->addWidget(m_file, 1);
    auto* tutorial = new QPushButton(ThemeIcon("tutorial"), "Tutorial");
    tutorial->setObjectName("Command1");
    tutorial->setFlat(true);
    tutorial->setEnabled(false);
    tutorial->setToolTip(tr("Not in this version"));
    statusBar()->addPermanentWidget(tutorial);
}

QWidget* Plexa::BuildLeftColumn()
{
    m_editor = new EditorRegion(m_state, m_pages);
    m_menu = new MenuRegion;
    m_settings = new SettingsRegion;
    m_progress = new ProgressDisplay;
    auto* panels = new QHBoxLayout;
    panels->setSpacing(8);
    panels->addWidget(m_settings, 2);
    panels->addWidget(BuildNotePad(), 1);
    auto* lower = new QWidget;
    auto* lowerLayout = new QVBoxLayout(lower);
    lowerLayout->setContentsMargins(8, 4, 8, 4);
    lowerLayout->setSpacing(8);
    lowerLayout->addWidget(m_menu);
    lowerLayout->addLayout(panels, 1);
    lowerLayout->addWidget(m_progress);
    lower->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto* column = new QSplitter(Qt::Vertical);
    column->setChildrenCollapsible(false);
    column->addWidget(m_editor);
    column->addWidget(lower);
    column->setStretchFactor(0, 1);
    column->setStretchFactor(1, 0);
    return column;
}

QWidget* Plexa::BuildNotePad()
{
    auto* frame = new QGroupBox("Note Pad");
    frame->setObjectName("NoteFrame");
    m_notes = new QPlainTextEdit;
    m_notes->setObjectName("NoteText");
    m_notes->setAccessibleName("Note Pad");
    m_notes->setTabChangesFocus(true);
    m_notes->setFrameShape(QFrame::NoFrame);
    m_notes->setMinimumHeight(40);
    m_notes->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_notes);
    return frame;
}

void Plexa::BuildTimers()
{
    const auto timer = [this](const char* name, int interval, bool once) {
        auto* made = new QTimer(this);
        made->setObjectName(name);
        made->setInterval(interval);
        made->setSingleShot(once);
        return made;
    };
    m_blinkTimer = timer("Timer2", 400, false);
    connect(m_blinkTimer, &QTimer::timeout, this, [this, lit = false]() mutable {
        lit = !lit;
        m_graph->Box().SetMarker(lit ? QColor(Qt::red) : QColor(Qt::lightGray));
    });
    m_resizeTimer = timer("Timer5", 120, true);
    connect(m_resizeTimer, &QTimer::timeout, this, [this] {
        if (m_sheet->IsDrawing()) {
            m_resizeTimer->start();
            return;
        }
        m_sheet->FitArea();
        ViewChanged();
    });
    m_statusTimer = timer("Timer6", 250, false);
    connect(m_statusTimer, &QTimer::timeout, this, &Plexa::ShowStatus);
    m_dropTimer = timer("DropTimer", 0, true);
    m_sliderTimer = timer("Timer8", 15, true);
    connect(m_sliderTimer, &QTimer::timeout, this, [this] {
        if (m_sheet->IsDrawing())
            m_sliderTimer->start(); // once more, later
        else if (SetZoom(m_state.View, m_slidZoom))
            ViewChanged();
    });
}

void Plexa::Start()
{
    const QRect available = screen()->availableGeometry();
    setGeometry(available.adjusted(0, kTitleBar, 0, 0));
    const int left = available.width() < kNarrowScreen ? kNarrowLeftWidth : kLeftWidth;
    m_columns->setSizes({left, available.width() - left});
    showMaximized();
    // The lines of a page are fixed for good: the window manager's size must have arrived.
    QElapsedTimer waited;
    waited.start();
    for (QSize seen; (seen != size() || !isMaximized()) && waited.elapsed() < kPatience;) {
        seen = size();
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    m_editor->FixLines();
    m_sheet->FitArea();
    m_sheet->InitAxis();
    InitPerc();
    ShowStatus();
    DescribeGraph();
    m_statusTimer->start();
    connect(windowHandle(), &QWindow::screenChanged, m_resizeTimer, qOverload<>(&QTimer::start));
    FocusEditor();
    m_started = true;
}

void Plexa::BeginWork(const QString& file)
{
    FocusEditor();
    m_files->Begin(file);
}

void Plexa::FocusEditor()
{
    m_editor->Editor().setFocus();
}

// ---- connections

void Plexa::ConnectEditor()
{
    connect(m_editor, &EditorRegion::topKeyPressed, this, &Plexa::TopKey_Click);
    connect(m_editor, &EditorRegion::stopRequested, this, [this] {
        m_sheet->RequestStop();
        EndPicking();
    });
    connect(m_editor, &EditorRegion::messageWanted, this, &Plexa::ShowMessage);
    connect(m_editor, &EditorRegion::newEquationWanted, this, [this] {
        if (m_keypad == nullptr)
            m_keypad = new EquPanel(m_editor->Editor(), this);
        m_keypad->Open();
    });
    connect(m_editor, &EditorRegion::shortKeysWanted, this, [this] {
        if (m_functions == nullptr)
            m_functions = new FunctionsList(this);
        m_functions->show();
        m_functions->raise();
    });
}

void Plexa::ConnectGraph()
{
    connect(m_graph, &GraphRegion::topKeyPressed, this, &Plexa::TopKey_Click);
    connect(m_graph, &GraphRegion::zoomSlid, this, [this](double zoomFactor) {
        m_slidZoom = zoomFactor;
        if (!m_sliderTimer->isActive())
            m_sliderTimer->start();
    });
}

void Plexa::ConnectSheet()
{
    connect(m_sheet, &GraphSheet::drawingChanged, m_graph, &GraphRegion::ShowDrawing);
    connect(m_sheet, &GraphSheet::progressed, this, &Plexa::PercentGo);
    connect(m_sheet, &GraphSheet::progressReset, this, &Plexa::InitPerc);
    connect(m_sheet, &GraphSheet::progressColored, m_progress, &ProgressDisplay::SetColor);
    connect(m_sheet, &GraphSheet::messageWanted, this, &Plexa::ShowMessage);
    connect(m_sheet, &GraphSheet::drawn, this, &Plexa::ShowDraw);
    connect(m_sheet, &GraphSheet::closeWanted, this, &QWidget::close, Qt::QueuedConnection);
}

void Plexa::ConnectMenu()
{
    for (const Command later : kLater)
        m_menu->Button(later).setEnabled(false);
    connect(m_menu, &MenuRegion::chosen, this, &Plexa::Carry);
}

void Plexa::ConnectFiles()
{
    setAcceptDrops(true);
    connect(m_dropTimer, &QTimer::timeout, this, [this] {
        if (m_sheet->IsDrawing())
            m_dropTimer->start(); // once more, later
        else
            m_files->OpenFile(m_dropped);
    });
    constexpr std::pair<QKeySequence::StandardKey, Command> kKeys[] = {
        {QKeySequence::New, Command::New},
        {QKeySequence::Open, Command::Open},
        {QKeySequence::Save, Command::Save},
        {QKeySequence::SaveAs, Command::SaveAs}};
    for (const auto& [key, command] : kKeys)
        connect(new QShortcut(key, this), &QShortcut::activated, this,
                [this, command = command] { Carry(command); });
    connect(m_files, &FileCommands::panelChanged, m_file, &QLabel::setText);
    connect(m_files, &FileCommands::progressed, this, &Plexa::PercentGo);
    connect(m_files, &FileCommands::progressReset, this, &Plexa::InitPerc);
    connect(m_files, &FileCommands::titleChanged, this, [this](const QString& name, bool changed) {
        setWindowTitle(name.isEmpty() ? "Kelvane[*]" : name + "[*] - Kelvane");
        setWindowModified(changed);
    });
}

void Plexa::ConnectMouse()
{
    DrawBox& box = m_graph->Box();
    connect(&box, &DrawBox::pointed, this,
            [this](PixelPoint at) { m_graph->ShowAnswer(m_state.View, at); });
    connect(&box, &DrawBox::moved, this, [this](double right, double down) {
        if (MoveGraph(m_state.View, right, down))
            ViewChanged();
    });
    m_editor->Editor().installEventFilter(this);
    connect(&box, &DrawBox::movedThere, this, &Plexa::PlaceCenter);
    connect(&box, &DrawBox::wheeled, this, [this](double steps, PixelPoint at) {
        if (ZoomAround(m_state.View, std::pow(kZoomStep, -steps), at))
            PlaceCenter();
        m_graph->ShowAnswer(m_state.View, at);
    });
    connect(&box, &DrawBox::picked, this, [this](PixelPoint at) {
        EndPicking();
        if (CenterAt(m_state.View, at))
            PlaceCenter();
    });
    connect(&box, &DrawBox::escapePressed, this, &Plexa::EndPicking);
    connect(&box, &DrawBox::menuWanted, this, &Plexa::ShowGraphMenu);
    connect(&box, &DrawBox::resized, this, [this] {
        if (m_started)
            m_resizeTimer->start();
    });
}

// ---- commands

void Plexa::TopKey_Click(int index)
{
    const auto key = static_cast<TopKey>(index);
    if (m_sheet->IsDrawing()) {
        if (key == TopKey::Draw)
            m_sheet->RequestStop();
        return;
    }
    ViewState& view = m_state.View;
    const PixelPoint crossing{view.OriginX, view.OriginY};
    switch (key) {
    case TopKey::Draw:
        return Draw();
    case TopKey::ZoomIn:
    case TopKey::ZoomOut:
        if (ZoomAround(view, key == TopKey::ZoomIn ? 1 / kZoomStep : kZoomStep, crossing))
            ViewChanged();
        return;
    case TopKey::WinZoom:
        return WinZoom();
    case TopKey::Clear:
        InitAxis();
        return DescribeGraph();
    case TopKey::Center:
        return AskForPoint();
    }
}

void Plexa::Draw()
{
    m_editor->Store();
    m_sheet->Draw();
}

void Plexa::Carry(Command command)
{
    if (m_sheet->IsDrawing() || CarryFile(command))
        return;
    if (command == Command::Graph2D)
        return m_sheet->Refresh(); // the one sheet there is
    if (command == Command::Complexity)
        return AskForModes();
    if (command == Command::ValueTable)
        return ShowValues();
    const bool changed = (command == Command::Range && AskForRange(*m_sheet, this)) ||
                         (command == Command::Zoom && AskForZoom(m_state.View, this));
    if (changed)
        ViewChanged();
}

bool Plexa::CarryFile(Command command)
{
    switch (command) {
    case Command::New:
    case Command::Open:
    case Command::Save:
    case Command::SaveAs:
    case Command::Recent:
        FocusEditor();
        break;
    default:
        return false;
    }
    if (command == Command::New)
        m_files->New();
    else if (command == Command::Open)
        m_files->Open();
    else if (command == Command::Save)
        m_files->Save();
    else if (command == Command::SaveAs)
        m_files->SaveAs();
    else {
        const QAbstractButton& button = m_menu->Button(Command::Recent);
        m_files->OpenRecent(button.mapToGlobal(QPoint(0, button.height())));
    }
    return true;
}

void Plexa::AskForModes()
{
    if (m_modes == nullptr)
        m_modes = new CalculationSetup(m_state.Modes, this);
    if (m_modes->Ask())
        m_sheet->Refresh();
}

void Plexa::ShowValues()
{
    const bool is3D = m_state.Modes.Mode3D;
    ValueTableBase*& table = m_tables[is3D ? 1 : 0];
    if (table == nullptr && is3D)
        table = new ValueTable3D([this] { return FirstEquation(); }, this);
    else if (table == nullptr)
        table = new ValueTable([this] { return FirstEquation(); }, this);
    table->Open();
}

// The first ticked equation and how its values are found; nothing, after a message, when there is
// none or the equations are refused.
std::optional<TableSource> Plexa::FirstEquation()
{
    m_editor->Store();
    const CalculationModes& modes = m_state.Modes;
    EquationTable table;
    auto fault = FindFault(table, m_state.Sheet, m_state.Ticks, modes);
    const int number = FirstTickedEquation(table, m_state.Ticks);
    if (!fault && number > table.EquationCount)
        fault = EquationFault{Fault::NothingTicked};
    if (fault) {
        const Message message = DescribeFault(*fault, table);
        ShowMessage(QString::fromStdString(message.Title), QString::fromStdString(message.Text));
        return std::nullopt;
    }
    if (modes.Mode3D)
        return {{table.At(number), {Dependent::Z, modes.CalcMode3D, SolveRangeZ(m_state.View)}}};
    return {{table.At(number), {Dependent::Y, modes.CalcMode2D, SolveRangeY(m_state.View)}}};
}

// After every change of the view.
void Plexa::ViewChanged()
{
    m_graph->Box().ForgetBox();
    m_sheet->Refresh();
    m_graph->ShowZoom(m_state.View.ZoomFactor);
    ShowStatus();
    DescribeGraph();
}

void Plexa::WinZoom()
{
    DrawBox& box = m_graph->Box();
    if (!box.Box()) {
        m_editor->ShowHint("Drag a box on the graph first, then press WinZoom");
        return;
    }
    if (ZoomToBox(m_state.View, *box.Box(), box.Extent()))
        PlaceCenter();
}

// After the mouse has chosen a centre.
void Plexa::PlaceCenter()
{
    RoundCenter(m_state.View);
    ViewChanged();
}

// The next click on the graph says where the axes are to cross; asked once more, typing does.
void Plexa::AskForPoint()
{
    if (m_graph->Box().IsPicking()) {
        EndPicking();
        if (AskForCenter(m_state.View, this))
            ViewChanged();
        return;
    }
    m_graph->Box().SetPicking(true);
    m_blinkTimer->start();
    m_editor->ShowHint("Click the new center (or Center: type it)");
}

void Plexa::EndPicking()
{
    m_blinkTimer->stop();
    m_graph->Box().SetPicking(false);
    m_graph->Box().SetMarker(std::nullopt);
}

void Plexa::ShowGraphMenu(QPoint globalPosition)
{
    QMenu menu;
    menu.setObjectName("DrawSheetPopup");
    menu.setTitle("Draw Sheet");
    const auto add = [&menu](const char* name, const char* text, const char* icon) {
        QAction* action = menu.addAction(ThemeIcon(icon), text);
        action->setObjectName(name);
        return action;
    };
    connect(add("CleanItem", "Clean", "clear"), &QAction::triggered, this,
            [this] { TopKey_Click(static_cast<int>(TopKey::Clear)); });
    add("CopyGraph", "Copy &Graph", "copy")->setEnabled(false);
    menu.addSeparator();
    add("AxisItem", "Axis Setup...", "axis_setup")->setEnabled(false);
    add("Setup3DItem", "3D Setup...", "axis_setup_3d")->setEnabled(false);
    add("ColorItem", "Background Color...", "color")->setEnabled(false);
    QAction* grid = add("ShowGrids", "Show Grids", "grid");
    grid->setCheckable(true);
    grid->setChecked(m_state.Axes.ShowGrid);
    connect(grid, &QAction::toggled, this, [this](bool on) {
        m_state.Axes.ShowGrid = on;
        m_sheet->Refresh();
    });
    add("DrawItem", "Draw Setup...", "draw_setup")->setEnabled(false);
    menu.exec(globalPosition);
}

void Plexa::InitAxis()
{
    m_sheet->InitAxis();
}

void Plexa::InitPerc()
{
    m_progress->InitPerc();
}

void Plexa::PercentGo(double fraction)
{
    m_progress->PercentGo(fraction);
}

void Plexa::FillText()
{
    m_editor->Editor().FillText(m_pages.LinesPerPage);
}

// ---- what is shown

void Plexa::ShowStatus()
{
    const ViewState& view = m_state.View;
    const QString center = "(" + ValueText(view.CenterX) + "," + ValueText(-view.CenterY) +
                           (m_state.Modes.Mode3D ? ",0)" : ")");
    m_settings->ShowValue(InfoLine::AxisCenter, center);
    m_settings->ShowValue(InfoLine::ZoomFactor, ValueText(view.ZoomFactor) + "X");
    m_settings->ShowValue(InfoLine::Quality, ValueText(std::round(1 / view.Step2D)) + " pix/unit");
    m_settings->ShowValue(InfoLine::EachDivision, ValueText(m_sheet->EachDivision()) + " units");
}

void Plexa::ShowDraw()
{
    const DrawStats& stats = m_state.Stats;
    if (stats.Samples >= kFewSamples && stats.SweepSeconds > 0) {
        const double speed = static_cast<double>(stats.Samples) / stats.SweepSeconds;
        m_settings->ShowValue(InfoLine::Speed, SpeedText(speed) + " pix/s");
        constexpr double kFast[] = {1e5, 1e6, 1e7};
        m_settings->ShowSpeedMarks(static_cast<int>(std::count_if(
            std::begin(kFast), std::end(kFast), [speed](double fast) { return speed >= fast; })));
    }
    DescribeGraph();
}

// What a screen reader says of the draw area.
void Plexa::DescribeGraph()
{
    const ViewState& view = m_state.View;
    const PixelSize size = m_graph->Box().Extent();
    const WorldPoint low = PixelToWorld(view, {0, size.Height - 1});
    const WorldPoint high = PixelToWorld(view, {size.Width - 1, 0});
    QStringList drawn;
    const EquationTicks& ticks = m_sheet->Drawn().Ticks;
    const int lines = m_sheet->ShowsCurves() ? static_cast<int>(ticks.EquationOn.size()) : 0;
    for (int line = 1; line < lines; ++line) {
        if (ticks.On(line))
            drawn += QString::number(line);
    }
    m_graph->Box().setAccessibleDescription(
        tr("2D sheet, x from %1 to %2, y from %3 to %4. %5")
            .arg(ValueText(low.X), ValueText(high.X), ValueText(low.Y), ValueText(high.Y),
                 drawn.isEmpty() ? tr("No equation is drawn.")
                                 : tr("Equations drawn: %1.").arg(drawn.join(", "))));
}

void Plexa::ShowMessage(const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::NoIcon, title.isEmpty() ? "Kelvane" : title, text, QMessageBox::Ok,
                    this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

// ---- the window

bool Plexa::ConfirmExit()
{
    QMessageBox box(QMessageBox::NoIcon, "Exit", "Exiting Kelvane II ... Are you sure?",
                    QMessageBox::Yes | QMessageBox::No, this);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void Plexa::closeEvent(QCloseEvent* event)
{
    event->setAccepted(ConfirmExit());
    if (event->isAccepted())
        m_files->Forget();
}

// Space, held in the editor, is the graph's: the mouse then moves it.
bool Plexa::eventFilter(QObject* target, QEvent* event)
{
    const bool press = event->type() == QEvent::KeyPress;
    if (press || event->type() == QEvent::KeyRelease) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Space && !key->isAutoRepeat())
            m_graph->Box().SetSpaceHeld(press);
    }
    return QMainWindow::eventFilter(target, event);
}

// The keys of commands, where the focus is not in the editor.
void Plexa::keyPressEvent(QKeyEvent* event)
{
    if (const auto key = TopKeyOf(*event))
        TopKey_Click(static_cast<int>(*key));
    else if (event->key() == Qt::Key_Escape)
        EndPicking();
    else
        QMainWindow::keyPressEvent(event);
}

// One file at a time can be dropped.
void Plexa::dragEnterEvent(QDragEnterEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    if (urls.size() == 1 && urls.front().isLocalFile())
        event->acceptProposedAction();
}

void Plexa::dropEvent(QDropEvent* event)
{
    m_dropped = event->mimeData()->urls().value(0).toLocalFile();
    event->acceptProposedAction();
    m_dropTimer->start(); // the question must not keep the program waiting that the file comes from
}

void Plexa::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_started)
        m_graph->Box().update();
}

} // namespace kelvane
