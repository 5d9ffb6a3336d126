#include "ui/color_sample.h"

#include <QColorDialog>
#include <QPainter>

#include "ui/curve_painter.h"

namespace kelvane {

namespace {

constexpr QSize kSampleSize(44, 24);
constexpr QSize kBarSize(104, 24);
constexpr double kCorner = 4;

// The colour in its hairline, which shows a colour like the ground's, too.
void PaintBox(QPainter& painter, const QRectF& box, const QBrush& brush, const QPalette& palette)
{
    QColor line = palette.color(QPalette::WindowText);
    line.setAlphaF(0.45F);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, 1));
    painter.setBrush(brush);
    painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
}

QColor WhenEnabled(Rgb color, const QWidget& widget)
{
    QColor shown = ToQColor(color);
    if (!widget.isEnabled())
        shown.setAlphaF(0.3F);
    return shown;
}

} // namespace

ColorSample::ColorSample(const QString& purpose, QWidget* parent)
    : QAbstractButton(parent)
    , m_purpose(purpose)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::clicked, this, &ColorSample::Pick);
    Describe();
}

void ColorSample::SetColor(Rgb color)
{
    if (color == m_color)
        return;
    m_color = color;
    Describe();
    update();
    Q_EMIT colorChanged();
}

void ColorSample::Describe()
{
    const QString text = m_purpose + ": " + ToQColor(m_color).name().toUpper();
    setToolTip(text);
    setAccessibleName(text);
}

QSize ColorSample::sizeHint() const
{
    return kSampleSize + QSize(2 * kRoom, 2 * kRoom);
}

void ColorSample::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRectF box = QRectF(rect()).adjusted(kRoom, kRoom, -kRoom, -kRoom);
    PaintBox(painter, box, WhenEnabled(m_color, *this), palette());
    if (!hasFocus() && !isDown())
        return;
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kCorner + 2, kCorner + 2);
}

void ColorSample::Pick()
{
    QColorDialog picker(ToQColor(m_color), this);
    picker.setObjectName("CommonDialog1");
    picker.setWindowTitle(m_purpose);
    picker.setOption(QColorDialog::DontUseNativeDialog); // alike everywhere
    if (picker.exec() != QDialog::Accepted)
        return;
    const QColor chosen = picker.selectedColor();
    SetColor({static_cast<std::uint8_t>(chosen.red()), static_cast<std::uint8_t>(chosen.green()),
              static_cast<std::uint8_t>(chosen.blue())});
    Q_EMIT colorPicked();
}

GradientBar::GradientBar(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void GradientBar::SetColors(Rgb from, Rgb to)
{
    m_from = from;
    m_to = to;
    update();
}

QSize GradientBar::sizeHint() const
{
    return kBarSize;
}

void GradientBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QLinearGradient gradient(rect().topLeft(), rect().topRight());
    gradient.setColorAt(0, ToQColor(m_from));
    gradient.setColorAt(1, ToQColor(m_to));
    PaintBox(painter, rect(), gradient, palette());
}

} // namespace kelvane
