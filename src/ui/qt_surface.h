#pragma once

#include <QFont>
#include <QPaintDevice>
#include <QPainter>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "graph/surface.h"
#include "ui/column_reducer.h"
#include "ui/curve_painter.h"
#include "ui/hatching.h"
#include "ui/line_thinner.h"

namespace kelvane {

// A Surface on anything that Qt paints on: an image, a vector file, a printer.
//
// Marks appear in the order of the calls, texts last. Polygons of one colour are hatched together,
// with a light wash and slanted lines. Lines of one colour and width that meet are
// gathered into a polyline: reduced by ColumnReducer, cut to the surface, thinned by LineThinner,
// and handed on in one batch with all others of that colour and width. Texts wait until Finish and
// are painted with a thin border in the sheet's colour, so that a curve never hides a number.
//
// A line that begins where the last one ended, in the same colour and width, continues it. A Pixel
// from which a line then starts in the same colour is dropped, for the line covers it. Marks with
// coordinates that are not finite are ignored.
class QtSurface : public Surface {
public:
    struct Options {
        Antialias Smooth = Antialias::On; // of curves; axes and grid are always sharp
        double ColumnWidth = 1; // in pixels, how finely curves are kept: 1 for screens and
                                // images, 0.1 for vector files
    };

    // Paints on the device, which is size pixels large in the painter's coordinates and must
    // outlive this. Nothing else may paint on it meanwhile.
    QtSurface(QPaintDevice& device, PixelSize size, Options options);
    ~QtSurface() override; // finishes
    QtSurface(const QtSurface&) = delete;
    QtSurface& operator=(const QtSurface&) = delete;

    PixelSize Size() const override { return m_size; }
    void Clear(Rgb sheet) override;
    void SetLineWidth(int width) override;
    // At width 1 exactly one pixel (in vector files a round dot of that size), else a round dot.
    void Pixel(PixelPoint at, Rgb color) override;
    void Line(PixelPoint from, PixelPoint to, Rgb color) override;
    void FillRect(PixelRect rect, Rgb color) override;
    void Hatch(std::span<const PixelPoint> corners, Rgb color) override;
    void Text(const TextPlace& place, std::string_view text, Rgb color) override;
    PixelSize TextSize(std::string_view text) const override;

    // Paints what is still held back, the texts last. More may follow.
    void Finish();

    // The same, but the texts stay and are painted once more at the end, over what follows.
    void ShowSoFar();

    // Time spent in painting so far, without the gathering.
    double PaintSeconds() const { return m_paintSeconds; }

private:
    struct Label {
        QRectF Box; // in the painter's coordinates
        QString Text;
        Rgb Color;
    };

    QSizeF SizeOf(const QString& text) const;
    void UseColor(Rgb color);
    void Flush();
    void PaintBatch();
    void PaintHatching();
    void PaintLabel(const Label& label);
    void SettleDot();
    void AddDot(PixelPoint at);
    // The stages that a curve runs through, each with its end.
    void AddPoint(PixelPoint point); // as drawn
    void EndCurve();
    void AddReduced(PixelPoint point);
    void AddCut(PixelPoint point); // on the surface or near
    void EndCut();
    void AddVertex(PixelPoint point);

    PixelSize m_size;
    Options m_options;
    QPainter m_painter;
    QFont m_font;
    std::unique_ptr<CurvePainter> m_curvePainter;
    Rgb m_sheet = kWhite;
    std::vector<Label> m_labels;
    CurveBatch m_batch;
    Hatching m_hatching; // waits like the batch; one of the two is empty
    Rgb m_hatchingColor;
    std::optional<PixelPoint> m_waitingDot; // until it is known whether a line starts from it

    ColumnReducer m_columns;
    std::optional<PixelPoint> m_curveEnd; // where the curve could be continued
    std::optional<PixelPoint> m_reduced;  // the latest point that left the columns
    bool m_isPoint = true;                // only one point has left the columns
    LineThinner m_thinner;
    std::optional<PixelPoint> m_cutEnd; // where the piece on the surface could be continued
    bool m_startsPolyline = true;       // the next vertex

    double m_paintSeconds = 0;
};

} // namespace kelvane
