#include "graph/color.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace kelvane {

namespace {

constexpr std::array<Rgb, 16> kPalette{{{0, 0, 0},
                                        {0, 0, 128},
                                        {0, 128, 0},
                                        {0, 128, 128},
                                        {128, 0, 0},
                                        {128, 0, 128},
                                        {128, 128, 0},
                                        {192, 192, 192},
                                        {128, 128, 128},
                                        {0, 0, 255},
                                        {0, 255, 0},
                                        {0, 255, 255},
                                        {255, 0, 0},
                                        {255, 0, 255},
                                        {255, 255, 0},
                                        {255, 255, 255}}};

// The range over which the gradient runs; 0 where there is none.
float GradientRange(const DrawSettings& settings, const ViewState& view)
{
    const float along =
        settings.GradientAlong == GradientAxis::X ? view.XMax - view.XMin : view.YMax - view.YMin;
    return along != 0 ? along : view.ZMax - view.ZMin;
}

std::uint8_t Channel(float start, float step, float distance)
{
    const float value = std::fabs(start + step * distance);
    return static_cast<std::uint8_t>(std::nearbyint(std::min(value, 255.0F)));
}

} // namespace

std::string ColorHex(Rgb color)
{
    const unsigned bgr = (unsigned{color.B} << 16) | (unsigned{color.G} << 8) | color.R;
    std::array<char, 8> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), bgr, 16).ptr;
    std::string text(digits.data(), end);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    return std::string(6 - text.size(), '0') + text;
}

int HexPair(std::string_view digits)
{
    int value = -1;
    const char* const end = digits.data() + digits.size();
    if (digits.size() != 2 || digits[0] == '-' ||
        std::from_chars(digits.data(), end, value, 16).ptr != end)
        return -1;
    return value;
}

Rgb PaletteColor(int number)
{
    return kPalette[static_cast<std::size_t>(number)];
}

void PrepareEquationColor(ColorState& colors, const DrawSettings& settings, const ViewState& view)
{
    const bool gradual = settings.Coloring == Coloring2D::Gradual;
    colors.Graph2DColor = gradual ? settings.GradientFrom : settings.SolidColor;
    colors.Graph3DColor = settings.GradientTo;
    if (settings.Coloring == Coloring2D::Random) {
        if (colors.ColorIndex >= 14)
            colors.ColorIndex = 1;
        colors.Graph2DColor = PaletteColor(colors.ColorIndex * 9 % 14);
        ++colors.ColorIndex;
    }
    colors.StartColor = colors.Graph2DColor;
    const float range = GradientRange(settings, view);
    const auto step = [&](std::uint8_t from, std::uint8_t to) {
        return gradual && range != 0 ? static_cast<float>(to - from) / range : 0;
    };
    colors.GradientStepR = step(colors.Graph2DColor.R, colors.Graph3DColor.R);
    colors.GradientStepG = step(colors.Graph2DColor.G, colors.Graph3DColor.G);
    colors.GradientStepB = step(colors.Graph2DColor.B, colors.Graph3DColor.B);
}

Rgb GradientColor(const ColorState& colors, float distance)
{
    return {Channel(colors.StartColor.R, colors.GradientStepR, distance),
            Channel(colors.StartColor.G, colors.GradientStepG, distance),
            Channel(colors.StartColor.B, colors.GradientStepB, distance)};
}

} // namespace kelvane
