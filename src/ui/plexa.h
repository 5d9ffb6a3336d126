#pragma once

#include <QMainWindow>
#include <array>
#include <optional>

#include "app/equation_pages.h"
#include "app/shared_state.h"

class QLabel;
class QSplitter;
class QTimer;

namespace kelvane {

class EditorRegion;
class EquPanel;
class FileCommands;
class FunctionsList;
class GraphRegion;
class GraphSheet;
class MenuRegion;
class ProgressDisplay;
class SettingsRegion;
class SetupCommands;
enum class Command;

// The main window: puts its regions together, owns the state they share, and carries out their
// commands.
class Plexa : public QMainWindow {
    Q_OBJECT

public:
    Plexa();
    ~Plexa() override;

    // Shows the window in the size of its screen and finishes what needs the layout: the lines of
    // a page, the axes, the status lines. Must run once.
    void Start();

    // What comes once the window is seen: equations to bring back after a crash, and the file to
    // open, if one is named.
    void BeginWork(const QString& file);

    void FocusEditor();

    void InitAxis();
    void InitPerc();
    void PercentGo(double fraction);
    void FillText();

    SharedState& State() { return m_state; }
    EquationPages& Pages() { return m_pages; }
    FileCommands& Files() { return *m_files; }
    EditorRegion& Editor() { return *m_editor; }
    GraphRegion& Graph() { return *m_graph; }
    GraphSheet& Sheet() { return *m_sheet; }

public Q_SLOTS:
    // Presses a key of the row above the graph.
    void TopKey_Click(int index); // NOLINT(readability-identifier-naming): its public name

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* target, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void BuildRegions();
    QWidget* BuildLeftColumn();
    void BuildTimers();
    void ConnectEditor();
    void ConnectGraph();
    void ConnectSheet();
    void ConnectMenu();
    void ConnectFiles();
    void ConnectMouse();

    void Draw();
    void Carry(Command command);
    void ViewChanged();
    void WinZoom();
    void PlaceCenter();
    void AskForPoint();
    void EndPicking();
    void CopyGraph();
    void UseSheetColor(Rgb color);
    void ShowGraphMenu(QPoint globalPosition);
    void ShowPanel(const QString& text);
    void ShowAnswer(PixelPoint at);
    void ShowStatus();
    void ShowDraw();
    void DescribeGraph();
    void ShowMessage(const QString& title, const QString& text);
    bool ConfirmExit();

    SharedState m_state;
    EquationPages m_pages;
    EditorRegion* m_editor = nullptr;
    GraphRegion* m_graph = nullptr;
    GraphSheet* m_sheet = nullptr;
    FileCommands* m_files = nullptr;
    SetupCommands* m_setup = nullptr;
    MenuRegion* m_menu = nullptr;
    SettingsRegion* m_settings = nullptr;
    ProgressDisplay* m_progress = nullptr;
    QSplitter* m_columns = nullptr;
    QLabel* m_file = nullptr;             // the panel of "StatusBar1"
    EquPanel* m_keypad = nullptr;         // made when first shown
    FunctionsList* m_functions = nullptr; // the same
    QTimer* m_blinkTimer = nullptr;       // "Timer2": while a point is waited for
    QTimer* m_resizeTimer = nullptr;      // "Timer5": once, after the area's size has changed
    QTimer* m_statusTimer = nullptr;      // "Timer6"
    QTimer* m_sliderTimer = nullptr;      // "Timer8": once, after a slider has moved
    QTimer* m_dropTimer = nullptr;        // once, after a file was dropped
    QString m_dropped;                    // its path
    double m_slidZoom = 1;
    bool m_started = false;
};

} // namespace kelvane
