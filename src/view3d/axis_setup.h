#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

// Where the axes cross and how long their units are. A unit is set as its length U, in tenths of a
// pixel at zoom factor 1, or as the number of divisions on half of the drawing area; the half span
// of the drawing area, in pixels, ties the two together: U = 10 half span / divisions.
//
// Half spans below 1, as of an area without room, and NaN count as 1; those above kMaxHalfSpan as
// kMaxHalfSpan.

namespace kelvane {

inline constexpr int kMaxDivisions = 100; // from 1
inline constexpr int kUsualDivisions = 10;
inline constexpr int kMaxUnitThickness = 20; // from 1
inline constexpr int kUsualUnitThickness = 6;
inline constexpr float kMaxHalfSpan = 100000;

// The accepted values; written by the axis setup dialog. The first ones are the defaults on a
// drawing area of half span 500. Arrays hold X, Y, Z.
struct AxisSetup {
    // Divisions on the visible half of each axis, 1 to kMaxDivisions.
    std::array<int, 3> Divisions{kUsualDivisions, kUsualDivisions, kUsualDivisions};

    // U of each axis: whole when chosen itself, any number when it follows from the divisions.
    // Above 0.
    std::array<float, 3> Units{500, 500, 500};

    // How far the marks at each unit stand out.
    int UnitThickness = kUsualUnitThickness; // 1 to kMaxUnitThickness

    bool SquareWorkSheet = false; // the sheet as high as wide
    bool HideAxis = false;

    // The world point in which the axes cross. Finite.
    std::array<float, 3> Center{};
};

// U for these divisions. Needs divisions > 0.
float UnitFor(float halfSpan, int divisions);

// The divisions for this U, rounded half to even; 1 to kMaxDivisions. Needs unit > 0.
int DivisionsFor(float halfSpan, float unit);

// The whole values of U that have from 1 to kMaxDivisions divisions.
struct UnitRange {
    int Low = 1;
    int High = 1;
};
UnitRange UnitsFor(float halfSpan);

// The default values: 10 divisions, thickness 6, centre (0,0,0), no ticks.
AxisSetup DefaultAxisSetup(float halfSpan);

// After the drawing area has been sized: the divisions stay and the units follow.
void FollowHalfSpan(AxisSetup& setup, float halfSpan);

// What the view takes over from the setup. The view's CenterY is minus the Y of the centre.
struct AxisScaling {
    std::array<float, 3> Center{};
    float UnitPixels = 50; // U of X / 10
    float YRatio = 1;      // U of X / U of Y
    float ZRatio = 1;      // U of X / U of Z
};
AxisScaling ScalingOf(const AxisSetup& setup);

// What the user has set up but not accepted yet: settings as above, numbers as texts.
struct AxisDraft {
    std::array<std::string, 3> Center;
    std::array<std::string, 3> Units;
    std::array<int, 3> Divisions{kUsualDivisions, kUsualDivisions, kUsualDivisions};
    int UnitThickness = kUsualUnitThickness;
    bool SquareWorkSheet = false;
    bool HideAxis = false;
};

enum class AxisFault : std::uint8_t {
    NotANumber,
    BeyondSingle, // too large for single precision
    NoLength,     // a unit of 0 or less, or too small for single precision
    RatioTooFar   // a unit too long or too short beside that of X
};

enum class AxisField : std::uint8_t { Center, Unit };

// What is wrong with which text.
struct AxisProblem {
    AxisField Field = AxisField::Center;
    std::size_t Axis = 0;
    AxisFault Fault = AxisFault::NotANumber;
};

// A centre coordinate as typed, as a single.
struct TypedSingle {
    float Value = 0; // 0 unless the text is good
    std::optional<AxisFault> Fault;
};
TypedSingle ReadSingle(const std::string& text);

// Takes over the whole draft, or nothing where a text is wrong: the first one, centre before units.
// Divisions and thickness are brought into their ranges.
std::optional<AxisProblem> AcceptDraft(AxisSetup& setup, const AxisDraft& draft);

// The problem in words.
std::string DescribeProblem(const AxisProblem& problem);

} // namespace kelvane
