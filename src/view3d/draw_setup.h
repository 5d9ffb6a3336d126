#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "view3d/draw_settings.h"

// What the draw setup does, without its window: presets, colour schemes, rules between controls,
// and OK.

namespace kelvane {

// The draw setup's controls as the user left them. Rest.Resolution and Rest.In3D.Resolution mean
// nothing here, the texts are in their place; the sheet's colours belong to the colour setup.
struct DrawDraft {
    std::string Resolution2D;
    std::string Resolution3D;
    SurfaceTechnique Technique = SurfaceTechnique::Solid;
    DrawSettings Rest;
};

DrawDraft DraftOf(const DrawSettings& settings);

// The widths to choose from are 1 to this.
inline constexpr int kListedDrawWidths = 10;

// ---- presets

struct Preset2D {
    std::string_view Name;
    std::string_view Resolution;
};
inline constexpr std::array<Preset2D, 3> kPresets2D{
    {{"Wire Frame", "5"}, {"Render Fast", "20"}, {"Render Nice", "100"}}};

struct Preset3D {
    std::string_view Name;
    std::string_view Resolution;
    int DrawWidth;
    bool Fill;
};
inline constexpr std::array<Preset3D, 3> kPresets3D{{{"Wire Frame", "2", 1, false},
                                                     {"Render Fast", "3", 3, true},
                                                     {"Render Nice", "20", 2, false}}};

void ApplyPreset(DrawDraft& draft, const Preset2D& preset);
void ApplyPreset(DrawDraft& draft, const Preset3D& preset);

// ---- colour schemes of the 3D gradient

struct ColorScheme {
    std::string_view Name;
    Rgb From;
    Rgb To;
};
inline constexpr std::array<ColorScheme, 7> kColorSchemes{{
    {"Default", kBlack, kBlack},
    {"Black-Green", kBlack, {0, 255, 0}},
    {"Black-Red", kBlack, {255, 0, 0}},
    {"Black-Blue", kBlack, {0, 0, 255}},
    {"Yellow-Blue", {255, 255, 0}, {128, 0, 255}}, // violet rather than blue
    {"Red-Green", {255, 0, 0}, {0, 255, 0}},
    {"Blue-Red", {0, 0, 255}, {255, 0, 0}},
}};

// Sets the ends of the 3D gradient; a name that is none of the schemes' changes nothing.
void ApplyScheme(DrawDraft& draft, std::string_view name);

// The position in kColorSchemes of the scheme with these ends, -1 if they are of the user's own.
int SchemeOf(Rgb from, Rgb to);

// ---- rules between controls

// Chooses how samples of 3D graphs are drawn. Lines start out in both directions; pixels have none,
// and their directions cannot be chosen.
void ChooseStyle3D(DrawDraft& draft, PointStyle style);
bool MayChooseLines(const DrawDraft& draft);

// The technique can be chosen only for filled surfaces.
bool MayChooseTechnique(const DrawDraft& draft);

// Whether "Fill", just ticked, calls for kFillAdvice: lines one pixel wide leave gaps.
bool FillWantsAdvice(const DrawDraft& draft);

inline constexpr std::string_view kFillAdviceTitle = "Solid";
inline constexpr std::string_view kFillAdvice =
    "To achieve a completely solid graph it is highly recommended to choose a Draw Width more than "
    "1. The Draw Width combo is located at the right side of this form (Draw Setup form).";

// ---- OK

// Above these, OK asks kHighResolutionQuestion.
inline constexpr double kHighResolution2D = 10000;
inline constexpr double kHighResolution3D = 100;

inline constexpr std::string_view kHighResolutionQuestion =
    "The resolution value is too high and is not recommended. Are you sure you want to continue?";
inline constexpr std::string_view kInvalidResolution = "Invalid Resolution value!";

// What OK writes beside the settings.
struct DrawShared {
    float& Step2D; // world units: 1 / resolution
    float& Step3D;
    Rgb& Graph2DColor; // in which a draw starts
    Rgb& Graph3DColor;
};

enum class HighResolution : std::uint8_t { AskFirst, Agreed };

enum class DrawSetupEnd : std::uint8_t {
    Accepted,
    AskFirst,  // nothing is written; ask, and call again with HighResolution::Agreed
    Invalid2D, // kInvalidResolution is due. What was written before the fault stays
    Invalid3D
};

struct DrawSetupResult {
    DrawSetupEnd End = DrawSetupEnd::Accepted;
    bool RedrawDue = false; // the sheet must be redrawn through InitAxis
};

// OK. In this order: reads both resolutions, asks about high ones, writes Step2D, Step3D and the
// colours, and then all settings but the sheet's colours. A resolution is invalid when it is no
// number, or when 1 / resolution is not a single above 0.
DrawSetupResult AcceptDraft(DrawSettings& settings, const DrawShared& shared,
                            const DrawDraft& draft, HighResolution consent);

} // namespace kelvane
