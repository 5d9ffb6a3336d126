#include "view3d/draw_setup.h"

#include <gtest/gtest.h>

namespace kelvane {
namespace {

// A draft and all that OK can write.
struct Form {
    DrawSettings Settings;
    float Step2D = 7;
    float Step3D = 8;
    Rgb Graph2DColor{7, 7, 7};
    Rgb Graph3DColor{8, 8, 8};
    DrawDraft Draft = DraftOf(Settings);

    DrawSetupEnd Ok(HighResolution consent = HighResolution::AskFirst)
    {
        const DrawShared shared{Step2D, Step3D, Graph2DColor, Graph3DColor};
        return AcceptDraft(Settings, shared, Draft, consent).End;
    }
};

TEST(DrawSetup, HighResolutionPassesUnaskedOrUsualOneIsAsked)
{
    struct Row {
        const char* R2;
        const char* R3;
        bool Asks;
    };
    constexpr Row kRows[] = {{"10000", "100", false}, {"10001", "20", true},
                             {"100", "100.5", true},  {"100", "101", true},
                             {"10000.5", "20", true}, {"1e4", "1e2", false},
                             {"20000", "0", true}};
    for (const Row& row : kRows) {
        Form form;
        form.Draft.Resolution2D = row.R2;
        form.Draft.Resolution3D = row.R3;
        EXPECT_EQ(form.Ok() == DrawSetupEnd::AskFirst, row.Asks) << row.R2 << " " << row.R3;
        EXPECT_EQ(form.Step2D == 7, row.Asks) << row.R2 << ": written before the answer";
    }
    Form agreed;
    agreed.Draft.Resolution2D = "16384";
    agreed.Draft.Resolution3D = "128";
    EXPECT_EQ(agreed.Ok(HighResolution::Agreed), DrawSetupEnd::Accepted);
    EXPECT_EQ(agreed.Step2D, 0.00006103515625F);
    EXPECT_EQ(agreed.Step3D, 0.0078125F);
    EXPECT_EQ(agreed.Settings.Resolution, 16384);
    EXPECT_EQ(agreed.Settings.In3D.Resolution, 128);
}

TEST(DrawSetup, BadResolutionIsAcceptedOrWritesMoreThanItShould)
{
    const std::string digits(200, '9');
    struct Row {
        std::string Text;
        bool Readable; // so that only its own step fails
    };
    const Row rows[] = {{"", false},    {"abc", false}, {"1e999", false}, {"nan", false},
                        {"12x", false}, {"-5", true},   {"0", true},      {digits, true}};
    for (const Row& row : rows) {
        Form first;
        first.Draft.Rest.AutoRedraw = true;
        first.Draft.Resolution2D = row.Text;
        EXPECT_EQ(first.Ok(HighResolution::Agreed), DrawSetupEnd::Invalid2D) << row.Text;
        EXPECT_EQ(first.Step2D, 7) << row.Text;
        Form second;
        second.Draft.Rest.AutoRedraw = true;
        second.Draft.Resolution2D = "4";
        second.Draft.Resolution3D = row.Text;
        EXPECT_EQ(second.Ok(HighResolution::Agreed), DrawSetupEnd::Invalid3D) << row.Text;
        EXPECT_EQ(second.Step2D, row.Readable ? 0.25F : 7) << row.Text;
        for (const Form* form : {&first, &second}) {
            EXPECT_EQ(form->Step3D, 8) << row.Text;
            EXPECT_EQ(form->Graph2DColor, (Rgb{7, 7, 7})) << row.Text;
            EXPECT_FALSE(form->Settings.AutoRedraw) << row.Text;
            EXPECT_EQ(form->Settings.Resolution, 100) << row.Text;
        }
    }
}

TEST(DrawSetup, OkForgetsOrMixesUpAValue)
{
    Form form;
    form.Settings.SheetColor = form.Settings.CustomSheetColor = {9, 9, 9};
    form.Settings.Ground = SheetGround::Custom;
    DrawSettings& draft = form.Draft.Rest;
    draft.SolidColor = {1, 0, 0};
    draft.GradientFrom = {2, 0, 0};
    draft.In3D.SolidColor = {3, 0, 0};
    draft.In3D.GradientFrom = {4, 0, 0};
    draft.DrawWidth = 10;
    form.Draft.Technique = SurfaceTechnique::SuperSolid;
    EXPECT_EQ(form.Ok(), DrawSetupEnd::Accepted);
    EXPECT_EQ(form.Step2D, 0.01F);
    EXPECT_EQ(form.Step3D, 0.05F);
    EXPECT_EQ(form.Settings.In3D.SurfaceQuality, -0.001);
    EXPECT_EQ(form.Settings.DrawWidth, 10);
    EXPECT_EQ(form.Graph2DColor.R, 1);
    EXPECT_EQ(form.Graph3DColor.R, 3);
    EXPECT_EQ(form.Settings.SheetColor, (Rgb{9, 9, 9})) << "this belongs to another dialog";
    EXPECT_EQ(form.Settings.CustomSheetColor, (Rgb{9, 9, 9}));
    EXPECT_EQ(form.Settings.Ground, SheetGround::Custom);
    for (const auto coloring : {Coloring2D::Gradual, Coloring2D::Random}) {
        draft.Coloring = coloring;
        draft.In3D.Coloring = Coloring3D::Gradual;
        form.Ok();
        EXPECT_EQ(form.Graph2DColor.R, 2);
        EXPECT_EQ(form.Graph3DColor.R, 4);
        form.Graph2DColor = {};
    }
    EXPECT_EQ(QualityOf(SurfaceTechnique::WireFrame), -0.5);
    EXPECT_EQ(DrawSettings().In3D.SurfaceQuality, QualityOf(SurfaceTechnique::Solid));
    EXPECT_EQ(DraftOf(form.Settings).Technique, SurfaceTechnique::SuperSolid);
}

TEST(DrawSetup, AutoRedrawWorksTheOtherWayRound)
{
    Form form;
    const DrawShared shared{form.Step2D, form.Step3D, form.Graph2DColor, form.Graph3DColor};
    const auto redraws = [&](bool ticked) {
        form.Draft.Rest.AutoRedraw = ticked;
        return AcceptDraft(form.Settings, shared, form.Draft, HighResolution::AskFirst).RedrawDue;
    };
    EXPECT_FALSE(redraws(true));
    EXPECT_TRUE(redraws(false));
}

TEST(DrawSetup, PresetOrSchemeSetsOtherValues)
{
    DrawDraft draft = DraftOf({});
    const auto expect3D = [&](int preset, const char* resolution, int width, bool fill) {
        ApplyPreset(draft, kPresets3D[static_cast<std::size_t>(preset)]);
        EXPECT_EQ(draft.Resolution3D, resolution);
        EXPECT_EQ(draft.Rest.DrawWidth, width) << resolution;
        EXPECT_EQ(draft.Rest.In3D.Fill, fill) << resolution;
        EXPECT_FALSE(FillWantsAdvice(draft)) << resolution;
    };
    expect3D(0, "2", 1, false);
    expect3D(1, "3", 3, true);
    expect3D(2, "20", 2, false);
    ApplyPreset(draft, kPresets2D[0]);
    EXPECT_EQ(draft.Resolution2D, "5");

    const Rgb green{0, 255, 0};
    const Rgb red{255, 0, 0};
    const Rgb blue{0, 0, 255};
    const ColorScheme schemes[] = {{"Black-Red", kBlack, red},
                                   {"Default", kBlack, kBlack},
                                   {"Black-Green", kBlack, green},
                                   {"Black-Blue", kBlack, blue},
                                   {"Yellow-Blue", {255, 255, 0}, {128, 0, 255}},
                                   {"Red-Green", red, green},
                                   {"Blue-Red", blue, red}};
    for (const auto& [name, from, to] : schemes) {
        ApplyScheme(draft, name);
        for (const char* unknown : {"", "black-red", "Red", "Black-Red "})
            ApplyScheme(draft, unknown);
        EXPECT_EQ(draft.Rest.In3D.GradientFrom, from) << name;
        EXPECT_EQ(draft.Rest.In3D.GradientTo, to) << name;
        EXPECT_EQ(kColorSchemes.at(static_cast<std::size_t>(SchemeOf(from, to))).Name, name);
    }
    EXPECT_EQ(SchemeOf(red, red), -1);
}

TEST(DrawSetup, RuleBetweenControlsIsBroken)
{
    DrawDraft draft = DraftOf({});
    ChooseStyle3D(draft, PointStyle::Pixel);
    EXPECT_FALSE(MayChooseLines(draft));
    EXPECT_FALSE(draft.Rest.In3D.VerticalLines || draft.Rest.In3D.HorizontalLines);
    ChooseStyle3D(draft, PointStyle::Line);
    EXPECT_TRUE(MayChooseLines(draft));
    EXPECT_TRUE(draft.Rest.In3D.VerticalLines && draft.Rest.In3D.HorizontalLines);

    EXPECT_FALSE(MayChooseTechnique(draft) || FillWantsAdvice(draft));
    draft.Rest.In3D.Fill = true;
    EXPECT_TRUE(MayChooseTechnique(draft) && FillWantsAdvice(draft));
    draft.Rest.DrawWidth = 2;
    EXPECT_FALSE(FillWantsAdvice(draft));
}

TEST(DrawSettings, InkCannotBeReadOnItsGround)
{
    for (const Rgb light : {kWhite, Rgb{255, 255, 0}, Rgb{0, 255, 0}, Rgb{255, 0, 0}})
        EXPECT_EQ(InkOn(light), kBlack) << int{light.R} << "," << int{light.G};
    for (const Rgb dark : {kBlack, Rgb{0, 0, 255}, Rgb{128, 0, 0}, Rgb{100, 100, 100}})
        EXPECT_EQ(InkOn(dark), kWhite) << int{dark.R} << "," << int{dark.B};
    EXPECT_EQ(SheetColorOf(SheetGround::White, kBlack), kWhite);
    EXPECT_EQ(SheetColorOf(SheetGround::Custom, kBlack), kBlack);
}

} // namespace
} // namespace kelvane
