#pragma once

#include <QPoint>
#include <QString>
#include <QTextCursor>
#include <QTextEdit>
#include <optional>

#include "doc/rich_page.h"
#include "ui/editor_keys.h"
#include "ui/editor_page.h"

namespace kelvane {

// The box in which equations are typed: one page of a fixed number of lines, one equation a line.
//
// Lines are slots, not free text. Nothing joins or parts them: Enter goes to the next slot,
// deleting stops at the line's ends, and a selection across lines can be copied but not replaced. A
// text with line breaks that is pasted or dropped is cut at the first one, after a message.
//
// "^" on the base line starts a power, which is raised and smaller, until Enter. In a power "^" is
// a character like any other. "p" shows as the letter pi. Blanks are ignored.
//
// Names. s, c, t, l, and b after a, become sin, cos, tan, log and abs at once, unless a letter
// stands before, where "a" (asin) does not count as one. Who spells names out is served too:
// letters that repeat the completion just made change nothing, so "sin" and "s" both give sin.
// Letters that turn out to begin something else come back with the next one: "tas" gives tan and
// asin.
//
// Texts are UTF-8 in pages, with pi as "p". Undo and redo work within the page that is shown.
class FormulaEditor : public QTextEdit {
    Q_OBJECT

public:
    explicit FormulaEditor(QWidget* parent = nullptr); // with one line, see FillText

    // Empties the page and gives it that many lines, at least 1.
    void FillText(int lines);
    int LinesPerPage() const { return m_lines; }

    RichPage Page() const; // always LinesPerPage lines
    // Shows the page, the caret at its beginning. Lines beyond LinesPerPage are cut, missing ones
    // are empty. What cannot be typed is left out. There is nothing to undo afterwards.
    void SetPage(const RichPage& page);

    int LineHeight() const { return m_formats.LineHeight; } // in pixels
    QRect LineRect(int line) const; // in the viewport's coordinates, as wide as it
    int CurrentLine() const;        // from 0
    bool CaretIsRaised() const;     // what is typed now belongs to a power

    QSize sizeHint() const override;

Q_SIGNALS:
    void topKeyPressed(int index); // a TopKey
    void stopRequested();
    void nextPageRequested();
    void powerModeStarted();
    void messageRequested(const QString& title, const QString& text);
    void lineChanged(int line); // the caret went to another line

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    QMimeData* createMimeDataFromSelection() const override;
    bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    // Letters of a completion that may still be typed, and where.
    struct Expected {
        QString Rest; // empty when none
        QString Held; // its beginning, typed already
        int Position = 0;
    };

    bool PressTopKey(const QKeyEvent& event);
    bool PressEditKey(const QKeyEvent& event);
    void PressEnter();
    void Erase(QTextCursor::MoveOperation direction);
    void Cut();

    void Type(const QString& text);
    void TypeCharacter(const QString& character);
    bool RepeatsCompletion(const QString& character);
    void Replace(int start, int length, const QString& text);

    void InsertAt(QTextCursor& cursor, const RichLine& line) const;
    void Insert(const RichLine& line);    // in place of the selection
    void InsertText(const QString& text); // raised if the caret is
    void StartPower();
    void SetCaretLevel(Level level);
    void SettlePower();

    Level CaretLevel() const;
    bool MayReplaceSelection(); // else asks for the message
    void RequestMessage(const QString& text);
    void FollowCaret();
    void KeepLines();

    const EditorFormats m_formats;
    int m_lines = 1;
    int m_currentLine = 0;
    Expected m_expected;
    std::optional<QPoint> m_blockDragStart; // pressed on a selection across lines
    bool m_isDropping = false;
    QString m_dropMessage; // until the drop is over
};

} // namespace kelvane
