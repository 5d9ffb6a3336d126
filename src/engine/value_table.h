#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "engine/point_evaluation.h"

// A value table: the values of one equation at five evenly spaced points, and turning its pages. On
// a 2D sheet a row is x and y; on a 3D sheet it is x, y and z, and x and y run side by side, each
// around its own centre.
//
// A table depends on nothing but its state, the equation and the rule: whatever was shown before,
// the same table has the same numbers.

namespace kelvane {

inline constexpr int kTableRows = 5;

// The place of the table. Every x and y of its rows is a finite single; the functions below see to
// that.
struct TableState {
    float TableCentreX = 0; // x of the middle row
    float TableCentreY = 0; // y of the middle row, 3D only
    float PageStep = 5;     // five times the step between rows, so that pages adjoin
};

struct TableRow {
    float X = 0;
    float Y = 0;
    float Z = 0;           // 3D only
    bool HasValue = false; // without one, Y (Z on a 3D sheet) is what the evaluation left
};

using TableRows = std::array<TableRow, kTableRows>;

// The rows. Row i, from 0, stands at x = TableCentreX + (i - 2) PageStep / 5; where the rule is for
// z also at y = TableCentreY + (i - 2) PageStep / 5. The direction test of Advanced mode runs once,
// at the centre.
TableRows FillTable(const TableState& state, const Equation& equation, const PointRule& rule);

// The variable along which pages move, and which way.
enum class PageAxis : std::uint8_t { X, Y };
enum class PageTurn : std::uint8_t { Next, Previous };

// Adds PageStep to the centre, or subtracts it. False, and nothing changed, where the numbers of
// the rows would leave the range of singles.
bool TurnPage(TableState& state, PageTurn turn, PageAxis axis);

// Makes PageStep five times the number that the text begins with: a decimal number with point, or
// with one comma and no point; sign and exponent allowed, blanks before it skipped. Text without a
// number reads as 0. False, and nothing changed, where PageStep or a row would leave the range of
// singles.
bool SetStep(TableState& state, std::string_view text);

// The table as lines of text that end with a line feed: the header "x", "y" (and "z"), then the
// rows with their shortest decimal texts. The last field of a row without a value is empty.
std::string TableText(const TableRows& rows, Dependent variable, char separator);

} // namespace kelvane
