#include "view3d/draw_setup.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "view3d/typed_number.h"

namespace kelvane {

namespace {

// As short as it can be read back.
std::string ResolutionText(double resolution)
{
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), resolution).ptr;
    return {digits.data(), end};
}

bool WriteStep(float& step, double resolution)
{
    const auto written = StepFromResolution(resolution);
    if (!written || *written == 0)
        return false;
    step = *written;
    return true;
}

} // namespace

DrawDraft DraftOf(const DrawSettings& settings)
{
    return {.Resolution2D = ResolutionText(settings.Resolution),
            .Resolution3D = ResolutionText(settings.In3D.Resolution),
            .Technique = TechniqueOf(settings.In3D.SurfaceQuality),
            .Rest = settings};
}

void ApplyPreset(DrawDraft& draft, const Preset2D& preset)
{
    draft.Resolution2D = preset.Resolution;
}

void ApplyPreset(DrawDraft& draft, const Preset3D& preset)
{
    draft.Resolution3D = preset.Resolution;
    draft.Rest.DrawWidth = preset.DrawWidth;
    draft.Rest.In3D.Fill = preset.Fill;
}

void ApplyScheme(DrawDraft& draft, std::string_view name)
{
    for (const ColorScheme& scheme : kColorSchemes) {
        if (scheme.Name != name)
            continue;
        draft.Rest.In3D.GradientFrom = scheme.From;
        draft.Rest.In3D.GradientTo = scheme.To;
    }
}

int SchemeOf(Rgb from, Rgb to)
{
    const auto* const found =
        std::find_if(kColorSchemes.begin(), kColorSchemes.end(), [&](const ColorScheme& scheme) {
            return scheme.From == from && scheme.To == to;
        });
    return found == kColorSchemes.end() ? -1 : static_cast<int>(found - kColorSchemes.begin());
}

void ChooseStyle3D(DrawDraft& draft, PointStyle style)
{
    Draw3DSettings& in3D = draft.Rest.In3D;
    in3D.Style = style;
    in3D.VerticalLines = in3D.HorizontalLines = style == PointStyle::Line;
}

bool MayChooseLines(const DrawDraft& draft)
{
    return draft.Rest.In3D.Style == PointStyle::Line;
}

bool MayChooseTechnique(const DrawDraft& draft)
{
    return draft.Rest.In3D.Fill;
}

bool FillWantsAdvice(const DrawDraft& draft)
{
    return draft.Rest.In3D.Fill && draft.Rest.DrawWidth == 1;
}

DrawSetupResult AcceptDraft(DrawSettings& settings, const DrawShared& shared,
                            const DrawDraft& draft, HighResolution consent)
{
    const auto r2 = ReadTyped(draft.Resolution2D);
    const auto r3 = ReadTyped(draft.Resolution3D);
    if (!r2)
        return {DrawSetupEnd::Invalid2D};
    if (!r3)
        return {DrawSetupEnd::Invalid3D};
    if (consent == HighResolution::AskFirst && (*r2 > kHighResolution2D || *r3 > kHighResolution3D))
        return {DrawSetupEnd::AskFirst};
    if (!WriteStep(shared.Step2D, *r2))
        return {DrawSetupEnd::Invalid2D};
    if (!WriteStep(shared.Step3D, *r3))
        return {DrawSetupEnd::Invalid3D};
    DrawSettings accepted = draft.Rest;
    Draw3DSettings& in3D = accepted.In3D;
    shared.Graph2DColor =
        accepted.Coloring == Coloring2D::Solid ? accepted.SolidColor : accepted.GradientFrom;
    shared.Graph3DColor = in3D.Coloring == Coloring3D::Solid ? in3D.SolidColor : in3D.GradientFrom;
    accepted.Resolution = *r2;
    in3D.Resolution = *r3;
    in3D.SurfaceQuality = QualityOf(draft.Technique);
    accepted.SheetColor = settings.SheetColor;
    accepted.Ground = settings.Ground;
    accepted.CustomSheetColor = settings.CustomSheetColor;
    settings = accepted;
    return {DrawSetupEnd::Accepted, !settings.AutoRedraw};
}

} // namespace kelvane
