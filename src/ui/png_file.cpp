#include "ui/png_file.h"

#include <csetjmp>
#include <png.h>

namespace kelvane {

namespace {

constexpr int kLightPacking = 2;
constexpr std::size_t kPackingBuffer = 65536;

void Append(png_structp png, png_bytep bytes, std::size_t count)
{
    auto* file = static_cast<QByteArray*>(png_get_io_ptr(png));
    file->append(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(count));
}

void Flush(png_structp /*png*/) {}

// Complaints would go to standard error.
void Ignore(png_structp /*png*/, png_const_charp /*text*/) {}

// Leaves by a long jump where libpng fails: nothing here has a destructor.
void WriteRows(png_structp png, png_infop info, const QImage& image)
{
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width()),
                 static_cast<png_uint_32>(image.height()), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_pHYs(png, info, static_cast<png_uint_32>(image.dotsPerMeterX()),
                 static_cast<png_uint_32>(image.dotsPerMeterY()), PNG_RESOLUTION_METER);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_UP);
    png_set_compression_level(png, kLightPacking);
    png_set_compression_buffer_size(png, kPackingBuffer);
    png_write_info(png, info);
    // A pixel is a word 0xffRRGGBB.
    if constexpr (Q_BYTE_ORDER == Q_LITTLE_ENDIAN) {
        png_set_filler(png, 0, PNG_FILLER_AFTER);
        png_set_bgr(png);
    } else {
        png_set_filler(png, 0, PNG_FILLER_BEFORE);
    }
    for (int row = 0; row < image.height(); ++row)
        png_write_row(png, image.constScanLine(row));
    png_write_end(png, info);
}

} // namespace

QByteArray PngOf(const QImage& image)
{
    QByteArray file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, Ignore);
    png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
    if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) { // NOLINT(cert-err52-cpp): libpng's way
        file.clear();
    } else {
        png_set_write_fn(png, &file, Append, Flush);
        WriteRows(png, info, image);
    }
    png_destroy_write_struct(&png, &info);
    return file;
}

} // namespace kelvane
