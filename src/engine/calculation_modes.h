#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

// How equations are turned into points: the sheet's kind and the calculation modes. Written by the
// calculation-mode dialog, the sheet's 2D and 3D keys and the command line; read by the checks and
// the draw driver. What belongs to choosing them stands here too: the rules between them, the words
// that explain them, and the scores that compare them.

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

// Chooses the mode of 2D sheets. Simple makes both additions Unavailable; Advanced turns those that
// were Unavailable Off and keeps the others.
void Choose2D(CalculationModes& modes, CalcMode mode);

// Simple for 2D and 3D, both additions Unavailable. Mode3D and AltFamily stay: they are no choice
// of the dialog.
void RestoreDefaults(CalculationModes& modes);

// Takes over what the dialog chooses: all but Mode3D and AltFamily.
void TakeChoices(CalculationModes& modes, const CalculationModes& chosen);

// The choices that have a description; the numbers are those of ModeDescription.
enum class ModeChoice : std::uint8_t {
    Simple2D = 1,
    Advanced2D,
    DoubleDraw,
    MultiDraw,
    Simple3D,
    Advanced3D
};

// What a choice (1 to 6) does, in words; any other index gives the invitation to click on one. "&"
// underlines the character after it.
std::string_view ModeDescription(int index);

// The same as it is read on the screen, without the underline marks.
std::string ShownDescription(int index);

// Which mode the summary chart judges.
enum class ChartChoice : std::uint8_t { Mode2D, Mode3D };

// The captions of the chart's bars, in the order of the scores.
inline constexpr std::array<std::string_view, 4> kScoreNames = {"Quality", "Completeness",
                                                                "Draw Speed", "Limitless"};

// The scores s1 to s4, 0 to 100 each.
using ModeScores = std::array<int, kScoreNames.size()>;
ModeScores ScoresOf(const CalculationModes& modes, ChartChoice chart);

// The length of a bar: 750 units at a score of 100.
inline constexpr double kLongestBar = 750;
constexpr double BarLength(int score)
{
    return score * kLongestBar / 100;
}

} // namespace kelvane
