#include "view3d/rotation.h"

#include <array>
#include <charconv>
#include <cmath>

#include "view3d/typed_number.h"

namespace kelvane {

std::optional<double> RadiansOf(std::string_view degrees)
{
    const auto number = ReadTyped(degrees);
    if (!number)
        return std::nullopt;
    const double radians = *number * kPiSingle / 180;
    return std::isfinite(radians) ? std::optional(radians) : std::nullopt;
}

bool IsBeginningOfNumber(std::string_view text)
{
    return ReadTyped(std::string(text) + '1').has_value();
}

std::optional<Turn> Rotate(Matrix3& matrix, std::string_view aboutZ, std::string_view aboutY,
                           Dimensions dimensions)
{
    const auto a = RadiansOf(aboutZ);
    if (!a)
        return Turn::AboutZ;
    const auto b = RadiansOf(aboutY);
    if (!b)
        return Turn::AboutY;
    const auto set = [&](std::size_t entry, double value) {
        matrix[entry] = static_cast<float>(value);
    };
    const double cosA = std::cos(*a);
    const double sinA = std::sin(*a);
    set(3, sinA);
    set(4, cosA);
    if (dimensions == Dimensions::Two) {
        set(0, cosA);
        set(1, -sinA);
        return std::nullopt;
    }
    const double cosB = std::cos(*b);
    const double sinB = std::sin(*b);
    set(0, cosA * cosB);
    set(1, -sinA * cosB);
    set(2, sinB);
    set(5, 0);
    set(6, -cosA * sinB);
    set(7, sinA * sinB);
    set(8, cosB);
    return std::nullopt;
}

bool DialFace::Contains(DialPoint point) const
{
    return point.X >= Left && point.X <= Left + Size && point.Y >= Top && point.Y <= Top + Size;
}

double PointerAngle(const DialFace& face, DialPoint pointer)
{
    constexpr double kSteep = 32767;
    const double dx = pointer.X - face.Center().X;
    const double dy = face.Center().Y - pointer.Y;
    if (dx == 0 && dy == 0)
        return 0;
    const double theta = std::atan(dx == 0 ? std::copysign(kSteep, dy) : dy / dx);
    if (dx < 0)
        return theta + kPiSingle;
    return dy < 0 ? theta + 2 * static_cast<double>(kPiSingle) : theta;
}

DialPoint NeedleEnd(const DialFace& face, double radians)
{
    return {face.Center().X + face.Radius() * std::cos(radians),
            face.Center().Y - face.Radius() * std::sin(radians)};
}

std::string DegreesText(double radians)
{
    // Rounds to even, the mode of rounding that programs start with.
    const double degrees = std::nearbyint(radians * 180 / kPiSingle);
    std::array<char, 32> text;
    const auto [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), static_cast<long long>(degrees));
    return {text.data(), end};
}

} // namespace kelvane
