#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "engine/point_evaluation.h"
#include "graph/surface.h"

// The 2D view: where the world lies on the drawing surface. Three coordinate systems meet here.
//
//   world   what the equations speak of: x and y
//   sample  what plotting works in: s = x - CenterX and t = y + CenterY, measured from the axes'
//           crossing. The visible window is XMin to XMax times ZoomFactor, so a larger zoom factor
//           shows more of the function; the axis centre shifts the graph under fixed axes.
//   pixel   PX = OriginX + s PixPerStep, PY = OriginY - t YRatio PixPerStep

namespace kelvane {

// No value: no previous point to join to, no entry in a column. Compared by bits; no computed
// coordinate can produce it.
inline constexpr float kNoPoint = std::bit_cast<float>(std::uint32_t{0xFF7FFFFD});

inline bool IsNoPoint(float value)
{
    return std::bit_cast<std::uint32_t>(value) == std::bit_cast<std::uint32_t>(kNoPoint);
}

// Cells for the pixel columns -2000 to 4000.
class ColumnCells {
public:
    static constexpr int kFirst = -2000;
    static constexpr int kLast = 4000;

    ColumnCells() { Reset(); }

    // Every cell to kNoPoint.
    void Reset() { m_cells.fill(kNoPoint); }

    // Needs kFirst <= column <= kLast.
    float& operator[](int column) { return m_cells[static_cast<std::size_t>(column - kFirst)]; }

private:
    std::array<float, kLast - kFirst + 1> m_cells;
};

struct ViewState {
    // The axes' crossing on the surface, pixels; by the axis setup, the range and the print
    // preview.
    float OriginX = 0;
    float OriginY = 0;

    // Pixels per axis unit at zoom factor 1; by the axis setup, the range and the print preview.
    // Not 0.
    float UnitPixels = 50;

    // Above 0; by the zoom keys. 1 at the start and after a change between 2D and 3D.
    float ZoomFactor = 1;

    // Stretches every plotted y (z) value; by the axis setup and the range.
    float YRatio = 1;
    float ZRatio = 1;

    // World x at the axes' crossing, and minus the world y there; by the zoom, centre and search
    // tools.
    float CenterX = 0;
    float CenterY = 0;

    // World z at the axes' crossing of a 3D sheet; by the axis setup.
    float CenterZ = 0;

    // The drawn window at zoom factor 1, sample units before YRatio; by the range dialog.
    float XMin = -10;
    float XMax = 10;
    float YMin = -10;
    float YMax = 10;
    float ZMin = -10;
    float ZMax = 10;

    // Sampling steps, world units: 1 / resolution; by the draw setup.
    float Step2D = 0.01F;
    float Step3D = 0.05F;

    // UnitPixels / ZoomFactor; by the draw driver at the start of every draw.
    float PixPerStep = 50;

    // The last point plotted, sample units after YRatio and matrix; PrevX is kNoPoint when the next
    // point must not be joined to anything. By the point plotting.
    float PrevX = kNoPoint;
    float PrevY = 0;

    // By the plotting routines; reset at the start of a draw and of each equation.
    ColumnCells ColumnCache;
};

struct WorldPoint {
    double X = 0;
    double Y = 0;
};

struct Interval {
    double Low = 0;
    double High = 0;
};

// Sets every cell of ColumnCache to kNoPoint.
inline void ResetColumnCache(ViewState& view)
{
    view.ColumnCache.Reset();
}

// Recomputes PixPerStep; false when it is not a finite number above 0, as at zoom factor 0.
bool UpdatePixPerStep(ViewState& view);

// Where a plotted point (sample units after YRatio and matrix) lies. Uses PixPerStep.
PixelPoint SampleToPixel(const ViewState& view, float s, float t);

// World coordinates of a 2D sheet without matrix. Use PixPerStep and YRatio, which must not be 0.
PixelPoint WorldToPixel(const ViewState& view, WorldPoint world);
WorldPoint PixelToWorld(const ViewState& view, PixelPoint pixel);

// Sets range, origin, UnitPixels and YRatio so that at zoom factor 1 x fills the surface's width
// and y its height. False, and nothing changed, unless both intervals and the scales that follow
// are finite singles above 0 in length.
bool FitRange(ViewState& view, Interval x, Interval y, PixelSize size);

// The same for x with equal units on both axes, y = 0 in the middle of the surface. The y range is
// that of x, or more where the surface shows more.
bool FitEqualUnits(ViewState& view, Interval x, PixelSize size);

// Where the bisection looks for y (z) and when it is content.
SolveRange SolveRangeY(const ViewState& view);
SolveRange SolveRangeZ(const ViewState& view);

} // namespace kelvane
