#include "ui/editor_page.h"

#include <QFontMetricsF>
#include <QMimeData>
#include <QTextDocument>
#include <QUrl>
#include <QVariant>
#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

constexpr QChar kPi(0x03C0);
constexpr double kRaisePoints = 4;
constexpr double kSmallerPoints = 2;
// Where Qt puts the base line in lines of fixed height.
constexpr double kBaseLineShare = 0.8;
constexpr qsizetype kMaxHtmlLength = 1 << 20;
const QString kFormulaType = QStringLiteral("application/x-kelvane-formula");

// Reads nothing from disk or network, whatever a pasted text refers to.
class ClosedDocument : public QTextDocument {
protected:
    QVariant loadResource(int, const QUrl&) override { return {}; }
};

qsizetype FirstLineBreak(const QString& text)
{
    const auto isBreak = [](QChar c) {
        return c == u'\r' || c == u'\n' || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    };
    return std::find_if(text.begin(), text.end(), isBreak) - text.begin();
}

QString StoredText(QString shown)
{
    return shown.replace(kPi, QLatin1Char('p'));
}

void AppendRun(RichLine& line, const QString& text, Level level)
{
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
    AppendRun(pasted.Line, text.left(end), Level::Base);
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
        AppendRun(pasted.Line, text.left(end), LevelOf(part.fragment().charFormat()));
        pasted.HadLineBreak |= end < text.size();
        if (end < text.size())
            break;
    }
    return pasted;
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

} // namespace

EditorFormats::EditorFormats(const QFont& font, const QPaintDevice& device)
{
    QFont raisedFont(font);
    raisedFont.setPointSizeF(font.pointSizeF() - kSmallerPoints);
    const QFontMetricsF metrics(font, &device);
    const QFontMetricsF raisedMetrics(raisedFont, &device);
    const double raise = kRaisePoints * device.logicalDpiY() / 72;

    const double above = std::max(metrics.ascent(), raise + raisedMetrics.ascent());
    LineHeight = static_cast<int>(
        std::ceil(std::max(above / kBaseLineShare, metrics.descent() / (1 - kBaseLineShare)) + 1));
    RaisedTop = qRound(kBaseLineShare * LineHeight - raise - raisedMetrics.ascent());
    RaisedHeight = qRound(raisedMetrics.height());
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

PastedLine PastedFrom(const QMimeData& source)
{
    const bool isFormula = source.hasFormat(kFormulaType);
    const QString html = isFormula ? QString::fromUtf8(source.data(kFormulaType)) : source.html();
    if (html.isEmpty() || html.size() > kMaxHtmlLength)
        return FromPlain(source.text());
    PastedLine pasted = FromHtml(html);
    pasted.KeepsLevels = isFormula;
    // Some programs leave the line end out of the rich form only.
    pasted.HadLineBreak |= FromPlain(source.text()).HadLineBreak;
    return pasted;
}

bool HoldsText(const QMimeData& source)
{
    return source.hasText() || source.hasHtml();
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
