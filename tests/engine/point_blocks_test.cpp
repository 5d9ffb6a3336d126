#include "engine/point_blocks.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "engine/formula_generator.h"
#include "engine/support.h"

namespace kelvane {
namespace {

constexpr int kLines = 6000; // of formulas, and of noise
constexpr int kPoints = 37;  // a line: fills some vectors and not others

struct Level {
    VectorLevel Which;
    const char* Name;
};
constexpr Level kLevels[] = {{VectorLevel::Scalar, "scalar"},
                             {VectorLevel::Bits128, "128 bits"},
                             {VectorLevel::Bits256, "256 bits"},
                             {VectorLevel::Bits512, "512 bits"}};

struct Runner {
    Level At;
    std::unique_ptr<BlockEvaluator> Evaluator;
    std::unique_ptr<PointSolver> Solver;
};

// Every level this machine has.
std::vector<Runner> Runners()
{
    std::vector<Runner> runners;
    for (const Level& level : kLevels) {
        if (HasLevel(level.Which))
            runners.push_back({level, std::make_unique<BlockEvaluator>(level.Which),
                               std::make_unique<PointSolver>(level.Which)});
    }
    return runners;
}

BlockPoints Places(Generator& generator, int count)
{
    BlockPoints points;
    for (std::size_t at = 0; at < static_cast<std::size_t>(count); ++at) {
        const auto place = generator.Place();
        points.X[at] = place[0];
        points.Y[at] = place[1];
        points.Z[at] = place[2];
    }
    return points;
}

EvalState StateAt(const BlockPoints& points, std::size_t at)
{
    return {.EvalX = points.X[at], .EvalY = points.Y[at], .EvalZ = points.Z[at]};
}

std::string Where(const std::string& line, const EvalState& state, const char* level)
{
    std::ostringstream where;
    where << testing::PrintToString(line) << std::hexfloat << " at x=" << state.EvalX
          << " y=" << state.EvalY << " z=" << state.EvalZ << ", " << level << ", seed "
          << Generator::kSeed;
    return where.str();
}

// Compares both sides of a line; how many of them have no program.
int ExpectSides(const std::string& line, Generator& generator, const std::vector<Runner>& runners)
{
    const Equation equation = Prepared(line);
    const int count = 1 + static_cast<int>(generator.Below(kPoints));
    BlockPoints points = Places(generator, count);
    int plain = 0;
    for (const int start : {1, EquationsStart(equation)}) {
        const CompiledSide side = CompileSide(equation, start);
        plain += side.Code.IsCompiled() ? 0 : 1;
        for (const Runner& runner : runners) {
            BlockValues values;
            runner.Evaluator->Evaluate(side, points, count, values);
            for (std::size_t at = 0; at < static_cast<std::size_t>(count); ++at) {
                const EvalState state = StateAt(points, at);
                const auto expected = ValueFrom(start, equation, state);
                const double value = values.At[at];
                EXPECT_EQ(std::isfinite(value), expected.has_value())
                    << Where(line, state, runner.At.Name);
                if (expected && std::isfinite(value)) {
                    EXPECT_EQ(std::bit_cast<std::uint64_t>(value),
                              std::bit_cast<std::uint64_t>(*expected))
                        << value << " for " << *expected << Where(line, state, runner.At.Name);
                }
            }
        }
    }
    return plain;
}

TEST(Blocks, LevelGivesOtherBitsThanThePlainEvaluator)
{
    const std::vector<Runner> runners = Runners();
    for (const Runner& runner : runners)
        std::cout << runner.At.Name << "; ";
    std::cout << "seed " << Generator::kSeed << '\n';
    Generator generator;
    int plain = 0;
    // What comes up too rarely: double constants, constant exponents.
    for (const char* const line :
         {"y=x^(abs2)", "y=x^(abs2)y+.1", "y=abs1-abs1+x+.1", "y=x^(log1)"})
        plain += ExpectSides(line, generator, runners);
    for (int halves = -35; halves <= 35; ++halves) {
        const std::string power = "^(" + std::to_string(halves) + "/2)";
        plain += ExpectSides("y=x" + power + "z", generator, runners);
        plain += ExpectSides("y=(absx)" + power + "z", generator, runners);
    }
    for (int i = 0; i < kLines && !::testing::Test::HasFailure(); ++i) {
        plain += ExpectSides(generator.Formula(), generator, runners);
        plain += ExpectSides(generator.Noise(), generator, runners);
    }
    EXPECT_EQ(plain, 0) << "ordinary formulas without a program";
}

// What a search or a direction test must agree on, for one line at random points and halves.
void ExpectSearches(const std::string& line, Generator& generator,
                    const std::vector<Runner>& runners, std::array<int, 3>& outcomes)
{
    static constexpr SolveRange kRanges[] = {{-10, 10, 0.0125F},
                                             {-3, 2, 0.25F},
                                             {0, 1e6F, 1},
                                             {10, -10, 0.0125F},
                                             {1e9F, 2e9F, 1e-3F}}; // never below 1/1000
    const Equation equation = Prepared(line);
    const CompiledEquation compiled = CompileEquation(equation);
    const SolveRange& range = kRanges[generator.Below(std::size(kRanges))];
    const Dependent dependent = generator.OneIn(2) ? Dependent::Y : Dependent::Z;
    const bool forY = dependent == Dependent::Y;
    const BlockPoints points = Places(generator, kPoints);
    BlockSearch search{.Variable = dependent, .Range = range};
    for (SolveHalf& half : search.Halves)
        half = generator.OneIn(2) ? SolveHalf::Rising : SolveHalf::Falling;
    for (const Runner& runner : runners) {
        BlockResults results;
        runner.Solver->Solve(compiled, points, kPoints, search, results);
        for (std::size_t at = 0; at < kPoints; ++at) {
            EvalState state = StateAt(points, at);
            const std::string where = Where(line, state, runner.At.Name);
            state.RightStart = EquationsStart(equation);
            state.SolveDirection = search.Halves[at];
            const float value =
                forY ? SolveY(state, equation, range) : SolveZ(state, equation, range);
            const auto expected = state.EvalSkip    ? PointOutcome::GaveUp
                                  : state.EvalError ? PointOutcome::Failed
                                                    : PointOutcome::Found;
            EXPECT_EQ(results.Outcome[at], expected) << where;
            if (expected == PointOutcome::Found) {
                EXPECT_EQ(results.Value[at], value) << where;
            }
            ++outcomes[static_cast<std::size_t>(expected)];
        }
        EvalState plain = StateAt(points, 0);
        plain.RightStart = EquationsStart(equation);
        plain.DirectionToggle = search.Halves[0] == SolveHalf::Rising;
        EvalState block = plain;
        EXPECT_EQ(runner.Solver->Direction(compiled, dependent, block),
                  forY ? DirectionY(plain, equation) : DirectionZ(plain, equation))
            << line;
        EXPECT_EQ(block.DirectionToggle, plain.DirectionToggle) << line;
        EXPECT_EQ(forY ? block.EvalY : block.EvalZ, -1) << line;
    }
}

TEST(Blocks, SearchEndsElsewhereThanOnePointAtATime)
{
    const std::vector<Runner> runners = Runners();
    Generator generator;
    std::array<int, 3> outcomes{};
    for (const char* const line :
         {"x^2+y^2=100", "x=y^3", "x=siny+z", "logy=x", "y=20", "z^3+x=yz", "1/y=x", "y=x"})
        ExpectSearches(line, generator, runners, outcomes);
    for (int i = 0; i < 700 && !::testing::Test::HasFailure(); ++i) {
        const std::string formula = generator.Formula();
        ExpectSearches(formula, generator, runners, outcomes);
        ExpectSearches("y=" + formula.substr(formula.find('=') + 1), generator, runners, outcomes);
    }
    std::cout << "found, failed, gave up: " << testing::PrintToString(outcomes) << '\n';
    for (const int count : outcomes)
        EXPECT_GT(count, 2000) << "the searches test too little";
}

TEST(Blocks, SimpleValueDiffersFromOnePointAtATime)
{
    const Equation equation = Prepared("y=x*absx/z"); // beyond singles, failing, or neither
    const CompiledEquation compiled = CompileEquation(equation);
    Generator generator;
    for (const Runner& runner : Runners()) {
        BlockPoints points = Places(generator, kBlockPoints);
        BlockResults results;
        runner.Solver->Simple(compiled, points, kBlockPoints, results);
        for (std::size_t at = 0; at < kBlockPoints; ++at) {
            EvalState state = StateAt(points, at);
            const std::string where = Where("x*absx/z", state, runner.At.Name);
            state.RightStart = EquationsStart(equation);
            SimpleY(state, equation);
            EXPECT_EQ(results.Outcome[at] == PointOutcome::Failed, state.EvalError) << where;
            if (!state.EvalError) {
                EXPECT_EQ(results.Value[at], state.EvalY) << where;
            }
        }
    }
}

TEST(Blocks, BlockOfALongEquationTakesTooLong)
{
    const auto sizes = [](const std::string& line, const SolveRange& range) {
        const Equation equation = Prepared(line);
        const CompiledEquation compiled = CompileEquation(equation);
        return std::pair(SimpleBlockSize(compiled), SolveBlockSize(compiled, range));
    };
    const std::string sines = "y=x" + Repeated("+sinx", 600);
    EXPECT_EQ(sizes("y=sinx", {-10, 10, 1}), std::pair(256, 256));
    // About 600 * 20 steps a point in a million; 16 halvings or all 160 of them.
    EXPECT_NEAR(sizes(sines, {-10, 10, 1}).first, 79, 5);
    EXPECT_NEAR(sizes(sines, {-10, 10, 1}).second, 5, 1);
    EXPECT_EQ(sizes(sines, {-3e38F, 3e38F, 1}).second, 1);
    EXPECT_EQ(sizes(sines, {NAN, 1, 1}).second, 1);
    EXPECT_LT(
        sizes("y=" + Repeated("xsin(y)-(", 180) + "x" + Repeated(")", 180), {-10, 10, 1}).first,
        80);
}

TEST(Blocks, NestingBeyondTheRegistersIsLostOrCutsTheResult)
{
    for (const int depth : {1, 10, 25, 180}) {
        const std::string line = "y=" + Repeated("xsin(y)-(", depth) + "x" +
                                 std::string(static_cast<std::size_t>(depth), ')');
        const Equation equation = Prepared(line);
        const CompiledEquation compiled = CompileEquation(equation);
        EXPECT_EQ(compiled.IsCompiled(), depth <= 25) << depth;
        EXPECT_LE(compiled.Right.Code.Registers, Program::kMaxRegisters);
        BlockPoints points;
        points.X.fill(0.75F);
        points.X[0] = INFINITY; // fails, alone
        points.Y.fill(2);
        BlockValues values;
        BlockEvaluator().Evaluate(compiled.Right, points, kBlockPoints, values);
        const auto expected =
            ValueFrom(EquationsStart(equation), equation, {.EvalX = 0.75F, .EvalY = 2});
        EXPECT_EQ(values.At[kBlockPoints - 1], expected) << depth;
        EXPECT_FALSE(std::isfinite(values.At[0])) << depth;
    }
}

} // namespace
} // namespace kelvane
