// Evaluating thirteen right sides at 4096 values of x: with the plain evaluator, with the block
// evaluator at each level that the machine has, with muParser, and as C++ that the compiler sees.

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/evaluate.h"
#include "subjects.h"

namespace {

using namespace kelvane;

template <auto Function>
void NativeLoop(const Samples& x, Samples& result)
{
    for (std::size_t i = 0; i < kSamples; ++i)
        result[i] = Function(x[i]);
}

// The same formula in everyone's own best words.
struct Formula {
    const char* Name;
    const char* Line;
    const char* MuParser;
    void (*Native)(const Samples& x, Samples& result);
};

const std::array<Formula, 13> kFormulas{{
    {"parabola and sine", "y=x-x^2+2sinx", "x-x^2+2*sin(x)",
     NativeLoop<[](double x) { return x - x * x + 2 * std::sin(x); }>},
    {"cubic", "y=x^3-3x+1", "x^3-3*x+1",
     NativeLoop<[](double x) { return x * x * x - 3 * x + 1; }>},
    {"quintic", "y=0.1x^5-2x^3+7x-3", "0.1*x^4*x-2*x^3+7*x-3",
     NativeLoop<[](double x) { return 0.1 * x * x * x * x * x - 2 * x * x * x + 7 * x - 3; }>},
    {"rational", "y=(x^2-1)/(x^2+1)", "(x^2-1)/(x^2+1)",
     NativeLoop<[](double x) { return (x * x - 1) / (x * x + 1); }>},
    {"two sines", "y=5sin(x)+sin(13x)", "5*sin(x)+sin(13*x)",
     NativeLoop<[](double x) { return 5 * std::sin(x) + std::sin(13 * x); }>},
    {"damped", "y=e^(-0.1x)*cos(5x)", "exp(-0.1*x)*cos(5*x)",
     NativeLoop<[](double x) { return std::exp(-0.1 * x) * std::cos(5 * x); }>},
    {"bell", "y=e^(-x^2)", "exp(-x^2)", NativeLoop<[](double x) { return std::exp(-x * x); }>},
    {"log and root", "y=log(x^2+1)*(x^2+1)^(.5)", "ln(x^2+1)*sqrt(x^2+1)",
     NativeLoop<[](double x) { return std::log(x * x + 1) * std::sqrt(x * x + 1); }>},
    {"sinc", "y=sin(x)/x", "sin(x)/x", NativeLoop<[](double x) { return std::sin(x) / x; }>},
    {"tangent", "y=tan(x/2)", "tan(x/2)", NativeLoop<[](double x) { return std::tan(x / 2); }>},
    {"arcs", "y=atan(3x)+asin(x/20)", "atan(3*x)+asin(x/20)",
     NativeLoop<[](double x) { return std::atan(3 * x) + std::asin(x / 20); }>},
    {"power", "y=abs(x)^(2.5)", "abs(x)^2.5",
     NativeLoop<[](double x) { return std::pow(std::fabs(x), 2.5); }>},
    {"nested", "y=sin(x+2cos(3x+sin(x)))", "sin(x+2*cos(3*x+sin(x)))",
     NativeLoop<[](double x) { return std::sin(x + 2 * std::cos(3 * x + std::sin(x))); }>},
}};

// What a formula's ways work on. Must stay where it is.
struct Subject {
    explicit Subject(const Formula& formula)
        : Source(Prepared(formula.Line))
        , Side(CompileSide(Source, EquationsStart(Source)))
        , Parser(MakeRival(formula.MuParser, {{"x", X.data()}}))
    {
        if (!Side.Code.IsCompiled())
            Fail(std::string("not compiled: ") + formula.Line);
    }

    Equation Source;
    CompiledSide Side;
    Samples X = SpreadX();
    Samples Values{};
    std::vector<BlockPoints> Blocks = SpreadBlocks();
    std::vector<BlockValues> ValuesOfBlocks{kBlocks};
    Rival Parser;
};

void RunPlain(Subject& subject)
{
    EvalState state;
    for (std::size_t i = 0; i < kSamples; ++i) {
        state.EvalX = static_cast<float>(subject.X[i]);
        state.EvalError = false;
        int position = subject.Side.Start;
        subject.Values[i] = Evaluate(state, position, subject.Source);
    }
}

void RunBlocks(Subject& subject, BlockEvaluator& evaluator)
{
    for (std::size_t i = 0; i < kBlocks; ++i)
        evaluator.Evaluate(subject.Side, subject.Blocks[i], kBlockPoints,
                           subject.ValuesOfBlocks[i]);
}

void AddFormula(Comparison& comparison, const Formula& formula)
{
    const auto subject = std::make_shared<Subject>(formula);
    Samples native{};
    formula.Native(subject->X, native);
    const auto add = [&](const std::string& way, const std::function<void()>& run,
                         const std::function<double(std::size_t)>& result) {
        run();
        // Our numbers and constants are singles, so agreement can only be loose.
        for (std::size_t i = 0; i < kSamples; ++i)
            if (std::isfinite(native[i]) &&
                !(std::fabs(result(i) - native[i]) <= 1e-5 * (1 + std::fabs(native[i]))))
                Fail(way + " computes " + formula.Line + " as " + std::to_string(result(i)) +
                     ", not " + std::to_string(native[i]));
        Add(comparison, formula.Name, way, [run] {
            run();
            return std::int64_t{kSamples};
        });
    };
    const auto value = [&](std::size_t i) { return subject->Values[i]; };
    add(
        "native", [=] { formula.Native(subject->X, subject->Values); }, value);
    add(
        "plain", [=] { RunPlain(*subject); }, value);
    if (kHasRival)
        add(
            "muParser", [=] { subject->Parser.Eval(subject->Values.data(), int{kSamples}); },
            value);
    for (const auto& [level, name] : kLevels)
        if (HasLevel(level))
            add(
                name,
                [=, evaluator = BlockEvaluator(level)]() mutable {
                    RunBlocks(*subject, evaluator);
                },
                [&](std::size_t i) {
                    return subject->ValuesOfBlocks[i / kBlockPoints].At[i % kBlockPoints];
                });
}

} // namespace

int main(int argc, char** argv)
{
    Comparison comparison = EngineComparison(
        "Evaluating right sides",
        "Right sides at 4096 values of x from -10 to 10: as C++ in a loop that the compiler sees "
        "whole, for the baseline processor (native), with muParser's bulk mode on one core, with "
        "the plain evaluator, and with the block evaluator without vectors (scalar) and on each "
        "level.",
        "evaluation");
    for (const Formula& formula : kFormulas)
        AddFormula(comparison, formula);
    return Run(comparison, argc, argv);
}
