#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>

#include "engine/evaluate.h"
#include "engine/number_text.h"
#include "engine/preparation.h"

namespace kelvane {

inline std::string Repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

// A sheet of one page whose lines are separated by "\r".
inline SheetText OnePage(const std::string& lines)
{
    return {.PagePlain = {lines}, .LinesPerPage = 700};
}

// One line, prepared.
inline Equation Prepared(const std::string& line)
{
    EquationTable table;
    EXPECT_FALSE(PrepareEquations(table, OnePage(line))) << testing::PrintToString(line);
    return table.At(1);
}

// The side that begins at the position; nothing when the evaluation fails.
inline std::optional<double> ValueFrom(int position, const Equation& equation, EvalState state)
{
    const double value = Evaluate(state, position, equation);
    return state.EvalError ? std::nullopt : std::optional(value);
}

// The slots as text, "Y = 2 ( X ^ 2 )"; a slot that reads as the end is "_".
inline std::string SlotsText(const Equation& equation)
{
    std::ostringstream text;
    for (const Slot& slot : equation.Slots) {
        text << (text.tellp() > 0 ? " " : "") << TokenText(slot.Tok);
        if (slot.Tok == Token::Blank)
            text << (slot.Num == 0 ? "_" : ShortestText(slot.Num));
    }
    return text.str();
}

} // namespace kelvane
