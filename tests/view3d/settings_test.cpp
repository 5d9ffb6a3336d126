#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "view3d/draw_settings.h"
#include "view3d/typed_number.h"
#include "view3d/view_matrix.h"

namespace kelvane {

TEST(DrawSettings, UselessResolutionOrWidthIsAccepted)
{
    EXPECT_EQ(StepFromResolution(20), 0.05F);
    EXPECT_EQ(StepFromResolution(1e-3), 1000.0F);
    EXPECT_EQ(StepFromResolution(1e300), 0.0F); // a sweep copes with it
    for (const double refused : {0.0, -1.0, static_cast<double>(NAN), HUGE_VAL, 1e-300})
        EXPECT_FALSE(StepFromResolution(refused)) << refused;
    EXPECT_TRUE(IsDrawWidth(1) && IsDrawWidth(100));
    EXPECT_FALSE(IsDrawWidth(0) || IsDrawWidth(101) || IsDrawWidth(-3));
}

TEST(ViewMatrix, OtherElementsThanTheirOwnDecide)
{
    EXPECT_TRUE(IsIdentity2D(kIdentity) && IsIdentity3D(kIdentity));
    for (std::size_t i = 0; i < 9; ++i) {
        Matrix3 changed = kIdentity;
        changed[i] += 0.5F;
        const bool counts2D = i == 0 || i == 1 || i == 3 || i == 4;
        EXPECT_EQ(IsIdentity2D(changed), !counts2D) << i;
        EXPECT_FALSE(IsIdentity3D(changed)) << i;
    }
    const Matrix3 matrix{1, 2, 100, 3, 4, 100, 100, 100, 100};
    EXPECT_EQ(Transform2D(matrix, 5, 6), std::pair(17.0F, 39.0F));
}

TEST(TypedNumber, TextIsReadOtherwiseOrAccepted)
{
    const std::pair<const char*, double> numbers[] = {
        {"2", 2},    {" -1.5 ", -1.5}, {"1,5", 1.5},  {"+3", 3},
        {".5", 0.5}, {"5.", 5},        {"2e3", 2000}, {"\u22124", -4},
    };
    for (const auto& [text, number] : numbers)
        EXPECT_EQ(ReadTyped(text), number) << text;
    for (const char* text : {"", "  ", "abc", "2x", "1e999", "nan", "inf", "0x10", "1,2,3", "1.2,3",
                             "+-1", "--1", "1 2", "\u2212"})
        EXPECT_FALSE(ReadTyped(text)) << text;
}

} // namespace kelvane
