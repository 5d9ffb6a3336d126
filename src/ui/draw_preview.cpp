#include "ui/draw_preview.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>

#include "graph/color.h"
#include "ui/curve_painter.h"

namespace kelvane {

namespace {

constexpr QSize kDrawPreviewSize(176, 120);
constexpr QSize kSheetPreviewSize(304, 112);
constexpr double kCorner = 4;

Rgb Between(Rgb from, Rgb to, double part)
{
    const auto channel = [part](int a, int b) {
        return static_cast<std::uint8_t>(std::lround(a + std::clamp(part, 0.0, 1.0) * (b - a)));
    };
    return {channel(from.R, to.R), channel(from.G, to.G), channel(from.B, to.B)};
}

// Fills the widget with a piece of sheet and keeps what follows inside it.
void BeginSheet(QPainter& painter, const QWidget& widget, Rgb ground)
{
    QPainterPath outline;
    outline.addRoundedRect(QRectF(widget.rect()), kCorner, kCorner);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, ToQColor(ground));
    painter.setClipPath(outline);
}

void EndSheet(QPainter& painter, const QWidget& widget)
{
    QColor line = widget.palette().color(QPalette::WindowText);
    line.setAlphaF(0.35F);
    painter.setClipping(false);
    painter.setPen(QPen(line, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(widget.rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
}

// ---- the wave

// The wave's height at a part of the width, both 0 to 1.
double Wave(double part, double shift)
{
    return 0.5 + 0.38 * std::sin(2.6 * std::numbers::pi * part + shift);
}

void PaintWave(QPainter& painter, const DrawSettings& settings, QSizeF size, double shift,
               Rgb solid)
{
    const int apart = settings.Style == PointStyle::Pixel ? 4 : 2; // pixels
    const int end = static_cast<int>(size.width()) + apart;
    std::optional<QPointF> last;
    for (int x = -apart; x <= end; x += apart) {
        const double part = x / size.width();
        const double height = Wave(part, shift);
        const double along = settings.GradientAlong == GradientAxis::X ? part : height;
        const Rgb color = settings.Coloring == Coloring2D::Gradual
                              ? Between(settings.GradientFrom, settings.GradientTo, along)
                              : solid;
        const QPointF at(x, size.height() * (1 - height));
        painter.setPen(QPen(ToQColor(color), settings.DrawWidth, Qt::SolidLine, Qt::RoundCap));
        if (settings.Style == PointStyle::Pixel)
            painter.drawPoint(at);
        else
            painter.drawLine(last.value_or(at), at);
        last = at;
    }
}

void PaintWaves(QPainter& painter, const DrawSettings& settings, QSizeF size)
{
    if (settings.Coloring != Coloring2D::Random)
        return PaintWave(painter, settings, size, 0, settings.SolidColor);
    ColorState colors;
    for (const double shift : {0.0, 2.1, 4.2}) { // three equations
        PrepareEquationColor(colors, settings, {});
        PaintWave(painter, settings, size, shift, colors.Graph2DColor);
    }
}

// ---- the surface

constexpr int kCells = 12; // along each side

struct Node {
    QPointF At; // pixels
    Rgb Color;
};

using Mesh = std::array<std::array<Node, kCells + 1>, kCells + 1>;

// A hill seen from above one corner. x runs to the right and down, y to the right and up.
Node MakeNode(const Draw3DSettings& settings, QSizeF size, double x, double y)
{
    const double across = 2 * x - 1;
    const double deep = 2 * y - 1;
    const double z = std::exp(-2.2 * (across * across + deep * deep));
    const double along = settings.GradientAlong == GradientAxis::X   ? x
                         : settings.GradientAlong == GradientAxis::Y ? y
                                                                     : z;
    const QPointF at(size.width() * (0.06 + 0.44 * (x + y)),
                     size.height() * (0.66 + 0.26 * (x - y) - 0.5 * z));
    const bool gradual = settings.Coloring == Coloring3D::Gradual;
    return {at, gradual ? Between(settings.GradientFrom, settings.GradientTo, along)
                        : settings.SolidColor};
}

Mesh MakeMesh(const Draw3DSettings& settings, QSizeF size)
{
    Mesh mesh;
    for (std::size_t i = 0; i <= kCells; ++i) {
        for (std::size_t j = 0; j <= kCells; ++j)
            mesh[i][j] = MakeNode(settings, size, static_cast<double>(i) / kCells,
                                  static_cast<double>(j) / kCells);
    }
    return mesh;
}

// How much of the sheet shines through a filled surface.
double Transparency(SurfaceTechnique technique)
{
    switch (technique) {
    case SurfaceTechnique::WireFrame:
        return 1; // only what lies behind is hidden
    case SurfaceTechnique::Solid:
        return 0.5;
    case SurfaceTechnique::SuperSolid:
        break;
    }
    return 0;
}

void PaintFilling(QPainter& painter, const DrawSettings& settings, const std::array<Node, 4>& cell)
{
    const double through = Transparency(TechniqueOf(settings.In3D.SurfaceQuality));
    const QColor color = ToQColor(Between(cell[0].Color, settings.SheetColor, through));
    const QPointF corners[] = {cell[0].At, cell[1].At, cell[2].At, cell[3].At};
    painter.setPen(QPen(color, 0.5)); // no gaps between neighbours
    painter.setBrush(color);
    painter.drawConvexPolygon(corners, 4);
}

// The corners run round the cell: along x, then y, back along x, back along y.
void PaintCell(QPainter& painter, const DrawSettings& settings, const std::array<Node, 4>& cell)
{
    const Draw3DSettings& in3D = settings.In3D;
    if (in3D.Fill)
        PaintFilling(painter, settings, cell);
    for (std::size_t i = 0; i < cell.size(); ++i) {
        const Node& node = cell[i];
        painter.setPen(QPen(ToQColor(node.Color), settings.DrawWidth, Qt::SolidLine, Qt::RoundCap));
        if (in3D.Style == PointStyle::Pixel)
            painter.drawPoint(node.At);
        else if (i % 2 == 0 ? in3D.HorizontalLines : in3D.VerticalLines)
            painter.drawLine(node.At, cell[(i + 1) % cell.size()].At);
    }
}

// From the back, so that what is in front hides it.
void PaintSurface(QPainter& painter, const DrawSettings& settings, QSizeF size)
{
    const Mesh mesh = MakeMesh(settings.In3D, size);
    for (std::size_t i = 0; i < kCells; ++i) {
        for (std::size_t j = kCells; j-- > 0;)
            PaintCell(painter, settings,
                      {mesh[i][j], mesh[i + 1][j], mesh[i + 1][j + 1], mesh[i][j + 1]});
    }
}

} // namespace

DrawPreview::DrawPreview(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName("Preview");
}

void DrawPreview::Show(const DrawSettings& settings, SheetKind kind)
{
    m_settings = settings;
    m_kind = kind;
    update();
}

QSize DrawPreview::sizeHint() const
{
    return kDrawPreviewSize;
}

void DrawPreview::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    BeginSheet(painter, *this, m_settings.SheetColor);
    const auto paint = m_kind == SheetKind::Sheet2D ? PaintWaves : PaintSurface;
    paint(painter, m_settings, size());
    EndSheet(painter, *this);
}

SheetPreview::SheetPreview(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName("Preview");
}

void SheetPreview::Show(Rgb ground, Rgb graph)
{
    m_ground = ground;
    m_graph = graph;
    update();
}

QSize SheetPreview::sizeHint() const
{
    return kSheetPreviewSize;
}

void SheetPreview::paintEvent(QPaintEvent*)
{
    constexpr double kEditorPart = 0.4;
    constexpr int kIndent = 12;
    QPainter painter(this);
    BeginSheet(painter, *this, m_ground);
    const QColor ink = ToQColor(InkOn(m_ground));
    const double edge = std::round(width() * kEditorPart);
    painter.setPen(ink);
    QFont formula = font();
    formula.setPointSizeF(13);
    painter.setFont(formula);
    painter.drawText(QRectF(kIndent, 0, edge - kIndent, height()), Qt::AlignVCenter, "y=2sinx");
    QColor border = ink;
    border.setAlphaF(0.3F);
    painter.fillRect(QRectF(edge, 0, 1, height()), border);
    const double row = std::round(height() / 2.0);
    painter.fillRect(QRectF(edge + 1, row, width() - edge, 1), ink);
    painter.fillRect(QRectF(std::round((edge + width()) / 2), 0, 1, height()), ink);
    painter.save();
    painter.translate(edge + 1, 0);
    painter.setClipRect(QRectF(0, 0, width() - edge - 1, height()), Qt::IntersectClip);
    DrawSettings settings;
    settings.DrawWidth = 2;
    PaintWave(painter, settings, {width() - edge - 1, static_cast<double>(height())}, -4.08,
              m_graph);
    painter.restore();
    EndSheet(painter, *this);
}

} // namespace kelvane
