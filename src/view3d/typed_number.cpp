#include "view3d/typed_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace kelvane {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kMinus = "\u2212";

} // namespace

std::optional<double> ReadTyped(std::string_view text)
{
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return std::nullopt;
    std::string number(text.substr(first, text.find_last_not_of(kBlanks) + 1 - first));
    for (auto at = number.find(kMinus); at != std::string::npos; at = number.find(kMinus))
        number.replace(at, kMinus.size(), "-");
    if (number.find('.') == std::string::npos)
        std::replace(number.begin(), number.end(), ',', '.');
    if (number.front() == '+' && number.find('-') != 1)
        number.erase(0, 1);
    double value = 0;
    const char* end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, value);
    const bool whole = error == std::errc() && stop == end && std::isfinite(value);
    return whole ? std::optional(value) : std::nullopt;
}

} // namespace kelvane
