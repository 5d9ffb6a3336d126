#include "view3d/matrix_setup.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kelvane {

namespace {

using Boxes = std::vector<std::string>;
constexpr auto kMultiply = MatrixOperation::Multiply;
constexpr auto kAdd = MatrixOperation::Add;
constexpr Matrix3 kCounted{1, 2, 3, 4, 5, 6, 7, 8, 9};

Boxes Labels(const MatrixSetup& setup)
{
    Boxes labels;
    for (std::size_t k = 0; k < setup.Count(); ++k)
        labels.push_back(setup.Label(k));
    return labels;
}

} // namespace

TEST(MatrixSetup, BoxStandsForAnotherEntry)
{
    Matrix3 matrix = kCounted;
    EXPECT_EQ(Labels(MatrixSetup(matrix, Dimensions::Two)), (Boxes{"1", "4", "2", "5"}));
    EXPECT_EQ(Labels(MatrixSetup(matrix, Dimensions::Three)),
              (Boxes{"1", "4", "7", "2", "5", "8", "3", "6", "9"}));
}

TEST(MatrixSetup, LabelDoesNotReadBackAsTheEntry)
{
    const std::pair<float, const char*> rows[] = {
        {0.5F, "0.5"},          {-0.0F, "0"},
        {0.1F, "0.1"},          {-4.371139e-8F, "-4.371139e-08"},
        {16777216, "16777216"}, {-0.70710677F, "-0.70710677"}};
    for (const auto& [entry, text] : rows) {
        Matrix3 matrix = kIdentity;
        matrix[3] = entry;
        EXPECT_EQ(MatrixSetup(matrix, Dimensions::Two).Label(1), text);
    }
}

TEST(MatrixSetup, OperationGivesAnotherMatrix)
{
    struct Row {
        Dimensions Size;
        MatrixOperation Operation;
        Matrix3 Before;
        Boxes Typed; // down the columns
        Matrix3 After;
    };
    const Row rows[] = {
        {Dimensions::Two, kMultiply, kIdentity, {"2", "0", "0", "3"}, {2, 0, 0, 0, 3, 0, 0, 0, 1}},
        {Dimensions::Two, kAdd, kIdentity, {"0", "1", "0", "0"}, {1, 0, 0, 1, 1, 0, 0, 0, 1}},
        // (1 3; 2 4)(1 2; 4 5): not the product the other way round, which is (5 11; 14 32)
        {Dimensions::Two,
         kMultiply,
         kCounted,
         {"1", "2", "3", "4"},
         {13, 17, 3, 18, 24, 6, 7, 8, 9}},
        {Dimensions::Two,
         kAdd,
         kCounted,
         {"-5", "0", "1e2", ",5"},
         {-4, 102, 3, 4, 5.5, 6, 7, 8, 9}},
        {Dimensions::Three,
         kMultiply,
         kCounted,
         {"0", "1", "0", "1", "0", "0", "0", "2", "1"},
         {4, 5, 6, 15, 18, 21, 7, 8, 9}},
        {Dimensions::Three,
         kAdd,
         kCounted,
         {"10", "20", "30", "40", "50", "60", "70", "80", "90"},
         {11, 42, 73, 24, 55, 86, 37, 68, 99}},
    };
    for (const Row& row : rows) {
        Matrix3 matrix = row.Before;
        MatrixSetup setup(matrix, row.Size);
        EXPECT_FALSE(setup.Apply(row.Operation, row.Typed)) << row.Typed[0];
        EXPECT_EQ(matrix, row.After) << row.Typed[0];
        EXPECT_TRUE(setup.ShowsMatrix()) << row.Typed[0];
    }
}

TEST(MatrixSetup, FailedStepForgetsOrGoesTooFar)
{
    struct Row {
        MatrixOperation Operation;
        Matrix3 After; // of kCounted
        Boxes Typed;
        std::size_t Fault;
    };
    const std::string large(200, '9');
    const Row rows[] = {
        {kMultiply, kCounted, {"", "1", "1", "1"}, 0},
        {kMultiply, {2, 2, 3, 4, 5, 6, 7, 8, 9}, {"2", "abc", "0", "1"}, 1},
        {kMultiply, kCounted, {"2", "0", "nan", "1"}, 2},
        {kMultiply, {2, 2, 3, 4, 5, 6, 7, 8, 9}, {"2", "1", "0", "1e999"}, 3},
        // 2e38 can be stored, 4e38 cannot
        {kMultiply, {1, 2, 3, 2e38F, 5, 6, 7, 8, 9}, {"1", "2e38", "0", "0"}, 1},
        {kAdd, {2, 3, 3, 5, 5, 6, 7, 8, 9}, {"1", "1", "1", ""}, 3},
        {kAdd, {2, 2, 3, 4, 5, 6, 7, 8, 9}, {"1", large, "1", "1"}, 1},
        {kAdd, {-4, 2, 3, 4, 5, 6, 7, 8, 9}, {"-5", "-3.4028236e38", "1", "1"}, 1},
    };
    for (const Row& row : rows) {
        Matrix3 matrix = kCounted;
        MatrixSetup setup(matrix, Dimensions::Two);
        const auto fault = setup.Apply(row.Operation, row.Typed);
        EXPECT_TRUE(fault.has_value()) << row.Typed[1];
        EXPECT_EQ(fault.value_or(99), row.Fault) << row.Typed[1];
        EXPECT_EQ(matrix, row.After) << row.Typed[1];
        setup.Resume();
        EXPECT_EQ(setup.Label(0), "1") << "taken for someone else's change: " << row.Typed[1];
    }
}

TEST(MatrixSetup, NumberBeyondSinglesGetsIntoTheMatrix)
{
    const Boxes bad{"", "abc", "1e999", "nan", "-inf", "1e39", "-1e300", std::string(200, '9')};
    for (const Dimensions size : {Dimensions::Two, Dimensions::Three}) {
        for (const std::string& text : bad) {
            for (std::size_t k = 0; k < (size == Dimensions::Two ? 4U : 9U); ++k) {
                for (const MatrixOperation operation : {kMultiply, kAdd}) {
                    Matrix3 matrix = kCounted;
                    MatrixSetup setup(matrix, size);
                    Boxes typed(setup.Count(), "1");
                    typed[k] = text;
                    EXPECT_TRUE(setup.Apply(operation, typed)) << text << " in box " << k;
                    for (const float entry : matrix)
                        EXPECT_TRUE(std::isfinite(entry)) << text << " in box " << k;
                    EXPECT_EQ(setup.Label(0), "1") << "labels stay";
                }
            }
        }
    }
    // The largest single still fits, and products of opposite infinities make no number.
    Matrix3 matrix{1, 0, 0, 1, 1, 0, 0, 0, 1};
    MatrixSetup setup(matrix, Dimensions::Two);
    EXPECT_FALSE(setup.Apply(kAdd, Boxes{"3.4028234e38", "0", "0", "0"}));
    EXPECT_EQ(matrix[0], 0x1.fffffep127F);
    EXPECT_TRUE(setup.Apply(kMultiply, Boxes{"1e300", "0", "0", "0"}));
    EXPECT_EQ(matrix[0], 0x1.fffffep127F);
}

TEST(MatrixSetup, RestoringTouchesTheMatrixOrIsForgotten)
{
    Matrix3 matrix = kIdentity;
    MatrixSetup setup(matrix, Dimensions::Two);
    const Boxes doubling{"2", "0", "0", "2"};
    ASSERT_FALSE(setup.Apply(kMultiply, doubling));
    setup.Restore();
    EXPECT_EQ(matrix[0], 2);
    EXPECT_FALSE(setup.ShowsMatrix());
    setup.Resume(); // nobody else has changed it
    EXPECT_EQ(setup.Label(0), "1");
    ASSERT_FALSE(setup.Apply(kAdd, doubling)); // on the older matrix
    EXPECT_EQ(matrix[0], 3);
    setup.Accept();
    setup.Default();
    EXPECT_EQ(matrix, kIdentity);
    setup.Restore();
    EXPECT_EQ(setup.Label(0), "3");

    ASSERT_FALSE(Rotate(matrix, "180", "0", Dimensions::Two));
    setup.Resume();
    EXPECT_EQ(setup.Label(0), "-1");
    setup.Restore();
    EXPECT_EQ(setup.Label(0), "-1") << "an older matrix was kept as accepted";
}

TEST(MatrixSetup, DefaultOfThePlaneTouchesSpace)
{
    Matrix3 matrix = kCounted;
    MatrixSetup(matrix, Dimensions::Two).Default();
    EXPECT_EQ(matrix, (Matrix3{1, 0, 3, 0, 1, 6, 7, 8, 9}));
    MatrixSetup(matrix, Dimensions::Three).Default();
    EXPECT_EQ(matrix, kIdentity);
}

} // namespace kelvane
