#pragma once

#include <cstdint>
#include <optional>

#include "graph/surface.h"
#include "graph/view.h"
#include "view3d/axis_model.h"
#include "view3d/view_matrix.h"

// From the space of a 3D sheet to the surface and back. A right-handed world, z up, x towards the
// viewer and to the left. Everything is affine and parallel: equal lengths along an axis stay
// equal.
//
//   sample     (x - CenterX, y + CenterY, z - CenterZ), measured from the axes' crossing, as on a
//   2D sheet stretched  y times YRatio, z times ZRatio turned     ViewMatrix times that: (m0 x + m1
//   y + m2 z, m3 x + ..., m6 x + ...) folded     onto the sheet by the axis model, see below; in
//   the units of the axes pixel      Origin plus the folded point times PixPerStep
//
// Folding. Both models draw z upwards at its true length, and x to the lower left at the angle
// theta below the horizontal.
//
// Simple model, the cabinet drawing of the textbooks: theta = 45 degrees, y to the right at its
// true length, x at half of it (at its full length a cube looks like a long box).
//
//   right = y - x cos(theta) / 2        up = z - x sin(theta) / 2        depth = x
//
// Real world model: what an eye far away sees, so that a cube looks like a cube at every angle. The
// eye stands above the ground by the fixed angle e of isometric drawings, sin(e) = 1 / sqrt(3), and
// theta = Axis3DHalfAngle walks it around the z axis. The picture is enlarged by 1 / cos(e), which
// gives z its true length. With n = sqrt(sin(theta)^2 + cos(theta)^2 / 3):
//
//   right = (y sin(theta) sqrt(3) - x cos(theta)) / (n sqrt(2))
//   up    = z - (x sin(theta) + y cos(theta) / sqrt(3)) / (n sqrt(2))
//   depth = (x sin(theta) + y cos(theta) / sqrt(3)) / n + z / sqrt(2)
//
// This follows from the orthographic projection along azimuth a and elevation e, whose x axis is
// seen at the angle theta when tan(a) = sin(e) / tan(theta). At 30 degrees it is the isometric
// drawing; at 0 the eye looks along y, at 90 along x, both times from above; n is never 0, so any
// whole number of degrees will do.

namespace kelvane {

struct SpacePoint {
    double X = 0;
    double Y = 0;
    double Z = 0;
};

struct ProjectedPoint {
    PixelPoint Pixel;
    double Depth = 0; // pixels towards the viewer, from the crossing: of two points on one pixel
                      // the one with the larger depth hides the other
};

// How a 3D sheet lies on its surface, worked out once and good until the view changes.
struct Projection {
    SpacePoint Crossing; // world point in which the axes cross
    PixelPoint Origin;   // and its pixel

    // What a world unit of x, y and z adds to each coordinate, pixels.
    SpacePoint Right;
    SpacePoint Down;
    SpacePoint Toward; // the depth
};

// Uses PixPerStep. The matrix is kIdentity where no transform is on, which changes nothing. The
// projection may be unusable, see below, but no value of the view is refused.
Projection MakeProjection(const ViewState& view, const AxisModel& model, const Matrix3& matrix);

// Tells whether all of it is finite: only then are projected points.
bool IsUsable(const Projection& projection);

ProjectedPoint Project(const Projection& projection, SpacePoint world);

enum class SpaceAxis : std::uint8_t { X, Y, Z };

// The plane on which one world coordinate has the value.
struct SpacePlane {
    SpaceAxis Axis = SpaceAxis::Z;
    double Value = 0;
};

// The world point of the plane that is seen at the pixel; nothing where the plane is seen edge-on
// (its two axes on the surface differ in direction by less than a millionth of a turn).
std::optional<SpacePoint> UnprojectToPlane(const Projection& projection, PixelPoint pixel,
                                           SpacePlane plane);

// Sets UnitPixels so that at zoom factor 1 the box of the drawn ranges just fits the surface, with
// room for the axes' letters, and puts the crossing where that centres it. No transform takes part:
// it changes what is seen, not the scale. False, and nothing changed, where that is not possible.
bool FitSpace(ViewState& view, const AxisModel& model, PixelSize surface);

} // namespace kelvane
