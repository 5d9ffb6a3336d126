#pragma once

#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#ifdef KELVANE_MUPARSER
#include <muParser.h>
#include <omp.h>
#endif

#include "engine/block_evaluator.h"
#include "engine/preparation.h"
#include "report.h"

// What the comparisons of the engine share.

namespace kelvane {

#ifdef KELVANE_MUPARSER
inline constexpr bool kHasRival = true;
using Rival = mu::Parser;
inline void KeepToOneCore()
{
    omp_set_num_threads(1);
}
#else
// Stands in for muParser where it is not installed, and is never asked.
inline constexpr bool kHasRival = false;
struct Rival {
    void DefineVar(const char*, double*) {}
    void SetExpr(const char*) {}
    double Eval() { return 0; }
    void Eval(double*, int) {}
};
inline void KeepToOneCore() {}
#endif

inline Rival MakeRival(const char* text, const std::map<const char*, double*>& variables)
{
    KeepToOneCore(); // as everyone else does
    Rival rival;
    for (const auto& [name, values] : variables)
        rival.DefineVar(name, values);
    rival.SetExpr(text);
    return rival;
}

inline constexpr std::size_t kSamples = 4096;
inline constexpr std::size_t kBlocks = kSamples / kBlockPoints;
static_assert(kBlocks * kBlockPoints == kSamples);

using Samples = std::array<double, kSamples>;

// Numbers from -10 to 10 at equal distances, as a sheet samples x: all of them are singles.
inline Samples SpreadX()
{
    Samples x{};
    for (std::size_t i = 0; i < kSamples; ++i)
        x[i] = static_cast<float>(-10 + 20 * static_cast<double>(i) / (kSamples - 1));
    return x;
}

// The same in blocks.
inline std::vector<BlockPoints> SpreadBlocks()
{
    const Samples x = SpreadX();
    std::vector<BlockPoints> blocks(kBlocks);
    for (std::size_t i = 0; i < kSamples; ++i)
        blocks[i / kBlockPoints].X[i % kBlockPoints] = static_cast<float>(x[i]);
    return blocks;
}

inline Equation Prepared(const std::string& line)
{
    Equation equation{.Text = BracketPowers(DropBlanks(line)), .Slots = {}};
    if (!Tokenize(equation.Slots, equation.Text))
        Fail("too long: " + line);
    return equation;
}

inline constexpr std::array<std::pair<VectorLevel, const char*>, 4> kLevels{
    {{VectorLevel::Scalar, "scalar"},
     {VectorLevel::Bits128, "SSE2"},
     {VectorLevel::Bits256, "AVX2"},
     {VectorLevel::Bits512, "AVX-512"}}};

inline Comparison EngineComparison(const char* title, const char* text, const char* item)
{
    return {.Title = title,
            .Text = text,
            .Item = item,
            .Unit = benchmark::kNanosecond,
            .Ways = {"native", "muParser", "plain", "scalar", "SSE2", "AVX2", "AVX-512"},
            .Subjects = {"AVX2", "SSE2", "AVX-512"},
            .References = {"muParser", "native", "plain"}};
}

} // namespace kelvane
