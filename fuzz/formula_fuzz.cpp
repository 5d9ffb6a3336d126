#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/shared_state.h"
#include "doc/rich_page.h"
#include "engine/checks.h"
#include "engine/evaluate.h"
#include "engine/point_blocks.h"
#include "graph/view_tools.h"
#include "input.h"

// From the editor's text to marks on a surface. The first line of an input decides, in this order,
// on modes, ticks, the view, the looks of curves, and the points where evaluators are compared. The
// others are the sheet: "{" raises what follows, "}" lowers it, a form feed begins a page.

namespace kelvane::fuzz {

namespace {

// The sheet as the editor would hand it on.
SheetText SheetOf(std::string_view text)
{
    const RichLine emptyLine{RichRun{}};
    const RichPage emptyPage{emptyLine};
    std::vector<RichPage> pages{emptyPage};
    for (const char c : text) {
        if (c == '\f' && pages.size() < kMaxPages)
            pages.push_back(emptyPage);
        else if (c == '\n')
            pages.back().push_back(emptyLine);
        else if (c == '{' || c == '}')
            pages.back().back().push_back({"", c == '{'});
        else if (c != '\r') // no line holds one
            pages.back().back().back().Text += c;
    }
    SheetText sheet;
    for (std::size_t page = 0; page < pages.size(); ++page) {
        const int lines = static_cast<int>(pages[page].size());
        sheet.LinesPerPage = std::max(sheet.LinesPerPage, lines);
        std::string& plain = sheet.PagePlain[page];
        plain = PowerToPlain(pages[page]);
        Require(std::count(plain.begin(), plain.end(), '\r') == lines, "plain lines are as many");
    }
    return sheet;
}

bool Same(const std::optional<EquationFault>& a, const std::optional<EquationFault>& b)
{
    if (!a || !b)
        return a.has_value() == b.has_value();
    return a->Code == b->Code && a->Equation == b->Equation && a->Slot == b->Slot;
}

void RequireTable(const EquationTable& table)
{
    Require(table.EquationCount >= 0 && table.EquationCount <= kMaxEquations &&
                table.Equations.size() == static_cast<std::size_t>(table.EquationCount),
            "the table keeps its bounds");
    for (const Equation& equation : table.Equations) {
        const auto isSound = [](const Slot& slot) {
            return slot.Tok <= Token::Atan && slot.Num >= 0 &&
                   (slot.Tok == Token::Blank || slot.Num == 0);
        };
        Require(equation.Slots.size() <= kMaxSlots, "an equation keeps its bounds");
        Require(std::all_of(equation.Slots.begin(), equation.Slots.end(), isSound),
                "a slot holds a token or a number");
        Require(equation.Text.find_first_of(" \t\r") == std::string::npos, "blanks are dropped");
        const int start = EquationsStart(equation);
        Require(start >= 2 && start <= static_cast<int>(equation.Slots.size()) + 2,
                "the right side begins in the equation or just after it");
    }
}

// NaN, which only a range that is not finite leads to, has no bits of its own.
template <typename T>
bool SameBits(T a, T b)
{
    return (a == b && std::signbit(a) == std::signbit(b)) || (std::isnan(a) && std::isnan(b));
}

// Compares what compiled programs make of an equation with what the plain evaluator makes of it, at
// some points.
class Agreement {
public:
    Agreement(const Equation& equation, Choices& choices)
        : m_equation(equation)
        , m_compiled(CompileEquation(equation))
    {
        const int slots = static_cast<int>(equation.Slots.size());
        m_count = 1 + choices.Below(std::clamp(kMostSteps / (slots + 1), 1, kMostPoints));
        m_search.Variable = choices.Flag() ? Dependent::Y : Dependent::Z;
        m_search.Range = {choices.Number(), choices.Number(), choices.Number()};
        for (std::size_t at = 0; at < Count(); ++at) {
            m_search.Halves[at] = choices.Flag() ? SolveHalf::Rising : SolveHalf::Falling;
            m_points.X[at] = choices.Number();
            m_points.Y[at] = choices.Number();
            m_points.Z[at] = choices.Number();
            const EvalState state = StateAt(at);
            m_simple[at] = m_solved[at] = state;
            (ForY() ? SimpleY : SimpleZ)(m_simple[at], equation);
            (ForY() ? SolveY : SolveZ)(m_solved[at], equation, m_search.Range);
            CheckWithin(m_solved[at]);
        }
    }

    void Check(VectorLevel level)
    {
        BlockEvaluator evaluator(level);
        CheckSide(evaluator, m_compiled.Left);
        CheckSide(evaluator, m_compiled.Right);
        PointSolver solver(level);
        BlockResults results;
        solver.Simple(m_compiled, m_points, m_count, results);
        CheckResults(results, m_simple);
        solver.Solve(m_compiled, m_points, m_count, m_search, results);
        CheckResults(results, m_solved);
        CheckDirection(solver);
    }

private:
    static constexpr int kMostPoints = 11;   // fill some vectors and not others
    static constexpr int kMostSteps = 2'000; // of one halving
    using States = std::array<EvalState, kMostPoints>;

    std::size_t Count() const { return static_cast<std::size_t>(m_count); }
    bool ForY() const { return m_search.Variable == Dependent::Y; }
    float Variable(const EvalState& state) const { return ForY() ? state.EvalY : state.EvalZ; }

    EvalState StateAt(std::size_t at) const
    {
        return {.EvalX = m_points.X[at],
                .EvalY = m_points.Y[at],
                .EvalZ = m_points.Z[at],
                .RightStart = m_compiled.Right.Start,
                .SolveDirection = m_search.Halves[at]};
    }

    void CheckWithin(const EvalState& solved) const
    {
        const auto [low, high] = std::minmax(m_search.Range.Low, m_search.Range.High);
        const bool judged = !solved.EvalError && std::isfinite(low) && std::isfinite(high);
        Require(!judged || (Variable(solved) >= low && Variable(solved) <= high),
                "a solution is in the range");
    }

    void CheckSide(BlockEvaluator& evaluator, const CompiledSide& side)
    {
        BlockValues values;
        evaluator.Evaluate(side, m_points, m_count, values);
        for (std::size_t at = 0; at < Count(); ++at) {
            EvalState state = StateAt(at);
            int position = side.Start;
            const double value = Evaluate(state, position, m_equation);
            Require(std::isfinite(values.At[at]) != state.EvalError,
                    "a side fails where it should");
            Require(state.EvalError || SameBits(values.At[at], value), "a side has the same bits");
        }
    }

    void CheckResults(const BlockResults& results, const States& expected) const
    {
        for (std::size_t at = 0; at < Count(); ++at) {
            const EvalState& state = expected[at];
            const auto outcome = state.EvalSkip    ? PointOutcome::GaveUp
                                 : state.EvalError ? PointOutcome::Failed
                                                   : PointOutcome::Found;
            Require(results.Outcome[at] == outcome, "a point ends the same way");
            Require(state.EvalError || SameBits(results.Value[at], Variable(state)),
                    "a point has the same bits");
        }
    }

    void CheckDirection(PointSolver& solver) const
    {
        EvalState plain = StateAt(0);
        plain.DirectionToggle = plain.SolveDirection == SolveHalf::Rising;
        EvalState block = plain;
        const SolveHalf expected = (ForY() ? DirectionY : DirectionZ)(plain, m_equation);
        Require(solver.Direction(m_compiled, m_search.Variable, block) == expected &&
                    block.DirectionToggle == plain.DirectionToggle && Variable(block) == -1,
                "the direction test has the same verdict");
    }

    BlockPoints m_points;
    const Equation& m_equation;
    CompiledEquation m_compiled;
    int m_count = 0;
    States m_simple; // the plain results
    States m_solved;
    BlockSearch m_search;
};

// Compares the first few equations, with every kind of vector that the processor has.
void CheckAgreement(const EquationTable& table, Choices& choices)
{
    int left = 3;
    for (const Equation& equation : table.Equations) {
        if (equation.Slots.empty() || left-- <= 0)
            continue;
        Agreement agreement(equation, choices);
        for (const auto level : {VectorLevel::Scalar, VectorLevel::Bits128, VectorLevel::Bits256,
                                 VectorLevel::Bits512}) {
            if (HasLevel(level))
                agreement.Check(level);
        }
    }
}

constexpr PixelSize kSize{640, 480};
constexpr double kTick = 1.0 / 64; // of the clock, in seconds

// What may still be drawn after a stop.
enum class AfterStop : std::uint8_t {
    Nothing,
    WhatIsFound // by a search, and not drawn yet
};

// The world around a draw. It looks at the marks, counts them and throws them away, lets a draw
// work on a few blocks of samples, and has a clock that moves whenever it is read.
class Outside : public Surface, public DrawHost, public Clock {
public:
    explicit Outside(AfterStop afterStop)
        : m_afterStop(afterStop)
    {
    }

    PixelSize Size() const override { return kSize; }
    void Clear(Rgb /*sheet*/) override {}
    void SetLineWidth(int width) override { Require(IsDrawWidth(width), "the width is usable"); }
    void Pixel(PixelPoint at, Rgb /*color*/) override { Mark(at, at); }
    void Line(PixelPoint from, PixelPoint to, Rgb /*color*/) override { Mark(from, to); }
    void FillRect(PixelRect r, Rgb /*color*/) override
    {
        Require(r.Width >= 0 && r.Height >= 0, "a rectangle is not inside out");
    }
    void Hatch(std::span<const PixelPoint> corners, Rgb /*color*/) override
    {
        Require(corners.size() >= 3, "a hatched area has corners");
        Require(!IsStopped(), "nothing is hatched after a stop");
        Require(std::all_of(corners.begin(), corners.end(), IsFinite),
                "a hatched area has finite corners");
    }
    void Text(const TextPlace& place, std::string_view text, Rgb /*color*/) override
    {
        Require(IsFinite(place.Anchor) && !text.empty(), "a text says something somewhere");
    }
    PixelSize TextSize(std::string_view text) const override
    {
        return {7.0 * static_cast<double>(text.size()), 12};
    }

    void ShowMessage(const Message& message) override
    {
        Require(!message.Text.empty() && ++Messages == 1, "there is one message at the most");
    }
    void PercentGo(double fraction) override
    {
        Require(std::isfinite(fraction), "the progress is a number");
    }
    void InitPerc() override {}
    void SetProgressColor(Rgb /*color*/) override {}
    void Breathe() override {}
    bool IsWatched() const override { return true; }
    void ShowSoFar() override {}
    bool MayGoOn() const override { return ++m_blocks < kMostBlocks; }
    double Seconds() const override { return m_seconds += kTick; }

    bool IsStopped() const { return m_blocks >= kMostBlocks; }

    int Messages = 0;
    std::int64_t Marks = 0;

private:
    static constexpr int kMostBlocks = 40;

    static bool IsFinite(PixelPoint at) { return std::isfinite(at.X) && std::isfinite(at.Y); }
    void Mark(PixelPoint from, PixelPoint to)
    {
        Require(IsFinite(from) && IsFinite(to), "a mark is at finite points");
        Require(!IsStopped() || m_afterStop == AfterStop::WhatIsFound,
                "nothing is drawn after a stop");
        ++Marks;
    }

    AfterStop m_afterStop;
    mutable int m_blocks = 0;
    mutable double m_seconds = 0;
};

CalculationModes ModesOf(unsigned bits)
{
    const auto has = [=](unsigned bit) { return (bits & bit) != 0; };
    const CalcMode mode = has(2) ? CalcMode::Advanced : CalcMode::Simple;
    return {.Mode3D = has(1),
            .AltFamily = has(64),
            .CalcMode2D = mode,
            .CalcMode3D = mode,
            .DoubleDraw = has(4) ? TickState::On : TickState::Off,
            .MultiDraw = has(8) ? TickState::On : TickState::Off};
}

// A view as the tools for it would leave it.
void ChooseView(ViewState& view, Choices& choices, PixelSize size)
{
    const Interval x{choices.Number(), choices.Number()};
    if (!FitRange(view, x, {choices.Number(), choices.Number()}, size))
        FitEqualUnits(view, {-10, 10}, size);
    UpdatePixPerStep(view);
    SetZoom(view, std::fabs(choices.Number()));
    SetCenter(view, {choices.Number(), choices.Number()});
    const double samples = 1 + choices.Below(100);
    const double span = static_cast<double>(view.XMax) - view.XMin;
    view.Step2D = StepFromResolution(samples / span).value_or(view.Step2D);
}

void ChooseSettings(SharedState& state, Choices& choices)
{
    state.Settings.Style = choices.Flag() ? PointStyle::Pixel : PointStyle::Line;
    state.Settings.Coloring = static_cast<Coloring2D>(choices.Below(3));
    state.Settings.GradientAlong = choices.Flag() ? GradientAxis::X : GradientAxis::Y;
    state.Settings.DrawWidth = 1 + choices.Below(kMaxDrawWidth);
    state.Axes.ShowGrid = choices.Flag();
    state.Settings.BudgetSeconds = (1 + choices.Below(48)) * kTick; // beyond 40 a stop comes first
    if (choices.Below(4) == 0) {
        for (float& element : state.ViewMatrix)
            element = static_cast<float>(choices.Below(64) - 32) / 8;
    }
}

// Draws the sheet and compares what happened with what was to be expected.
void CheckDraw(SharedState& state)
{
    const auto fault = FindFault(state.Table, state.Sheet, state.Ticks, state.Modes);
    state.Table.Clear();
    const bool searched = state.Modes.AltFamily && !state.Modes.Mode3D;
    Outside outside(searched ? AfterStop::WhatIsFound : AfterStop::Nothing);
    const double division = InitAxis(outside, state.View, state.Axes, kWhite);
    Require(std::isfinite(division) && division >= 0, "the divisions have a distance");

    const DrawEnd end = Draw(MakeDrawContext(state, outside, outside, outside));
    Require((end == DrawEnd::Refused) == (outside.Messages == 1), "a refusal has its message");
    Require((end == DrawEnd::Stopped) == outside.IsStopped(), "a stop ends the draw");
    Require(!fault || end != DrawEnd::Complete, "what is faulty is not drawn to the end");
    Require(state.Table.EquationCount == 0 && state.Table.Equations.empty(),
            "the table is empty afterwards");
    const DrawStats& stats = state.Stats;
    Require(stats.Failed <= stats.Samples && stats.Compiled <= stats.Samples,
            "no more samples count than there are");
    const bool simple = !state.Modes.Mode3D && state.Modes.CalcMode2D == CalcMode::Simple;
    Require(!simple || stats.Points == outside.Marks, "every point is a mark");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t firstLine = std::min(input.find('\n'), size);
    Choices choices(input.substr(0, firstLine));
    SharedState state;
    state.Modes = ModesOf(choices.Byte());
    for (std::size_t number = 1, ticks = choices.Byte(); number < 700; ++number)
        state.Ticks.EquationOn[number] = ((ticks >> (number - 1) % 6) & 1U) != 0;
    ChooseView(state.View, choices, kSize);
    ChooseSettings(state, choices);
    state.Sheet = SheetOf(input.substr(std::min(firstLine + 1, size)));

    const auto tooMuch = PrepareEquations(state.Table, state.Sheet);
    RequireTable(state.Table);
    if (tooMuch) {
        Require(tooMuch->Code == Fault::TooLong || tooMuch->Code == Fault::TooManyEquations,
                "preparation finds only what is too much");
    } else {
        const auto fault = CheckEquations(state.Table, state.Ticks, state.Modes);
        Require(Same(fault, CheckEquations(state.Table, state.Ticks, state.Modes)),
                "checks find the same fault again");
        Require(!fault || state.Ticks.On(fault->Equation), "only ticked equations are checked");
        CheckAgreement(state.Table, choices);
    }
    state.Table.Clear();
    CheckDraw(state);
    return 0;
}

} // namespace kelvane::fuzz
