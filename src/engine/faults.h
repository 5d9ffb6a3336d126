#pragma once

#include <string>

// What can be wrong with an equation, as a value; and the one table of texts that says it in words.

namespace kelvane {

struct EquationTable;

enum class Fault {
    TooManyEquations,  // a line beyond equation number 500
    TooLong,           // a line with more than 2000 slots
    YOnRightSide,      // needs the Advanced 2D mode
    ZIn2D,             // needs a 3D sheet
    OperatorMisplaced, // an operator or a function directly after a function
    UnexpectedClose,   // ")" without its "("
    MissingClose,      // "(" without its ")"
    NotYEquals,        // Simple 2D draws only what begins with "y="
    NotZEquals,        // Simple 3D only what begins with "z="
    NothingTicked,     // no equation is selected
    RoutineMissing,    // this version has no routine for the chosen mode
    ZoomFactorZero,    // the unit length in pixels cannot be computed
};

struct EquationFault {
    Fault Code = Fault::NothingTicked;
    int Equation = 0; // the number of the equation at fault; 0 where none is meant
    int Slot = 0;     // OperatorMisplaced: position of the second of the two tokens
};

// A message box: its title and its text, both UTF-8, shown with an OK button only.
struct Message {
    std::string Title;
    std::string Text;
};

// The exact words for a fault. The table must still hold the equations the fault was found in:
// OperatorMisplaced quotes two of its tokens.
Message DescribeFault(const EquationFault& fault, const EquationTable& table);

} // namespace kelvane
