#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

// A second, independent definition of the formula notation to compare the program with: from the
// text to a syntax tree, from the tree to the outcome. It shares no code with the engine but the
// elementary functions and is built the other way round: a parser decides once what ends where, and
// the two widths of numbers are C++'s own float and double.

namespace kelvane::reference {

struct Term;
using Sum = std::vector<Term>; // empty: worth 0

// Something that has a value. Kind is '1' (Literal), 'x', 'y' or 'z', '(' (a group with Inner in
// it), or a function of Inner: 's' sine, 'c' cosine, 't' tangent, 'l' logarithm, 'b' absolute
// value, 'S', 'C' and 'T' the arc functions.
struct Factor {
    char Kind = '(';
    float Literal = 0;
    Sum Inner;
};

// A factor and how it joins the term before it: '*', '/', '^', or ' ' for side by side.
struct Link {
    char Join = ' ';
    Factor Right;
};

struct Term {
    char Sign = '+';
    std::vector<Link> Links;
};

// One formula, any bytes but a carriage return. Recursive: nesting costs stack.
struct Formula {
    Sum Left;
    Sum Right;
};

Formula Parse(std::string_view text);

using Point = std::array<float, 3>; // x, y, z

// Nothing when the evaluation fails.
std::optional<double> Evaluate(const Sum& side, const Point& point);

} // namespace kelvane::reference
