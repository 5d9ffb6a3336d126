#include "view3d/axis_setup.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "view3d/axis_model.h"

namespace kelvane {
namespace {

const std::string kLong(200, '9'); // more than a single, and than a double's digits

AxisDraft DraftOf(const std::string& center, const std::string& unit)
{
    return {{center, "0", "0"}, {unit, "299", "299"}};
}

TEST(AxisSetup, DivisionsAndUnitsFallApart)
{
    struct Row {
        float HalfSpan;
        int Divisions;
        float Unit;
    };
    constexpr Row kRows[] = {{299, 10, 299},       {299, 3, 996.6667F}, {299.5F, 10, 299.5F},
                             {4000, 1, 40000},     {100, 100, 10},      {-0.5F, 10, 1},
                             {1e30F, 100, 10000.F}};
    for (const Row& row : kRows) {
        EXPECT_EQ(UnitFor(row.HalfSpan, row.Divisions), row.Unit) << row.HalfSpan;
        EXPECT_EQ(DivisionsFor(row.HalfSpan, row.Unit), row.Divisions) << row.HalfSpan;
    }
    EXPECT_EQ(UnitFor(std::nanf(""), 10), 1.0F);
    EXPECT_EQ(DivisionsFor(300, 1200), 2);  // 2.5
    EXPECT_EQ(DivisionsFor(420, 1200), 4);  // 3.5
    EXPECT_EQ(DivisionsFor(300, 1), 100);   // 3000
    EXPECT_EQ(DivisionsFor(300, 30000), 1); // 0.1
}

TEST(AxisSetup, EndOfUnitSliderHasNoDivisions)
{
    for (const float halfSpan : {1.0F, 1.5F, 100.0F, 299.0F, 383.5F, 4000.0F, 1e5F}) {
        const UnitRange units = UnitsFor(halfSpan);
        ASSERT_LT(units.Low, units.High) << halfSpan;
        const double most = halfSpan * 10.0 / units.Low;
        const double fewest = halfSpan * 10.0 / units.High;
        EXPECT_TRUE(most <= 100 && fewest >= 1) << halfSpan;
    }
    EXPECT_EQ(UnitsFor(299).Low, 30); // 29.9, rounded up
    EXPECT_EQ(UnitsFor(299).High, 2990);
}

TEST(AxisSetup, AcceptedScaleIsNotThatOfTheLabels)
{
    AxisSetup setup = DefaultAxisSetup(299);
    AxisScaling scaling = ScalingOf(setup);
    EXPECT_EQ(scaling.UnitPixels, 29.9F);
    EXPECT_EQ(scaling.YRatio, 1.0F);
    EXPECT_EQ(scaling.ZRatio, 1.0F);

    const AxisDraft draft{
        {"1.5", "-2,25", " 1e3 "}, {"299", "119.6", "1196"}, {10, 25, 2}, 9, true, true};
    ASSERT_FALSE(AcceptDraft(setup, draft));
    scaling = ScalingOf(setup);
    EXPECT_EQ(scaling.Center, (std::array{1.5F, -2.25F, 1000.0F}));
    EXPECT_EQ(scaling.UnitPixels, 29.9F);
    EXPECT_EQ(scaling.YRatio, 2.5F);
    EXPECT_EQ(scaling.ZRatio, 0.25F);
    EXPECT_EQ(setup.Divisions, (std::array{10, 25, 2}));
    EXPECT_EQ(setup.UnitThickness, 9);
    EXPECT_TRUE(setup.SquareWorkSheet && setup.HideAxis);

    FollowHalfSpan(setup, 500);
    EXPECT_EQ(setup.Units, (std::array{500.0F, 200.0F, 2500.0F}));
    EXPECT_EQ(setup.Divisions, (std::array{10, 25, 2}));
}

TEST(AxisSetup, DefaultIsAnotherThanTenDivisionsAroundZero)
{
    const AxisSetup setup = DefaultAxisSetup(420);
    EXPECT_EQ(setup.Divisions, (std::array{10, 10, 10}));
    EXPECT_EQ(setup.Units, (std::array{420.0F, 420.0F, 420.0F}));
    EXPECT_EQ(setup.Center, (std::array{0.0F, 0.0F, 0.0F}));
    EXPECT_EQ(setup.UnitThickness, 6);
    EXPECT_FALSE(setup.SquareWorkSheet || setup.HideAxis);
}

TEST(AxisSetup, BadTextIsTakenOrChangesSomething)
{
    struct Row {
        std::string Center;
        std::string Unit;
        const char* Message;
    };
    const Row rows[] = {{"", "299", "X needs a number."},
                        {"abc", "299", "X needs a number."},
                        {"nan", "299", "X needs a number."},
                        {"1e999", "299", "X needs a number."},
                        {"1e39", "299", "X is too large."},
                        {"-3.4028236e38", "299", "X is too large."},
                        {kLong, "299", "X is too large."},
                        {"abc", "0", "X needs a number."}, // the centre is read first
                        {"0", "", "X Axis Unit needs a number."},
                        {"0", "abc", "X Axis Unit needs a number."},
                        {"0", "nan", "X Axis Unit needs a number."},
                        {"0", "1e999", "X Axis Unit needs a number."},
                        {"0", kLong, "X Axis Unit is too large."},
                        {"0", "0", "X Axis Unit must be above 0."},
                        {"0", "-5", "X Axis Unit must be above 0."},
                        {"0", "1e-45", "X Axis Unit must be above 0."}, // a tenth is 0
                        {"0", "1e-40", "Y Axis Unit is too far from X Axis Unit."}};
    for (const Row& row : rows) {
        AxisSetup setup;
        setup.Center = {7, 8, 9};
        AxisDraft draft = DraftOf(row.Center, row.Unit);
        if (row.Unit == "1e-40")
            draft.Units[1] = "1e38";
        draft.HideAxis = true;
        draft.Divisions = {1, 2, 3};
        const auto problem = AcceptDraft(setup, draft);
        ASSERT_TRUE(problem) << row.Center << " " << row.Unit;
        EXPECT_EQ(DescribeProblem(*problem), row.Message);
        EXPECT_EQ(setup.Center, (std::array{7.0F, 8.0F, 9.0F})) << row.Center;
        EXPECT_EQ(setup.Divisions, (std::array{10, 10, 10})) << row.Center;
        EXPECT_FALSE(setup.HideAxis) << row.Center;
    }
    AxisSetup setup;
    for (const char* center : {"-5", "0", "3.4028235e38", "1e-60", "\u22124"})
        EXPECT_FALSE(AcceptDraft(setup, DraftOf(center, "299"))) << center;
    AxisDraft wild = DraftOf("0", "299");
    wild.Divisions = {0, -7, 1000000};
    wild.UnitThickness = 0;
    ASSERT_FALSE(AcceptDraft(setup, wild));
    EXPECT_EQ(setup.Divisions, (std::array{1, 1, 100}));
    EXPECT_EQ(setup.UnitThickness, 1);
}

TEST(AxisModel, AngleIsHalvedOrRefusedWrongly)
{
    const std::pair<const char*, int> good[] = {{"45", 22}, {"90", 45},   {"47", 24},  {"46", 23},
                                                {"2", 1},   {"3", 2},     {"178", 89}, {" 60 ", 30},
                                                {"1.6", 1}, {"45.5", 23}, {"46.5", 23}};
    for (const auto& [text, half] : good)
        EXPECT_EQ(HalfAngleOf(text), half) << text;
    for (const char* text : {"", "abc", "1e999", "-5", "0", "1", "179", "nan", "4x", kLong.c_str()})
        EXPECT_FALSE(HalfAngleOf(text)) << text;
    EXPECT_TRUE(AxisModel().RealWorldAxis);
    EXPECT_EQ(AxisModel().Axis3DHalfAngle, 22);
}

// The end of a positive half axis as seen from the centre of a box of 200 with a margin of 7, in
// which 3.1 units reach 93 pixels.
CrossPoint EndOf(bool realWorldAxis, int angle, CrossAxis axis)
{
    for (const CrossLine& line : AxisCross(realWorldAxis, angle, {}, {200, 200, 7})) {
        if (line.Axis == axis && line.Part == CrossPart::PositiveHalf)
            return {line.To.X - 100, line.To.Y - 100};
    }
    return {};
}

TEST(AxisCross, AxisPointsElsewhere)
{
    struct Row {
        CrossPoint End; // with 3.14 as pi: with the true one the last digits differ
        int Angle;
        CrossAxis Axis;
        bool RealWorldAxis;
    };
    constexpr Row kRows[] = {
        {{-0.70738827 * 93, 0.70682518 * 93}, 45, CrossAxis::X, true},
        {{0.92395570 * 93, 0.38249947 * 93}, 45, CrossAxis::Y, true},
        {{-0.00079633 * 93, 0.99999968 * 93}, 90, CrossAxis::X, true},
        {{0.70738827 * 93, 0.70682518 * 93}, 90, CrossAxis::Y, true},
        {{0, -93}, 90, CrossAxis::Z, true},
        {{-0.70682518 * 93, 0.70682518 * 93}, 90, CrossAxis::X, false},
        {{-0.70682518 * 93, 0.70682518 * 93}, 10, CrossAxis::X, false},
        {{93, 0}, 90, CrossAxis::Y, false},
        {{0, -93}, 90, CrossAxis::Z, false},
    };
    for (const Row& row : kRows) {
        const CrossPoint end = EndOf(row.RealWorldAxis, row.Angle, row.Axis);
        EXPECT_NEAR(end.X, row.End.X, 1e-5) << row.Angle << " " << static_cast<int>(row.Axis);
        EXPECT_NEAR(end.Y, row.End.Y, 1e-5) << row.Angle << " " << static_cast<int>(row.Axis);
    }
}

TEST(AxisCross, MarksLieElsewhereThanAtUnits)
{
    const CrossScale scale{0.1, 30, 15}; // Y's units half as long: 15 pixels where X has 30
    std::vector<CrossLine> marks;
    for (const CrossLine& line : AxisCross(false, 45, scale, {200, 300, 7})) {
        if (line.Axis == CrossAxis::Y && line.Part == CrossPart::Mark)
            marks.push_back(line);
    }
    const std::array columns{115.0, 130.0, 145.0, 85.0, 70.0, 55.0}; // from the centre outwards
    ASSERT_EQ(marks.size(), columns.size());
    for (std::size_t i = 0; i < marks.size(); ++i) {
        EXPECT_NEAR(marks[i].From.X, columns[i], 1e-9);
        EXPECT_NEAR(marks[i].To.X, columns[i], 1e-9);
        EXPECT_NEAR(marks[i].From.Y, 150 - 9.3, 1e-9); // a tenth of 93 to either side
        EXPECT_NEAR(marks[i].To.Y, 150 + 9.3, 1e-9);
    }
}

TEST(AxisCross, OddScaleOrBoxLeavesTheBox)
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    const double nan = std::nan("");
    for (const double unit : {0.0, -5.0, nan, kInf, 1e-300, 1e300}) {
        for (const double size : {0.0, 5.0, 200.0}) {
            for (int angle = kMinAxisAngle; angle <= kMaxAxisAngle; ++angle) {
                for (const CrossLine& line :
                     AxisCross(true, angle, {0.06, unit, 20}, {size, size, 0})) {
                    const double slack = 0.06 * size; // a mark's half, of a mark at the edge
                    ASSERT_TRUE(line.To.X >= -slack && line.To.X <= size + slack) << unit;
                    ASSERT_TRUE(line.To.Y >= -slack && line.To.Y <= size + slack) << unit;
                }
            }
        }
    }
}

} // namespace
} // namespace kelvane
