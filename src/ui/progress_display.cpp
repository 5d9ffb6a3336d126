#include "ui/progress_display.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace kelvane {

// The bar of segments.
class ProgressDisplay::Segments : public QWidget {
public:
    void Show(int lit)
    {
        m_lit = lit;
        update();
    }
    void SetColor(const QColor& color)
    {
        m_color = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        const double step = static_cast<double>(width() + 2) / kSegments;
        for (int i = 0; i < kSegments; ++i) {
            painter.setBrush(i < m_lit ? m_color : palette().color(QPalette::Midlight));
            painter.drawRoundedRect(QRectF(i * step, 0, step - 2, height()), 1.5, 1.5);
        }
    }

private:
    QColor m_color;
    int m_lit = 0;
};

ProgressDisplay::ProgressDisplay(QWidget* parent)
    : QWidget(parent)
{
    setObjectName("ProgressBar1");
    setAccessibleName(tr("Progress of the draw"));
    m_segments = new Segments;
    m_segments->setObjectName("PercBox");
    m_segments->setFixedHeight(12);
    m_segments->setMinimumWidth(2 * kSegments);
    m_segments->SetColor(palette().color(QPalette::Highlight));
    m_percent = new QLabel;
    m_percent->setObjectName("Digital");
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setFamilies({"Courier", fixed.family()});
    m_percent->setFont(fixed);
    m_percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_percent->setMinimumWidth(QFontMetrics(fixed).horizontalAdvance("100%") + 4);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_segments, 1);
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
    m_segments->Show(m_lit);
    m_percent->setText(QString("%1%").arg(std::lround(bounded * 100)));
}

void ProgressDisplay::SetColor(const QColor& color)
{
    // A darker shade of the plain colours, calm beside the graph.
    m_segments->SetColor(QColor::fromHsv(color.hue() < 0 ? 0 : color.hue(),
                                         std::min(color.saturation(), 170),
                                         std::min(color.value(), 175)));
}

} // namespace kelvane
