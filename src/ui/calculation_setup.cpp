#include "ui/calculation_setup.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QVBoxLayout>
#include <algorithm>

namespace kelvane {

// A bar of the chart on its track. It is a progress bar, so that it tells its score to those who
// cannot see it.
class ScoreBar : public QProgressBar {
public:
    ScoreBar()
    {
        setRange(0, 100);
        setTextVisible(false);
        setMinimumWidth(200);
        setFixedHeight(12);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        constexpr double kRadius = 4;
        constexpr float kTrackAlpha = 0.12F;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        QColor track = palette().color(QPalette::WindowText);
        track.setAlphaF(kTrackAlpha);
        painter.setBrush(track);
        painter.drawRoundedRect(rect(), kRadius, kRadius);
        const double share = BarLength(value()) / kLongestBar;
        painter.setBrush(palette().color(QPalette::Active, QPalette::Highlight));
        painter.drawRoundedRect(QRectF(0, 0, share * width(), height()), kRadius, kRadius);
    }
};

namespace {

// A tick box that is empty while it is unavailable: a greyed tick would look like one that counts.
class AdditionBox : public QCheckBox {
public:
    using QCheckBox::QCheckBox;

protected:
    void initStyleOption(QStyleOptionButton* option) const override
    {
        QCheckBox::initStyleOption(option);
        if (option->state.testFlag(QStyle::State_NoChange)) {
            option->state.setFlag(QStyle::State_NoChange, false);
            option->state.setFlag(QStyle::State_Off);
        }
    }
};

constexpr int kDescriptionWidth = 520;

Qt::CheckState ShownState(TickState tick)
{
    switch (tick) {
    case TickState::Off:
        return Qt::Unchecked;
    case TickState::On:
        return Qt::Checked;
    case TickState::Unavailable:
        break;
    }
    return Qt::PartiallyChecked;
}

TickState TickOf(const QCheckBox& box)
{
    switch (box.checkState()) {
    case Qt::Unchecked:
        return TickState::Off;
    case Qt::Checked:
        return TickState::On;
    case Qt::PartiallyChecked:
        break;
    }
    return TickState::Unavailable;
}

void ShowTick(QCheckBox& box, TickState tick)
{
    box.setTristate(tick == TickState::Unavailable); // no click leads to the third state
    box.setCheckState(ShownState(tick));
    box.setEnabled(tick != TickState::Unavailable);
}

CalcMode ModeOf(const QRadioButton& advanced)
{
    return advanced.isChecked() ? CalcMode::Advanced : CalcMode::Simple;
}

template <class Button>
Button* MakeButton(const char* text, const char* name)
{
    auto* button = new Button(text);
    button->setObjectName(name);
    return button;
}

QGroupBox* MakeFrame(const char* title, const char* name)
{
    auto* frame = new QGroupBox(title);
    frame->setObjectName(name);
    return frame;
}

void SetGroupSpacing(QLayout& layout)
{
    layout.setContentsMargins(12, 8, 12, 12);
    layout.setSpacing(8);
}

} // namespace

CalculationSetup::CalculationSetup(CalculationModes& modes, QWidget* parent)
    : SettingsDialog("Calculation Setup", {}, parent)
    , m_modes(modes)
{
    setObjectName("CalculationSetup");
    auto* heading = new QLabel("How equations are turned into points, on 2D and on 3D sheets.");
    auto* choices = new QGridLayout;
    choices->setSpacing(12);
    choices->addWidget(Build2D(), 0, 0);
    choices->addWidget(Build3D(), 1, 0);
    choices->addWidget(BuildChart(), 0, 1, 2, 1);
    choices->setColumnStretch(1, 1);
    Content().setSpacing(12);
    Content().addWidget(heading);
    Content().addLayout(choices);
    Content().addWidget(BuildDescription());
    ConnectChoices();
    FitDescription();
    Show(m_modes, m_acceptedChart);
}

// ---- building

QGroupBox* CalculationSetup::Build2D()
{
    m_simple2D = MakeButton<QRadioButton>("&Simple", "Option1");
    m_advanced2D = MakeButton<QRadioButton>("&Advanced", "Option2");
    m_doubleDraw = MakeButton<AdditionBox>("&Double Draw", "Check1");
    m_multiDraw = MakeButton<AdditionBox>("&Multi Draw", "Check2");
    auto* additions = new QVBoxLayout;
    additions->setContentsMargins(24, 0, 0, 0); // below "Advanced", which they belong to
    additions->setSpacing(8);
    additions->addWidget(m_doubleDraw);
    additions->addWidget(m_multiDraw);
    QGroupBox* frame = MakeFrame("2D Mode", "Frame2");
    auto* layout = new QVBoxLayout(frame);
    SetGroupSpacing(*layout);
    layout->addWidget(m_simple2D);
    layout->addWidget(m_advanced2D);
    layout->addLayout(additions);
    return frame;
}

QGroupBox* CalculationSetup::Build3D()
{
    m_simple3D = MakeButton<QRadioButton>("S&imple", "Option3");
    m_advanced3D = MakeButton<QRadioButton>("Ad&vanced", "Option4");
    QGroupBox* frame = MakeFrame("3D Mode", "Frame3");
    auto* layout = new QVBoxLayout(frame);
    SetGroupSpacing(*layout);
    layout->addWidget(m_simple3D);
    layout->addWidget(m_advanced3D);
    return frame;
}

QGroupBox* CalculationSetup::BuildChart()
{
    constexpr const char* kCaptions[] = {"Label2", "Label4", "Label5", "Label6"};
    m_chart2D = MakeButton<QRadioButton>("&2D choice", "Option5");
    m_chart3D = MakeButton<QRadioButton>("&3D choice", "Option6");
    auto* shown = new QHBoxLayout;
    shown->setSpacing(24);
    shown->addWidget(m_chart2D);
    shown->addWidget(m_chart3D);
    shown->addStretch();
    QGroupBox* frame = MakeFrame("Summary Chart", "Frame4");
    auto* layout = new QVBoxLayout(frame);
    SetGroupSpacing(*layout);
    layout->addLayout(shown);
    auto* rows = new QGridLayout;
    rows->setHorizontalSpacing(8);
    rows->setColumnStretch(1, 1);
    layout->addLayout(rows, 1);
    for (int i = 0; i < static_cast<int>(m_bars.size()); ++i) {
        const auto index = static_cast<std::size_t>(i);
        const std::string_view name = kScoreNames[index];
        auto* caption = new QLabel(QString::fromUtf8(name.data(), static_cast<int>(name.size())));
        caption->setObjectName(kCaptions[i]);
        auto* bar = new ScoreBar;
        bar->setObjectName(QString("Shape1(%1)").arg(i));
        bar->setAccessibleName(caption->text());
        auto* score = new QLabel;
        score->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        score->setMinimumWidth(score->fontMetrics().horizontalAdvance("100"));
        connect(bar, &QProgressBar::valueChanged, score, qOverload<int>(&QLabel::setNum));
        m_bars[index] = bar;
        rows->addWidget(caption, i, 0, Qt::AlignRight | Qt::AlignVCenter);
        rows->addWidget(bar, i, 1, Qt::AlignVCenter);
        rows->addWidget(score, i, 2);
        rows->setRowStretch(i, 1);
    }
    return frame;
}

QGroupBox* CalculationSetup::BuildDescription()
{
    m_description = new QLabel;
    m_description->setObjectName("Description");
    m_description->setTextFormat(Qt::PlainText);
    m_description->setWordWrap(true);
    m_description->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_description->setTextInteractionFlags(Qt::TextSelectableByMouse |
                                           Qt::TextSelectableByKeyboard);
    QGroupBox* frame = MakeFrame("Description", "Frame1");
    auto* layout = new QVBoxLayout(frame);
    SetGroupSpacing(*layout);
    layout->addWidget(m_description);
    return frame;
}

// A click on a choice explains it, also when it was chosen already.
void CalculationSetup::ConnectChoices()
{
    QAbstractButton* const choices[] = {m_simple2D,  m_advanced2D, m_doubleDraw,
                                        m_multiDraw, m_simple3D,   m_advanced3D};
    int index = 0;
    for (QAbstractButton* choice : choices) {
        ++index;
        choice->setAccessibleDescription(QString::fromStdString(ShownDescription(index)));
        choice->installEventFilter(this);
        connect(choice, &QAbstractButton::clicked, this, [this, index] {
            ShowTicks(Draft());
            DrawChart();
            Describe(index);
        });
    }
    for (QAbstractButton* chart : {m_chart2D, m_chart3D})
        connect(chart, &QAbstractButton::clicked, this, &CalculationSetup::DrawChart);
}

// ---- what is chosen

CalculationModes CalculationSetup::Draft() const
{
    CalculationModes draft;
    draft.CalcMode3D = ModeOf(*m_advanced3D);
    draft.DoubleDraw = TickOf(*m_doubleDraw);
    draft.MultiDraw = TickOf(*m_multiDraw);
    Choose2D(draft, ModeOf(*m_advanced2D));
    return draft;
}

ChartChoice CalculationSetup::Chart() const
{
    return m_chart2D->isChecked() ? ChartChoice::Mode2D : ChartChoice::Mode3D;
}

void CalculationSetup::Show(const CalculationModes& modes, ChartChoice chart)
{
    (modes.CalcMode2D == CalcMode::Simple ? m_simple2D : m_advanced2D)->setChecked(true);
    (modes.CalcMode3D == CalcMode::Simple ? m_simple3D : m_advanced3D)->setChecked(true);
    (chart == ChartChoice::Mode2D ? m_chart2D : m_chart3D)->setChecked(true);
    ShowTicks(modes);
    ShowTicks(Draft()); // what goes with the mode
    DrawChart();
    Describe(0);
}

void CalculationSetup::ShowTicks(const CalculationModes& modes)
{
    ShowTick(*m_doubleDraw, modes.DoubleDraw);
    ShowTick(*m_multiDraw, modes.MultiDraw);
}

void CalculationSetup::Describe(int index)
{
    m_description->setText(QString::fromStdString(ShownDescription(index)));
}

void CalculationSetup::DrawChart()
{
    const ModeScores scores = ScoresOf(Draft(), Chart());
    for (std::size_t i = 0; i < scores.size(); ++i) {
        m_bars[i]->setValue(scores[i]);
        m_bars[i]->setAccessibleDescription(QString("%1 of 100").arg(scores[i]));
    }
}

// ---- opening and closing

void CalculationSetup::ShowAccepted()
{
    Show(m_modes, m_acceptedChart);
}

void CalculationSetup::ShowDefaults()
{
    CalculationModes standard;
    RestoreDefaults(standard);
    Show(standard, ChartChoice::Mode2D);
}

bool CalculationSetup::TakeOver()
{
    TakeChoices(m_modes, Draft());
    m_acceptedChart = Chart();
    return true;
}

QWidget* CalculationSetup::FirstField()
{
    return m_simple2D->isChecked() ? m_simple2D : m_advanced2D;
}

// ---- events

void CalculationSetup::changeEvent(QEvent* event)
{
    SettingsDialog::changeEvent(event);
    const bool otherSize =
        event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (otherSize && m_description != nullptr)
        FitDescription();
}

// Room for the longest text, so that the dialog keeps its size.
void CalculationSetup::FitDescription()
{
    const QString shown = m_description->text();
    int height = 0;
    for (int i = 0; i <= static_cast<int>(ModeChoice::Advanced3D); ++i) {
        Describe(i);
        height = std::max(height, m_description->heightForWidth(kDescriptionWidth));
    }
    m_description->setText(shown);
    m_description->setFixedSize(kDescriptionWidth, height);
}

// A greyed tick box cannot be clicked, but it can be asked what it is.
bool CalculationSetup::eventFilter(QObject* target, QEvent* event)
{
    const auto* choice = qobject_cast<QAbstractButton*>(target);
    const bool pressed = event->type() == QEvent::MouseButtonPress;
    if (pressed && choice != nullptr && !choice->isEnabled())
        m_description->setText(choice->accessibleDescription());
    return SettingsDialog::eventFilter(target, event);
}

} // namespace kelvane
