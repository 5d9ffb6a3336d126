#include "ui/picture_file.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <QtMath>
#include <array>
#include <new>

#include "ui/png_file.h"
#include "ui/safe_file.h"

namespace kelvane {
namespace {

using PaintFunction = std::function<bool(QtSurface&)>;

constexpr double kMostPixels = 32767; // Qt paints no further
constexpr int kDotsPerInch = 96;
constexpr double kPointsPerInch = 72;
constexpr double kInchesPerMetre = 1 / 0.0254;
constexpr double kVectorColumnWidth = 0.1;

const QString kTitle = QStringLiteral("Kelvane");

struct Ending {
    const char* Suffix; // lower case
    PictureFormat Format;
};

constexpr std::array<Ending, 3> kEndings{{
    {"png", PictureFormat::Png},
    {"svg", PictureFormat::Svg},
    {"pdf", PictureFormat::Pdf},
}};

bool IsPossible(PixelSize size)
{
    return size.Width >= 1 && size.Height >= 1 && size.Width <= kMostPixels &&
           size.Height <= kMostPixels;
}

QSize PixelsOf(const PictureOrder& order)
{
    return {static_cast<int>(order.Size.Width), static_cast<int>(order.Size.Height)};
}

bool PaintOn(QPaintDevice& device, const PictureOrder& order, double columnWidth,
             const PaintFunction& paint)
{
    QtSurface surface(device, order.Size, {order.Smooth, columnWidth});
    return paint(surface);
}

PictureResult PaintPng(QBuffer& buffer, const PictureOrder& order, const PaintFunction& paint)
{
    QImage image(PixelsOf(order), QImage::Format_RGB32);
    if (image.isNull())
        return PictureResult::CannotWrite;
    image.fill(Qt::white);
    image.setDotsPerMeterX(qRound(kDotsPerInch * kInchesPerMetre));
    image.setDotsPerMeterY(qRound(kDotsPerInch * kInchesPerMetre));
    if (!PaintOn(image, order, 1, paint))
        return PictureResult::Abandoned;
    buffer.buffer() = PngOf(image);
    return buffer.buffer().isEmpty() ? PictureResult::CannotWrite : PictureResult::Written;
}

PictureResult PaintSvg(QBuffer& buffer, const PictureOrder& order, const PaintFunction& paint)
{
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(kDotsPerInch);
    generator.setSize(PixelsOf(order));
    generator.setViewBox(QRect(QPoint(0, 0), PixelsOf(order)));
    generator.setTitle(kTitle);
    return PaintOn(generator, order, kVectorColumnWidth, paint) ? PictureResult::Written
                                                                : PictureResult::Abandoned;
}

// Cuts the page, whose size Qt rounds up to whole points, to the picture, whose upper left corner
// is the page's. The new frame is as many bytes long as the old one, for the file refers to places
// in itself.
void CutPage(QByteArray& pdf, QSizeF picture, QSize page)
{
    const QByteArray start = "/MediaBox [";
    const qsizetype begin = pdf.indexOf(start);
    const qsizetype end = pdf.indexOf(']', begin);
    const QByteArray frame = start + "0 " + QByteArray::number(page.height() - picture.height()) +
                             ' ' + QByteArray::number(picture.width(), 'f', 2) + ' ' +
                             QByteArray::number(page.height());
    if (begin >= 0 && frame.size() <= end - begin)
        pdf.replace(begin, end - begin, frame.leftJustified(end - begin));
}

PictureResult PaintPdf(QBuffer& buffer, const PictureOrder& order, const PaintFunction& paint)
{
    const QSizeF picture = QSizeF(PixelsOf(order)) * (kPointsPerInch / kDotsPerInch);
    const QSize page(qCeil(picture.width()), qCeil(picture.height()));
    QPdfWriter writer(&buffer);
    writer.setResolution(kDotsPerInch);
    writer.setPageMargins(QMarginsF());
    writer.setPageSize(QPageSize(page, QString(), QPageSize::ExactMatch));
    writer.setTitle(kTitle);
    if (!PaintOn(writer, order, kVectorColumnWidth, paint))
        return PictureResult::Abandoned;
    CutPage(buffer.buffer(), picture, page);
    return PictureResult::Written;
}

PictureResult PaintAs(PictureFormat format, QBuffer& buffer, const PictureOrder& order,
                      const PaintFunction& paint)
{
    switch (format) {
    case PictureFormat::Png:
        return PaintPng(buffer, order, paint);
    case PictureFormat::Svg:
        return PaintSvg(buffer, order, paint);
    case PictureFormat::Pdf:
        return PaintPdf(buffer, order, paint);
    }
    return PictureResult::CannotWrite;
}

} // namespace

std::optional<PictureFormat> PictureFormatOf(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    for (const Ending& ending : kEndings)
        if (suffix == QLatin1String(ending.Suffix))
            return ending.Format;
    return std::nullopt;
}

QByteArray SvgOf(PixelSize size, const PaintFunction& paint)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const bool painted =
        PaintSvg(buffer, {.Path = {}, .Size = size}, paint) == PictureResult::Written;
    return painted ? buffer.data() : QByteArray();
}

PictureResult WritePicture(const PictureOrder& order, const PaintFunction& paint)
try {
    const auto format = PictureFormatOf(order.Path);
    if (!format || !IsPossible(order.Size))
        return PictureResult::CannotWrite;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const PictureResult result = PaintAs(*format, buffer, order, paint);
    if (result != PictureResult::Written)
        return result;
    return ReplaceFile(order.Path, buffer.data()) ? PictureResult::Written
                                                  : PictureResult::CannotWrite;
} catch (const std::bad_alloc&) {
    return PictureResult::CannotWrite;
}

} // namespace kelvane
