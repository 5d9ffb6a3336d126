#include "ui/axis_preview.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

#include "ui/value_text.h"

namespace kelvane {

namespace {

constexpr QColor kHairline(0x9a, 0x9a, 0x9a);
constexpr QColor kMuted(0x6b, 0x6b, 0x6b);
constexpr double kNameGap = 9;      // from the end of an axis to the middle of its name
constexpr double kClosestMarks = 5; // pixels

void UseSmallFont(QPainter& painter)
{
    QFont font = painter.font();
    font.setPointSizeF(std::max(font.pointSizeF() * 0.9, 7.0));
    painter.setFont(font);
}

void DrawName(QPainter& painter, QPointF middle, const QString& name)
{
    constexpr double kRoom = 30;
    painter.drawText(QRectF(middle.x() - kRoom, middle.y() - kRoom, 2 * kRoom, 2 * kRoom),
                     Qt::AlignCenter, name);
}

// A white sheet with a hairline around it.
void FillSheet(QPainter& painter, const QRectF& sheet)
{
    painter.setPen(QPen(kHairline, 1));
    painter.setBrush(Qt::white);
    painter.drawRect(sheet);
    painter.setBrush(Qt::NoBrush);
}

// The largest sheet of this shape in the middle of the box, on half pixels.
QRectF SheetIn(const QRectF& box, QSizeF shape)
{
    const QSizeF size = shape.scaled(box.size() - QSizeF(1, 1), Qt::KeepAspectRatio);
    const double width = std::max(std::round(size.width()), 1.0);
    const double height = std::max(std::round(size.height()), 1.0);
    return {std::floor(box.center().x() - width / 2) + 0.5,
            std::floor(box.center().y() - height / 2) + 0.5, width, height};
}

// How many units lie between marks that do not run together: 1, 2 or 5 times a power of ten.
double UnitsPerMark(double unit)
{
    double power = 1;
    while (true) {
        for (const double factor : {1, 2, 5}) {
            if (unit * factor * power >= kClosestMarks)
                return factor * power;
        }
        power *= 10;
    }
}

struct PreviewAxis {
    QPointF Direction; // of length 1
    double Reach;      // from the centre to the sheet's edge
    double Unit;       // pixels; above 0
    double MarkHalf;   // half of a mark's length
};

void DrawAxis(QPainter& painter, QPointF center, const PreviewAxis& axis)
{
    painter.drawLine(center - axis.Direction * axis.Reach, center + axis.Direction * axis.Reach);
    const QPointF across(-axis.Direction.y() * axis.MarkHalf, axis.Direction.x() * axis.MarkHalf);
    const double step = axis.Unit * UnitsPerMark(axis.Unit);
    const int marks = static_cast<int>(axis.Reach / step);
    for (int i = -marks; i <= marks; ++i) {
        if (i == 0)
            continue;
        const QPointF at = center + axis.Direction * (i * step);
        painter.drawLine(at - across, at + across);
    }
}

QString CenterText(const AxisSetup& setup)
{
    const auto [x, y, z] = setup.Center;
    return QString("(%1,%2,%3)").arg(ValueText(x), ValueText(y), ValueText(z));
}

} // namespace

PreviewBox::PreviewBox(const QSize& size, const QString& name, Drawing drawing)
    : m_drawing(std::move(drawing))
{
    setFixedWidth(size.width());
    setMinimumHeight(size.height());
    setAccessibleName(name);
}

void PreviewBox::Show(const QString& description)
{
    setAccessibleDescription(description);
    update();
}

void PreviewBox::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    UseSmallFont(painter);
    m_drawing(painter, rect());
}

void PaintSheet(QPainter& painter, const QRectF& box, const AxisSetup& setup, const QSize& drawArea)
{
    QSizeF shape = drawArea.expandedTo(QSize(1, 1));
    if (setup.SquareWorkSheet)
        shape = QSizeF(1, 1) * std::min(shape.width(), shape.height());
    const QRectF sheet = SheetIn(box, shape);
    FillSheet(painter, sheet);
    painter.setClipRect(sheet.adjusted(0.5, 0.5, -0.5, -0.5));
    if (setup.HideAxis) {
        painter.setPen(kMuted);
        painter.drawText(sheet, Qt::AlignCenter, "The axes are hidden.");
        return;
    }
    const QPointF center(std::floor(sheet.center().x()) + 0.5,
                         std::floor(sheet.center().y()) + 0.5);
    const double halfWidth = sheet.width() / 2;
    const double halfHeight = sheet.height() / 2;
    const double shorter = std::min(halfWidth, halfHeight);
    const double markHalf = std::max(std::round(setup.UnitThickness * shorter / 200), 1.0);
    const double slope = std::sqrt(0.5);
    const auto unit = [&](std::size_t i) { // tenths of the area's pixels, in those of the sheet
        return std::max(setup.Units[i] / 10.0 * sheet.width() / shape.width(), 1e-3);
    };
    painter.setPen(kMuted);
    DrawAxis(painter, center, {{-slope, slope}, shorter / slope, unit(2), markHalf * 0.75});
    painter.setPen(Qt::black);
    DrawAxis(painter, center, {{1, 0}, halfWidth, unit(0), markHalf});
    DrawAxis(painter, center, {{0, -1}, halfHeight, unit(1), markHalf});
    const double aside = markHalf + kNameGap;
    DrawName(painter, {sheet.right() - kNameGap, center.y() - aside}, "X");
    DrawName(painter, {center.x() - aside, sheet.top() + kNameGap}, "Y");
    const double end =
        shorter - kNameGap - aside * slope; // of the Z axis, whose name stands above it
    DrawName(painter, center + QPointF(-end - aside * slope, end - aside * slope), "Z");
    const QRectF below(center + QPointF(markHalf + 3, markHalf + 1), sheet.bottomRight());
    painter.drawText(below, Qt::AlignLeft | Qt::AlignTop,
                     painter.fontMetrics().elidedText(CenterText(setup), Qt::ElideRight,
                                                      static_cast<int>(below.width()) - 3));
}

void PaintCross(QPainter& painter, const QRectF& box, const AxisModel& model, int angle,
                const CrossScale& scale)
{
    constexpr double kMargin = 2 * kNameGap;
    FillSheet(painter, box.adjusted(0.5, 0.5, -0.5, -0.5));
    const QPen solid(Qt::black, 1);
    QPen dashed = solid;
    dashed.setDashPattern({4, 3});
    const auto at = [&](CrossPoint point) { return box.topLeft() + QPointF(point.X, point.Y); };
    for (const CrossLine& line :
         AxisCross(model.RealWorldAxis, angle, scale, {box.width(), box.height(), kMargin})) {
        painter.setPen(line.Part == CrossPart::NegativeHalf ? dashed : solid);
        painter.drawLine(at(line.From), at(line.To));
        if (line.Part != CrossPart::PositiveHalf)
            continue;
        const QPointF along = at(line.To) - at(line.From);
        const double length = std::max(std::hypot(along.x(), along.y()), 1e-9);
        constexpr std::array kNames{"X", "Y", "Z"};
        DrawName(painter, at(line.To) + along / length * kNameGap,
                 kNames[static_cast<std::size_t>(line.Axis)]);
    }
}

} // namespace kelvane
