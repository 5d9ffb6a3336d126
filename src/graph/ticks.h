#pragma once

#include <functional>
#include <string>
#include <vector>

#include "graph/view.h"

// Where an axis is divided and what its numbers say: a pure calculation, range in, divisions out.

namespace kelvane {

// One axis on the surface. Divisions are measured from the axes' crossing.
struct AxisScale {
    double Origin = 0;        // pixel of the axes' crossing along the axis
    double PixelsPerUnit = 1; // signed: negative where the axis runs against the pixels (y)
    double ValueAtOrigin = 0; // world value at the crossing
    double Extent = 0;        // pixels 0 to Extent are visible
};

struct Division {
    int Pixel = 0;    // the pixel column or row of the tick
    double Value = 0; // the true world value there
    bool AtOrigin = false;
    std::string Label; // UTF-8
};

// The smallest of 1, 2 or 5 times a power of ten that is not below the minimum. Needs minimum > 0.
double NiceStep(double minimum);

// A number as it stands beside an axis: rounded to a small fraction of the step, at most six
// significant digits (more only where neighbours would read the same), a true minus sign, powers of
// ten raised, no "-0". Needs step > 0.
std::string AxisNumber(double value, double step);

// The visible divisions of the axis, in the order of their values, at clean steps from the
// crossing: the closest that are at least minimumPixels apart and whose labels fit, where
// needed(label) tells the pixels that a label takes along the axis. Empty where the scale has no
// clean division at all (not finite, or too coarse for doubles to tell neighbours apart).
std::vector<Division> ChooseDivisions(const AxisScale& scale, double minimumPixels,
                                      const std::function<double(const std::string&)>& needed);

} // namespace kelvane
