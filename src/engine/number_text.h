#pragma once

#include <string>
#include <string_view>

// Numbers as text and back, independent of the locale.

namespace kelvane {

// The shortest decimal text that reads back as the same 32-bit float: "0.5", "16777216", "1e-07".
// Both zeros give "0".
std::string ShortestText(float value);

// A whole number as it is written in messages: a leading blank in place of the sign where the
// number is not negative, so 3 gives " 3".
std::string SignedText(int value);

// Reads the leading numeric part (digits with at most one point; no sign, no exponent) and rounds
// it to a 32-bit float. Text without one gives 0, a value beyond the float's range gives infinity.
float LeadingNumber(std::string_view text);

} // namespace kelvane
