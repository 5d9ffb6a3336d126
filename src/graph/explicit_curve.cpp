#include "graph/explicit_curve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "graph/explicit_cell.h"
#include "graph/explicit_function.h"

namespace kelvane {

namespace {

constexpr std::size_t kBlock = kBlockPoints;
constexpr double kWidestCell = 0.5; // steps
constexpr std::size_t kActiveCells = 64;
constexpr std::size_t kMostHalved = 8; // of one cell at a time
constexpr int kFirstEffort = 256;      // of a cell
constexpr int kFullEffort = 4096;
constexpr std::size_t kMostStubborn = 8192;

// The share of the work that is done when the columns have been looked at, and when every cell has
// been given its first effort.
constexpr double kScanned = 0.05;
constexpr double kTried = 0.7;

double Change(double a, double b)
{
    if (std::isfinite(a) && std::isfinite(b))
        return std::abs(a - b);
    return std::isfinite(a) || std::isfinite(b) ? std::numeric_limits<double>::infinity() : 0;
}

class ExplicitSearch {
public:
    ExplicitSearch(const CurveSearch& search, GraphOver over)
        : m_function(search, over)
        , m_search(search)
        , m_scale{static_cast<double>(m_function.Height()), m_function.StepsPerUnit()}
    {
    }

    Pace Run(double step);

private:
    // A stretch that is halved; its middle and the halves are in the blocks.
    struct Halving {
        std::size_t Cell;
        Stretch Whole;
    };

    enum class Effort : std::uint8_t { First, Full };

    Pace Scan(const Interval& abscissas, double step);
    void ScanBlock(std::size_t count);
    Pace SplitColumns();
    Pace RunCells(Effort effort);
    void Refill();
    void Round();
    void Halve();
    void Retire(Effort effort);
    void GiveUp();

    ExplicitFunction m_function;
    const CurveSearch& m_search;
    CellScale m_scale;
    double m_fraction = 0; // scanned

    // What is to be done; the last come first.
    std::vector<Stretch> m_columns;
    std::vector<ExplicitCell> m_waiting;

    std::vector<ExplicitCell> m_active;
    std::vector<ExplicitCell> m_stubborn;
    std::vector<Halving> m_halvings;
    std::vector<std::size_t> m_done; // of the active, in order

    std::array<double, kBlock> m_abscissas{};
    std::array<double, kBlock> m_values{};
    std::array<Interval, kBlock> m_intervals{};
    std::array<ExplicitFunction::Bounds, kBlock> m_bounds{};
};

// Cuts an interval into columns, draws those that are clear at first sight, and keeps the others.
Pace ExplicitSearch::Scan(const Interval& abscissas, double step)
{
    const double steps = (abscissas.High - abscissas.Low) * m_scale.StepsPerUnit;
    const auto columns = static_cast<std::size_t>(std::max(std::ceil(steps / step - 1e-6), 1.0));
    const auto border = [&](std::size_t column) {
        return std::lerp(abscissas.Low, abscissas.High,
                         static_cast<double>(column) / static_cast<double>(columns));
    };
    for (std::size_t first = 0; first < columns; first += kBlock - 1) {
        const std::size_t count = std::min(columns - first, kBlock - 1);
        for (std::size_t i = 0; i <= count; ++i)
            m_abscissas[i] = border(first + i);
        ScanBlock(count);
        const double part = static_cast<double>(first) / static_cast<double>(columns);
        m_fraction = std::max(m_fraction, kScanned * part);
        if (m_search.Pacer.Ask(m_fraction) == Pace::Stop)
            return Pace::Stop;
    }
    return Pace::GoOn;
}

void ExplicitSearch::ScanBlock(std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        m_intervals[i] = {m_abscissas[i], m_abscissas[i + 1]};
    m_function.Values(std::span(m_abscissas).first(count + 1), m_values);
    m_function.Ranges(std::span(m_intervals).first(count), m_bounds);
    std::vector<Stretch> lines;
    for (std::size_t i = 0; i < count; ++i) {
        const Stretch column{m_intervals[i], m_values[i], m_values[i + 1], m_bounds[i]};
        const StretchKind kind = Judge(column, m_scale);
        if (kind == StretchKind::Line)
            lines.push_back(column);
        else if (kind == StretchKind::Open)
            m_columns.push_back(column);
    }
    AddPieces(m_function, lines, m_search.Sketch);
}

Pace ExplicitSearch::SplitColumns()
{
    const std::vector<Stretch> wide = std::exchange(m_columns, {});
    for (const Stretch& column : wide) {
        if (Scan(column.At, kWidestCell) == Pace::Stop)
            return Pace::Stop;
    }
    return Pace::GoOn;
}

// The columns are looked at even when the time is up: it takes no longer than to find out which
// part of the lattice is unresolved.
Pace ExplicitSearch::Run(double step)
{
    const Interval all{m_function.Abscissa(0), m_function.Abscissa(m_function.Length())};
    if (Scan(all, step) == Pace::Stop)
        return Pace::Stop;
    if (step > kWidestCell && SplitColumns() == Pace::Stop)
        return Pace::Stop;
    std::ranges::reverse(m_columns);
    if (const Pace pace = RunCells(Effort::First); pace != Pace::GoOn)
        return pace;
    m_waiting = std::move(m_stubborn);
    return RunCells(Effort::Full);
}

Pace ExplicitSearch::RunCells(Effort effort)
{
    const auto all = static_cast<double>(m_columns.size() + m_waiting.size());
    const double from = effort == Effort::First ? kScanned : kTried;
    const double share = effort == Effort::First ? kTried - kScanned : 1 - kTried;
    for (;;) {
        const auto left =
            static_cast<double>(m_columns.size() + m_waiting.size() + m_active.size());
        const Pace pace = m_search.Pacer.Ask(from + (all > 0 ? 1 - left / all : 1) * share);
        if (pace == Pace::TimeUp)
            GiveUp();
        if (pace != Pace::GoOn)
            return pace;
        constexpr int kRounds = 8; // take well below a millisecond
        for (int round = 0; round < kRounds; ++round) {
            Refill();
            if (m_active.empty())
                return Pace::GoOn;
            Round();
            Retire(effort);
        }
    }
}

void ExplicitSearch::Refill()
{
    for (; m_active.size() < kActiveCells && !m_columns.empty(); m_columns.pop_back())
        m_active.emplace_back(m_scale, m_columns.back());
    for (; m_active.size() < kActiveCells && !m_waiting.empty(); m_waiting.pop_back())
        m_active.push_back(std::move(m_waiting.back()));
}

// Halves some stretches of every active cell.
void ExplicitSearch::Round()
{
    m_halvings.clear();
    m_done.clear();
    const std::size_t quota = std::clamp(kBlock / 2 / m_active.size(), std::size_t{1}, kMostHalved);
    for (std::size_t cell = 0; cell < m_active.size(); ++cell) {
        const std::size_t before = m_halvings.size();
        Stretch stretch;
        double middle = 0;
        while (m_halvings.size() < before + quota && m_active[cell].Next(stretch, middle)) {
            m_abscissas[m_halvings.size()] = middle;
            m_halvings.push_back({cell, stretch});
        }
        if (m_halvings.size() == before)
            m_done.push_back(cell);
    }
    if (!m_halvings.empty())
        Halve();
}

// What came first in its cell goes back last, to come first again.
void ExplicitSearch::Halve()
{
    const std::size_t count = m_halvings.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Interval& at = m_halvings[i].Whole.At;
        m_intervals[2 * i] = {at.Low, m_abscissas[i]};
        m_intervals[2 * i + 1] = {m_abscissas[i], at.High};
    }
    m_function.Values(std::span(m_abscissas).first(count), m_values);
    m_function.Ranges(std::span(m_intervals).first(2 * count), m_bounds);
    for (std::size_t i = count; i-- > 0;) {
        const Stretch& whole = m_halvings[i].Whole;
        const double value = m_values[i];
        const int depth = whole.Depth + 1;
        m_active[m_halvings[i].Cell].Take({m_intervals[2 * i], whole.V0, value, m_bounds[2 * i],
                                           whole.Change0, Change(value, whole.V1), depth},
                                          {m_intervals[2 * i + 1], value, whole.V1,
                                           m_bounds[2 * i + 1], Change(value, whole.V0),
                                           whole.Change1, depth});
    }
}

// Ends the work on cells that are done, or have taken too long for now.
void ExplicitSearch::Retire(Effort effort)
{
    const int limit = effort == Effort::First ? kFirstEffort : kFullEffort;
    for (const std::size_t cell : m_done)
        m_active[cell].Finish(m_function, m_search.Sketch);
    for (std::size_t cell = m_active.size(); cell-- > 0;) {
        const bool isDone = std::ranges::binary_search(m_done, cell);
        if (!isDone && m_active[cell].Effort() < limit)
            continue;
        if (!isDone && effort == Effort::First && m_stubborn.size() < kMostStubborn) {
            m_active[cell].Relax();
            m_stubborn.push_back(std::move(m_active[cell]));
        } else if (!isDone) {
            m_active[cell].Finish(m_function, m_search.Sketch);
        }
        if (cell + 1 < m_active.size())
            m_active[cell] = std::move(m_active.back());
        m_active.pop_back();
    }
}

void ExplicitSearch::GiveUp()
{
    for (auto* cells : {&m_active, &m_waiting, &m_stubborn}) {
        for (ExplicitCell& cell : *cells)
            cell.Finish(m_function, m_search.Sketch);
        cells->clear();
    }
    for (const Stretch& column : m_columns)
        ExplicitCell(m_scale, column).Finish(m_function, m_search.Sketch);
}

} // namespace

Pace TraceExplicit(const CurveSearch& search, GraphOver over, double step)
{
    return ExplicitSearch(search, over).Run(step);
}

} // namespace kelvane
