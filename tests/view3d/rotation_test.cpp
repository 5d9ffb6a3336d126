#include "view3d/rotation.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kelvane {

namespace {

constexpr Matrix3 kOthers{11, 12, 13, 14, 15, 16, 17, 18, 19};

} // namespace

TEST(Rotation, MatrixIsNotTheRotationAboutZThenY)
{
    struct Row {
        const char* AboutZ;
        const char* AboutY;
        Matrix3 Expected;
    };
    // The residue beside 0 is that of pi as a single.
    const Row rows[] = {
        {"0", "0", kIdentity},
        {"90", "0", {-4.371138829e-8F, -1, 0, 1, -4.371138829e-8F, 0, 0, 0, 1}},
        {"30",
         "60",
         {0.43301266F, -0.25F, 0.86602545F, 0.5F, 0.86602539F, 0, -0.75F, 0.43301272F, 0.5F}},
        {"-45",
         "12,5",
         {0.69034553F, 0.69034553F, 0.21643962F, -0.70710677F, 0.70710677F, 0, -0.15304592F,
          -0.15304592F, 0.97629601F}},
    };
    for (const Row& row : rows) {
        Matrix3 matrix = kOthers;
        EXPECT_FALSE(Rotate(matrix, row.AboutZ, row.AboutY, Dimensions::Three));
        for (std::size_t i = 0; i < 9; ++i) {
            EXPECT_NEAR(matrix[i], row.Expected[i], 1e-7 * std::abs(row.Expected[i]))
                << row.AboutZ << ", " << row.AboutY << ": m" << i;
        }
    }
}

TEST(Rotation, PlaneTurnTouchesEntriesOfSpace)
{
    Matrix3 matrix = kIdentity;
    ASSERT_FALSE(Rotate(matrix, "0", "30", Dimensions::Three));
    ASSERT_FALSE(Rotate(matrix, "90", "77", Dimensions::Two));
    EXPECT_EQ(matrix[1], -1);
    EXPECT_EQ(matrix[3], 1);
    EXPECT_NEAR(matrix[0], -4.371e-8, 1e-11);
    EXPECT_NEAR(matrix[4], -4.371e-8, 1e-11);
    EXPECT_NEAR(matrix[2], 0.5, 1e-7);
    EXPECT_NEAR(matrix[6], -0.5, 1e-7);
    EXPECT_NEAR(matrix[8], 0.8660254, 1e-7);
}

TEST(Rotation, UnreadableAngleIsTakenOrLeavesTraces)
{
    // 1e308 is a number, but its radians overflow on the way.
    for (const char* text : {"", " ", "abc", "1e999", "nan", "inf", "-", "1e", "12x", "1e308"}) {
        for (const Dimensions dimensions : {Dimensions::Two, Dimensions::Three}) {
            Matrix3 matrix = kOthers;
            EXPECT_EQ(Rotate(matrix, text, "0", dimensions), Turn::AboutZ) << text;
            EXPECT_EQ(Rotate(matrix, "0", text, dimensions), Turn::AboutY) << text;
            EXPECT_EQ(matrix, kOthers) << text;
        }
    }
    Matrix3 matrix = kOthers;
    EXPECT_FALSE(Rotate(matrix, std::string(200, '9'), "-5", Dimensions::Three));
    for (const float entry : matrix)
        EXPECT_LE(std::abs(entry), 1);
}

TEST(Rotation, HalfTypedNumberCountsAsAMistake)
{
    for (const char* text : {"", "-", "+", ".", "-.", "1e", "1e-", "2,", "\u2212", "  "})
        EXPECT_TRUE(IsBeginningOfNumber(text)) << text;
    for (const char* text : {"abc", "1e999", "nan", "--", "1x", "e", "1 -", "0x"})
        EXPECT_FALSE(IsBeginningOfNumber(text)) << text;
}

TEST(Dial, PointerIsReadAsAnotherAngle)
{
    const DialFace face{10, 20, 100}; // centre (60, 70)
    struct Row {
        DialPoint Pointer;
        const char* Degrees;
    };
    const Row rows[] = {{{110, 70}, "0"},     {{60, 20}, "90"},    {{10, 70}, "180"},
                        {{60, 120}, "270"},   {{60, 69}, "90"},    {{100, 30}, "45"},
                        {{20, 30}, "135"},    {{20, 110}, "225"},  {{100, 110}, "315"},
                        {{60, 70}, "0"},      {{61, 20}, "89"},    {{59, 20}, "91"},
                        {{110, 71}, "359"},   {{110, 69}, "1"},    {{70, 50}, "63"},
                        {{110, 70.3}, "360"}, {{10, 69.9}, "180"}, {{60, 70.1}, "270"}};
    for (const Row& row : rows) {
        const double angle = PointerAngle(face, row.Pointer);
        EXPECT_EQ(DegreesText(angle), row.Degrees) << row.Pointer.X << ", " << row.Pointer.Y;
        EXPECT_TRUE(angle >= 0 && angle < 6.2831855) << angle;
    }
    EXPECT_DOUBLE_EQ(PointerAngle(face, {60, 20}), 1.5707658082854301); // arctan 32767
}

TEST(Dial, HalfDegreesAreNotRoundedToEven)
{
    const std::pair<double, const char*> rows[] = {
        {0.008726646502812704, "0"}, {0.02617993950843811, "2"}, {0.043633232514063515, "2"},
        {0.7766715387503306, "44"},  {0.794124831755956, "46"},  {6.274458835522334, "360"},
    };
    for (const auto& [radians, degrees] : rows)
        EXPECT_EQ(DegreesText(radians), degrees) << radians;
}

TEST(Dial, SquareLosesASideOrTheNeedleMissesTheRim)
{
    const DialFace face{10, 20, 100};
    for (const DialPoint inside : {DialPoint{10, 20}, {110, 20}, {10, 120}, {110, 120}, {60, 70}})
        EXPECT_TRUE(face.Contains(inside)) << inside.X << ", " << inside.Y;
    for (const DialPoint outside : {DialPoint{9.5, 70}, {110.5, 70}, {60, 19.5}, {60, 120.5}})
        EXPECT_FALSE(face.Contains(outside)) << outside.X << ", " << outside.Y;
    struct Row {
        const char* Degrees;
        DialPoint End;
    };
    const Row rows[] = {{"0", {110, 70}},
                        {"90", {60, 20}},
                        {"-90", {60, 120}},
                        {"450", {60, 20}},
                        {"30", {60 + 43.30127018922193, 45}}};
    for (const Row& row : rows) {
        const DialPoint end = NeedleEnd(face, RadiansOf(row.Degrees).value());
        EXPECT_NEAR(end.X, row.End.X, 2e-5) << row.Degrees;
        EXPECT_NEAR(end.Y, row.End.Y, 2e-5) << row.Degrees;
    }
}

} // namespace kelvane
