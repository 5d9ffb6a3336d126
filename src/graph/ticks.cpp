#include "graph/ticks.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace kelvane {

namespace {

constexpr std::string_view kMinus = "\u2212";

// Whole divisions from the crossing up to here are told apart by doubles.
constexpr double kMaxDivisions = 1e15;

// "1.5e+06" as "1.5×10⁶", a power of ten alone as "10⁶".
std::string WithRaisedPower(std::string_view mantissa, int exponent)
{
    static constexpr std::array<std::string_view, 10> kRaised{"⁰", "¹", "²", "³", "⁴",
                                                              "⁵", "⁶", "⁷", "⁸", "⁹"};
    std::string text = mantissa == "1" ? "10" : std::string(mantissa) + "×10";
    if (exponent < 0)
        text += "⁻";
    for (const char digit : std::to_string(std::abs(exponent)))
        text += kRaised[static_cast<std::size_t>(digit - '0')];
    return text;
}

// Significant digits at which the value differs from its neighbours a step away; at least six.
int DigitsToTellApart(double value, double step)
{
    const double digits = std::floor(std::log10(value)) - std::floor(std::log10(step)) + 1;
    return static_cast<int>(std::clamp(digits, 6.0, 15.0));
}

std::vector<Division> DivisionsAt(const AxisScale& scale, double step)
{
    std::vector<Division> divisions;
    const double spacing = step * scale.PixelsPerUnit;
    const double end1 = -scale.Origin / spacing;
    const double end2 = (scale.Extent - 1 - scale.Origin) / spacing;
    const double first = std::ceil(std::min(end1, end2));
    const double last = std::floor(std::max(end1, end2));
    const bool sound = std::max(std::fabs(first), std::fabs(last)) < kMaxDivisions;
    if (!sound || last - first > scale.Extent)
        return divisions;
    for (auto i = static_cast<std::int64_t>(first); i <= static_cast<std::int64_t>(last); ++i) {
        const auto k = static_cast<double>(i);
        const double value = scale.ValueAtOrigin + k * step;
        const auto pixel = static_cast<int>(std::lround(scale.Origin + k * spacing));
        divisions.push_back({pixel, value, i == 0, AxisNumber(value, step)});
    }
    return divisions;
}

bool LabelsFit(const std::vector<Division>& divisions, double spacing,
               const std::function<double(const std::string&)>& needed)
{
    return std::all_of(divisions.begin(), divisions.end(),
                       [&](const Division& d) { return needed(d.Label) <= spacing; });
}

bool NeighboursReadTheSame(const std::vector<Division>& divisions)
{
    const auto same = [](const Division& a, const Division& b) { return a.Label == b.Label; };
    return std::adjacent_find(divisions.begin(), divisions.end(), same) != divisions.end();
}

} // namespace

double NiceStep(double minimum)
{
    // A hair below the minimum counts as the minimum: 0.1 + 0.2 must not miss 0.3's step.
    const double enough = minimum * (1 - 1e-9);
    const double exponent = std::floor(std::log10(enough));
    for (const double factor : {1.0, 2.0, 5.0}) {
        const double step = factor * std::pow(10, exponent);
        if (step >= enough)
            return step;
    }
    return std::pow(10, exponent + 1);
}

std::string AxisNumber(double value, double step)
{
    const double size = std::fabs(value);
    if (!(size > step * 1e-6))
        return "0";
    std::array<char, 40> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), size,
                                   std::chars_format::general, DigitsToTellApart(size, step));
    const std::string_view number(digits.data(), static_cast<std::size_t>(end.ptr - digits.data()));
    const std::string sign(value < 0 ? kMinus : "");
    const auto mark = number.find('e');
    if (mark == std::string_view::npos)
        return sign + std::string(number);
    const bool minus = number[mark + 1] == '-';
    int exponent = 0;
    std::from_chars(number.data() + mark + 2, end.ptr, exponent);
    return sign + WithRaisedPower(number.substr(0, mark), minus ? -exponent : exponent);
}

std::vector<Division> ChooseDivisions(const AxisScale& scale, double minimumPixels,
                                      const std::function<double(const std::string&)>& needed)
{
    constexpr int kMaxTries = 12; // steps grow at least twofold: labels that never fit are given up
    const double pixelsPerUnit = std::fabs(scale.PixelsPerUnit);
    double minimum = minimumPixels / pixelsPerUnit;
    for (int i = 0; i < kMaxTries && std::isnormal(minimum); ++i) {
        const double step = NiceStep(minimum);
        std::vector<Division> divisions = DivisionsAt(scale, step);
        if (LabelsFit(divisions, step * pixelsPerUnit, needed)) {
            if (NeighboursReadTheSame(divisions))
                divisions.clear();
            return divisions;
        }
        minimum = step * 1.5;
    }
    return {};
}

} // namespace kelvane
