#include "engine/value_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "engine/number_text.h"

namespace kelvane {

namespace {

constexpr int kMiddleRow = kTableRows / 2;
constexpr std::string_view kDigits = "0123456789";

float AtRow(float centre, float pageStep, int row)
{
    return static_cast<float>(centre +
                              (row - kMiddleRow) * static_cast<double>(pageStep) / kTableRows);
}

bool IsFinite(const TableState& state)
{
    for (const float centre : {state.TableCentreX, state.TableCentreY}) {
        for (const int row : {0, kTableRows - 1}) {
            if (!std::isfinite(AtRow(centre, state.PageStep, row)))
                return false;
        }
    }
    return std::isfinite(state.PageStep);
}

// Takes a change over when it leaves all numbers finite.
bool Accept(TableState& state, const TableState& changed)
{
    if (!IsFinite(changed))
        return false;
    state = changed;
    return true;
}

// Text that begins with a number, in the form that from_chars reads: no blanks or plus sign before
// it, "-" for any minus sign, a point for a comma.
std::string PlainNumber(std::string_view text)
{
    constexpr std::string_view kMinus = "\u2212";
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    std::string number(text);
    if (number.starts_with(kMinus))
        number.replace(0, kMinus.size(), "-");
    else if (number.starts_with('+') && !number.starts_with("+-"))
        number.erase(0, 1);
    if (number.find('.') == std::string::npos && std::ranges::count(number, ',') == 1)
        number[number.find(',')] = '.';
    return number;
}

// Whether a number out of range is too large, not too small: by the place of its first digit that
// is not 0, with the exponent added.
bool IsHuge(std::string_view number)
{
    const std::size_t end = std::min(number.find_first_of("eE"), number.size());
    const auto first = static_cast<long long>(number.find_first_of("123456789"));
    const auto point = static_cast<long long>(std::min(number.find('.'), end));
    if (end == number.size())
        return first < point;
    std::string_view exponent = number.substr(end + 1);
    const bool negative = exponent.starts_with('-');
    exponent.remove_prefix(exponent.starts_with('+') ? 1 : 0);
    long long power = 0;
    const auto [stop, error] =
        std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
    if (error == std::errc::result_out_of_range)
        return !negative;
    return point - first + power > 0;
}

// The number that the text begins with; infinity beyond the range of doubles.
double ReadNumber(std::string_view text)
{
    const std::string plain = PlainNumber(text);
    const std::string_view number = plain;
    const std::size_t digits = number.starts_with('-') ? 1 : 0;
    // Neither "inf" nor a second sign is a number here.
    if (number.find_first_of(kDigits, digits) > number.find_first_not_of('.', digits))
        return 0;
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error == std::errc::result_out_of_range)
        return IsHuge({number.data(), end}) ? std::numeric_limits<double>::infinity() : 0;
    return value;
}

} // namespace

TableRows FillTable(const TableState& state, const Equation& equation, const PointRule& rule)
{
    const bool is3D = rule.Variable == Dependent::Z;
    EvalState eval{.EvalX = state.TableCentreX, .EvalY = is3D ? state.TableCentreY : 0};
    BeginPoints(eval, equation, rule);
    TableRows rows;
    for (int i = 0; i < kTableRows; ++i) {
        TableRow& row = rows[static_cast<std::size_t>(i)];
        eval.EvalX = AtRow(state.TableCentreX, state.PageStep, i);
        if (is3D)
            eval.EvalY = AtRow(state.TableCentreY, state.PageStep, i);
        row.HasValue = EvaluatePoint(eval, equation, rule);
        row.X = eval.EvalX;
        row.Y = eval.EvalY;
        row.Z = eval.EvalZ;
    }
    return rows;
}

bool TurnPage(TableState& state, PageTurn turn, PageAxis axis)
{
    TableState changed = state;
    float& centre = axis == PageAxis::X ? changed.TableCentreX : changed.TableCentreY;
    centre += turn == PageTurn::Next ? state.PageStep : -state.PageStep;
    return Accept(state, changed);
}

bool SetStep(TableState& state, std::string_view text)
{
    TableState changed = state;
    changed.PageStep = static_cast<float>(ReadNumber(text) * kTableRows);
    return Accept(state, changed);
}

std::string TableText(const TableRows& rows, Dependent variable, char separator)
{
    const bool is3D = variable == Dependent::Z;
    std::string text = std::string("x") + separator + "y";
    if (is3D)
        text += std::string{separator, 'z'};
    text += '\n';
    for (const TableRow& row : rows) {
        text += ShortestText(row.X) + separator;
        if (is3D)
            text += ShortestText(row.Y) + separator;
        if (row.HasValue)
            text += ShortestText(is3D ? row.Z : row.Y);
        text += '\n';
    }
    return text;
}

} // namespace kelvane
