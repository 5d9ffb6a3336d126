#pragma once

#include <sstream>
#include <string>

#include "engine/evaluate.h"
#include "engine/number_text.h"
#include "engine/preparation.h"

namespace kelvane {

// A sheet of one page whose lines are separated by "\r".
inline SheetText OnePage(const std::string& lines, int linesPerPage = 600)
{
    SheetText sheet;
    sheet.PagePlain[0] = lines;
    sheet.LinesPerPage = linesPerPage;
    return sheet;
}

// One line, prepared.
inline Equation Prepared(const std::string& line)
{
    EquationTable table;
    PrepareEquations(table, OnePage(line));
    return table.At(1);
}

// The slots as text, "Y = 2 ( X ^ 2 )"; a slot that reads as the end is "_".
inline std::string SlotsText(const Equation& equation)
{
    std::ostringstream text;
    for (const Slot& slot : equation.Slots) {
        const bool number = slot.Tok == Token::Blank;
        const std::string value = slot.Num == 0 ? "_" : ShortestText(slot.Num);
        text << (text.tellp() > 0 ? " " : "")
             << (number ? value : std::string(TokenText(slot.Tok)));
    }
    return text.str();
}

} // namespace kelvane
