#include "ui/settings_region.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QTimer>
#include <algorithm>

namespace kelvane {

namespace {

// The line as a whole, as it stands at the start; the run of blanks parts the name from the value.
constexpr const char* kCaptions[kInfoLines] = {
    "Axis Center:               (0,0,0)", "Zoom Factor:            1X",
    "Quality:                     1 pix/unit", "Each Division:          1 units",
    "Speed:                   100 pix/s"};

constexpr int kFullFade = 500;
constexpr int kFadeStep = 10;

} // namespace

SettingsRegion::SettingsRegion(QWidget* parent)
    : QWidget(parent)
{
    auto* frame = new QGroupBox("Settings");
    frame->setObjectName("Frame1");
    auto* grid = new QGridLayout(frame);
    grid->setContentsMargins(8, 8, 8, 8);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(1, 1);
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const QString caption = kCaptions[i];
        const auto colon = caption.indexOf(':') + 1;
        Line& line = m_lines[i];
        line.Name = new QLabel(caption.left(colon));
        line.Value = new QLabel(caption.mid(colon).trimmed());
        line.Value->setObjectName(QString("Info(%1)").arg(i));
        line.Value->setAccessibleName(caption.simplified());
        line.Value->setTextInteractionFlags(Qt::NoTextInteraction);
        line.Value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        grid->addWidget(line.Name, static_cast<int>(i), 0);
        grid->addWidget(line.Value, static_cast<int>(i), 1);
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
    marks->addStretch(1);
    grid->addLayout(marks, kInfoLines, 1);
    grid->setRowStretch(kInfoLines + 1, 1);
    ShowSpeedMarks(0);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);
}

void SettingsRegion::ShowValue(InfoLine which, const QString& value)
{
    Line& line = m_lines[static_cast<std::size_t>(which)];
    if (line.Value->text() == value)
        return;
    line.Value->setText(value);
    line.Value->setToolTip(value);
    line.Value->setAccessibleName(line.Name->text() + " " + value);
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
        line.Value->setPalette({});
        return;
    }
    const QColor text = palette().color(QPalette::WindowText);
    const QColor accent = palette().color(QPalette::Highlight);
    const double share = std::min(line.Fade, 255) / 255.0;
    const auto mix = [share](int from, int to) {
        return static_cast<int>(from + (to - from) * share);
    };
    QPalette shaded = palette();
    shaded.setColor(QPalette::WindowText,
                    QColor(mix(text.red(), accent.red()), mix(text.green(), accent.green()),
                           mix(text.blue(), accent.blue())));
    line.Value->setPalette(shaded);
}

void SettingsRegion::ShowSpeedMarks(int count)
{
    for (int i = 0; i < static_cast<int>(m_marks.size()); ++i)
        m_marks[static_cast<std::size_t>(i)]->setStyleSheet(
            QString("border-radius: 2px; background: palette(%1);")
                .arg(i < count ? "highlight" : "mid"));
}

} // namespace kelvane
