#pragma once

#include <QFont>
#include <QString>
#include <QTextBlock>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <memory>

#include "doc/rich_page.h"

class QMimeData;
class QPaintDevice;
class QTextDocument;

// What the formula editor's document holds, and its conversions: from and to the page as a value,
// and from and to what is copied and dragged. One block is one line.

namespace kelvane {

enum class Level { Base, Raised };

// How lines and characters look. All sizes follow from the font.
struct EditorFormats {
    EditorFormats(const QFont& font, const QPaintDevice& device);

    const QTextCharFormat& At(Level level) const { return level == Level::Base ? Base : Raised; }

    int LineHeight; // in pixels, room for raised text included
    int RaisedTop;  // of raised text, below the line's top
    int RaisedHeight;
    QTextBlockFormat Line;
    QTextCharFormat Base;
    QTextCharFormat Raised; // 4 points up, 2 points smaller
};

// Lines never grow longer, in UTF-16 units.
inline constexpr int kMaxLineLength = 4000;

Level LevelOf(const QTextCharFormat& format);

// The text as the editor shows it: "p" and "P" as the Greek letter pi, and without blanks, control
// characters and whatever else has no glyph of its own.
QString ShownText(const QString& text);

// The runs of a block's characters first to end - 1, counted in the block, with pi as "p".
RichLine LineOf(const QTextBlock& block, int first, int end);
RichPage PageOf(const QTextDocument& document);

// Text from the clipboard or from a drag, up to its first line break.
struct PastedLine {
    RichLine Line;             // not filtered yet
    bool HadLineBreak = false; // so that something may be missing
    bool KeepsLevels = false;  // from a formula editor, which knows what is not raised. Other texts
                               // are raised where the caret is
};

PastedLine PastedFrom(const QMimeData& source);
bool HoldsText(const QMimeData& source);

// The selected parts of lines for other programs and for PastedFrom. As plain text, powers stand
// as "^(" ... ")" and pi as "p", which means the same when pasted or given to a command.
std::unique_ptr<QMimeData> MimeDataOf(const RichPage& lines);

} // namespace kelvane
