#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// How the three axes of 3D mode are laid out on the flat drawing area, and the picture of it in the
// dialog that chooses it.

namespace kelvane {

// Written by the 3D axis dialog, read by the 3D projection.
struct AxisModel {
    // True: the receding axis lies at the chosen angle. False: at 45 degrees, whatever the angle.
    bool RealWorldAxis = true;

    // The angle of the projection in degrees: half of the angle chosen in the dialog.
    std::int16_t Axis3DHalfAngle = 22;
};

// The angles that can be chosen, in whole degrees. Just outside of them two axes of the drawn graph
// would fall on one line.
inline constexpr int kMinAxisAngle = 2;
inline constexpr int kMaxAxisAngle = 178;
inline constexpr int kUsualAxisAngle = 45;

// The angle as typed, in whole degrees; fractions are rounded half to even. Nothing for other texts
// than numbers and for angles out of range.
std::optional<int> AngleOf(std::string_view text);

// Axis3DHalfAngle for the angle as typed: half of AngleOf, rounded half to even.
std::optional<std::int16_t> HalfAngleOf(std::string_view text);

// The lengths behind the picture, as the axis setup has them.
struct CrossScale {
    double Thickness = 0.06; // unit thickness / 100: half a mark's length, as a share of the reach
    double UnitX = 50;       // pixels; only the ratio to UnitY counts
    double UnitY = 50;
};

struct CrossPoint {
    double X = 0;
    double Y = 0; // downwards
};

enum class CrossAxis : std::uint8_t { X, Y, Z };
enum class CrossPart : std::uint8_t { PositiveHalf, NegativeHalf, Mark };

struct CrossLine {
    CrossAxis Axis = CrossAxis::X;
    CrossPart Part = CrossPart::Mark;
    CrossPoint From; // the centre, for a half axis
    CrossPoint To;
};

// The box that the picture stands in, pixels.
struct CrossBox {
    double Width = 0;
    double Height = 0;
    double Margin = 0; // kept free at each side
};

// The axis cross around the middle of the box. Each half axis is 3.1 units long and followed by its
// marks at 1, 2 and 3 units, from the centre outwards; the longer of the X and Y units is scaled so
// that its axis just reaches the margin, and Z has the unit of X.
//
// In the real world model X comes towards the viewer, to the left and down, at the angle to the
// horizontal, Y to the right and down at half the angle; in the simple model X at 45 degrees, and Y
// is level. Z points up. The angle is drawn in full here; only the projection halves it.
std::vector<CrossLine> AxisCross(bool realWorldAxis, int angle, const CrossScale& scale,
                                 const CrossBox& box);

} // namespace kelvane
