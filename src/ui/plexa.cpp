#include "ui/plexa.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <cmath>

#include "ui/draw_box.h"
#include "ui/editor_region.h"
#include "ui/equ_panel.h"
#include "ui/file_commands.h"
#include "ui/formula_editor.h"
#include "ui/functions_list.h"
#include "ui/graph_menu.h"
#include "ui/graph_region.h"
#include "ui/graph_sheet.h"
#include "ui/help_viewer.h"
#include "ui/icon_theme.h"
#include "ui/menu_region.h"
#include "ui/note_pad.h"
#include "ui/picture_file.h"
#include "ui/progress_display.h"
#include "ui/settings_dialog.h"
#include "ui/settings_region.h"
#include "ui/setup_commands.h"
#include "ui/value_text.h"
#include "ui/view_dialogs.h"

namespace kelvane {

namespace {

constexpr int kLeftWidth = 380;
constexpr int kNarrowLeftWidth = 340;
constexpr int kNarrowScreen = 1200;
constexpr int kTitleBar = 40;  // room for it, before the window is maximized
constexpr int kPatience = 200; // ms, for the window manager

} // namespace

Plexa::Plexa()
{
    setObjectName("Plexa");
    setWindowTitle("Kelvane");
    setWindowIcon(QIcon(":/icons/kelvane.svg"));
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
    m_setup = new SetupCommands(m_state, *m_sheet, *m_editor, *this);
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
    m_file->setTextFormat(Qt::PlainText);
    m_file->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
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
    panels->addWidget(new NotePad, 1);
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
    connect(m_menu, &MenuRegion::chosen, this, &Plexa::Carry);
    connect(m_setup, &SetupCommands::viewChanged, this, &Plexa::ViewChanged);
    connect(m_setup, &SetupCommands::messageWanted, this, &Plexa::ShowMessage);
    connect(m_setup, &SetupCommands::sheetColorChanged, this, &Plexa::UseSheetColor);
}

void Plexa::ConnectFiles()
{
    setAcceptDrops(true);
    connect(m_dropTimer, &QTimer::timeout, this, [this] {
        if (m_sheet->IsDrawing() || m_files->IsBusy())
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
    connect(m_files, &FileCommands::panelChanged, this, &Plexa::ShowPanel);
    connect(m_files, &FileCommands::progressed, this, &Plexa::PercentGo);
    connect(m_files, &FileCommands::progressReset, this, &Plexa::InitPerc);
    connect(m_files, &FileCommands::titleChanged, this, [this](const QString& name, bool changed) {
        const QString mark = "[*]"; // doubled in names, or it would be taken for the star
        setWindowTitle(name.isEmpty() ? "Kelvane[*]"
                                      : QString(name).replace(mark, mark + mark) + "[*] - Kelvane");
        setWindowModified(changed);
    });
}

void Plexa::ConnectMouse()
{
    DrawBox& box = m_graph->Box();
    connect(&box, &DrawBox::pointed, this, [this](PixelPoint at) { ShowAnswer(at); });
    connect(&box, &DrawBox::moved, this, [this](double right, double down) {
        if (m_sheet->Move(right, down))
            ViewChanged();
    });
    m_editor->Editor().installEventFilter(this);
    connect(&box, &DrawBox::movedThere, this, &Plexa::PlaceCenter);
    connect(&box, &DrawBox::wheeled, this, [this](double steps, PixelPoint at) {
        if (m_sheet->Zoom(std::pow(kZoomStep, -steps), at))
            PlaceCenter();
        ShowAnswer(at);
    });
    connect(&box, &DrawBox::picked, this, [this](PixelPoint at) {
        EndPicking();
        if (m_sheet->Center(at))
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
    const QAbstractButton& button = m_menu->Button(command);
    const QPoint below = button.mapToGlobal(QPoint(0, button.height()));
    if (!m_sheet->IsDrawing() && !m_files->Carry(command, below)) {
        if (command == Command::Help)
            ShowHelp(this, {}); // the contents
        else
            m_setup->Carry(command);
    }
    m_menu->ShowModes(m_state.Modes); // also where a click has come to nothing
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
    if (m_sheet->ZoomTo(*box.Box()))
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
    GraphMenu menu(m_state.Axes.ShowGrid);
    connect(&menu, &GraphMenu::cleanWanted, this,
            [this] { TopKey_Click(static_cast<int>(TopKey::Clear)); });
    connect(&menu, &GraphMenu::copyWanted, this, &Plexa::CopyGraph);
    connect(&menu, &GraphMenu::chosen, this, &Plexa::Carry);
    connect(&menu, &GraphMenu::gridToggled, this, [this](bool on) {
        m_state.Axes.ShowGrid = on;
        m_sheet->Refresh();
    });
    menu.exec(globalPosition);
}

// The picture as it is, and as SVG for programs that can draw it themselves.
void Plexa::CopyGraph()
{
    auto picture = std::make_unique<QMimeData>();
    picture->setImageData(m_graph->Box().Image());
    const QByteArray svg = SvgOf(m_graph->Box().Extent(), [this](QtSurface& surface) {
        return m_sheet->PaintAgain(surface);
    });
    if (!svg.isEmpty())
        picture->setData("image/svg+xml", svg);
    QApplication::clipboard()->setMimeData(picture.release());
}

// The editor takes the colour of the sheet, with letters that can be read on it.
void Plexa::UseSheetColor(Rgb color)
{
    QPalette palette = m_editor->Editor().palette();
    palette.setColor(QPalette::Base, ToQColor(color));
    palette.setColor(QPalette::Text, ToQColor(InkOn(color)));
    m_editor->Editor().setPalette(palette);
    m_editor->Editor().viewport()->setPalette(palette); // not its heir under a style sheet
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

// The panel of the status bar, on one line; what has failed stands out.
void Plexa::ShowPanel(const QString& text)
{
    m_file->setStyleSheet(text.startsWith("Not saved")
                              ? QString("color: %1; font-weight: 600;").arg(kWrongColor)
                              : QString());
    m_file->setText(QString(text).replace('\n', ' '));
    m_file->setToolTip(text.toHtmlEscaped());
}

void Plexa::ShowAnswer(PixelPoint at)
{
    m_graph->ShowAnswer(m_sheet->WorldAt(at), m_sheet->WorldAt({at.X + 1, at.Y - 1}));
}

void Plexa::ShowStatus()
{
    const ViewState& view = m_state.View;
    const QString center = "(" + ValueText(view.CenterX) + "," + ValueText(-view.CenterY) +
                           (m_state.Modes.Mode3D ? "," + ValueText(view.CenterZ) + ")" : ")");
    m_settings->ShowValue(InfoLine::AxisCenter, center);
    m_settings->ShowValue(InfoLine::ZoomFactor, ValueText(view.ZoomFactor) + "X");
    m_settings->ShowValue(InfoLine::Quality, ValueText(std::round(1 / view.Step2D)) + " pix/unit");
    m_settings->ShowValue(InfoLine::EachDivision, ValueText(m_sheet->EachDivision()) + " units");
}

void Plexa::ShowDraw()
{
    m_settings->ShowSpeed(m_state.Stats);
    DescribeGraph();
}

void Plexa::DescribeGraph()
{
    m_settings->ShowLacks(m_sheet->LastEnd(), m_sheet->UnresolvedPixels());
    m_graph->Box().setAccessibleDescription(m_sheet->Description());
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
    m_files->WarnOfChanges(box);
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
