#include "ui/stroke_mask.h"

#include <algorithm>
#include <cmath>

namespace kelvane {
namespace {

// Distances across a stroke are counted in these parts of a pixel in the inner loop, so that
// coverage is a shift away.
constexpr double kFixedOne = 65536;
constexpr int kFixedToCoverage = 8;

// A pixel no further off, straight ahead of an end, lies on neither side. It goes to the first one
// whatever the direction of travel, so that there and back do not add up.
constexpr double kOnLine = 1e-9;

} // namespace

// The piece from Start along the unit vector (DirectionX, DirectionY).
struct StrokeMask::Stroke {
    PixelPoint Start;
    double DirectionX = 1;
    double DirectionY = 0;
    double Length = 0;
    double Reach = 1;    // half the width and half a pixel: how far it covers anything
    bool Turned = false; // which of its sides is the first one

    double Along(double dx, double dy) const { return dx * DirectionX + dy * DirectionY; }
    double Across(double dx, double dy) const { return dx * DirectionY - dy * DirectionX; }

    // Those of the rows in which a pixel, so far right of the start, lies beside the stroke and not
    // beyond one of its ends.
    Range RowsBeside(double offsetX, Range rows) const
    {
        if (DirectionY == 0)
            return {rows.First, rows.First - 1};
        const double atStart = Start.Y - offsetX * DirectionX / DirectionY;
        const double atEnd = atStart + Length / DirectionY;
        const auto [first, last] = std::minmax(atStart, atEnd);
        if (first > rows.Last || last < rows.First)
            return {rows.First, rows.First - 1};
        return {std::max(rows.First, static_cast<int>(std::ceil(std::max(first, 0.0)))),
                std::min(rows.Last, static_cast<int>(std::min(last, 1.0 * rows.Last)))};
    }
};

struct StrokeMask::Run {
    std::size_t Index = 0; // of the first pixel
    int Count = 0;
    double OffsetX = 0; // of the first pixel from the start of the stroke
    double OffsetY = 0;
};

StrokeMask::StrokeMask(int width, int height)
    : m_height(height)
    , m_touched(static_cast<std::size_t>(width))
{
    for (auto& side : m_sides)
        side.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

void StrokeMask::AddPolyline(std::span<const PixelPoint> points, double width)
{
    if (points.empty())
        return;
    Stroke stroke;
    stroke.Reach = width / 2 + 0.5;
    stroke.Start = points.front();
    if (points.size() == 1)
        AddStroke(stroke);
    for (const PixelPoint& end : points.subspan(1)) {
        const double dx = end.X - stroke.Start.X;
        const double dy = end.Y - stroke.Start.Y;
        stroke.Length = std::sqrt(dx * dx + dy * dy);
        if (stroke.Length > 0) {
            // The sides follow the direction of travel; where the curve turns back they swap, so
            // that left stays left on the way back.
            if (stroke.Along(dx, dy) < 0)
                stroke.Turned = !stroke.Turned;
            stroke.DirectionX = dx / stroke.Length;
            stroke.DirectionY = dy / stroke.Length;
        }
        AddStroke(stroke);
        stroke.Start = end;
    }
}

void StrokeMask::AddRect(const PixelRect& rect)
{
    const int top = std::max(rect.Y, 0);
    const int bottom = std::min(rect.Y + rect.Height, m_height) - 1;
    const int right = std::min(rect.X + rect.Width, Width()) - 1;
    for (int column = std::max(rect.X, 0); column <= right && top <= bottom; ++column) {
        std::fill_n(&m_sides[0][Index(column, top)], bottom - top + 1, std::uint8_t{255});
        m_touched[static_cast<std::size_t>(column)].Include({top, bottom});
        m_touchedColumns.Include({column, column});
    }
}

void StrokeMask::Clear()
{
    for (int column = m_touchedColumns.First; column <= m_touchedColumns.Last; ++column) {
        Range& rows = m_touched[static_cast<std::size_t>(column)];
        for (auto& side : m_sides)
            if (!rows.IsEmpty())
                std::fill_n(&side[Index(column, rows.First)], rows.Last - rows.First + 1,
                            std::uint8_t{0});
        rows = {};
    }
    m_touchedColumns = {};
}

void StrokeMask::AddStroke(const Stroke& stroke)
{
    const double endX = stroke.Start.X + stroke.DirectionX * stroke.Length;
    const double endY = stroke.Start.Y + stroke.DirectionY * stroke.Length;
    const double left = std::max(std::min(stroke.Start.X, endX) - stroke.Reach, 0.0);
    const double right = std::min(std::max(stroke.Start.X, endX) + stroke.Reach, Width() - 1.0);
    const double top = std::max(std::min(stroke.Start.Y, endY) - stroke.Reach, 0.0);
    const double bottom = std::min(std::max(stroke.Start.Y, endY) + stroke.Reach, m_height - 1.0);
    if (right < left || bottom < top)
        return;

    // In each column the stroke lies in a stretch around its middle line; an upright one fills its
    // box.
    const bool isUpright = std::abs(stroke.DirectionX) < 1e-9;
    const double slope = isUpright ? 0 : stroke.DirectionY / stroke.DirectionX;
    const double halfStretch = isUpright ? 0 : stroke.Reach / std::abs(stroke.DirectionX);
    for (int column = static_cast<int>(left); column <= static_cast<int>(right); ++column) {
        const double middle = stroke.Start.Y + (column - stroke.Start.X) * slope;
        const double first = isUpright ? top : std::max(top, middle - halfStretch);
        const double last = isUpright ? bottom : std::min(bottom, middle + halfStretch);
        if (first <= last)
            AddRun(stroke, column, {static_cast<int>(first), static_cast<int>(last)});
    }
    m_touchedColumns.Include({static_cast<int>(left), static_cast<int>(right)});
}

void StrokeMask::AddRun(const Stroke& stroke, int column, Range rows)
{
    m_touched[static_cast<std::size_t>(column)].Include(rows);
    const double offsetX = column - stroke.Start.X;
    const Range beside = stroke.RowsBeside(offsetX, rows);
    const auto run = [&](int first, int last) {
        return Run{Index(column, first), last - first + 1, offsetX, first - stroke.Start.Y};
    };
    AddAround(stroke, run(rows.First, beside.First - 1));
    AddBeside(stroke, run(beside.First, beside.Last));
    AddAround(stroke, run(beside.Last + 1, rows.Last));
}

// The distance from the stroke is the offset across, which grows evenly along the run.
void StrokeMask::AddBeside(const Stroke& stroke, const Run& run)
{
    const int count = run.Count;
    if (count <= 0)
        return;
    const int reach = static_cast<int>(stroke.Reach * kFixedOne);
    for (int sign : {1, -1}) {
        const int start =
            static_cast<int>(sign * stroke.Across(run.OffsetX, run.OffsetY) * kFixedOne);
        const int step = static_cast<int>(std::lround(-sign * stroke.DirectionX * kFixedOne));
        if (std::max(start, start + (count - 1) * step) < 0)
            continue; // nothing on this side
        std::uint8_t* side = &m_sides[(sign < 0) != stroke.Turned][run.Index];
        for (int i = 0; i < count; ++i) {
            const int across = start + i * step;
            const int share = std::clamp((reach - across) >> kFixedToCoverage, 0, 255);
            side[i] = std::max(side[i], static_cast<std::uint8_t>(across < 0 ? 0 : share));
        }
    }
}

// Some pixels lie beyond an end of the stroke, which is round.
void StrokeMask::AddAround(const Stroke& stroke, const Run& run)
{
    for (int i = 0; i < run.Count; ++i) {
        const double along = stroke.Along(run.OffsetX, run.OffsetY + i);
        const double across = stroke.Across(run.OffsetX, run.OffsetY + i);
        const double beyond = std::max({-along, along - stroke.Length, 0.0});
        const double distance = std::sqrt(across * across + beyond * beyond);
        const double share = std::clamp((stroke.Reach - distance) * 256, 0.0, 255.0);
        const bool isSecond = std::abs(across) > kOnLine && (across < 0) != stroke.Turned;
        std::uint8_t& side = m_sides[isSecond][run.Index + static_cast<std::size_t>(i)];
        side = std::max(side, static_cast<std::uint8_t>(share));
    }
}

} // namespace kelvane
