#include "ui/curve_painter.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "ui/stroke_mask.h"

namespace kelvane {
namespace {

QPointF ToQt(PixelPoint point)
{
    return {point.X + 0.5, point.Y + 0.5};
}

std::span<const PixelPoint> Polyline(const CurveBatch& batch, std::size_t index)
{
    const std::size_t begin = batch.Starts[index];
    const std::size_t end =
        index + 1 < batch.Starts.size() ? batch.Starts[index + 1] : batch.Points.size();
    return std::span(batch.Points).subspan(begin, end - begin);
}

// The one pixel of the surface, or the square of the device's pixels, around the point.
PixelRect PixelAround(PixelPoint point, double scale)
{
    const double column = std::floor(point.X + 0.5);
    const double row = std::floor(point.Y + 0.5);
    const int left = static_cast<int>(std::lround(column * scale));
    const int top = static_cast<int>(std::lround(row * scale));
    return {left, top, static_cast<int>(std::lround((column + 1) * scale)) - left,
            static_cast<int>(std::lround((row + 1) * scale)) - top};
}

// Smooth curves on anything made of pixels, of which a screen may have more than the surface has.
class MaskPainter : public CurvePainter {
public:
    MaskPainter(int width, int height, double scale)
        : m_scale(scale)
        , m_mask(width, height)
        , m_band(kBandColumns, height, QImage::Format_ARGB32_Premultiplied)
    {
    }

    void Paint(QPainter& painter, const CurveBatch& batch) override
    {
        AddCurves(batch);
        AddDots(batch);
        painter.save();
        painter.scale(1 / m_scale, 1 / m_scale);
        const auto shades = Shades(batch.Color);
        const StrokeMask::Range columns = m_mask.TouchedColumns();
        for (int column = columns.First; column <= columns.Last; column += kBandColumns)
            PaintBand(painter, {column, std::min(column + kBandColumns - 1, columns.Last)}, shades);
        painter.restore();
        m_mask.Clear();
    }

private:
    static constexpr int kBandColumns = 16; // so many are handed to Qt at once
    using ShadeTable = std::array<QRgb, 256>;

    static ShadeTable Shades(Rgb color)
    {
        ShadeTable shades;
        for (std::size_t i = 0; i < shades.size(); ++i)
            shades[i] = qPremultiply(qRgba(color.R, color.G, color.B, static_cast<int>(i)));
        return shades;
    }

    void AddCurves(const CurveBatch& batch)
    {
        for (std::size_t i = 0; i < batch.Starts.size(); ++i) {
            m_scaled.clear();
            for (const PixelPoint& point : Polyline(batch, i))
                m_scaled.push_back(Scaled(point));
            m_mask.AddPolyline(m_scaled, batch.Width * m_scale);
        }
    }

    void AddDots(const CurveBatch& batch)
    {
        for (const PixelPoint& dot : batch.Dots) {
            const PixelPoint at = Scaled(dot);
            if (batch.Width == 1)
                m_mask.AddRect(PixelAround(dot, m_scale));
            else
                m_mask.AddPolyline({&at, 1}, batch.Width * m_scale);
        }
    }

    PixelPoint Scaled(PixelPoint point) const
    {
        return {(point.X + 0.5) * m_scale - 0.5, (point.Y + 0.5) * m_scale - 0.5};
    }

    void PaintBand(QPainter& painter, StrokeMask::Range columns, const ShadeTable& shades)
    {
        StrokeMask::Range rows;
        for (int column = columns.First; column <= columns.Last; ++column)
            if (!m_mask.TouchedRows(column).IsEmpty())
                rows.Include(m_mask.TouchedRows(column));
        if (rows.IsEmpty())
            return;
        for (int row = rows.First; row <= rows.Last; ++row) {
            auto* pixels = reinterpret_cast<QRgb*>(m_band.scanLine(row));
            for (int column = columns.First; column <= columns.Last; ++column)
                pixels[column - columns.First] =
                    shades[static_cast<std::size_t>(m_mask.Coverage(column, row))];
        }
        const int width = columns.Last - columns.First + 1;
        const int height = rows.Last - rows.First + 1;
        painter.drawImage(QPoint(columns.First, rows.First), m_band,
                          QRect(0, rows.First, width, height));
    }

    double m_scale; // device pixels per pixel
    StrokeMask m_mask;
    QImage m_band;
    std::vector<PixelPoint> m_scaled; // kept for its memory
};

// Curves as Qt draws them: sharp ones in pixels, and any in vector files.
class PolylinePainter : public CurvePainter {
public:
    enum class Dots : std::uint8_t { Pixels, Round };

    explicit PolylinePainter(Dots dots)
        : m_thinDots(dots)
    {
    }

    void Paint(QPainter& painter, const CurveBatch& batch) override
    {
        const QColor color = ToQColor(batch.Color);
        painter.save();
        painter.setPen(QPen(color, batch.Width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        m_dots = batch.Dots;
        for (std::size_t i = 0; i < batch.Starts.size(); ++i) {
            const std::span<const PixelPoint> points = Polyline(batch, i);
            if (IsDot(points))
                m_dots.push_back(points.front());
            else
                PaintCurve(painter, points);
        }
        if (m_thinDots == Dots::Pixels && batch.Width == 1)
            PaintPixels(painter, m_dots, color);
        else
            PaintDots(painter, m_dots);
        painter.restore();
    }

private:
    // Overlapping parts of a sharp line show no seam, and Qt is much faster with short ones.
    static constexpr double kChunkLength = 1000; // in pixels

    // A curve so short that Qt would leave it out.
    static bool IsDot(std::span<const PixelPoint> points)
    {
        constexpr double kTooShort = 1.0 / 32; // in pixels
        return std::all_of(points.begin(), points.end(), [&](const PixelPoint& point) {
            return std::abs(point.X - points.front().X) < kTooShort &&
                   std::abs(point.Y - points.front().Y) < kTooShort;
        });
    }

    void PaintCurve(QPainter& painter, std::span<const PixelPoint> points)
    {
        m_vertices.clear();
        double length = 0;
        for (const PixelPoint& point : points) {
            const QPointF vertex = ToQt(point);
            if (!m_vertices.empty())
                length += (vertex - m_vertices.back()).manhattanLength();
            m_vertices.push_back(vertex);
            if (m_thinDots == Dots::Pixels && length > kChunkLength) {
                painter.drawPolyline(m_vertices.data(), static_cast<int>(m_vertices.size()));
                m_vertices.assign(1, vertex);
                length = 0;
            }
        }
        if (m_vertices.size() > 1)
            painter.drawPolyline(m_vertices.data(), static_cast<int>(m_vertices.size()));
    }

    static void PaintPixels(QPainter& painter, std::span<const PixelPoint> dots, QColor color)
    {
        for (const PixelPoint& dot : dots) {
            const PixelRect pixel = PixelAround(dot, 1);
            painter.fillRect(pixel.X, pixel.Y, pixel.Width, pixel.Height, color);
        }
    }

    // A dot is a line of hardly any length with round ends; of no length Qt would leave it out.
    static void PaintDots(QPainter& painter, std::span<const PixelPoint> dots)
    {
        constexpr double kHardlyAny = 0.01;
        QPainterPath path;
        for (const PixelPoint& dot : dots) {
            path.moveTo(ToQt(dot));
            path.lineTo(ToQt(dot) + QPointF(kHardlyAny, 0));
        }
        if (!path.isEmpty())
            painter.drawPath(path);
    }

    Dots m_thinDots;                 // of width 1
    std::vector<QPointF> m_vertices; // kept for its memory, like the next
    std::vector<PixelPoint> m_dots;
};

} // namespace

std::unique_ptr<CurvePainter> MakeCurvePainter(const QPainter& painter, PixelSize size,
                                               Antialias smooth)
{
    const QPaintEngine* engine = painter.paintEngine(); // none if the device cannot be painted on
    if (engine == nullptr || engine->type() != QPaintEngine::Raster)
        return std::make_unique<PolylinePainter>(PolylinePainter::Dots::Round);
    if (smooth == Antialias::Off)
        return std::make_unique<PolylinePainter>(PolylinePainter::Dots::Pixels);
    const double scale = painter.device()->devicePixelRatioF();
    return std::make_unique<MaskPainter>(static_cast<int>(std::ceil(size.Width * scale)),
                                         static_cast<int>(std::ceil(size.Height * scale)), scale);
}

} // namespace kelvane
