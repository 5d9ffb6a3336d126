#include "graph/axes_3d.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include "graph/layout.h"
#include "graph/ticks.h"

namespace kelvane {

namespace {

constexpr double kOverhang = 14;   // pixels that an axis reaches over its range, for its letter
constexpr double kLetterGap = 5;   // from the axis' end to its letter
constexpr double kNumberGap = 3;   // from the ticks to the numbers
constexpr double kLabelMargin = 8; // free room between neighbouring numbers
constexpr double kSmallestDivision = 28; // pixels, of steps that axes share
constexpr double kSimilarUnits = 5;      // axes share steps when their units differ less than this
constexpr double kShortestAxis = 24;     // pixels; a shorter one points at the viewer
constexpr double kEndMargin = 3;         // from an axis' end to its outermost tick
constexpr double kSmallestMesh = 6;      // pixels between grid lines

struct Axis {
    std::string_view Letter;
    double AtCrossing = 0; // world value
    Interval Range;        // drawn, world units from the crossing
    PixelPoint PerUnit;    // what a world unit is on the surface
    double Length = 0;     // of the unit, pixels
    PixelPoint Direction;  // of the positive half, length 1; 0 where it has none
    std::optional<PixelLine> Visible;
    AxisScale Scale; // along the visible line, from its start
    std::vector<Division> Divisions;
    double Step = 0; // between divisions, world units; 0 where there are none
};

PixelPoint Along(PixelPoint from, PixelPoint direction, double length)
{
    return {from.X + direction.X * length, from.Y + direction.Y * length};
}

double Dot(PixelPoint a, PixelPoint b)
{
    return a.X * b.X + a.Y * b.Y;
}

// Where a text stands that begins so many pixels from the point in the direction.
TextPlace Beside(PixelPoint point, PixelPoint direction, double gap, PixelSize text)
{
    const double reach =
        (std::fabs(direction.X) * text.Width + std::fabs(direction.Y) * text.Height) / 2;
    return {Along(point, direction, gap + reach), HorizontalAlign::Center, VerticalAlign::Center};
}

double StepOf(const std::vector<Division>& divisions)
{
    return divisions.size() < 2 ? 0 : divisions[1].Value - divisions[0].Value;
}

// Draws the frame of one surface.
class SpaceFrame {
public:
    SpaceFrame(Surface& surface, const ViewState& view, const AxisSettings& settings,
               const Projection& projection, Rgb sheet)
        : m_surface(surface)
        , m_projection(projection)
        , m_colors(FrameColorsOn(sheet))
        , m_tick(TickHalfLength(settings))
        , m_bounds{0, 0, surface.Size().Width - 1, surface.Size().Height - 1}
        , m_space(surface.Size())
    {
        const Projection& p = projection;
        const double zoom = view.ZoomFactor;
        const auto range = [&](float low, float high) -> Interval {
            return {low * zoom, high * zoom};
        };
        m_axes[0] = MakeAxis("x", p.Crossing.X, range(view.XMin, view.XMax), {p.Right.X, p.Down.X});
        m_axes[1] = MakeAxis("y", p.Crossing.Y, range(view.YMin, view.YMax), {p.Right.Y, p.Down.Y});
        m_axes[2] = MakeAxis("z", p.Crossing.Z, range(view.ZMin, view.ZMax), {p.Right.Z, p.Down.Z});
        for (Axis& axis : m_axes)
            Divide(axis, MinimumDivision(axis.Scale.Extent));
        ShareSteps();
    }

    double DivisionUnits() const { return m_axes[0].Step; }

    void DrawGrid()
    {
        // Where one axis is out of sight the steps of the other one serve.
        const auto step = [](const Axis& axis, const Axis& other) {
            return axis.Step != 0 ? axis.Step : other.Step;
        };
        const Axis& x = m_axes[0];
        const Axis& y = m_axes[1];
        const Family ofX{x, step(x, y), ShownOnGround(&SpacePoint::X, x)};
        const Family ofY{y, step(y, x), ShownOnGround(&SpacePoint::Y, y)};
        DrawGridLines(ofX, ofY);
        DrawGridLines(ofY, ofX);
    }

    void DrawAxes()
    {
        for (const Axis& axis : m_axes) {
            if (!axis.Visible)
                continue;
            DrawLine(*axis.Visible, m_colors.Ink);
            m_space.Avoid(*axis.Visible);
            const PixelPoint normal = Normal(axis);
            for (const Division& d : axis.Divisions) {
                if (d.AtOrigin)
                    continue; // three ticks across each other would blot the crossing
                const PixelPoint at = PixelOf(axis, d);
                DrawLine({Along(at, normal, -m_tick), Along(at, normal, m_tick)}, m_colors.Ink);
            }
        }
    }

    void WriteLabels()
    {
        for (const Axis& axis : m_axes)
            WriteLetter(axis);
        WriteCrossing();
        for (const std::size_t i : {2, 1, 0})
            WriteNumbers(m_axes[i]);
    }

private:
    // The divisions of x or y, as the grid needs them.
    struct Family {
        const Axis& Of;
        double Step;
        Interval Shown; // by ShownOnGround
    };

    Axis MakeAxis(std::string_view letter, double atCrossing, Interval range, PixelPoint perUnit)
    {
        Axis axis;
        axis.Letter = letter;
        axis.AtCrossing = atCrossing;
        axis.Range = range;
        axis.PerUnit = perUnit;
        axis.Length = std::hypot(perUnit.X, perUnit.Y);
        // What lies further away than this is not on the surface, and would cost precision.
        const double reach = (std::fabs(m_projection.Origin.X) + std::fabs(m_projection.Origin.Y) +
                              m_bounds.Right + m_bounds.Bottom) /
                             axis.Length;
        const double low = std::max(std::min(range.Low, 0.0), -reach);
        const double high = std::min(std::max(range.High, 0.0), reach);
        if (!((high - low) * axis.Length >= kShortestAxis) || !std::isfinite(high - low))
            return axis;
        axis.Direction = {perUnit.X / axis.Length, perUnit.Y / axis.Length};
        const PixelPoint from = Along(m_projection.Origin, perUnit, low);
        const PixelPoint end = Along(m_projection.Origin, perUnit, high);
        ShowPart(axis, {from, Along(end, axis.Direction, kOverhang)});
        return axis;
    }

    // What the surface shows of the axis; the positive end leaves room for the letter.
    void ShowPart(Axis& axis, const PixelLine& whole)
    {
        axis.Visible = ClipLine(whole, m_bounds);
        if (!axis.Visible)
            return;
        const PixelSize letter = m_surface.TextSize(axis.Letter);
        const double room = kLetterGap + std::hypot(letter.Width, letter.Height) / 2 +
                            std::max(letter.Width, letter.Height) / 2 + LabelSpace::kEdgeMargin;
        const Box inner{m_bounds.Left + room, m_bounds.Top + room, m_bounds.Right - room,
                        m_bounds.Bottom - room};
        if (const auto inside = ClipLine(whole, inner))
            axis.Visible->To = inside->To;
        const PixelPoint from = axis.Visible->From;
        const PixelPoint to = axis.Visible->To;
        const PixelPoint crossing = m_projection.Origin;
        axis.Scale = {Dot({crossing.X - from.X, crossing.Y - from.Y}, axis.Direction), axis.Length,
                      axis.AtCrossing, std::hypot(to.X - from.X, to.Y - from.Y) + 1};
    }

    // Chooses the divisions, at least so many pixels apart.
    void Divide(Axis& axis, double minimumPixels)
    {
        if (!axis.Visible || !(std::fabs(axis.Scale.Origin) < kFarthest))
            return;
        axis.Divisions = ChooseDivisions(axis.Scale, minimumPixels, [&](const std::string& label) {
            const PixelSize size = m_surface.TextSize(label);
            return std::min((size.Width + kLabelMargin) / std::fabs(axis.Direction.X),
                            (size.Height + kLabelMargin) / std::fabs(axis.Direction.Y));
        });
        axis.Step = StepOf(axis.Divisions);
        const auto hidden = [&](const Division& d) {
            const double value = d.Value - axis.AtCrossing;
            const double tolerance = axis.Step * 1e-6;
            const double along = Position(axis, d);
            return value < std::min(axis.Range.Low, 0.0) - tolerance ||
                   value > std::max(axis.Range.High, 0.0) + tolerance || along < kEndMargin ||
                   along > axis.Scale.Extent - 1 - kEndMargin;
        };
        axis.Divisions.erase(std::remove_if(axis.Divisions.begin(), axis.Divisions.end(), hidden),
                             axis.Divisions.end());
    }

    // Gives axes whose units are similar in length the same step, so that a cube looks like one.
    void ShareSteps()
    {
        double longest = 0;
        for (const Axis& axis : m_axes)
            longest = std::max(longest, axis.Step != 0 ? axis.Length : 0);
        const auto shares = [&](const Axis& axis) {
            return axis.Step != 0 && axis.Length * kSimilarUnits > longest;
        };
        double step = 0;
        for (Axis& axis : m_axes) {
            if (!shares(axis))
                continue;
            if (axis.Length != longest)
                Divide(axis, kSmallestDivision);
            step = std::max(step, axis.Step);
        }
        for (Axis& axis : m_axes) {
            if (shares(axis))
                Divide(axis, step * axis.Length);
        }
    }

    static double Position(const Axis& axis, const Division& division)
    {
        return axis.Scale.Origin + (division.Value - axis.AtCrossing) * axis.Length;
    }

    static PixelPoint PixelOf(const Axis& axis, const Division& division)
    {
        return Along(axis.Visible->From, axis.Direction, Position(axis, division));
    }

    // Across the axis, to the side where its numbers look best: below, and left of a steep one.
    static PixelPoint Normal(const Axis& axis)
    {
        const PixelPoint normal{-axis.Direction.Y, axis.Direction.X};
        const bool below = normal.Y - 0.4 * normal.X > 0;
        return below ? normal : PixelPoint{-normal.X, -normal.Y};
    }

    // Sharp where it runs along the pixels.
    void DrawLine(const PixelLine& line, Rgb color)
    {
        const auto whole = [](double position) { return static_cast<int>(std::lround(position)); };
        const int left = whole(std::min(line.From.X, line.To.X));
        const int top = whole(std::min(line.From.Y, line.To.Y));
        const int right = whole(std::max(line.From.X, line.To.X));
        const int bottom = whole(std::max(line.From.Y, line.To.Y));
        constexpr double kStraight = 0.01;
        if (std::fabs(line.From.X - line.To.X) < kStraight)
            m_surface.FillRect({left, top, 1, bottom - top + 1}, color);
        else if (std::fabs(line.From.Y - line.To.Y) < kStraight)
            m_surface.FillRect({left, top, right - left + 1, 1}, color);
        else
            m_surface.Line(line.From, line.To, color);
    }

    // The lines at the divisions of one axis, each along the whole range of the other.
    void DrawGridLines(const Family& across, const Family& along)
    {
        const PixelPoint u = across.Of.PerUnit;
        const PixelPoint v = along.Of.PerUnit;
        const double mesh = across.Step * std::fabs(u.X * v.Y - u.Y * v.X) / along.Of.Length;
        const Interval lines = WholeSteps(across.Shown, across.Step);
        Interval ends = WholeSteps(along.Of.Range, along.Step);
        ends = {std::max(ends.Low, std::floor(along.Shown.Low / along.Step)),
                std::min(ends.High, std::ceil(along.Shown.High / along.Step))};
        if (!(mesh >= kSmallestMesh) || !(std::fabs(lines.Low) < kMostSteps) ||
            !(std::fabs(lines.High) < kMostSteps) || !(ends.Low < ends.High))
            return;
        const auto last = static_cast<std::int64_t>(lines.High);
        for (auto i = static_cast<std::int64_t>(lines.Low); i <= last; ++i) {
            const PixelPoint base =
                Along(m_projection.Origin, u, static_cast<double>(i) * across.Step);
            const PixelLine line{Along(base, v, ends.Low * along.Step),
                                 Along(base, v, ends.High * along.Step)};
            if (const auto visible = ClipLine(line, m_bounds))
                DrawLine(*visible, m_colors.Grid);
        }
    }

    // The numbers of the outermost whole steps within the interval.
    static Interval WholeSteps(Interval interval, double step)
    {
        constexpr double kHair = 1e-6;
        return {std::ceil(interval.Low / step - kHair), std::floor(interval.High / step + kHair)};
    }

    // The drawn range of x or y as far as the ground is on the surface, measured from the crossing.
    // Not a number where the ground is seen edge-on.
    Interval ShownOnGround(double SpacePoint::*coordinate, const Axis& axis) const
    {
        Interval seen{std::numeric_limits<double>::infinity(),
                      -std::numeric_limits<double>::infinity()};
        for (const double x : {m_bounds.Left, m_bounds.Right}) {
            for (const double y : {m_bounds.Top, m_bounds.Bottom}) {
                const auto corner = UnprojectToPlane(m_projection, {x, y}, {SpaceAxis::Z, 0});
                const double value = corner ? *corner.*coordinate - axis.AtCrossing : NAN;
                seen = {std::min(value, seen.Low), std::max(value, seen.High)};
            }
        }
        return {std::max(seen.Low, axis.Range.Low), std::min(seen.High, axis.Range.High)};
    }

    bool Write(std::string_view text, const TextPlace& place)
    {
        const Box box = BoxOf(place, m_surface.TextSize(text));
        if (!m_space.IsFree(box))
            return false;
        m_space.Take(box);
        m_surface.Text(place, text, m_colors.Ink);
        return true;
    }

    void WriteLetter(const Axis& axis)
    {
        if (!axis.Visible) {
            if (axis.Length * (axis.Range.High - axis.Range.Low) < kShortestAxis)
                WriteAround(axis.Letter);
            return;
        }
        const PixelPoint ahead = axis.Direction;
        const PixelPoint aside = Normal(axis);
        const PixelSize size = m_surface.TextSize(axis.Letter);
        for (const PixelPoint direction : {ahead, aside, PixelPoint{-aside.X, -aside.Y}}) {
            if (Write(axis.Letter, Beside(axis.Visible->To, direction, kLetterGap, size)))
                return;
        }
    }

    // One 0 for all axes, or the world point.
    void WriteCrossing()
    {
        std::array<std::string, 3> numbers;
        for (std::size_t i = 0; i < numbers.size(); ++i)
            numbers[i] = AxisNumber(m_axes[i].AtCrossing, m_axes[i].Step != 0 ? m_axes[i].Step : 1);
        const bool zero = std::all_of(numbers.begin(), numbers.end(),
                                      [](const std::string& number) { return number == "0"; });
        WriteAround(zero ? "0" : "(" + numbers[0] + ", " + numbers[1] + ", " + numbers[2] + ")");
    }

    // Writes a text close to the crossing where there is room, best to its lower left.
    void WriteAround(std::string_view text)
    {
        constexpr int kDirections = 16;
        const PixelPoint crossing = m_projection.Origin;
        if (!ClipLine({crossing, crossing}, m_bounds))
            return;
        for (const double gap : {4.0, 8.0, 14.0, 20.0, 28.0, 36.0}) {
            for (int i = 0; i < kDirections; ++i) {
                // 0, 1, -1, 2, -2, ... sixteenths of a turn from the lower left
                const int turns = i % 2 == 0 ? -i / 2 : i / 2 + 1;
                const double angle = std::numbers::pi * (0.75 + turns * 2.0 / kDirections);
                const PixelPoint direction{std::cos(angle), std::sin(angle)};
                if (Write(text, Beside(crossing, direction, gap, m_surface.TextSize(text))))
                    return;
            }
        }
    }

    TextPlace NumberPlace(const Axis& axis, const Division& division, PixelPoint side) const
    {
        return Beside(PixelOf(axis, division), side, m_tick + kNumberGap,
                      m_surface.TextSize(division.Label));
    }

    // The side where the numbers look best, or the other one of an axis that runs along one whose
    // numbers stand there already.
    PixelPoint PreferredSide(const Axis& axis) const
    {
        constexpr double kAlong = 0.98; // cosine of the angle between them
        const PixelPoint side = Normal(axis);
        const bool taken = std::any_of(m_sides.begin(), m_sides.end(),
                                       [&](PixelPoint other) { return Dot(side, other) > kAlong; });
        return taken ? PixelPoint{-side.X, -side.Y} : side;
    }

    // All on one side: the preferred one unless more of them find room on the other.
    void WriteNumbers(const Axis& axis)
    {
        const auto room = [&](PixelPoint side) {
            return std::count_if(axis.Divisions.begin(), axis.Divisions.end(),
                                 [&](const Division& d) {
                                     return m_space.IsFree(BoxOf(NumberPlace(axis, d, side),
                                                                 m_surface.TextSize(d.Label)));
                                 });
        };
        const PixelPoint best = PreferredSide(axis);
        const PixelPoint other{-best.X, -best.Y};
        const PixelPoint side = room(other) > room(best) + 1 ? other : best;
        if (!axis.Divisions.empty())
            m_sides.push_back(side);
        for (const Division& d : axis.Divisions) {
            if (!d.AtOrigin)
                Write(d.Label, NumberPlace(axis, d, side));
        }
    }

    static constexpr double kFarthest = 1e12;  // pixels; ticks further away would be inexact
    static constexpr double kMostSteps = 1e15; // told apart by doubles

    Surface& m_surface;
    Projection m_projection;
    FrameColors m_colors;
    int m_tick;   // half a tick's length
    Box m_bounds; // the middles of the surface's pixels
    LabelSpace m_space;
    std::array<Axis, 3> m_axes;
    std::vector<PixelPoint> m_sides; // of the axes that have their numbers
};

} // namespace

double InitAxis3D(Surface& surface, ViewState& view, const AxisSettings& settings,
                  const AxisModel& model, const Matrix3& matrix, Rgb sheet)
{
    surface.Clear(sheet);
    if (!UpdatePixPerStep(view))
        return 0;
    const Projection projection = MakeProjection(view, model, matrix);
    if (!IsUsable(projection))
        return 0;
    SpaceFrame frame(surface, view, settings, projection, sheet);
    if (settings.ShowGrid)
        frame.DrawGrid();
    if (settings.ShowAxes) {
        frame.DrawAxes();
        frame.WriteLabels();
    }
    return frame.DivisionUnits();
}

} // namespace kelvane
