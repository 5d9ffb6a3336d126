#include "graph/axes.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "graph/layout.h"
#include "graph/ticks.h"
#include "view3d/draw_settings.h"

namespace kelvane {

namespace {

constexpr double kTickGap = 4;      // from the ticks to the numbers
constexpr double kLabelMargin = 14; // free room between neighbouring numbers

// Relative luminance of a colour on a screen, 0 to 1 (the usual formula of sRGB).
// Draws the frame of one surface.
class Frame {
public:
    Frame(Surface& surface, const ViewState& view, const AxisSettings& settings, Rgb sheet)
        : m_surface(surface)
        , m_colors(FrameColorsOn(sheet))
        , m_tick(TickHalfLength(settings))
        , m_labelGap(m_tick + kTickGap)
        , m_size(surface.Size())
        , m_width(static_cast<int>(m_size.Width))
        , m_height(static_cast<int>(m_size.Height))
        , m_originColumn(ToPixel(view.OriginX))
        , m_originRow(ToPixel(view.OriginY))
        , m_column(std::clamp(m_originColumn, 0, std::max(m_width - 1, 0)))
        , m_row(std::clamp(m_originRow, 0, std::max(m_height - 1, 0)))
        , m_space(m_size)
    {
        const AxisScale x{view.OriginX, view.PixPerStep, view.CenterX, m_size.Width};
        const AxisScale y{view.OriginY, -static_cast<double>(view.PixPerStep) * view.YRatio,
                          -view.CenterY, m_size.Height};
        m_x = ChooseDivisions(x, MinimumDivision(m_size.Width), [&](const std::string& label) {
            return m_surface.TextSize(label).Width + kLabelMargin;
        });
        m_y = ChooseDivisions(y, MinimumDivision(m_size.Height), [&](const std::string& label) {
            return m_surface.TextSize(label).Height + kLabelMargin;
        });
    }

    double DivisionUnits() const { return m_x.size() < 2 ? 0 : m_x[1].Value - m_x[0].Value; }

    void DrawGrid()
    {
        for (const Division& d : m_x)
            m_surface.FillRect({d.Pixel, 0, 1, m_height}, m_colors.Grid);
        for (const Division& d : m_y)
            m_surface.FillRect({0, d.Pixel, m_width, 1}, m_colors.Grid);
    }

    void DrawAxes()
    {
        if (m_row == m_originRow)
            m_surface.FillRect({0, m_row, m_width, 1}, m_colors.Ink);
        if (m_column == m_originColumn)
            m_surface.FillRect({m_column, 0, 1, m_height}, m_colors.Ink);
        const int length = 2 * m_tick + 1;
        // No tick stands on the edge itself, where it would look like the axis's end.
        for (const Division& d : m_x) {
            if (d.Pixel > 0)
                m_surface.FillRect({d.Pixel, m_row - m_tick, 1, length}, m_colors.Ink);
        }
        for (const Division& d : m_y) {
            if (d.Pixel > 0)
                m_surface.FillRect({m_column - m_tick, d.Pixel, length, 1}, m_colors.Ink);
        }
    }

    void WriteNumbers()
    {
        ChooseSides();
        WriteOrigin();
        for (const Division& d : m_x) {
            if (!d.AtOrigin)
                Write(d.Label, {{static_cast<double>(d.Pixel), m_besideRow},
                                HorizontalAlign::Center,
                                m_rowAlign});
        }
        for (const Division& d : m_y) {
            if (!d.AtOrigin)
                Write(d.Label, {{m_besideColumn, static_cast<double>(d.Pixel)},
                                m_columnAlign,
                                VerticalAlign::Center});
        }
    }

private:
    // A pixel far outside stays outside, within the range of whole numbers.
    static int ToPixel(float position)
    {
        return static_cast<int>(std::lround(std::clamp(position, -1e6F, 1e6F)));
    }

    // Numbers stand below the horizontal axis and left of the vertical one, or on the other side
    // where there is no room.
    void ChooseSides()
    {
        double height = 0;
        double width = 0;
        for (const Division& d : m_x)
            height = std::max(height, m_surface.TextSize(d.Label).Height);
        for (const Division& d : m_y)
            width = std::max(width, m_surface.TextSize(d.Label).Width);
        const bool below = m_row + m_labelGap + height + LabelSpace::kEdgeMargin <= m_size.Height;
        m_besideRow = m_row + (below ? m_labelGap : -m_labelGap);
        m_rowAlign = below ? VerticalAlign::Top : VerticalAlign::Bottom;
        const bool left = m_column - m_labelGap - width >= LabelSpace::kEdgeMargin;
        m_besideColumn = m_column + (left ? -m_labelGap : m_labelGap);
        m_columnAlign = left ? HorizontalAlign::Right : HorizontalAlign::Left;
    }

    // The numbers where the axes cross: one for both where they read the same, else x right of the
    // vertical axis and y above the horizontal one.
    void WriteOrigin()
    {
        const Division* const x = AtOrigin(m_x);
        const Division* const y = AtOrigin(m_y);
        const bool both = x != nullptr && y != nullptr && x->Label != y->Label;
        if (x != nullptr) {
            const TextPlace beside{{m_besideColumn, m_besideRow}, m_columnAlign, m_rowAlign};
            const TextPlace right{
                {m_column + m_labelGap, m_besideRow}, HorizontalAlign::Left, m_rowAlign};
            Write(x->Label, both ? right : beside);
        }
        if (y != nullptr && (both || x == nullptr)) {
            const bool below = m_rowAlign == VerticalAlign::Top;
            Write(y->Label, {{m_besideColumn, m_row + (below ? -m_labelGap : m_labelGap) / 2},
                             m_columnAlign,
                             below ? VerticalAlign::Bottom : VerticalAlign::Top});
        }
    }

    static const Division* AtOrigin(const std::vector<Division>& divisions)
    {
        const auto at = std::find_if(divisions.begin(), divisions.end(),
                                     [](const Division& d) { return d.AtOrigin; });
        return at == divisions.end() ? nullptr : &*at;
    }

    // Writes a number unless it would be cut by an edge or touch another one.
    void Write(const std::string& label, const TextPlace& place)
    {
        const Box box = BoxOf(place, m_surface.TextSize(label));
        if (!m_space.IsFree(box))
            return;
        m_space.Take(box);
        m_surface.Text(place, label, m_colors.Ink);
    }

    Surface& m_surface;
    FrameColors m_colors;
    int m_tick;        // half a tick's length
    double m_labelGap; // from the axis to its numbers
    PixelSize m_size;
    int m_width;
    int m_height;
    int m_originColumn; // of the axes' crossing, perhaps outside
    int m_originRow;
    int m_column; // the same, or the nearest edge
    int m_row;
    LabelSpace m_space;
    std::vector<Division> m_x;
    std::vector<Division> m_y;
    double m_besideRow = 0;    // anchor of the numbers of the horizontal axis
    double m_besideColumn = 0; // and of the vertical one
    VerticalAlign m_rowAlign = VerticalAlign::Top;
    HorizontalAlign m_columnAlign = HorizontalAlign::Right;
};

} // namespace

int TickHalfLength(const AxisSettings& settings)
{
    constexpr int kThickest = 30;
    return (std::clamp(settings.UnitThickness, 0, kThickest) * 2 + 1) / 3;
}

FrameColors FrameColorsOn(Rgb sheet)
{
    constexpr int kGridShare = 55; // of 255, of ink in the grid
    const Rgb ink = InkOn(sheet);
    const auto mix = [](std::uint8_t from, std::uint8_t to) {
        return static_cast<std::uint8_t>((from * (255 - kGridShare) + to * kGridShare + 127) / 255);
    };
    return {ink, {mix(sheet.R, ink.R), mix(sheet.G, ink.G), mix(sheet.B, ink.B)}};
}

double MinimumDivision(double extent)
{
    constexpr double kMinimum = 56;  // usually,
    constexpr double kFewest = 6;    // except where fewer divisions than these would fit
    constexpr double kSmallest = 28; // but never closer than this
    return std::clamp(extent / kFewest, kSmallest, kMinimum);
}

double InitAxis(Surface& surface, ViewState& view, const AxisSettings& settings, Rgb sheet)
{
    surface.Clear(sheet);
    if (!UpdatePixPerStep(view))
        return 0;
    Frame frame(surface, view, settings, sheet);
    if (settings.ShowGrid)
        frame.DrawGrid();
    if (settings.ShowAxes) {
        frame.DrawAxes();
        frame.WriteNumbers();
    }
    return frame.DivisionUnits();
}

} // namespace kelvane
