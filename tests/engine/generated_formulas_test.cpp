#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "engine/formula_generator.h"
#include "engine/reference_model.h"
#include "engine/support.h"

namespace kelvane {
namespace {

using reference::Point;

constexpr int kLines = 8000;
constexpr int kPoints = 5; // a line

// Every bit of a value in hexadecimal, or that there is none.
std::string Shown(const std::optional<double>& value)
{
    std::ostringstream out;
    out << std::hexfloat << value.value_or(0);
    return value ? out.str() : "failure";
}

// How right sides came out; a value of 0 is no evidence of much and counts apart.
using Tally = std::map<std::string, int>;

// Both sides of a line at a few points.
void ExpectAgreement(const std::string& line, Generator& generator, Tally& tally)
{
    const Equation program = Prepared(line);
    const int rightSide = EquationsStart(program);
    const reference::Formula model = reference::Parse(line);
    for (int i = 0; i < kPoints; ++i) {
        const Point point = generator.Place();
        const EvalState state{.EvalX = point[0], .EvalY = point[1], .EvalZ = point[2]};
        std::ostringstream where;
        where << testing::PrintToString(line) << std::hexfloat << " at x=" << point[0]
              << " y=" << point[1] << " z=" << point[2] << ", seed " << Generator::kSeed;
        const auto right = Evaluate(model.Right, point);
        EXPECT_EQ(Shown(ValueFrom(rightSide, program, state)), Shown(right)) << where.str();
        EXPECT_EQ(Shown(ValueFrom(1, program, state)), Shown(Evaluate(model.Left, point)))
            << "left side of " << where.str();
        ++tally[!right ? "failures" : *right == 0 ? "zeros" : "values"];
    }
}

TEST(GeneratedFormulas, FormulasOrNoiseMeanSomethingElseThanTheirSyntaxTree)
{
    Generator generator;
    Tally formulas;
    Tally noise;
    for (int i = 0; i < kLines && !HasFailure(); ++i) {
        ExpectAgreement(generator.Formula(), generator, formulas);
        ExpectAgreement(generator.Noise(), generator, noise);
    }
    std::cout << "seed " << Generator::kSeed << ", formulas: " << testing::PrintToString(formulas)
              << "\nnoise: " << testing::PrintToString(noise) << '\n';
    EXPECT_GT(formulas["values"], kLines * kPoints / 3) << "the formulas test too little";
    EXPECT_GT(formulas["failures"], kLines * kPoints / 20) << "the formulas fail too rarely";
    EXPECT_GT(noise["values"], kLines * kPoints / 5) << "the noise tests too little";
}

} // namespace
} // namespace kelvane
