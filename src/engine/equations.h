#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The prepared equations: what the formula preparation writes and what the checks, the evaluator
// and the plotting read. Nothing below this table ever looks at the user's text again.

namespace kelvane {

// What one slot holds. Blank is a number slot (when its value is not 0) or the end of the equation.
enum class Token : std::uint8_t {
    Blank,
    Plus,
    Minus,
    Times,
    Divide,
    Power,
    Open,
    Close,
    Equals,
    X,
    Y,
    Z,
    Sin,
    Cos,
    Tan,
    Log, // natural logarithm
    Abs,
    Asin,
    Acos,
    Atan,
};

// The token as messages quote it: "+", "X", "S", "As", ...; "" for Blank.
std::string_view TokenText(Token token);

// True for "+", "-", "*", "/" and "^".
bool IsBinaryOperator(Token token);

// True for the eight functions, Sin to Atan.
bool IsFunction(Token token);

struct Slot {
    Token Tok = Token::Blank;
    float Num = 0; // value of a number or constant; 0 in every other slot
};

// The highest equation number, and the highest slot position within one equation.
inline constexpr int kMaxEquations = 500;
inline constexpr int kMaxSlots = 2000;

// One prepared line. Positions start at 1; every position beyond the last slot reads as the end.
// A literal number worth exactly 0 reads as the end too: evaluation and checks stop there.
struct Equation {
    std::string Text;        // the line as typed, blanks dropped and powers bracketed
    std::vector<Slot> Slots; // Slots[0] is position 1; at most kMaxSlots of them

    Token Tok(int position) const { return At(position).Tok; }
    float Num(int position) const { return At(position).Num; }
    bool AtEnd(int position) const
    {
        const Slot& slot = At(position);
        return slot.Tok == Token::Blank && slot.Num == 0;
    }

private:
    const Slot& At(int position) const
    {
        static constexpr Slot kEnd;
        const auto index = static_cast<std::size_t>(position) - 1;
        return index < Slots.size() ? Slots[index] : kEnd;
    }
};

// All prepared equations, numbers 1 to EquationCount. Valid from a preparation until Clear; it must
// be empty before a preparation, so whoever prepares also clears.
struct EquationTable {
    std::vector<Equation> Equations; // Equations[0] is number 1
    int EquationCount = 0;           // the highest number filled, 0 to kMaxEquations

    // Any number may be asked for; one that was never filled gives an empty equation.
    const Equation& At(int number) const;

    // The equation to write to; the table grows as needed. Needs 1 <= number <= kMaxEquations.
    Equation& Grow(int number);

    // Gives all memory back.
    void Clear() { *this = {}; }
};

// Which equations take part in a draw, by equation number; written by the tick boxes. Numbers
// outside 0 to 700 read as not ticked.
struct EquationTicks {
    std::array<bool, 701> EquationOn{};

    bool On(int number) const
    {
        const auto index = static_cast<std::size_t>(number);
        return index < EquationOn.size() && EquationOn[index];
    }
};

// The position just after the first "=". Without one, the position after the first slot j for which
// slots j and j + 1 both hold no token (two numbers side by side, or the end).
int EquationsStart(const Equation& equation);

} // namespace kelvane
