#include "ui/formula_editor.h"

#include <QApplication>
#include <QDrag>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QTextDocument>
#include <QTextFrame>
#include <algorithm>
#include <utility>

namespace kelvane {

namespace {

constexpr int kRaisedCaretWidth = 2;
constexpr int kUsualWidth = 380;
constexpr float kTint = 0.12F; // of the current line

const char* const kErrorTitle = "Pasting Error";
const char* const kPasteMessage =
    "Can not paste texts more than one line or those that include end-line character. Make sure "
    "the invisible character at the end of the line is not selected and try copying again!";
const char* const kDeleteMessage =
    "Can not delete texts blocks more than one line or those that include end-line character. "
    "Make sure the invisible character at the end of the line is not selected and try deleting "
    "again!";

} // namespace

FormulaEditor::FormulaEditor(QWidget* parent)
    : QTextEdit(parent)
    , m_formats(*this)
{
    setObjectName(QStringLiteral("Text1"));
    setAccessibleName(tr("Formula editor"));
    setFont(m_formats.Font);
    document()->setDefaultFont(m_formats.Font);
    setLineWrapMode(NoWrap);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabChangesFocus(true);
    setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    setContextMenuPolicy(Qt::CustomContextMenu); // the usual one could delete line ends
    connect(this, &QTextEdit::cursorPositionChanged, this, &FormulaEditor::FollowCaret);
    connect(this, &QTextEdit::currentCharFormatChanged, this, &FormulaEditor::FollowCaret);
    connect(this, &QTextEdit::selectionChanged, this, &FormulaEditor::FollowCaret);
    connect(document(), &QTextDocument::contentsChanged, this, &FormulaEditor::KeepLines);
    FillText(1);
}

// --- the page ---

void FormulaEditor::FillText(int lines)
{
    m_lines = std::max(lines, 1);
    SetPage({});
}

RichPage FormulaEditor::Page() const
{
    return PageOf(*document());
}

void FormulaEditor::SetPage(const RichPage& page)
{
    m_expected = {};
    setUndoRedoEnabled(false);
    QTextCursor cursor(document());
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    document()->rootFrame()->setFrameFormat(m_formats.Page);
    cursor.setBlockFormat(m_formats.Line);
    cursor.setBlockCharFormat(m_formats.Base);
    for (int line = 0; line < m_lines; ++line) {
        if (line > 0)
            cursor.insertBlock(m_formats.Line, m_formats.Base);
        if (static_cast<std::size_t>(line) < page.size())
            InsertAt(cursor, page[static_cast<std::size_t>(line)]);
    }
    cursor.endEditBlock();
    setUndoRedoEnabled(true);
    moveCursor(QTextCursor::Start);
}

QRect FormulaEditor::LineRect(int line) const
{
    const int top = line * LineHeight() - verticalScrollBar()->value();
    return {0, top, viewport()->width(), LineHeight()};
}

int FormulaEditor::CurrentLine() const
{
    return textCursor().blockNumber();
}

bool FormulaEditor::CaretIsRaised() const
{
    return CaretLevel() == Level::Raised;
}

QSize FormulaEditor::sizeHint() const
{
    return {kUsualWidth, m_lines * LineHeight() + 2 * frameWidth()};
}

// --- keys ---

bool FormulaEditor::event(QEvent* event)
{
    // Otherwise a shortcut of the window could take these keys for itself.
    if (event->type() == QEvent::ShortcutOverride && TopKeyOf(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QTextEdit::event(event);
}

void FormulaEditor::keyPressEvent(QKeyEvent* event)
{
    if (!IsModifier(*event) && !IsTyping(*event))
        m_expected = {};
    event->accept();
    if (event->key() == Qt::Key_Escape) {
        Q_EMIT stopRequested();
        event->ignore(); // dialogs close by it
    } else if (IsHarmless(*event)) {
        QTextEdit::keyPressEvent(event);
    } else if (!PressTopKey(*event) && event->key() != Qt::Key_Space && !PressEditKey(*event)) {
        event->ignore();
    }
}

bool FormulaEditor::PressTopKey(const QKeyEvent& event)
{
    const auto key = TopKeyOf(event);
    if (!key)
        return false;
    // A key held down zooms on, but draws once.
    if (!event.isAutoRepeat() || key == TopKey::ZoomIn || key == TopKey::ZoomOut)
        Q_EMIT topKeyPressed(static_cast<int>(*key));
    return true;
}

bool FormulaEditor::PressEditKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = ModifiersOf(event);
    const bool isPlain = (modifiers & ~Qt::ShiftModifier) == 0;
    if (IsEnter(event))
        PressEnter();
    else if (event.matches(QKeySequence::Copy) || IsInsert(event, Qt::ControlModifier))
        copy();
    else if (event.matches(QKeySequence::Paste) || IsInsert(event, Qt::ShiftModifier))
        paste();
    else if (event.matches(QKeySequence::Undo))
        undo();
    else if (event.matches(QKeySequence::Redo) ||
             (event.key() == Qt::Key_Z && modifiers == (Qt::ControlModifier | Qt::ShiftModifier)))
        redo();
    else if (event.key() == Qt::Key_Delete && modifiers == Qt::ShiftModifier)
        Cut();
    else if (event.key() == Qt::Key_Delete && isPlain)
        Erase(QTextCursor::NextCharacter);
    else if (event.key() == Qt::Key_Backspace && isPlain)
        Erase(QTextCursor::PreviousCharacter);
    else if (event.key() == Qt::Key_Backspace && modifiers == Qt::ControlModifier)
        Erase(QTextCursor::PreviousWord);
    else if (IsTyping(event))
        Type(event.text());
    else
        return false;
    return true;
}

void FormulaEditor::PressEnter()
{
    if (!MayReplaceSelection())
        return;
    if (CaretIsRaised())
        SetCaretLevel(Level::Base);
    else if (CurrentLine() == m_lines - 1)
        Q_EMIT nextPageRequested();
    else
        moveCursor(QTextCursor::Down);
}

// Deletes the selection, or what lies in that direction on the same line.
void FormulaEditor::Erase(QTextCursor::MoveOperation direction)
{
    if (!MayReplaceSelection())
        return;
    QTextCursor cursor = textCursor();
    if (!cursor.hasSelection()) {
        cursor.movePosition(direction, QTextCursor::KeepAnchor);
        CutToLine(cursor);
    }
    if (!cursor.hasSelection())
        return;
    setTextCursor(cursor);
    const Level level = CaretLevel();
    cursor.removeSelectedText();
    setTextCursor(cursor);
    SetCaretLevel(level); // so that a power's last character can be corrected
    SettlePower();
}

void FormulaEditor::Cut()
{
    if (!MayReplaceSelection())
        return;
    copy();
    Erase(QTextCursor::NoMove);
}

// --- typing ---

void FormulaEditor::Type(const QString& text)
{
    if (!MayReplaceSelection())
        return;
    for (const char32_t character : text.toUcs4())
        TypeCharacter(QString::fromUcs4(&character, 1));
}

void FormulaEditor::TypeCharacter(const QString& character)
{
    if (ShownText(character).isEmpty() || RepeatsCompletion(character))
        return;
    const QString held = std::exchange(m_expected, {}).Held;
    if (!held.isEmpty())
        InsertText(held);
    if (character == u"^" && !CaretIsRaised()) {
        StartPower();
        return;
    }
    const QString rest = CompletionOf(character, CharacterBefore(textCursor()));
    InsertText(character + rest);
    m_expected = {rest, {}, textCursor().position()};
}

bool FormulaEditor::RepeatsCompletion(const QString& character)
{
    const QTextCursor cursor = textCursor();
    if (cursor.hasSelection() || cursor.position() != m_expected.Position)
        m_expected = {};
    if (m_expected.Rest.isEmpty() || character.toLower() != m_expected.Rest.front())
        return false;
    m_expected.Rest.remove(0, 1);
    m_expected.Held += character;
    if (m_expected.Rest.isEmpty())
        m_expected = {};
    return true;
}

void FormulaEditor::inputMethodEvent(QInputMethodEvent* event)
{
    const QString& committed = event->commitString();
    const bool replaces = !committed.isEmpty() || event->replacementLength() > 0;
    if ((replaces || !event->preeditString().isEmpty()) && !MayReplaceSelection())
        return;
    if (replaces) {
        QInputMethodEvent noPreedit;
        QTextEdit::inputMethodEvent(&noPreedit);
        Replace(event->replacementStart(), event->replacementLength(), committed);
    }
    QInputMethodEvent preedit(event->preeditString(), event->attributes());
    QTextEdit::inputMethodEvent(&preedit);
}

// Types in place of characters of the line that are counted from the caret.
void FormulaEditor::Replace(int start, int length, const QString& text)
{
    if (length > 0) {
        setTextCursor(PartOfLine(textCursor(), start, length));
        Erase(QTextCursor::NoMove);
    }
    const qsizetype end = FirstLineBreak(text);
    if (end < text.size())
        RequestMessage(tr(kPasteMessage));
    Type(text.left(std::min<qsizetype>(end, kMaxLineLength)));
}

// --- changes of the text ---

// Writes as much of it as fits the line.
void FormulaEditor::InsertAt(QTextCursor& cursor, const RichLine& line) const
{
    for (const RichRun& run : line) {
        QString text = ShownText(QString::fromStdString(run.Text));
        text.truncate(std::max(kMaxLineLength + 1 - cursor.block().length(), 0));
        if (!text.isEmpty() && text.back().isHighSurrogate())
            text.chop(1);
        if (!text.isEmpty())
            cursor.insertText(text, m_formats.At(run.Raised ? Level::Raised : Level::Base));
    }
}

void FormulaEditor::Insert(const RichLine& line)
{
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    InsertAt(cursor, line);
    cursor.endEditBlock();
    setTextCursor(cursor);
    SettlePower();
}

void FormulaEditor::InsertText(const QString& text)
{
    Insert({{text.toStdString(), CaretIsRaised()}});
}

void FormulaEditor::StartPower()
{
    if (textCursor().hasSelection())
        Erase(QTextCursor::NoMove);
    SetCaretLevel(Level::Raised);
    Q_EMIT powerModeStarted();
}

void FormulaEditor::SetCaretLevel(Level level)
{
    QTextCursor cursor = textCursor();
    cursor.clearSelection();
    cursor.setCharFormat(m_formats.At(level));
    setTextCursor(cursor);
}

// A "^" that came before the caret on the base line in another way starts a power as well.
void FormulaEditor::SettlePower()
{
    if (CharacterBefore(textCursor()) != u'^' || CaretIsRaised())
        return;
    QTextCursor cursor = textCursor();
    cursor.joinPreviousEditBlock();
    cursor.deletePreviousChar();
    cursor.endEditBlock();
    setTextCursor(cursor);
    StartPower();
}

void FormulaEditor::KeepLines()
{
    // Only the system's accessibility functions get here: they write past everything above.
    if (document()->blockCount() == m_lines)
        return;
    if (document()->isUndoAvailable()) {
        document()->undo();
        document()->clearUndoRedoStacks(QTextDocument::RedoStack);
    }
    if (document()->blockCount() != m_lines)
        SetPage(Page());
}

// --- the caret ---

Level FormulaEditor::CaretLevel() const
{
    QTextCursor cursor = textCursor();
    if (cursor.hasSelection()) // what replaces it looks like its beginning
        cursor.setPosition(cursor.selectionStart() + 1);
    return LevelOf(cursor.charFormat());
}

bool FormulaEditor::MayReplaceSelection()
{
    if (!SpansLines(textCursor()))
        return true;
    RequestMessage(tr(kDeleteMessage));
    return false;
}

void FormulaEditor::RequestMessage(const QString& text)
{
    if (m_isDropping)
        m_dropMessage = text;
    else
        Q_EMIT messageRequested(tr(kErrorTitle), text);
}

void FormulaEditor::FollowCaret()
{
    // After a long line a short one must not stay scrolled away.
    const QTextLayout* layout = textCursor().block().layout();
    if (layout != nullptr && layout->lineCount() > 0 &&
        layout->lineAt(0).naturalTextWidth() <
            viewport()->width() - 2 * document()->documentMargin())
        horizontalScrollBar()->setValue(0);
    // In a power a caret of our own is painted, for the usual one always stands on the base line.
    setCursorWidth(CaretIsRaised() ? 0 : style()->pixelMetric(QStyle::PM_TextCursorWidth));
    viewport()->update();
    if (m_currentLine == CurrentLine())
        return;
    m_currentLine = CurrentLine();
    Q_EMIT lineChanged(m_currentLine);
}

// --- copying and pasting ---

QMimeData* FormulaEditor::createMimeDataFromSelection() const
{
    return MimeDataOf(SelectedLines(textCursor())).release();
}

bool FormulaEditor::canInsertFromMimeData(const QMimeData* source) const
{
    return HoldsText(*source);
}

// Whatever is pasted or dropped comes through here.
void FormulaEditor::insertFromMimeData(const QMimeData* source)
{
    PastedLine pasted = PastedFrom(*source);
    if (!MayReplaceSelection())
        return;
    if (pasted.HadLineBreak)
        RequestMessage(tr(kPasteMessage));
    if (pasted.Line.empty())
        return; // and the selection stays
    if (!pasted.KeepsLevels && CaretIsRaised())
        for (RichRun& run : pasted.Line)
            run.Raised = true;
    Insert(pasted.Line);
}

// --- the mouse ---

void FormulaEditor::mousePressEvent(QMouseEvent* event)
{
    m_expected = {};
    m_blockDragStart.reset();
    const QTextCursor before = textCursor();
    const int pressed = cursorForPosition(event->position().toPoint()).position();
    if (event->button() == Qt::LeftButton && SpansLines(before) &&
        pressed >= before.selectionStart() && pressed < before.selectionEnd())
        m_blockDragStart = event->position().toPoint();
    QTextEdit::mousePressEvent(event);

    // A triple click selects the line's end too, and so nothing could be typed over it.
    QTextCursor cursor = textCursor();
    if (!(event->modifiers() & Qt::ShiftModifier) && cursor != before && SpansLines(cursor)) {
        CutToLine(cursor);
        setTextCursor(cursor);
    }
}

void FormulaEditor::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_blockDragStart) {
        QTextEdit::mouseMoveEvent(event);
        return;
    }
    // A drag across lines is our own: the usual one deletes them when it has moved them elsewhere.
    const QPoint way = event->position().toPoint() - *m_blockDragStart;
    if (!(event->buttons() & Qt::LeftButton) ||
        way.manhattanLength() < QApplication::startDragDistance())
        return;
    m_blockDragStart.reset();
    auto* drag = new QDrag(this);
    drag->setMimeData(createMimeDataFromSelection());
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
}

void FormulaEditor::dropEvent(QDropEvent* event)
{
    const bool isOwn = event->source() == this || event->source() == viewport();
    if (isOwn && event->dropAction() == Qt::MoveAction && !MayReplaceSelection()) {
        QDragLeaveEvent leave;
        QTextEdit::dragLeaveEvent(&leave);
        event->setDropAction(Qt::IgnoreAction);
        event->ignore();
        return;
    }
    m_isDropping = true; // a message now would open in the middle of a change
    QTextEdit::dropEvent(event);
    m_isDropping = false;
    if (!m_dropMessage.isEmpty())
        RequestMessage(std::exchange(m_dropMessage, {}));
}

void FormulaEditor::paintEvent(QPaintEvent* event)
{
    const QRect line = LineRect(m_currentLine);
    const QColor accent = palette().color(QPalette::Highlight);
    QColor tint = accent;
    tint.setAlphaF(kTint);
    QPainter(viewport()).fillRect(line, tint);
    QTextEdit::paintEvent(event);

    // What the base class paints as selected is too low for powers.
    QPainter painter(viewport());
    if (hasFocus() && CaretIsRaised())
        painter.fillRect(cursorRect().left(), line.top() + m_formats.RaisedTop, kRaisedCaretWidth,
                         m_formats.RaisedHeight, accent);
    painter.translate(-horizontalScrollBar()->value(), -verticalScrollBar()->value());
    DrawSelected(painter, textCursor(), m_formats.LineHeight, palette());
}

} // namespace kelvane
