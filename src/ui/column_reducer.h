#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "graph/surface.h"

namespace kelvane {

// Reduces a polyline of any length to what can be told apart at the width of a column, while its
// points arrive one by one.
//
// The plane is cut into columns: column k holds k * width <= x < (k + 1) * width. A run of
// consecutive points in one column that goes up and down is replaced by its first, lowest, highest
// and last point in the order in which they came, none of them twice. Hence no peak is lost, and
// the curve enters and leaves each column where it did before. A run that goes one way, or turns
// once, may be the upright part of a round curve: of it a point every kSpacing is kept as well.
// Points that are not neighbours in the curve are never merged: a curve that runs back, stands
// still or circles keeps its course.
//
// The memory needed does not depend on the number of points, and nothing is allocated.
class ColumnReducer {
public:
    static constexpr double kSpacing = 2; // pixels, of y

    // The width of a column in pixels, above zero.
    explicit ColumnReducer(double columnWidth)
        : m_columnWidth(columnWidth)
    {
    }

    // Takes the next point, which must be finite, and gives back the points that are thereby
    // settled: none while the curve stays in its column, else what was kept of the column it has
    // left. Valid until the next call.
    std::span<const PixelPoint> Add(PixelPoint point);

    // Ends the curve: gives back the rest of it and is ready for another one. Valid until the next
    // call.
    std::span<const PixelPoint> Finish();

private:
    struct Candidate {
        PixelPoint Point;
        std::uint64_t Order = 0; // among the points of this visit
    };

    void StartColumn(PixelPoint point);
    void StartRun(PixelPoint point);
    std::span<const PixelPoint> Follow(PixelPoint point);
    std::span<const PixelPoint> Settle();

    double m_columnWidth;
    double m_left = 0; // of the column; doubles, for they may be about 1e39
    double m_right = 0;
    std::uint64_t m_count = 0; // points seen in this visit of the column; 0: no curve yet
    Candidate m_first;
    Candidate m_top;
    Candidate m_bottom;
    Candidate m_last;
    static constexpr int kMostTurns = 1;
    static constexpr std::size_t kMostPath = 32;
    int m_turns = 0;                          // of y in this visit
    double m_change = 0;                      // of y, at the latest point that changed it
    std::array<PixelPoint, kMostPath> m_path; // while there are few turns
    std::size_t m_pathCount = 0;
    std::array<PixelPoint, kMostPath + 1> m_settled;
};

} // namespace kelvane
