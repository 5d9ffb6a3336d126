#pragma once

#include <QColor>
#include <QPainter>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "graph/surface.h"

namespace kelvane {

enum class Antialias : std::uint8_t { Off, On };

inline QColor ToQColor(Rgb color)
{
    return {color.R, color.G, color.B};
}

// Curves and dots of one colour and one width, in any order, for they look the same in all.
struct CurveBatch {
    Rgb Color;
    int Width = 1;                   // in pixels, from 1 on
    std::vector<PixelPoint> Points;  // the polylines one after the other, two points or more each
    std::vector<std::size_t> Starts; // where in Points each polyline begins
    std::vector<PixelPoint> Dots;

    bool IsEmpty() const { return Points.empty() && Dots.empty(); }
};

// Puts batches on a QPainter. Coordinates lie on the surface or not far outside; whole numbers are
// middles of pixels, which Qt knows as halves.
class CurvePainter {
public:
    virtual ~CurvePainter() = default;
    virtual void Paint(QPainter& painter, const CurveBatch& batch) = 0;
};

// The way that suits what the painter paints on:
// - smooth curves in pixels go through a StrokeMask; Qt takes minutes for a wide zigzag;
// - sharp curves in pixels are polylines for Qt, and so are the curves in vector files and on
// paper.
std::unique_ptr<CurvePainter> MakeCurvePainter(const QPainter& painter, PixelSize size,
                                               Antialias smooth);

} // namespace kelvane
