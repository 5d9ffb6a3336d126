#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>

#include "ui/qt_surface.h"

namespace kelvane {

enum class PictureFormat : std::uint8_t { Png, Svg, Pdf };

// The format that the file name's ending asks for, in either case; nothing for any other ending.
std::optional<PictureFormat> PictureFormatOf(const QString& path);

enum class PictureResult : std::uint8_t {
    Written,
    Abandoned,  // the painter gave up; nothing was written
    CannotWrite // the file cannot be written; what was there before is unchanged
};

struct PictureOrder {
    QString Path;   // its ending must be one that PictureFormatOf knows
    PixelSize Size; // whole numbers, 1 to 32767, in pixels; 96 to the inch
    Antialias Smooth = Antialias::On;
};

// A picture as the bytes of an SVG file. Empty where the painter gives up.
QByteArray SvgOf(PixelSize size, const std::function<bool(QtSurface&)>& paint);

// Paints a picture and writes it to the file, whole or not at all: paint gets a surface of the
// order's size and returns false to give up. Needs a QGuiApplication (for the fonts).
PictureResult WritePicture(const PictureOrder& order, const std::function<bool(QtSurface&)>& paint);

} // namespace kelvane
