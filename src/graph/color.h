#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "graph/view.h"
#include "view3d/draw_settings.h"

namespace kelvane {

// The colour that plotting draws with. Graph2DColor is set for every equation, and for every point
// while a gradient is on.
struct ColorState {
    Rgb Graph2DColor;
    Rgb Graph3DColor; // the gradient's end colour on a 2D sheet
    Rgb StartColor;   // the equation's own colour, from which its gradient is measured

    // Counts the equations drawn in palette colours, 1 to 14; the draw driver starts it at 1.
    int ColorIndex = 1;

    // Change of each channel per unit of the gradient variable.
    float GradientStepR = 0;
    float GradientStepG = 0;
    float GradientStepB = 0;

    // The value of the gradient variable at which the colour was last recomputed, rounded.
    long GradientLast = 0;
};

// A colour as hexadecimal digits, padded to six: blue, green and red are the digit pairs 1-2, 3-4,
// 5-6.
std::string ColorHex(Rgb color);

// Two hexadecimal digits ("0" to "9", "A" to "F", either case) as 0 to 255; -1 for anything else.
int HexPair(std::string_view digits);

// Colour number 0 to 15 of the standard 16-colour palette.
Rgb PaletteColor(int number);

// The colours of the next equation: the settings' own, or the next of the palette (9, 4, 13, 8, 3,
// 12, 7, 2, 11, 6, 1, 10, 5 and again 9); and the gradient's steps from the view's range.
void PrepareEquationColor(ColorState& colors, const DrawSettings& settings, const ViewState& view);

// The gradient's colour where its variable lies at the given distance from the range's start; every
// channel rounded half to even and kept within 0 to 255.
Rgb GradientColor(const ColorState& colors, float distance);

} // namespace kelvane
