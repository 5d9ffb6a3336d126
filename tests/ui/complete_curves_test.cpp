#include <gtest/gtest.h>

#include "ui/curve_cases.h"
#include "ui/curve_picture.h"

namespace kelvane {
namespace {

constexpr double kGood = 0.995;
constexpr double kPatience = 20; // seconds; sanitizers and debug builds take their time
constexpr std::int64_t kFewPixels = kCurvePictureWidth * kCurvePictureHeight / 200;

// What a list of pixels would tell at a glance.
void ExpectShown(const CurveCase& test, CalcMode mode, const CurveTruth& truth)
{
    const CurvePicture picture = DrawCurve(test, mode, kPatience);
    const TruthScore score = ScoreAgainst(truth, picture.Ink);
    const std::string about = test.Equation + (mode == CalcMode::Simple ? " (simple)" : "") +
                              " of x from " + std::to_string(test.View.XLow) + ", " +
                              std::to_string(score.TruthPixels) + " pixels, drawn " +
                              std::to_string(score.DrawnPixels);
    EXPECT_EQ(picture.Trouble, "") << about;
    EXPECT_GE(score.Found, kGood) << "parts missing: " << about;
    EXPECT_GE(score.Right, kGood) << "parts invented: " << about;
    EXPECT_EQ(score.TruthPixels > 0, score.DrawnPixels > 0) << about;
    EXPECT_LE(picture.UnresolvedPixels, kFewPixels) << "unresolved: " << about;
}

void ExpectShown(const CurveCases& tests)
{
    for (const CurveCase& test : tests) {
        CurveTruth truth(WindowOf(test));
        test.Mark(truth);
        ExpectShown(test, CalcMode::Advanced, truth);
        if (test.Equation.rfind("y=", 0) == 0 && test.Equation.find('y', 1) == std::string::npos)
            ExpectShown(test, CalcMode::Simple, truth);
    }
}

TEST(CompleteCurves, GraphIsJoinedOverItsPolesOrBroken)
{
    ExpectShown(KnownGraphs());
}

TEST(CompleteCurves, ImplicitCurveIsIncompleteOrInvented)
{
    ExpectShown(KnownImplicit());
}

} // namespace
} // namespace kelvane
