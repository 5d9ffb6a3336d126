#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "ui/curve_cases.h"
#include "ui/curve_picture.h"

namespace kelvane {
namespace {

constexpr double kGood = 0.995;
constexpr double kPatience = 20; // seconds; sanitizers and debug builds take their time
constexpr std::int64_t kFewPixels = kCurvePictureWidth * kCurvePictureHeight / 200;

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t kStride = 4; // of the long tables every fourth case
#else
constexpr std::size_t kStride = 1;
#endif

void ExpectShown(const CurveCase& test, CalcMode mode, const CurveTruth& truth)
{
    const CurvePicture picture = DrawCurve(test, mode, kPatience);
    const TruthScore score = ScoreAgainst(truth, picture.Ink);
    const std::string about = test.Equation + (mode == CalcMode::Simple ? " (simple)" : "") +
                              " for x from " + std::to_string(test.View.XLow) + ": " +
                              std::to_string(score.TruthPixels) + " pixels, drawn " +
                              std::to_string(score.DrawnPixels);
    EXPECT_EQ(picture.Trouble, "") << about;
    EXPECT_GE(score.Found, kGood) << "missing: " << about;
    EXPECT_GE(score.Right, kGood) << "invented: " << about;
    EXPECT_EQ(score.TruthPixels > 0, score.DrawnPixels > 0) << about;
    EXPECT_LE(picture.UnresolvedPixels, kFewPixels) << "unresolved: " << about;
}

void ExpectShown(const CurveCases& tests, std::size_t stride = kStride)
{
    for (std::size_t i = 0; i < tests.size(); i += stride) {
        CurveTruth truth(WindowOf(tests[i]));
        tests[i].Mark(truth);
        ExpectShown(tests[i], CalcMode::Advanced, truth);
        if (IsGraph(tests[i]))
            ExpectShown(tests[i], CalcMode::Simple, truth);
    }
}

TEST(CompleteCurves, KnownGraphIsJoinedOverItsPolesOrBroken)
{
    ExpectShown(KnownGraphs(), 1);
}

TEST(CompleteCurves, KnownImplicitCurveIsIncompleteOrInvented)
{
    ExpectShown(KnownImplicit(), 1);
}

TEST(CompleteCurves, SpikeIsLostOrJumpIsJoined)
{
    ExpectShown(SpikesAndJumps());
}

TEST(CompleteCurves, TouchIsLostOrNearTouchDrawn)
{
    ExpectShown(Touches());
}

TEST(CompleteCurves, AreaIsNotFilled)
{
    ExpectShown(AreasAndIdentities());
}

TEST(CompleteCurves, PoleIsTakenForAZeroOrEdgeIsFrayed)
{
    ExpectShown(PolesAndEdges());
}

TEST(CompleteCurves, KnotOrCuspIsBlurred)
{
    ExpectShown(KnotsAndCusps());
}

TEST(CompleteCurves, BranchOfManyIsLost)
{
    ExpectShown(Networks());
}

TEST(CompleteCurves, DeepViewIsCoarse)
{
    ExpectShown(DeepViews());
}

// The judge is judged: what it finds by samples against the same curve in closed form.
TEST(CurveTruth, SamplesAndClosedFormsDisagree)
{
    using Marker = std::function<void(CurveTruth&)>;
    const auto circle = [](double r) -> Marker {
        return [r](CurveTruth& truth) {
            truth.Path([r](double t) { return r * std::cos(t); },
                       [r](double t) { return r * std::sin(t); }, 0, 2 * std::numbers::pi);
        };
    };
    const auto point = [](CurveTruth& truth) { truth.Point(0.3, 0.2); };
    const auto lines = [](CurveTruth& truth) {
        truth.Levels([](double x, double y) { return (y - x) / std::numbers::pi; });
    };
    const auto graph = [](CurveTruth& truth) {
        truth.GraphAlongY([](double y) { return y * y * y; });
    };
    const struct {
        const char* Fault;
        PlaneFunction F;
        Marker Truth;
    } cases[] = {
        {"change of sign", [](double x, double y) { return x * x + y * y - 4; }, circle(2)},
        {"touch", [](double x, double y) { return std::pow(x * x + y * y - 4, 2); }, circle(2)},
        {"edge of the domain", [](double x, double y) { return std::sqrt(4 - x * x - y * y); },
         circle(2)},
        {"pole", [](double x, double y) { return std::tan(y) - std::tan(x); }, lines},
        {"nothing", [](double x, double y) { return std::pow(x * x + y * y - 4, 2) + 1e-3; },
         [](CurveTruth&) {}},
        {"jump", [](double x, double) { return std::copysign(1.0, x - 0.013); },
         [](CurveTruth&) {}},
        {"point", [](double x, double y) { return std::hypot(x - 0.3, y - 0.2); }, point},
        {"turned", [](double x, double y) { return std::cbrt(x) - y; }, graph},
    };
    const TruthWindow window{250, 200, -2.5, 0.02, 2, -0.02};
    for (const auto& test : cases) {
        CurveTruth samples(window);
        CurveTruth closed(window);
        samples.Zeros(test.F);
        test.Truth(closed);
        std::vector<std::uint8_t> drawn;
        for (int row = 0; row < window.Height; ++row)
            for (int column = 0; column < window.Width; ++column)
                drawn.push_back(samples.MarkAt(column, row) == TruthMark::On ? 1 : 0);
        const TruthScore score = ScoreAgainst(closed, drawn);
        EXPECT_EQ(score.Found, 1) << test.Fault;
        EXPECT_EQ(score.Right, 1) << test.Fault;
        EXPECT_EQ(score.TruthPixels > 0, score.DrawnPixels > 0) << test.Fault;
    }
}

} // namespace
} // namespace kelvane
