#include "ui/settings_region.h"

#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

namespace kelvane {

namespace {

// The line as a whole, as it stands at the start; the run of blanks parts the name from the value.
constexpr const char* kCaptions[kInfoLines] = {
    "Axis Center:               (0,0,0)", "Zoom Factor:            1X",
    "Quality:                     1 pix/unit", "Each Division:          1 units",
    "Speed:                   100 pix/s"};

constexpr int kColumnGap = 8; // between the names and the values

constexpr int kFullFade = 500;
constexpr int kFadeStep = 10;

// Parts a line into its name, with the colon, and its value.
QStringList Parted(const QString& line)
{
    const auto colon = line.indexOf(':') + 1;
    return {line.left(colon), line.mid(colon).trimmed()};
}

// With three digits that mean something.
QString SpeedText(double speed)
{
    const double unit = std::pow(10, std::floor(std::log10(speed)) - 2);
    return QString::number(std::round(speed / unit) * unit, 'f', 0);
}

} // namespace

// A status line: its text is the whole line, shown in two columns.
class SettingsRegion::InfoLabel : public QLabel {
public:
    explicit InfoLabel(const QString& caption)
        : QLabel(caption)
        , m_blanks(caption.count(' ') - caption.simplified().count(' ') + 1)
    {
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        setAccessibleName(caption.simplified());
    }

    QString Value() const { return Parted(text())[1]; }
    void SetValue(const QString& value)
    {
        setText(Parted(text())[0] + QString(m_blanks, ' ') + value);
        setAccessibleName(text().simplified());
        setToolTip(value);
    }
    void SetValueColor(std::optional<QColor> color)
    {
        m_valueColor = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        const QStringList parts = Parted(text());
        const int column = ColumnOf(fontMetrics());
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect(), Qt::AlignVCenter, parts[0]);
        const QRect right = rect().adjusted(column, 0, 0, 0);
        if (m_valueColor)
            painter.setPen(*m_valueColor);
        painter.drawText(right, Qt::AlignVCenter,
                         fontMetrics().elidedText(parts[1], Qt::ElideRight, right.width()));
    }

private:
    // Where the values begin: after the longest name.
    static int ColumnOf(const QFontMetrics& metrics)
    {
        int widest = 0;
        for (const char* const caption : kCaptions)
            widest = std::max(widest, metrics.horizontalAdvance(Parted(caption)[0]));
        return widest + kColumnGap;
    }

    qsizetype m_blanks; // in the text between name and value, as at the start
    std::optional<QColor> m_valueColor;
};

SettingsRegion::SettingsRegion(QWidget* parent)
    : QWidget(parent)
{
    auto* frame = new QGroupBox("Settings");
    frame->setObjectName("Frame1");
    auto* rows = new QVBoxLayout(frame);
    rows->setContentsMargins(8, 8, 8, 8);
    rows->setSpacing(4);
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        Line& line = m_lines[i];
        line.Info = new InfoLabel(kCaptions[i]);
        line.Info->setObjectName(QString("Info(%1)").arg(i));
        rows->addWidget(line.Info);
        line.Timer = new QTimer(this);
        line.Timer->setObjectName(i < 4 ? QString("Timer%1").arg(15 + i) : QString("SpeedFade"));
        line.Timer->setInterval(30);
        connect(line.Timer, &QTimer::timeout, this, [this, i] { FadeLine(i); });
    }
    auto* marks = new QHBoxLayout;
    marks->setSpacing(4);
    for (std::size_t i = 0; i < m_marks.size(); ++i) {
        m_marks[i] = new QLabel;
        m_marks[i]->setObjectName(QString("SpeedShape(%1)").arg(i));
        m_marks[i]->setFixedSize(16, 4);
        marks->addWidget(m_marks[i]);
    }
    m_unresolved = new QLabel;
    m_unresolved->setObjectName("Unresolved");
    m_unresolved->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_unresolved->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    // Nothing moves when it says something.
    m_unresolved->setMinimumHeight(m_unresolved->fontMetrics().height());
    marks->addWidget(m_unresolved, 1);
    rows->addLayout(marks);
    rows->addStretch(1);
    ShowSpeedMarks(0);
    ShowLacks(DrawEnd::Complete, 0);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);
}

void SettingsRegion::ShowValue(InfoLine which, const QString& value)
{
    Line& line = m_lines[static_cast<std::size_t>(which)];
    if (line.Info->Value() == value)
        return;
    line.Info->SetValue(value);
    line.Fade = kFullFade;
    line.Timer->start();
}

// From the accent colour back to the colour of text.
void SettingsRegion::FadeLine(std::size_t which)
{
    Line& line = m_lines[which];
    line.Fade = std::max(line.Fade - kFadeStep, 0);
    if (line.Fade == 0) {
        line.Timer->stop();
        line.Info->SetValueColor(std::nullopt);
        return;
    }
    const QColor text = palette().color(QPalette::WindowText);
    const QColor accent = palette().color(QPalette::Highlight);
    const double share = std::min(line.Fade, 255) / 255.0;
    const auto mix = [share](int from, int to) {
        return static_cast<int>(from + (to - from) * share);
    };
    line.Info->SetValueColor(QColor(mix(text.red(), accent.red()),
                                    mix(text.green(), accent.green()),
                                    mix(text.blue(), accent.blue())));
}

void SettingsRegion::ShowSpeedMarks(int count)
{
    for (int i = 0; i < static_cast<int>(m_marks.size()); ++i)
        m_marks[static_cast<std::size_t>(i)]->setStyleSheet(
            QString("border-radius: 2px; background: palette(%1);")
                .arg(i < count ? "highlight" : "mid"));
}

void SettingsRegion::ShowLacks(DrawEnd end, std::int64_t unresolvedPixels)
{
    QString text;
    QString explanation;
    if (end == DrawEnd::Stopped) {
        text = tr("stopped");
        explanation = tr("<p>The draw was stopped, so the graph is not complete.</p>");
    } else if (unresolvedPixels > 0) {
        text = tr("unresolved: %1 px").arg(unresolvedPixels);
        explanation =
            tr("<p>In the hatched places, %1 pixels in all, it could not be told within the time "
               "of a draw whether the graph runs there. Zoom in to see more of it.</p>")
                .arg(unresolvedPixels);
    }
    m_unresolved->setText(text);
    m_unresolved->setToolTip(explanation);
}

void SettingsRegion::ShowSpeed(const DrawStats& stats)
{
    constexpr int kFewSamples = 1000; // from fewer no speed can be told
    if (stats.Samples < kFewSamples || !(stats.SweepSeconds > 0))
        return;
    const double speed = static_cast<double>(stats.Samples) / stats.SweepSeconds;
    ShowValue(InfoLine::Speed, SpeedText(speed) + " pix/s");
    constexpr double kFast[] = {1e5, 1e6, 1e7};
    ShowSpeedMarks(static_cast<int>(std::count_if(std::begin(kFast), std::end(kFast),
                                                  [speed](double fast) { return speed >= fast; })));
}

} // namespace kelvane
