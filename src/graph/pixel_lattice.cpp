#include "graph/pixel_lattice.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kelvane {

namespace {

// So far beyond the surface's edge, in pixels, a curve is still followed, for the pen has a width.
constexpr double kMargin = 2;

Interval Intersection(Interval a, Interval b)
{
    return {std::max(a.Low, b.Low), std::min(a.High, b.High)};
}

// What of the plotted plane (after YRatio) lies on the surface or near, in sample units: along s
// and along t YRatio.
struct SeenPart {
    Interval S;
    Interval T;
};

SeenPart SeenOn(const ViewState& view, const Matrix3& matrix, PixelSize surface)
{
    const double scale = view.PixPerStep;
    const Interval across{(-0.5 - kMargin - view.OriginX) / scale,
                          (surface.Width - 0.5 + kMargin - view.OriginX) / scale};
    const Interval up{(view.OriginY - surface.Height + 0.5 - kMargin) / scale,
                      (view.OriginY + 0.5 + kMargin) / scale};
    if (IsIdentity2D(matrix))
        return {across, up};
    // The corners carried back through the transform.
    const double m0 = matrix[0];
    const double m1 = matrix[1];
    const double m3 = matrix[3];
    const double m4 = matrix[4];
    const double determinant = m0 * m4 - m1 * m3;
    constexpr double kAll = HUGE_VAL;
    SeenPart seen{{kAll, -kAll}, {kAll, -kAll}};
    for (const double x : {across.Low, across.High}) {
        for (const double y : {up.Low, up.High}) {
            const double s = (m4 * x - m1 * y) / determinant;
            const double t = (m0 * y - m3 * x) / determinant;
            if (!std::isfinite(s) || !std::isfinite(t)) // all points may be on the surface
                return {{-kAll, kAll}, {-kAll, kAll}};
            seen.S = {std::min(seen.S.Low, s), std::max(seen.S.High, s)};
            seen.T = {std::min(seen.T.Low, t), std::max(seen.T.High, t)};
        }
    }
    return seen;
}

// One direction of a lattice: whole steps that cover an interval, with a border at the phase, in
// steps.
struct Steps {
    int Count = 0;
    double Start = 0;
    double Unit = 1;
};

Steps Cover(Interval wanted, double stepsPerUnit, double phase)
{
    const double length = wanted.High - wanted.Low;
    if (!(length >= 0) || !std::isfinite(length) || !(stepsPerUnit > 0))
        return {};
    const double scale = std::min(stepsPerUnit, (kMaxLattice - 2) / length);
    const double first = std::floor(wanted.Low * scale - phase) + phase;
    const double count = std::ceil(wanted.High * scale - first);
    return {std::max(static_cast<int>(count), 1), first / scale, 1 / scale};
}

double Fraction(double value)
{
    return value - std::floor(value);
}

} // namespace

PixelLattice MakeLattice(const ViewState& view, const Matrix3& matrix, PixelSize surface)
{
    const double stretch = view.YRatio == 0 ? 1 : view.YRatio;
    const SeenPart seen = SeenOn(view, matrix, surface);
    const Interval rangeS{view.XMin * view.ZoomFactor, view.XMax * view.ZoomFactor};
    const Interval rangeT{view.YMin * view.ZoomFactor, view.YMax * view.ZoomFactor};
    Interval seenT{seen.T.Low / stretch, seen.T.High / stretch};
    if (stretch < 0)
        std::swap(seenT.Low, seenT.High);

    const auto length = [](double a, double b) {
        const double both = std::hypot(a, b);
        return both > 0 ? both : 1;
    };
    const double scale = view.PixPerStep;
    const double perS = scale * length(matrix[0], matrix[3]);
    const double perT = scale * std::fabs(stretch) * length(matrix[1], matrix[4]);
    const double up = stretch < 0 ? 0.5 - view.OriginY : view.OriginY - 0.5;
    const Steps across = Cover(Intersection(rangeS, seen.S), perS, Fraction(-0.5 - view.OriginX));
    const Steps upwards = Cover(Intersection(rangeT, seenT), perT, Fraction(up));

    PixelLattice lattice;
    if (across.Count > 0 && upwards.Count > 0) {
        lattice.Width = across.Count;
        lattice.Height = upwards.Count;
    }
    lattice.StartS = across.Start;
    lattice.StartT = upwards.Start;
    lattice.UnitS = across.Unit;
    lattice.UnitT = upwards.Unit;
    lattice.CenterX = view.CenterX;
    lattice.CenterY = view.CenterY;
    return lattice;
}

} // namespace kelvane
