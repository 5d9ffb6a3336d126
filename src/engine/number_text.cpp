#include "engine/number_text.h"

#include <array>
#include <charconv>
#include <limits>

namespace kelvane {

std::string ShortestText(float value)
{
    if (value == 0)
        return "0"; // of either sign
    std::array<char, 32> text;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

std::string SignedText(int value)
{
    std::string text = std::to_string(value);
    if (value >= 0)
        text.insert(text.begin(), ' ');
    return text;
}

float LeadingNumber(std::string_view text)
{
    const std::string_view number = text.substr(0, text.find_first_not_of("0123456789."));
    float value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value,
                                              std::chars_format::fixed);
    if (error != std::errc::result_out_of_range)
        return value;
    // Out of range at either end: too large when a digit other than 0 stands before the point.
    const std::string_view whole = number.substr(0, number.find('.'));
    const bool tooLarge = whole.find_first_of("123456789") != std::string_view::npos;
    return tooLarge ? std::numeric_limits<float>::infinity() : 0;
}

} // namespace kelvane
