#include "graph/axes.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "graph/ticks.h"

namespace kelvane {

namespace {

constexpr int kTickHalfLength = 4;
constexpr double kLabelGap = kTickHalfLength + 4; // from the axis to its numbers
constexpr double kMinimumDivision = 56;           // pixels between divisions, at least,
constexpr double kFewestDivisions = 6;            // except where fewer than these would fit
constexpr double kSmallestDivision = 28;          // but never closer than this
constexpr double kLabelMargin = 14;               // free room between neighbouring numbers
constexpr double kEdgeMargin = 2;                 // between a number and the surface's edge

struct Box {
    double Left = 0;
    double Top = 0;
    double Right = 0;
    double Bottom = 0;
};

bool Overlap(const Box& a, const Box& b)
{
    return a.Left < b.Right && b.Left < a.Right && a.Top < b.Bottom && b.Top < a.Bottom;
}

Box BoxOf(const TextPlace& place, PixelSize text)
{
    const double left = place.Anchor.X - text.Width * static_cast<int>(place.Horizontal) / 2.0;
    const double top = place.Anchor.Y - text.Height * static_cast<int>(place.Vertical) / 2.0;
    return {left, top, left + text.Width, top + text.Height};
}

// Draws the frame of one surface.
class Frame {
public:
    Frame(Surface& surface, const ViewState& view)
        : m_surface(surface)
        , m_size(surface.Size())
        , m_width(static_cast<int>(m_size.Width))
        , m_height(static_cast<int>(m_size.Height))
        , m_originColumn(ToPixel(view.OriginX))
        , m_originRow(ToPixel(view.OriginY))
        , m_column(std::clamp(m_originColumn, 0, std::max(m_width - 1, 0)))
        , m_row(std::clamp(m_originRow, 0, std::max(m_height - 1, 0)))
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
            m_surface.FillRect({d.Pixel, 0, 1, m_height}, kGridColor);
        for (const Division& d : m_y)
            m_surface.FillRect({0, d.Pixel, m_width, 1}, kGridColor);
    }

    void DrawAxes()
    {
        if (m_row == m_originRow)
            m_surface.FillRect({0, m_row, m_width, 1}, kBlack);
        if (m_column == m_originColumn)
            m_surface.FillRect({m_column, 0, 1, m_height}, kBlack);
        constexpr int kTickLength = 2 * kTickHalfLength + 1;
        // No tick stands on the edge itself, where it would look like the axis's end.
        for (const Division& d : m_x) {
            if (d.Pixel > 0)
                m_surface.FillRect({d.Pixel, m_row - kTickHalfLength, 1, kTickLength}, kBlack);
        }
        for (const Division& d : m_y) {
            if (d.Pixel > 0)
                m_surface.FillRect({m_column - kTickHalfLength, d.Pixel, kTickLength, 1}, kBlack);
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
    static double MinimumDivision(double extent)
    {
        return std::clamp(extent / kFewestDivisions, kSmallestDivision, kMinimumDivision);
    }

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
        const bool below = m_row + kLabelGap + height + kEdgeMargin <= m_size.Height;
        m_besideRow = m_row + (below ? kLabelGap : -kLabelGap);
        m_rowAlign = below ? VerticalAlign::Top : VerticalAlign::Bottom;
        const bool left = m_column - kLabelGap - width >= kEdgeMargin;
        m_besideColumn = m_column + (left ? -kLabelGap : kLabelGap);
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
                {m_column + kLabelGap, m_besideRow}, HorizontalAlign::Left, m_rowAlign};
            Write(x->Label, both ? right : beside);
        }
        if (y != nullptr && (both || x == nullptr)) {
            const bool below = m_rowAlign == VerticalAlign::Top;
            Write(y->Label, {{m_besideColumn, m_row + (below ? -kLabelGap : kLabelGap) / 2},
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
        const bool inside = box.Left >= kEdgeMargin && box.Top >= kEdgeMargin &&
                            box.Right <= m_size.Width - kEdgeMargin &&
                            box.Bottom <= m_size.Height - kEdgeMargin;
        const bool taken = std::any_of(m_taken.begin(), m_taken.end(),
                                       [&](const Box& other) { return Overlap(box, other); });
        if (!inside || taken)
            return;
        m_taken.push_back(box);
        m_surface.Text(place, label, kBlack);
    }

    Surface& m_surface;
    PixelSize m_size;
    int m_width;
    int m_height;
    int m_originColumn; // of the axes' crossing, perhaps outside
    int m_originRow;
    int m_column; // the same, or the nearest edge
    int m_row;
    std::vector<Division> m_x;
    std::vector<Division> m_y;
    double m_besideRow = 0;    // anchor of the numbers of the horizontal axis
    double m_besideColumn = 0; // and of the vertical one
    VerticalAlign m_rowAlign = VerticalAlign::Top;
    HorizontalAlign m_columnAlign = HorizontalAlign::Right;
    std::vector<Box> m_taken;
};

} // namespace

double InitAxis(Surface& surface, ViewState& view, const AxisSettings& settings, Rgb sheet)
{
    surface.Clear(sheet);
    if (!UpdatePixPerStep(view))
        return 0;
    Frame frame(surface, view);
    if (settings.ShowGrid)
        frame.DrawGrid();
    if (settings.ShowAxes) {
        frame.DrawAxes();
        frame.WriteNumbers();
    }
    return frame.DivisionUnits();
}

} // namespace kelvane
