#pragma once

#include <QWidget>
#include <array>

#include "app/equation_pages.h"
#include "app/shared_state.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollBar;
class QTimer;

namespace kelvane {

class FormulaEditor;

// The formula editor with all that belongs to its pages ("TextFrame"): a tick box beside every
// line, the page scroll bar and label, the power indicator, the hint, and its three keys.
class EditorRegion : public QWidget {
    Q_OBJECT

public:
    EditorRegion(SharedState& state, EquationPages& pages, QWidget* parent = nullptr);

    FormulaEditor& Editor() { return *m_editor; }
    const FormulaEditor& Editor() const { return *m_editor; }

    // Fixes LinesPerPage to the lines that fit now, and shows an empty first page.
    void FixLines();

    // Keeps the page in the editor, as before a draw.
    void Store();

    // Shows the current page of the document with its ticks, without storing what was there.
    void ShowPage();

    // Shows a hint, which fades by itself.
    void ShowHint(const QString& text);

Q_SIGNALS:
    void topKeyPressed(int index);
    void stopRequested();
    void newEquationWanted();
    void shortKeysWanted();
    void messageWanted(QString title, QString text);

protected:
    bool eventFilter(QObject* target, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    static constexpr int kCheckBoxes = 58;

    void BuildEditor();
    void BuildPager();
    void BuildKeys();
    void BuildTimers();
    QWidget* EditorRow();

    void PlaceCheckBoxes();
    void FollowLine(int line);
    void TakeTick(int line, bool on);
    void UnselectAll();
    void ChangePage(int page);
    void GoToNextPage();
    void UpdatePager();
    void ShowEditMenu(QPoint position);
    void WatchPower();
    void GiveHint();
    void FadeHint();
    void ShadeHint();

    SharedState& m_state;
    EquationPages& m_pages;
    FormulaEditor* m_editor = nullptr;
    QWidget* m_gutter = nullptr;
    std::array<QCheckBox*, kCheckBoxes> m_checks{}; // "Check1(i)": EquationOn of the page's line i
    QScrollBar* m_scroll = nullptr;                 // "VScroll1"
    QLabel* m_pager = nullptr;                      // "Pager"
    QLabel* m_power = nullptr;                      // "Label1"
    QLineEdit* m_hint = nullptr;                    // "Text2"
    QPushButton* m_newEquation = nullptr;           // "NewEqu"
    QPushButton* m_unselect = nullptr;              // "Command2"
    QPushButton* m_shortKeys = nullptr;             // "ShortKeys"
    QTimer* m_powerTimer = nullptr;                 // "Timer11"
    QTimer* m_hintTimer = nullptr;                  // "Timer13": a hint is due
    QTimer* m_placeTimer = nullptr;                 // after the layout of a new size
    QTimer* m_fadeTimer = nullptr;                  // "Timer14"
    int m_fade = 0;                                 // of the hint, 500 to 0
    double m_powerHintTime = -1; // when the power hint was shown, -1: none pending
};

} // namespace kelvane
