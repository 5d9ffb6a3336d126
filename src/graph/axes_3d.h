#pragma once

#include "graph/axes.h"
#include "graph/projection.h"

namespace kelvane {

// Clears the surface and draws the coordinate frame of a 3D sheet as MakeProjection lays it out:
//
//   axes     from the least to the greatest value of the drawn range (and through the crossing), as
//            far as the surface shows them, with their letter at the positive end
//   numbers  true world values at clean divisions, the same steps on all axes whose units are
//            similar in length; at the crossing a single 0, or its three coordinates
//   grid     on the ground, z = 0, through the divisions of x and y over the drawn range
//
// An axis that points at the viewer gets its letter beside the crossing and no numbers; a number
// without room is left out; a ground seen nearly edge-on has no grid. Updates PixPerStep; where
// that fails or the projection is unusable only the clearing is done. Returns the distance of the
// divisions of x in world units, 0 where there are none.
double InitAxis3D(Surface& surface, ViewState& view, const AxisSettings& settings,
                  const AxisModel& model, const Matrix3& matrix, Rgb sheet);

} // namespace kelvane
