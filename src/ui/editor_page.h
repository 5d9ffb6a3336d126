#pragma once

#include <QFont>
#include <QString>
#include <QTextBlock>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextFrameFormat>
#include <memory>

#include "doc/equation_file.h" // for the length of lines
#include "doc/rich_page.h"

class QMimeData;
class QPaintDevice;
class QPainter;
class QPalette;
class QTextDocument;

// What the formula editor's document holds, and its conversions: from and to the page as a value,
// and from and to what is copied and dragged. One block is one line.

namespace kelvane {

enum class Level { Base, Raised };

// How lines and characters look on a screen.
struct EditorFormats {
    explicit EditorFormats(const QPaintDevice& device);

    const QTextCharFormat& At(Level level) const { return level == Level::Base ? Base : Raised; }

    QFont Font;     // the system's, 13 points
    int LineHeight; // in pixels, room for raised text included
    int RaisedTop;  // of raised text, below the line's top
    int RaisedHeight;
    QTextFrameFormat Page; // lines fill the box from top to bottom
    QTextBlockFormat Line;
    QTextCharFormat Base;
    QTextCharFormat Raised; // 4 points up, 2 points smaller
};

inline constexpr QChar kPi(0x03C0); // stands for "p"

Level LevelOf(const QTextCharFormat& format);

// The text as the editor shows it: "p" and "P" as the Greek letter pi, and without blanks, control
// characters and whatever else has no glyph of its own.
QString ShownText(const QString& text);

// The runs of a block's characters first to end - 1, counted in the block, with pi as "p".
RichLine LineOf(const QTextBlock& block, int first, int end);
RichPage PageOf(const QTextDocument& document);
RichPage SelectedLines(const QTextCursor& cursor); // the selected parts of them

bool SpansLines(const QTextCursor& selection);
QChar CharacterBefore(const QTextCursor& cursor); // null at a line's beginning
void CutToLine(QTextCursor& selection);           // to the line in which it starts
// Selects characters of the line, counted from the cursor, as far as it has them.
QTextCursor PartOfLine(QTextCursor cursor, int start, int length);

// Where the first line break is, or the text's length.
qsizetype FirstLineBreak(const QString& text);

// Draws the selected characters on the colour of selections, as high as their lines, with a stub
// for a line's end. In the document's coordinates; nothing when nothing is selected.
void DrawSelected(QPainter& painter, const QTextCursor& selection, int lineHeight,
                  const QPalette& palette);

// Text from the clipboard or from a drag, up to its first line break.
struct PastedLine {
    RichLine Line;             // as shown, without empty runs
    bool HadLineBreak = false; // so that something may be missing
    bool KeepsLevels = false;  // from a formula editor, which knows what is not raised. Other texts
                               // are raised where the caret is
};

PastedLine PastedFrom(const QMimeData& source);
bool HoldsText(const QMimeData& source); // and not files

// Lines as HTML, as the editor shows them.
QString HtmlOf(const RichPage& lines);

// The selected parts of lines for other programs and for PastedFrom. As plain text, powers stand
// as "^(" ... ")" and pi as "p", which means the same when pasted or given to a command.
std::unique_ptr<QMimeData> MimeDataOf(const RichPage& lines);

} // namespace kelvane
