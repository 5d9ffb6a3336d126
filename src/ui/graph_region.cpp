#include "ui/graph_region.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>
#include <cmath>

#include "ui/draw_box.h"
#include "ui/icon_theme.h"
#include "ui/value_text.h"

namespace kelvane {

namespace {

constexpr int kOctaves = 19;    // to either side of zoom factor 1: up to the bounds of the zoom
constexpr int kFineSteps = 100; // to either side, half an octave

struct KeyRow {
    const char* Caption;
    const char* ToolTip;
    const char* Icon;
};

constexpr KeyRow kKeys[kTopKeys] = {{"Draw", "Ctrl + ENTER", "draw"},
                                    {"ZoomIn (+)", "Ctrl + '+'", "zoom_in"},
                                    {"ZoomOut (-)", "Ctrl + '-'", "zoom_out"},
                                    {"WinZoom", "", "win_zoom"},
                                    {"Clear", "Ctrl + DEL or Ctrl + C", "clear"},
                                    {"Center", "Ctrl + X", "center"}};

} // namespace

GraphRegion::GraphRegion(QWidget* parent)
    : QWidget(parent)
{
    setObjectName("DrawFrame");
    m_box = new DrawBox;
    auto* area = new QWidget;
    area->setObjectName("DrawArea");
    auto* row = new QHBoxLayout(area);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    row->addWidget(m_box, 1);
    row->addWidget(BuildSliders());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 8, 8, 4);
    layout->setSpacing(8);
    layout->addWidget(BuildKeys());
    layout->addWidget(area, 1);
}

QWidget* GraphRegion::BuildKeys()
{
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    for (int i = 0; i < kTopKeys; ++i) {
        const KeyRow& key = kKeys[i];
        auto* button = new QPushButton(ThemeIcon(key.Icon), key.Caption);
        button->setObjectName(QString("TopKey(%1)").arg(i));
        button->setToolTip(key.ToolTip);
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the focus where typing goes
        connect(button, &QPushButton::clicked, this, [this, i] { Q_EMIT topKeyPressed(i); });
        m_keys[static_cast<std::size_t>(i)] = button;
        row->addWidget(button);
    }
    // The one prominent key, as wide as its longer caption.
    QPushButton& draw = Key(TopKey::Draw);
    draw.setIcon(ThemeIcon("draw", QPalette::HighlightedText));
    draw.setStyleSheet("QPushButton { background: palette(highlight); color: "
                       "palette(highlighted-text); border: none; border-radius: 4px; "
                       "padding: 5px 16px; font-weight: 600; }"
                       "QPushButton:focus { border: 2px solid palette(text); padding: 3px 14px; }");
    draw.setMinimumWidth(draw.sizeHint().width() + 8);
    m_answer = new QLabel("(0,0)");
    m_answer->setObjectName("Answer");
    m_answer->setAccessibleName(tr("Point under the pointer"));
    m_answer->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_answer->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->addWidget(m_answer, 1);
    return bar;
}

QWidget* GraphRegion::BuildSliders()
{
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    const char* const tips[] = {"Zoom", "Fine zoom"};
    for (std::size_t i = 0; i < m_sliders.size(); ++i) {
        auto* slider = new QSlider(Qt::Vertical);
        slider->setObjectName(QString("Slider1(%1)").arg(i));
        slider->setAccessibleName(tips[i]);
        slider->setToolTip(tips[i]);
        const int reach = i == 0 ? kOctaves : kFineSteps;
        slider->setRange(-reach, reach);
        slider->setPageStep(i == 0 ? 2 : kFineSteps / 5);
        connect(slider, &QSlider::valueChanged, this, &GraphRegion::TakeSliders);
        m_sliders[i] = slider;
        row->addWidget(slider);
    }
    return bar;
}

// Up is nearer: a smaller zoom factor.
void GraphRegion::TakeSliders()
{
    const double octaves = m_sliders[0]->value() + m_sliders[1]->value() / (2.0 * kFineSteps);
    Q_EMIT zoomSlid(std::exp2(-octaves));
}

void GraphRegion::ShowZoom(double zoomFactor)
{
    const double octaves = -std::log2(zoomFactor);
    const double whole = std::round(octaves);
    const QSignalBlocker blockCoarse(m_sliders[0]);
    const QSignalBlocker blockFine(m_sliders[1]);
    m_sliders[0]->setValue(static_cast<int>(whole));
    m_sliders[1]->setValue(static_cast<int>(std::lround((octaves - whole) * 2 * kFineSteps)));
}

void GraphRegion::ShowAnswer(const std::optional<WorldPoint>& point,
                             const std::optional<WorldPoint>& neighbour)
{
    if (!point || !neighbour)
        return m_answer->clear();
    m_answer->setText("(" + PositionText(point->X, neighbour->X - point->X) + "," +
                      PositionText(point->Y, neighbour->Y - point->Y) + ")");
}

void GraphRegion::ShowDrawing(bool drawing)
{
    QPushButton& draw = Key(TopKey::Draw);
    draw.setText(drawing ? "Stop" : "Draw");
    draw.setIcon(ThemeIcon(drawing ? "stop" : "draw", QPalette::HighlightedText));
    draw.setToolTip(drawing ? "Esc" : kKeys[0].ToolTip);
}

} // namespace kelvane
