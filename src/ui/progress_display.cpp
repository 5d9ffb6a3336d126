#include "ui/progress_display.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <algorithm>
#include <cmath>

namespace kelvane {

ProgressDisplay::ProgressDisplay(QWidget* parent)
    : QWidget(parent)
{
    setObjectName("ProgressBar1");
    setAccessibleName(tr("Progress of the draw"));
    auto* bar = new QWidget;
    bar->setObjectName("PercBox");
    bar->setFixedHeight(10);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    for (std::size_t i = 0; i < m_segments.size(); ++i) {
        m_segments[i] = new QWidget;
        m_segments[i]->setObjectName(QString("Shape4(%1)").arg(i));
        m_segments[i]->setAutoFillBackground(true);
        row->addWidget(m_segments[i], 1);
    }
    m_percent = new QLabel;
    m_percent->setObjectName("Digital");
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setFamilies({"Courier", fixed.family()});
    m_percent->setFont(fixed);
    m_percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_percent->setMinimumWidth(QFontMetrics(fixed).horizontalAdvance("100%") + 4);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(bar, 1);
    layout->addWidget(m_percent);
    InitPerc();
}

void ProgressDisplay::InitPerc()
{
    PercentGo(0);
}

void ProgressDisplay::PercentGo(double fraction)
{
    const double bounded = std::clamp(fraction, 0.0, 1.0);
    m_lit = static_cast<int>(std::lround(bounded * kSegments));
    m_percent->setText(QString("%1%").arg(std::lround(bounded * 100)));
    ShowSegments();
}

void ProgressDisplay::SetColor(const QColor& color)
{
    // A darker shade of the plain colours, calm beside the graph.
    m_color = QColor::fromHsv(std::max(color.hue(), 0), std::min(color.saturation(), 170),
                              std::min(color.value(), 175));
    ShowSegments();
}

void ProgressDisplay::ShowSegments()
{
    QPalette lit = palette();
    lit.setColor(QPalette::Window, m_color);
    QPalette dark = palette();
    dark.setColor(QPalette::Window, palette().color(QPalette::Midlight));
    for (int i = 0; i < kSegments; ++i)
        m_segments[static_cast<std::size_t>(i)]->setPalette(i < m_lit ? lit : dark);
}

} // namespace kelvane
