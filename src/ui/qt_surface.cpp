#include "ui/qt_surface.h"

#include <QElapsedTimer>
#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvane {
namespace {

// Vertices may be missed by so many pixels: a few of 255 grey levels at the edge of a curve.
constexpr double kThinning = 1.0 / 64;

// Enough to make batches rare, little enough to be no burden on the memory.
constexpr std::size_t kBatchPoints = 65536;

// As many points as one path may have: some viewers of SVG cut off longer ones.
constexpr std::size_t kPathPoints = 16384;

// How much of its colour a hatched area shows.
constexpr float kWashAlpha = 0.12F;
constexpr float kHatchAlpha = 0.5F;

constexpr int kMaxLineWidth = 1000;
constexpr int kTextHeight = 12;   // of the font, in pixels
constexpr double kTextBorder = 3; // width of the pen around the glyphs, half of which is seen
constexpr double kFarAway = 1e6;  // no text that begins further off reaches the surface

// Adds the time from here to the end of the block to a total.
class Stopwatch {
public:
    explicit Stopwatch(double& seconds)
        : m_seconds(seconds)
    {
        m_timer.start();
    }
    ~Stopwatch() { m_seconds += static_cast<double>(m_timer.nsecsElapsed()) * 1e-9; }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

private:
    double& m_seconds;
    QElapsedTimer m_timer;
};

bool IsFinite(PixelPoint point)
{
    return std::isfinite(point.X) && std::isfinite(point.Y);
}

QString ToQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QFont SmallFont()
{
    QFont font(QStringLiteral("sans-serif"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(kTextHeight);
    return font;
}

struct Segment {
    PixelPoint From;
    PixelPoint To;
};

// Cuts off what of the segment lies on the far side of the line on which the coordinate is limit:
// below it for sign 1, above it for sign -1. False when nothing remains. The cut lies exactly on
// the line, however far away the ends are.
bool CutOff(Segment& segment, double PixelPoint::*coordinate, double limit, int sign)
{
    double PixelPoint::*other = coordinate == &PixelPoint::X ? &PixelPoint::Y : &PixelPoint::X;
    const double from = sign * (segment.From.*coordinate - limit);
    const double to = sign * (segment.To.*coordinate - limit);
    if (from < 0 && to < 0)
        return false;
    if (from >= 0 && to >= 0)
        return true;
    // Reckoned from the end that stays, the cut is exact even when the other one is very far away.
    PixelPoint& outer = from < 0 ? segment.From : segment.To;
    const PixelPoint& inner = from < 0 ? segment.To : segment.From;
    const double share = from < 0 ? to / (to - from) : from / (from - to);
    outer.*other = std::lerp(inner.*other, outer.*other, share);
    outer.*coordinate = limit;
    return true;
}

// What of the segment lies on the surface or near.
std::optional<Segment> Cut(Segment segment, PixelSize size, double margin)
{
    const bool isSeen = CutOff(segment, &PixelPoint::X, -margin, 1) &&
                        CutOff(segment, &PixelPoint::X, size.Width + margin, -1) &&
                        CutOff(segment, &PixelPoint::Y, -margin, 1) &&
                        CutOff(segment, &PixelPoint::Y, size.Height + margin, -1);
    return isSeen ? std::optional(segment) : std::nullopt;
}

QPainterPath AreasOf(const Hatching& hatching)
{
    QPainterPath areas;
    areas.setFillRule(Qt::WindingFill);
    for (std::size_t i = 0; i < hatching.Count(); ++i) {
        QPolygonF polygon;
        for (const PixelPoint& corner : hatching.Polygon(i))
            polygon.append({corner.X + 0.5, corner.Y + 0.5});
        areas.addPolygon(polygon);
        areas.closeSubpath();
    }
    return areas;
}

QPainterPath PathOf(const std::vector<PixelLine>& lines)
{
    QPainterPath path;
    for (const PixelLine& line : lines) {
        path.moveTo(line.From.X + 0.5, line.From.Y + 0.5);
        path.lineTo(line.To.X + 0.5, line.To.Y + 0.5);
    }
    return path;
}

// The pixels whose middles lie on lines that rise by a pixel a column.
QPainterPath PixelsOf(const std::vector<PixelLine>& lines)
{
    QPainterPath pixels;
    for (const PixelLine& line : lines) {
        const int last = static_cast<int>(std::floor(line.To.X));
        for (int x = static_cast<int>(std::ceil(line.From.X)); x <= last; ++x)
            pixels.addRect(x, std::round(line.From.Y + line.From.X - x), 1, 1);
    }
    return pixels;
}

// So far from the surface the ends of cut lines are out of sight, with their caps.
double Margin(int lineWidth)
{
    return 2.0 * lineWidth + 4;
}

} // namespace

QtSurface::QtSurface(QPaintDevice& device, PixelSize size, Options options)
    : m_size(size)
    , m_options(options)
    , m_painter(&device)
    , m_font(SmallFont())
    , m_curvePainter(MakeCurvePainter(m_painter, size, options.Smooth))
    , m_columns(options.ColumnWidth)
    , m_thinner(kThinning)
{
    m_painter.setRenderHint(QPainter::Antialiasing, false);
}

QtSurface::~QtSurface()
{
    Finish();
}

void QtSurface::Clear(Rgb sheet)
{
    EndCurve();
    m_waitingDot.reset();
    m_batch = {};
    m_hatching.Clear();
    m_startsPolyline = true;
    m_labels.clear();
    m_sheet = sheet;
    const Stopwatch stopwatch(m_paintSeconds);
    m_painter.fillRect(QRectF(0, 0, m_size.Width, m_size.Height), ToQColor(sheet));
}

void QtSurface::SetLineWidth(int width)
{
    width = std::clamp(width, 1, kMaxLineWidth);
    if (width == m_batch.Width)
        return;
    Flush();
    m_batch.Width = width;
}

void QtSurface::Pixel(PixelPoint at, Rgb color)
{
    if (!IsFinite(at))
        return;
    UseColor(color);
    SettleDot();
    m_waitingDot = at;
}

void QtSurface::Line(PixelPoint from, PixelPoint to, Rgb color)
{
    if (!IsFinite(from) || !IsFinite(to))
        return;
    UseColor(color);
    if (m_waitingDot != from)
        SettleDot();
    m_waitingDot.reset();
    if (m_curveEnd != from) { // also when no curve is open
        EndCurve();
        AddPoint(from);
    }
    AddPoint(to);
}

void QtSurface::FillRect(PixelRect rect, Rgb color)
{
    Flush();
    const QRectF wanted(rect.X, rect.Y, rect.Width, rect.Height);
    const QRectF seen = wanted & QRectF(0, 0, m_size.Width, m_size.Height);
    const Stopwatch stopwatch(m_paintSeconds);
    if (!wanted.isEmpty() && !seen.isEmpty())
        m_painter.fillRect(seen, ToQColor(color));
}

void QtSurface::Hatch(std::span<const PixelPoint> corners, Rgb color)
{
    if (corners.size() < 3 || !std::all_of(corners.begin(), corners.end(), IsFinite))
        return;
    if (m_hatching.IsEmpty() || color != m_hatchingColor)
        Flush();
    m_hatchingColor = color;
    constexpr double kMargin = 1; // no more than the ends of lines
    m_hatching.Add(corners, {-kMargin, -kMargin, m_size.Width + kMargin, m_size.Height + kMargin});
    if (m_hatching.PointCount() >= kPathPoints)
        PaintHatching();
}

void QtSurface::Text(const TextPlace& place, std::string_view text, Rgb color)
{
    const PixelPoint anchor = place.Anchor;
    if (!(std::abs(anchor.X) < kFarAway && std::abs(anchor.Y) < kFarAway))
        return;
    const QString written = ToQString(text);
    QRectF box(QPointF(anchor.X + 0.5, anchor.Y + 0.5), SizeOf(written));
    if (place.Horizontal != HorizontalAlign::Left)
        box.translate(place.Horizontal == HorizontalAlign::Right ? -box.width() : -box.width() / 2,
                      0);
    if (place.Vertical != VerticalAlign::Top)
        box.translate(0,
                      place.Vertical == VerticalAlign::Bottom ? -box.height() : -box.height() / 2);
    m_labels.push_back({box, written, color});
}

PixelSize QtSurface::TextSize(std::string_view text) const
{
    const QSizeF size = SizeOf(ToQString(text));
    return {size.width(), size.height()};
}

void QtSurface::ShowSoFar()
{
    Flush();
    const Stopwatch stopwatch(m_paintSeconds);
    for (const Label& label : m_labels)
        PaintLabel(label);
}

void QtSurface::Finish()
{
    ShowSoFar();
    m_labels.clear();
}

QSizeF QtSurface::SizeOf(const QString& text) const
{
    const QFontMetricsF metrics(m_font);
    return {metrics.horizontalAdvance(text), metrics.height()};
}

void QtSurface::UseColor(Rgb color)
{
    if (color == m_batch.Color && m_hatching.IsEmpty())
        return;
    Flush();
    m_batch.Color = color;
}

void QtSurface::Flush()
{
    SettleDot();
    EndCurve();
    PaintBatch();
    PaintHatching();
}

void QtSurface::PaintBatch()
{
    if (m_batch.IsEmpty())
        return;
    const Stopwatch stopwatch(m_paintSeconds);
    m_curvePainter->Paint(m_painter, m_batch);
    m_batch.Dots.clear();
    m_batch.Starts.clear();
    if (m_startsPolyline) {
        m_batch.Points.clear();
    } else { // in the middle of a polyline, which goes on from its last vertex
        m_batch.Points.erase(m_batch.Points.begin(), m_batch.Points.end() - 1);
        m_batch.Starts.push_back(0);
    }
}

void QtSurface::PaintHatching()
{
    if (m_hatching.IsEmpty())
        return;
    const Stopwatch stopwatch(m_paintSeconds);
    const QPaintEngine* engine = m_painter.paintEngine();
    const bool isSharp = m_options.Smooth == Antialias::Off && engine != nullptr &&
                         engine->type() == QPaintEngine::Raster;
    QColor color = ToQColor(m_hatchingColor);
    m_painter.save();
    m_painter.setRenderHint(QPainter::Antialiasing, !isSharp);
    color.setAlphaF(kWashAlpha);
    m_painter.fillPath(AreasOf(m_hatching), color);
    color.setAlphaF(kHatchAlpha);
    if (isSharp)
        m_painter.fillPath(PixelsOf(m_hatching.Lines()), color);
    else
        m_painter.strokePath(PathOf(m_hatching.Lines()),
                             QPen(color, 1, Qt::SolidLine, Qt::FlatCap));
    m_painter.restore();
    m_hatching.Clear();
}

// In SVG a text is drawn as outlines: a viewer without our font would take another one, of other
// widths, and numbers would no longer stand where there is room for them. The numbers of a picture
// are few and short, so that this costs some ten kilobytes. PDF carries the glyphs it needs with
// it.
void QtSurface::PaintLabel(const Label& label)
{
    // Glyphs are sharpest when they stand on a whole pixel.
    const QPointF start(std::round(label.Box.left()),
                        std::round(label.Box.top() + QFontMetricsF(m_font).ascent()));
    QPainterPath outlines;
    outlines.addText(start, m_font, label.Text);
    m_painter.save();
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.strokePath(
        outlines, QPen(ToQColor(m_sheet), kTextBorder, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const QPaintEngine* engine = m_painter.paintEngine();
    if (engine != nullptr && engine->type() == QPaintEngine::SVG) {
        m_painter.fillPath(outlines, ToQColor(label.Color));
    } else {
        m_painter.setFont(m_font);
        m_painter.setPen(ToQColor(label.Color));
        m_painter.drawText(start, label.Text);
    }
    m_painter.restore();
}

void QtSurface::SettleDot()
{
    if (const auto dot = std::exchange(m_waitingDot, std::nullopt))
        AddDot(*dot);
}

void QtSurface::AddDot(PixelPoint at)
{
    if (!Cut({at, at}, m_size, Margin(m_batch.Width)))
        return;
    const auto cell = [this](double coordinate) {
        return std::floor((coordinate + 0.5) / m_options.ColumnWidth);
    };
    if (!m_batch.Dots.empty() && cell(at.X) == cell(m_batch.Dots.back().X) &&
        cell(at.Y) == cell(m_batch.Dots.back().Y))
        return;
    m_batch.Dots.push_back(at);
    if (m_batch.Dots.size() >= kBatchPoints)
        PaintBatch();
}

void QtSurface::AddPoint(PixelPoint point)
{
    for (const PixelPoint& reduced : m_columns.Add(point))
        AddReduced(reduced);
    m_curveEnd = point;
}

void QtSurface::EndCurve()
{
    if (!m_curveEnd)
        return;
    for (const PixelPoint& reduced : m_columns.Finish())
        AddReduced(reduced);
    EndCut();
    if (m_isPoint)
        AddDot(*m_reduced);
    m_curveEnd.reset();
    m_reduced.reset();
    m_isPoint = true;
}

void QtSurface::AddReduced(PixelPoint point)
{
    const auto previous = std::exchange(m_reduced, point);
    if (!previous)
        return;
    m_isPoint = false;
    const auto seen = Cut({*previous, point}, m_size, Margin(m_batch.Width));
    if (!seen)
        return;
    if (m_cutEnd != seen->From) {
        EndCut();
        AddCut(seen->From);
    }
    AddCut(seen->To);
}

void QtSurface::AddCut(PixelPoint point)
{
    if (const auto vertex = m_thinner.Add(point))
        AddVertex(*vertex);
    m_cutEnd = point;
}

void QtSurface::EndCut()
{
    if (const auto vertex = m_thinner.Finish())
        AddVertex(*vertex);
    m_cutEnd.reset();
    m_startsPolyline = true;
}

void QtSurface::AddVertex(PixelPoint point)
{
    if (m_startsPolyline)
        m_batch.Starts.push_back(m_batch.Points.size());
    m_startsPolyline = false;
    m_batch.Points.push_back(point);
    if (m_batch.Points.size() >= kBatchPoints)
        PaintBatch();
}

} // namespace kelvane
