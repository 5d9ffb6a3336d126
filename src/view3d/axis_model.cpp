#include "view3d/axis_model.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "view3d/typed_number.h"

namespace kelvane {

namespace {

// The picture's own constants, which are coarser than those of the projection.
constexpr double kPi = 3.14;
constexpr double kTwoPi = 6.28;
constexpr double kAxisLength = 3.1; // units
constexpr int kMarks = 3;           // on each half axis
constexpr double kSimpleAngle = 45;

double RoundHalfEven(double value)
{
    return std::nearbyint(value);
}

struct Direction {
    CrossAxis Axis;
    CrossPoint Unit; // of length 1
};

std::array<Direction, 3> Directions(bool realWorldAxis, int angle)
{
    const Direction up{CrossAxis::Z, {0, -1}};
    if (!realWorldAxis) {
        const double slope = std::sin(kSimpleAngle * kPi / 180);
        return {{{CrossAxis::X, {-slope, slope}}, {CrossAxis::Y, {1, 0}}, up}};
    }
    const double half = angle / 2.0;
    const double whole = half * kTwoPi / 180;
    const double shallow = half * kPi / 180;
    return {{{CrossAxis::X, {-std::cos(whole), std::sin(whole)}},
             {CrossAxis::Y, {std::cos(shallow), std::sin(shallow)}},
             up}};
}

// A unit relative to the longest, in (0, 1].
double Share(double unit, double longest)
{
    return std::isfinite(longest) && unit > 0 ? unit / longest : 1;
}

CrossPoint Along(CrossPoint from, CrossPoint direction, double distance)
{
    return {from.X + direction.X * distance, from.Y + direction.Y * distance};
}

} // namespace

std::optional<int> AngleOf(std::string_view text)
{
    const auto number = ReadTyped(text);
    if (!number)
        return std::nullopt;
    const double whole = RoundHalfEven(*number);
    if (whole < kMinAxisAngle || whole > kMaxAxisAngle)
        return std::nullopt;
    return static_cast<int>(whole);
}

std::optional<std::int16_t> HalfAngleOf(std::string_view text)
{
    const auto angle = AngleOf(text);
    if (!angle)
        return std::nullopt;
    return static_cast<std::int16_t>(RoundHalfEven(*angle / 2.0));
}

std::vector<CrossLine> AxisCross(bool realWorldAxis, int angle, const CrossScale& scale,
                                 const CrossBox& box)
{
    const CrossPoint center{box.Width / 2, box.Height / 2};
    const double reach = std::max(std::min(center.X, center.Y) - box.Margin, 0.0);
    const double longest = std::max(scale.UnitX, scale.UnitY);
    const double markHalf = scale.Thickness * reach;
    std::vector<CrossLine> lines;
    for (const auto& [axis, direction] : Directions(realWorldAxis, angle)) {
        const double own = axis == CrossAxis::Y ? scale.UnitY : scale.UnitX;
        const double unit = reach / kAxisLength * Share(own, longest);
        const CrossPoint across{-direction.Y, direction.X};
        for (const CrossPart half : {CrossPart::PositiveHalf, CrossPart::NegativeHalf}) {
            const double step = half == CrossPart::PositiveHalf ? unit : -unit;
            lines.push_back({axis, half, center, Along(center, direction, step * kAxisLength)});
            for (int i = 1; i <= kMarks; ++i) {
                const CrossPoint at = Along(center, direction, step * i);
                lines.push_back({axis, CrossPart::Mark, Along(at, across, -markHalf),
                                 Along(at, across, markHalf)});
            }
        }
    }
    return lines;
}

} // namespace kelvane
