#include "engine/faults.h"

#include "engine/equations.h"
#include "engine/number_text.h"

namespace kelvane {

namespace {

constexpr const char* kError = "Error";
constexpr const char* kApplication = "Kelvane";

// {N} becomes the number of the equation, with its leading blank; {Q} the two tokens that meet.
struct FaultText {
    Fault Code;
    const char* Title;
    const char* Text;
};

constexpr FaultText kFaultTexts[] = {
    {Fault::TooManyEquations, kError,
     "Error in Equation{N}: only equations 1 to 500 can be prepared."},
    {Fault::TooLong, kError,
     "Error in Equation{N}: it is too long. An equation may hold up to 2000 numbers, variables, "
     "functions, operators and brackets, in up to 16384 characters."},
    {Fault::YOnRightSide, kError,
     "Error in Equation{N}: Variable 'Y' found on right side of '=' sign, therefore Advanced "
     "calculations are required. Please enable Advaced 2D calculation using 'Complexity' button "
     "from 'Draw Menu'!"},
    {Fault::ZIn2D, kError,
     "Error in Equations number{N}: Z variable is not allowed in 2D mode! Switch to 3D Graph (from "
     "Sheet Menu) and try again."},
    {Fault::OperatorMisplaced, kError,
     "Error in Equations number{N}: '{Q}' is not valid! An operator or number between them is "
     "missing!"},
    {Fault::UnexpectedClose, kError,
     "Error in Equations number{N}: unexpected close parenthesis ')'"},
    {Fault::MissingClose, kError, "Error in Equation{N}: missing right parenthesis ')'"},
    {Fault::NotYEquals, kError,
     "Equation{N} does not begin with 'y=' and therefore requires Advanced calculations. Please "
     "enable Advaced 2D calculation using 'Complexity' button from 'Draw Menu'!"},
    {Fault::NotZEquals, kError,
     "Equation number{N} does not begin with 'z=' and therefore requires Advanced calculations. "
     "Please enable Advaced 3D calculation using 'Complexity' button from 'Draw Menu'!"},
    {Fault::NothingTicked, kApplication, "    No equation is selected!"},
    {Fault::RoutineMissing, kApplication,
     "This version of Kelvane cannot draw in the chosen calculation mode. Please choose another "
     "one using 'Complexity' button from 'Draw Menu'!"},
    {Fault::ZoomFactorZero, kError,
     "The zoom factor and the unit length must be numbers other than 0."},
};

void ReplaceMark(std::string& text, std::string_view mark, const std::string& by)
{
    if (const auto at = text.find(mark); at != std::string::npos)
        text.replace(at, mark.size(), by);
}

std::string QuotedTokens(const EquationFault& fault, const EquationTable& table)
{
    const Equation& equation = table.At(fault.Equation);
    return std::string(TokenText(equation.Tok(fault.Slot - 1))) +
           std::string(TokenText(equation.Tok(fault.Slot)));
}

} // namespace

Message DescribeFault(const EquationFault& fault, const EquationTable& table)
{
    Message message;
    for (const FaultText& row : kFaultTexts) {
        if (row.Code == fault.Code)
            message = {row.Title, row.Text};
    }
    ReplaceMark(message.Text, "{N}", SignedText(fault.Equation));
    ReplaceMark(message.Text, "{Q}", QuotedTokens(fault, table));
    return message;
}

} // namespace kelvane
