#include "graph/projection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "graph/layout.h"
#include "view3d/rotation.h"

namespace kelvane {

namespace {

constexpr double kSimpleAngle = 45;   // degrees
constexpr double kForeshortening = 2; // how much shorter x is in the simple model

// Coefficients of x, y and z in each folded coordinate.
struct Folding {
    SpacePoint Right;
    SpacePoint Up;
    SpacePoint Toward;
};

Folding SimpleFolding()
{
    const double theta = kSimpleAngle * kPiSingle / 180;
    return {{-std::cos(theta) / kForeshortening, 1, 0},
            {-std::sin(theta) / kForeshortening, 0, 1},
            {1, 0, 0}};
}

Folding RealWorldFolding(int degrees)
{
    using std::numbers::sqrt2;
    using std::numbers::sqrt3;
    const double theta = static_cast<double>(degrees) * kPiSingle / 180;
    const double n = std::hypot(std::sin(theta), std::cos(theta) / sqrt3);
    const double cosine = std::cos(theta) / n;
    const double sine = std::sin(theta) / n;
    return {{-cosine / sqrt2, sine * sqrt3 / sqrt2, 0},
            {-sine / sqrt2, -cosine / (sqrt3 * sqrt2), 1},
            {sine, cosine / sqrt3, 1 / sqrt2}};
}

// The coefficients for points not yet turned: the row times the matrix.
SpacePoint BeforeMatrix(const SpacePoint& row, const Matrix3& m)
{
    return {row.X * m[0] + row.Y * m[3] + row.Z * m[6], row.X * m[1] + row.Y * m[4] + row.Z * m[7],
            row.X * m[2] + row.Y * m[5] + row.Z * m[8]};
}

double Dot(const SpacePoint& row, const SpacePoint& point)
{
    return row.X * point.X + row.Y * point.Y + row.Z * point.Z;
}

bool IsFinite(const SpacePoint& point)
{
    return std::isfinite(point.X) && std::isfinite(point.Y) && std::isfinite(point.Z);
}

} // namespace

Projection MakeProjection(const ViewState& view, const AxisModel& model, const Matrix3& matrix)
{
    const Folding folding =
        model.RealWorldAxis ? RealWorldFolding(model.Axis3DHalfAngle) : SimpleFolding();
    const double scale = view.PixPerStep;
    const auto pixels = [&](const SpacePoint& row, double sign) -> SpacePoint {
        const SpacePoint turned = BeforeMatrix(row, matrix);
        return {sign * scale * turned.X, sign * scale * view.YRatio * turned.Y,
                sign * scale * view.ZRatio * turned.Z};
    };
    return {.Crossing = {view.CenterX, -view.CenterY, view.CenterZ},
            .Origin = {view.OriginX, view.OriginY},
            .Right = pixels(folding.Right, 1),
            .Down = pixels(folding.Up, -1),
            .Toward = pixels(folding.Toward, 1)};
}

bool IsUsable(const Projection& projection)
{
    return IsFinite(projection.Crossing) && std::isfinite(projection.Origin.X) &&
           std::isfinite(projection.Origin.Y) && IsFinite(projection.Right) &&
           IsFinite(projection.Down) && IsFinite(projection.Toward);
}

ProjectedPoint Project(const Projection& projection, SpacePoint world)
{
    const SpacePoint sample{world.X - projection.Crossing.X, world.Y - projection.Crossing.Y,
                            world.Z - projection.Crossing.Z};
    return {{projection.Origin.X + Dot(projection.Right, sample),
             projection.Origin.Y + Dot(projection.Down, sample)},
            Dot(projection.Toward, sample)};
}

std::optional<SpacePoint> UnprojectToPlane(const Projection& projection, PixelPoint pixel,
                                           SpacePlane plane)
{
    constexpr double kEdgeOn = 6e-6; // sine of the angle between the two axes
    using Coordinate = double SpacePoint::*;
    static constexpr std::array<Coordinate, 3> kCoordinates{&SpacePoint::X, &SpacePoint::Y,
                                                            &SpacePoint::Z};
    const auto fixedAxis = static_cast<std::size_t>(plane.Axis);
    const Coordinate fixed = kCoordinates[fixedAxis];
    const Coordinate u = kCoordinates[(fixedAxis + 1) % 3];
    const Coordinate v = kCoordinates[(fixedAxis + 2) % 3];
    const SpacePoint& right = projection.Right;
    const SpacePoint& down = projection.Down;

    const double determinant = right.*u * down.*v - right.*v * down.*u;
    const double lengths = std::hypot(right.*u, down.*u) * std::hypot(right.*v, down.*v);
    if (!(std::fabs(determinant) > kEdgeOn * lengths))
        return std::nullopt;
    const double away = plane.Value - projection.Crossing.*fixed;
    const double toRight = pixel.X - projection.Origin.X - right.*fixed * away;
    const double toBottom = pixel.Y - projection.Origin.Y - down.*fixed * away;
    SpacePoint world;
    world.*fixed = plane.Value;
    world.*u = projection.Crossing.*u + (toRight * down.*v - right.*v * toBottom) / determinant;
    world.*v = projection.Crossing.*v + (right.*u * toBottom - toRight * down.*u) / determinant;
    return world;
}

bool FitSpace(ViewState& view, const AxisModel& model, PixelSize surface)
{
    constexpr double kRoom = 0.86; // of the surface; letters and numbers need the rest
    ViewState unit = view;
    unit.OriginX = unit.OriginY = 0;
    unit.UnitPixels = unit.ZoomFactor = 1;
    unit.CenterX = unit.CenterY = unit.CenterZ = 0;
    if (!UpdatePixPerStep(unit))
        return false;
    const Projection projection = MakeProjection(unit, model, kIdentity);
    Box extent{0, 0, 0, 0}; // the crossing stays in sight
    for (const double x : {view.XMin, view.XMax}) {
        for (const double y : {view.YMin, view.YMax}) {
            for (const double z : {view.ZMin, view.ZMax}) {
                const PixelPoint at = Project(projection, {x, y, z}).Pixel;
                extent = {std::min(extent.Left, at.X), std::min(extent.Top, at.Y),
                          std::max(extent.Right, at.X), std::max(extent.Bottom, at.Y)};
            }
        }
    }
    const double width = extent.Right - extent.Left;
    const double height = extent.Bottom - extent.Top;
    const double scale = kRoom * std::min(surface.Width / width, surface.Height / height);
    const auto pixels = static_cast<float>(scale);
    if (!std::isfinite(pixels) || !(pixels > 0))
        return false;
    view.UnitPixels = pixels;
    view.OriginX = static_cast<float>(
        std::floor(surface.Width / 2 - scale * (extent.Left + extent.Right) / 2));
    view.OriginY = static_cast<float>(
        std::floor(surface.Height / 2 - scale * (extent.Top + extent.Bottom) / 2));
    return true;
}

} // namespace kelvane
