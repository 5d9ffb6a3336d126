#include "ui/value_text.h"

#include <algorithm>
#include <cmath>

namespace kelvane {

namespace {

// "-0" and "-0.00" without their sign.
QString WithoutNegativeZero(const QString& text)
{
    const bool isZero = text.startsWith('-') && text.toDouble() == 0;
    return isZero ? text.mid(1) : text;
}

} // namespace

QString ValueText(double value)
{
    constexpr int kDigits = 6;
    constexpr double kWritten = 1e9; // whole numbers below are written out
    if (std::fabs(value) < kWritten && value == std::round(value))
        return WithoutNegativeZero(QString::number(value, 'f', 0));
    return WithoutNegativeZero(QString::number(value, 'g', kDigits));
}

QString PositionText(double value, double step)
{
    constexpr double kLongest = 1e6;
    const double size = std::fabs(step);
    if (!(size > 1e-6) || !(std::fabs(value) < kLongest))
        return ValueText(value);
    const int decimals = std::clamp(static_cast<int>(std::ceil(-std::log10(size))), 0, 6);
    return WithoutNegativeZero(QString::number(value, 'f', decimals));
}

} // namespace kelvane
