#pragma once

#include <QString>

namespace kelvane {

// A number as people write it: at most six significant digits, no "-0", no rounding noise.
QString ValueText(double value);

// A coordinate with the digits that steps of this size tell apart.
QString PositionText(double value, double step);

} // namespace kelvane
