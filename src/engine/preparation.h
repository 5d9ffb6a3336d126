#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/equations.h"
#include "engine/faults.h"

// Formula preparation: plain text of the pages -> lines -> powers bracketed -> slots.
//
//     "y = 2x^2"  ->  "y=2x^2"  ->  "y=2(x^2)"  ->  Y = 2 ( X ^ 2 )
//
// Notation. Case never matters. Sin, Cos, Tan and Log are known by their first letter and take
// three characters, Abs by its first two and takes three, Asin, Acos and Atan by their first two
// and take four; the characters skipped are not looked at. e is 2.718282 and p is pi, 3.141592.
// Blanks are dropped. Any other character opens a number slot, or continues the one that is open.

namespace kelvane {

inline constexpr int kMaxPages = 102;

// The plain text of the editor's pages, as the formula preparation reads it.
struct SheetText {
    // Lines end with a carriage return (character 13); powers stand as "^(" ... ")". UTF-8.
    std::array<std::string, kMaxPages> PagePlain;
    // Lines that an editor page holds, at least 1; a page must not have more. Line i (from 0) of
    // page p is equation p * (LinesPerPage + 1) + i + 1.
    int LinesPerPage = 1;
};

// Fills the table, which must be empty, from the pages up to the first empty one. Returns the first
// fault: TooManyEquations (a line beyond number 500 that is not empty) or TooLong; what the table
// then holds is incomplete and must be cleared.
std::optional<EquationFault> PrepareEquations(EquationTable& table, const SheetText& sheet);

// The first step of it alone: the lines of all pages, blanks dropped, each into the Text of its
// equation.
std::optional<EquationFault> SplitLines(EquationTable& table, const SheetText& sheet);

// The line without blanks and tabs.
std::string DropBlanks(std::string_view line);

// Puts brackets around every power and its base, so that the evaluator, which works strictly from
// left to right, binds powers first. From left to right, at each "^":
//  - the base is the variable or constant letter, the run of digits, or the bracketed group just
//    before it; a group takes the run of digits and letters in front of it along (Sin(x)^2);
//  - the exponent is the variable or constant letter, the run of digits, or the bracketed group
//    just after it; or a function's name with its argument, itself one of these (e^Sinx).
// A "^" without such a base or exponent is left as it is. The decimal point is not part of a run.
std::string BracketPowers(std::string line);

// Appends the line's slots. Stops and returns false when there are more than kMaxSlots.
bool Tokenize(std::vector<Slot>& slots, std::string_view line);

} // namespace kelvane
