#include "ui/editor_page.h"

#include <QAbstractTextDocumentLayout>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QMimeData>
#include <QPainter>
#include <QTextDocument>
#include <QTextLayout>
#include <QUrl>
#include <QVariant>
#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

constexpr int kMargin = 6;  // left and right, in pixels
constexpr int kLineEnd = 6; // width of a selected line end
constexpr double kFontPoints = 13;
constexpr double kRaisePoints = 4;
constexpr double kSmallerPoints = 2;
// Where Qt puts the base line in lines of fixed height.
constexpr double kBaseLineShare = 0.8;
constexpr qsizetype kMaxPastedLength = 1 << 20;
const QString kFormulaType = QStringLiteral("application/x-kelvane-formula");

// Reads nothing from disk or network, whatever a pasted text refers to.
class ClosedDocument : public QTextDocument {
protected:
    QVariant loadResource(int, const QUrl&) override { return {}; }
};

QString StoredText(QString shown)
{
    return shown.replace(kPi, QLatin1Char('p'));
}

void AppendRun(RichLine& line, const QString& text, Level level)
{
    if (text.isEmpty())
        return;
    const bool raised = level == Level::Raised;
    if (line.empty() || line.back().Raised != raised)
        line.push_back({{}, raised});
    line.back().Text += text.toStdString();
}

PastedLine FromPlain(const QString& text)
{
    const qsizetype end = FirstLineBreak(text);
    PastedLine pasted;
    pasted.HadLineBreak = end < text.size();
    AppendRun(pasted.Line, ShownText(text.left(std::min(end, kMaxPastedLength))), Level::Base);
    return pasted;
}

PastedLine FromHtml(const QString& html)
{
    ClosedDocument document;
    document.setHtml(html);
    const QTextBlock block = document.begin();
    PastedLine pasted;
    pasted.HadLineBreak = document.blockCount() > 1;
    for (auto part = block.begin(); !part.atEnd(); ++part) {
        const QString text = part.fragment().text();
        const qsizetype end = FirstLineBreak(text);
        AppendRun(pasted.Line, ShownText(text.left(end)), LevelOf(part.fragment().charFormat()));
        pasted.HadLineBreak |= end < text.size();
        if (end < text.size())
            break;
    }
    return pasted;
}

} // namespace

EditorFormats::EditorFormats(const QPaintDevice& device)
    : Font(QFontDatabase::systemFont(QFontDatabase::GeneralFont))
{
    Font.setPointSizeF(kFontPoints);
    QFont raisedFont(Font);
    raisedFont.setPointSizeF(kFontPoints - kSmallerPoints);
    const QFontMetricsF metrics(Font, &device);
    const QFontMetricsF raisedMetrics(raisedFont, &device);
    const double raise = kRaisePoints * device.logicalDpiY() / 72;

    const double above = std::max(metrics.ascent(), raise + raisedMetrics.ascent());
    LineHeight = static_cast<int>(
        std::ceil(std::max(above / kBaseLineShare, metrics.descent() / (1 - kBaseLineShare)) + 1));
    RaisedTop = qRound(kBaseLineShare * LineHeight - raise - raisedMetrics.ascent());
    RaisedHeight = qRound(raisedMetrics.height());
    Page.setMargin(0);
    Page.setLeftMargin(kMargin);
    Page.setRightMargin(kMargin);
    Line.setLineHeight(LineHeight, QTextBlockFormat::FixedHeight);
    Raised.setFontPointSize(raisedFont.pointSizeF());
    Raised.setBaselineOffset(100 * raise / raisedMetrics.height());
}

Level LevelOf(const QTextCharFormat& format)
{
    const bool raised = format.baselineOffset() > 0 ||
                        format.verticalAlignment() == QTextCharFormat::AlignSuperScript;
    return raised ? Level::Raised : Level::Base;
}

QString ShownText(const QString& text)
{
    QString shown;
    for (const char32_t c : text.toUcs4()) {
        if (c == U'p' || c == U'P')
            shown += kPi;
        else if (QChar::isPrint(c) && !QChar::isSpace(c) && c != QChar::ObjectReplacementCharacter)
            shown += QString::fromUcs4(&c, 1);
    }
    return shown;
}

RichLine LineOf(const QTextBlock& block, int first, int end)
{
    RichLine line;
    for (auto part = block.begin(); !part.atEnd(); ++part) {
        const int start = part.fragment().position() - block.position();
        const int from = std::max(first, start);
        const int to = std::min(end, start + part.fragment().length());
        if (from < to)
            AppendRun(line, StoredText(part.fragment().text().mid(from - start, to - from)),
                      LevelOf(part.fragment().charFormat()));
    }
    return line;
}

RichPage PageOf(const QTextDocument& document)
{
    RichPage page;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        page.push_back(LineOf(block, 0, block.length()));
    return page;
}

RichPage SelectedLines(const QTextCursor& cursor)
{
    const int start = cursor.selectionStart();
    const int end = cursor.selectionEnd();
    RichPage lines;
    for (QTextBlock block = cursor.document()->findBlock(start);
         block.isValid() && block.position() <= end; block = block.next())
        lines.push_back(LineOf(block, start - block.position(), end - block.position()));
    return lines;
}

bool SpansLines(const QTextCursor& selection)
{
    const QTextDocument& document = *selection.document();
    return document.findBlock(selection.selectionStart()) !=
           document.findBlock(selection.selectionEnd());
}

QChar CharacterBefore(const QTextCursor& cursor)
{
    const int position = cursor.selectionStart();
    const QTextBlock block = cursor.document()->findBlock(position);
    return position > block.position() ? cursor.document()->characterAt(position - 1) : QChar();
}

void CutToLine(QTextCursor& selection)
{
    const QTextBlock block = selection.document()->findBlock(selection.anchor());
    const int position =
        std::clamp(selection.position(), block.position(), block.position() + block.length() - 1);
    selection.setPosition(position, QTextCursor::KeepAnchor);
}

QTextCursor PartOfLine(QTextCursor cursor, int start, int length)
{
    const QTextDocument& document = *cursor.document();
    const QTextBlock block = cursor.block();
    const int last = block.position() + block.length() - 1;
    int from = std::clamp(cursor.position() + start, block.position(), last);
    int to = std::min(from + length, last);
    // Halves of characters outside the basic plane go together.
    from -= document.characterAt(from).isLowSurrogate() ? 1 : 0;
    to += document.characterAt(to).isLowSurrogate() ? 1 : 0;
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    return cursor;
}

void DrawSelected(QPainter& painter, const QTextCursor& selection, int lineHeight,
                  const QPalette& palette)
{
    const int start = selection.selectionStart();
    const int end = selection.selectionEnd();
    if (start == end)
        return;
    QRegion region;
    for (QTextBlock block = selection.document()->findBlock(start);
         block.isValid() && block.position() <= end; block = block.next()) {
        const int last = block.position() + block.length() - 1;
        const QTextLine line = block.layout()->lineAt(0);
        const double offset = block.layout()->position().x();
        const double left = line.cursorToX(std::max(start - block.position(), 0));
        const double right = line.cursorToX(std::min(end, last) - block.position());
        const int from = static_cast<int>(std::floor(offset + left));
        const int to = static_cast<int>(std::ceil(offset + right)) + (end > last ? kLineEnd : 0);
        region += QRect(from, block.blockNumber() * lineHeight, to - from, lineHeight);
    }
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = palette;
    context.palette.setColor(QPalette::Text, palette.color(QPalette::HighlightedText));
    painter.setClipRegion(region);
    painter.fillRect(region.boundingRect(), palette.color(QPalette::Highlight));
    selection.document()->documentLayout()->draw(&painter, context);
}

qsizetype FirstLineBreak(const QString& text)
{
    const auto isBreak = [](QChar c) {
        return c == u'\r' || c == u'\n' || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    };
    return std::find_if(text.begin(), text.end(), isBreak) - text.begin();
}

PastedLine PastedFrom(const QMimeData& source)
{
    const bool isFormula = source.hasFormat(kFormulaType);
    const QString html = isFormula ? QString::fromUtf8(source.data(kFormulaType)) : source.html();
    PastedLine plain = FromPlain(source.text());
    if (html.isEmpty() || html.size() > kMaxPastedLength)
        return plain;
    PastedLine pasted = FromHtml(html);
    if (pasted.Line.empty()) // a table comes after an empty line
        pasted.Line = plain.Line;
    pasted.KeepsLevels = isFormula;
    // Some programs leave the line end out of the rich form only.
    pasted.HadLineBreak |= plain.HadLineBreak;
    return pasted;
}

bool HoldsText(const QMimeData& source)
{
    return !source.hasUrls() && (source.hasText() || source.hasHtml());
}

QString HtmlOf(const RichPage& lines)
{
    QStringList htmlLines;
    for (const RichLine& line : lines) {
        QString html;
        for (const RichRun& run : line) {
            const QString text = ShownText(QString::fromStdString(run.Text)).toHtmlEscaped();
            html += run.Raised ? QStringLiteral("<sup>%1</sup>").arg(text) : text;
        }
        htmlLines += html;
    }
    return htmlLines.join(QStringLiteral("<br>"));
}

std::unique_ptr<QMimeData> MimeDataOf(const RichPage& lines)
{
    const QString html = HtmlOf(lines);
    QString plain = QString::fromStdString(PowerToPlain(lines)).replace(u'\r', u'\n');
    plain.chop(1); // lines are parted, the last one is not ended
    auto data = std::make_unique<QMimeData>();
    data->setText(plain);
    data->setHtml(html);
    data->setData(kFormulaType, html.toUtf8());
    return data;
}

} // namespace kelvane
