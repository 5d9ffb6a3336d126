#include "view3d/axis_setup.h"

#include <algorithm>
#include <cmath>

#include "view3d/typed_number.h"

namespace kelvane {

namespace {

constexpr double kTenths = 10; // U of a pixel

double UsableSpan(float halfSpan)
{
    return halfSpan >= 1 ? std::min(halfSpan, kMaxHalfSpan) : 1;
}

bool IsLength(float value)
{
    return std::isfinite(value) && value > 0;
}

// The units of a draft, each above 0 and in a ratio to X that a single can hold.
std::optional<AxisProblem> ReadUnits(std::array<float, 3>& units, const AxisDraft& draft)
{
    for (std::size_t i = 0; i < units.size(); ++i) {
        const TypedSingle unit = ReadSingle(draft.Units[i]);
        if (unit.Fault)
            return AxisProblem{AxisField::Unit, i, *unit.Fault};
        if (!IsLength(unit.Value / static_cast<float>(kTenths)))
            return AxisProblem{AxisField::Unit, i, AxisFault::NoLength};
        if (!IsLength((i == 0 ? unit.Value : units[0]) / unit.Value))
            return AxisProblem{AxisField::Unit, i, AxisFault::RatioTooFar};
        units[i] = unit.Value;
    }
    return std::nullopt;
}

} // namespace

float UnitFor(float halfSpan, int divisions)
{
    return static_cast<float>(UsableSpan(halfSpan) * kTenths / divisions);
}

int DivisionsFor(float halfSpan, float unit)
{
    const double divisions = std::nearbyint(UsableSpan(halfSpan) * kTenths / unit); // half to even
    return static_cast<int>(std::clamp(divisions, 1.0, static_cast<double>(kMaxDivisions)));
}

UnitRange UnitsFor(float halfSpan)
{
    const double longest = UsableSpan(halfSpan) * kTenths;
    return {static_cast<int>(std::ceil(longest / kMaxDivisions)), static_cast<int>(longest)};
}

AxisSetup DefaultAxisSetup(float halfSpan)
{
    AxisSetup setup;
    FollowHalfSpan(setup, halfSpan);
    return setup;
}

void FollowHalfSpan(AxisSetup& setup, float halfSpan)
{
    for (std::size_t i = 0; i < setup.Units.size(); ++i)
        setup.Units[i] = UnitFor(halfSpan, setup.Divisions[i]);
}

AxisScaling ScalingOf(const AxisSetup& setup)
{
    const auto [x, y, z] = setup.Units;
    return {setup.Center, x / static_cast<float>(kTenths), x / y, x / z};
}

TypedSingle ReadSingle(const std::string& text)
{
    const auto number = ReadTyped(text);
    if (!number)
        return {0, AxisFault::NotANumber};
    constexpr double kRoundsToInfinity = 0x1.ffffffp127; // half a unit above the largest single
    if (std::abs(*number) >= kRoundsToInfinity)
        return {0, AxisFault::BeyondSingle};
    return {static_cast<float>(*number) + 0.0F, std::nullopt}; // of both zeros the plain one
}

std::optional<AxisProblem> AcceptDraft(AxisSetup& setup, const AxisDraft& draft)
{
    AxisSetup accepted;
    for (std::size_t i = 0; i < accepted.Center.size(); ++i) {
        const TypedSingle coordinate = ReadSingle(draft.Center[i]);
        if (coordinate.Fault)
            return AxisProblem{AxisField::Center, i, *coordinate.Fault};
        accepted.Center[i] = coordinate.Value;
        accepted.Divisions[i] = std::clamp(draft.Divisions[i], 1, kMaxDivisions);
    }
    if (const auto problem = ReadUnits(accepted.Units, draft))
        return problem;
    accepted.UnitThickness = std::clamp(draft.UnitThickness, 1, kMaxUnitThickness);
    accepted.SquareWorkSheet = draft.SquareWorkSheet;
    accepted.HideAxis = draft.HideAxis;
    setup = accepted;
    return std::nullopt;
}

std::string DescribeProblem(const AxisProblem& problem)
{
    std::string subject(1, "XYZ"[problem.Axis]);
    if (problem.Field == AxisField::Unit)
        subject += " Axis Unit";
    switch (problem.Fault) {
    case AxisFault::NotANumber:
        return subject + " needs a number.";
    case AxisFault::BeyondSingle:
        return subject + " is too large.";
    case AxisFault::NoLength:
        return subject + " must be above 0.";
    case AxisFault::RatioTooFar:
        return subject + " is too far from X Axis Unit.";
    }
    return subject;
}

} // namespace kelvane
