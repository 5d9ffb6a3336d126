#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "view3d/view_matrix.h"

// The orientation of the drawing as two angles, in degrees as they are typed, and the mathematics
// of the dials on which they can be set. Angles grow counterclockwise, 0 points to the right.

namespace kelvane {

enum class Dimensions : std::uint8_t { Two, Three };

// Converts between degrees and radians wherever an angle is typed or shown. A single, so a right
// angle leaves a residue of some 4e-8 in a cosine.
inline constexpr float kPiSingle = 3.1415927F;

// The angle that a text of degrees says, in radians; fractions are welcome. Nothing for text that
// is no number, and when the conversion overflows.
std::optional<double> RadiansOf(std::string_view degrees);

// True for text that may still become a number by typing on: empty, "-", "1e".
bool IsBeginningOfNumber(std::string_view text);

enum class Turn : std::uint8_t { AboutZ, AboutY };

// Sets the matrix to Ry(b) Rz(a), the rotation by a about Z followed by the one by b about Y. In
// two dimensions only m0, m1, m3 and m4, the turn of the plane, are written; the others keep what
// they hold. Both texts are read first in either case. Gives the angle that cannot be read, with
// the matrix unchanged; nothing when all went well.
std::optional<Turn> Rotate(Matrix3& matrix, std::string_view aboutZ, std::string_view aboutY,
                           Dimensions dimensions);

// A point on the screen in pixels, y downwards.
struct DialPoint {
    double X = 0;
    double Y = 0;
};

// The square around a dial's circle, on the screen. All four sides belong to it.
struct DialFace {
    double Left = 0;
    double Top = 0;
    double Size = 0;

    double Radius() const { return Size / 2; }
    DialPoint Center() const { return {Left + Radius(), Top + Radius()}; }
    bool Contains(DialPoint point) const;
};

// The direction from the dial's centre to the pointer, in radians from 0 to 2 kPiSingle. Straight
// up and down count as a slope of 32767, so they are a hair off a right angle. At the centre
// itself: 0.
double PointerAngle(const DialFace& face, DialPoint pointer);

// Where a needle at this angle meets the rim.
DialPoint NeedleEnd(const DialFace& face, double radians);

// An angle of a dial (0 to 2 kPiSingle) in whole degrees, a half to the even neighbour: "360" just
// below the direction of 0.
std::string DegreesText(double radians);

} // namespace kelvane
