#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "graph/surface.h"

namespace kelvane {

// How much of each pixel is covered by strokes: a stencil through which one colour is then painted.
//
// Painting a long, wide and smooth line as one outline costs more the more often it crosses itself;
// here each straight piece adds its own share, and the cost grows with the painted area only.
// Pieces that meet, cross or lie on each other leave no visible seam.
//
// A pixel whose middle is at distance d from a stroke of width w is covered by w / 2 + 1/2 - d,
// kept between 0 and 1. What strokes on the same side of the pixel cover is the largest of their
// shares; what strokes on its two sides cover adds up, so that a dense zigzag becomes a solid area
// while a curve drawn over itself keeps its smooth edge.
class StrokeMask {
public:
    // The pixels First to Last of a row or column; none when Last is less than First.
    struct Range {
        int First = 0;
        int Last = -1;

        bool IsEmpty() const { return Last < First; }
        // Grows to hold the other one as well, which must not be empty.
        void Include(Range other)
        {
            First = IsEmpty() || other.First < First ? other.First : First;
            Last = other.Last > Last ? other.Last : Last;
        }
    };

    // In pixels, from 1 on.
    StrokeMask(int width, int height);

    // Adds a polyline with round ends and joins; a single point becomes a round dot. Coordinates up
    // to about 1e6, whole numbers are middles of pixels; widths from 1 to about 1000.
    void AddPolyline(std::span<const PixelPoint> points, double width);

    // Adds a rectangle of whole pixels; what is outside is left out.
    void AddRect(const PixelRect& rect);

    // Where anything may be covered: the columns, and the rows in a column.
    Range TouchedColumns() const { return m_touchedColumns; }
    Range TouchedRows(int column) const { return m_touched[static_cast<std::size_t>(column)]; }

    // The coverage of a pixel inside the mask, 0 to 255.
    int Coverage(int column, int row) const
    {
        const std::size_t index = Index(column, row);
        const int sum = m_sides[0][index] + m_sides[1][index];
        return sum < 255 ? sum : 255;
    }

    // Removes everything; costs as much as the touched area.
    void Clear();

private:
    struct Stroke; // one straight piece
    struct Run;    // pixels of one column

    int Width() const { return static_cast<int>(m_touched.size()); }
    std::size_t Index(int column, int row) const
    {
        return static_cast<std::size_t>(column) * static_cast<std::size_t>(m_height) +
               static_cast<std::size_t>(row);
    }
    void AddStroke(const Stroke& stroke);
    void AddRun(const Stroke& stroke, int column, Range rows);
    void AddBeside(const Stroke& stroke, const Run& run);
    void AddAround(const Stroke& stroke, const Run& run);

    int m_height;
    // Shares of the strokes on either side of a pixel. Column by column, for what takes long is
    // curves that go up and down many times.
    std::array<std::vector<std::uint8_t>, 2> m_sides;
    std::vector<Range> m_touched; // by column
    Range m_touchedColumns;
};

} // namespace kelvane
