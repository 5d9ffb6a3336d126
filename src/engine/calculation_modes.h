#pragma once

#include <cstdint>

// How equations are turned into points: the sheet's kind and the calculation modes. Written by the
// calculation-mode dialog, the sheet's 2D and 3D keys and the command line; read by the checks and
// the draw driver.

namespace kelvane {

enum class CalcMode : std::uint8_t {
    Simple,  // y = right side, evaluated directly
    Advanced // any equation, solved numerically
};

// A tick box with a third, greyed state. Only On counts as ticked.
enum class TickState : std::uint8_t { Off, On, Unavailable };

struct CalculationModes {
    bool Mode3D = false;    // True on a 3D sheet
    bool AltFamily = false; // choose the second family of plotting routines
    CalcMode CalcMode2D = CalcMode::Simple;
    CalcMode CalcMode3D = CalcMode::Simple;
    TickState DoubleDraw = TickState::Unavailable; // Advanced 2D: draw both y values
    TickState MultiDraw = TickState::Unavailable;  // Advanced 2D: a second pass, x and y exchanged
};

} // namespace kelvane
