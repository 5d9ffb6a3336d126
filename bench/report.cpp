#include "report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>

namespace kelvane {

namespace {

using Times = std::vector<double>;

// Needs at least one value.
double Quantile(Times values, double fraction)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(
        std::lround(fraction * static_cast<double>(values.size() - 1)))];
}

// About three digits.
std::string NumberText(std::optional<double> value)
{
    if (!value)
        return "-";
    std::ostringstream text;
    text << std::fixed << std::setprecision(*value < 10 ? 2 : (*value < 100 ? 1 : 0)) << *value;
    return text.str();
}

class Report : public benchmark::ConsoleReporter {
public:
    explicit Report(const Comparison& comparison)
        : ConsoleReporter(OO_None)
        , m_comparison(comparison)
    {
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        std::vector<Run> shown;
        for (const Run& run : runs) {
            const auto rate = run.counters.find("items_per_second");
            if (run.run_type == Run::RT_Iteration && rate != run.counters.end())
                m_times[run.run_name.function_name].push_back(
                    benchmark::GetTimeUnitMultiplier(m_comparison.Unit) / rate->second.value);
            if (run.repetitions <= 1 || run.aggregate_name == "median")
                shown.push_back(run);
        }
        ConsoleReporter::ReportRuns(shown);
    }

    void Finalize() override
    {
        if (m_times.empty())
            return;
        std::vector<Column> times;
        for (const std::string& way : m_comparison.Ways)
            times.push_back({way, way, ""});
        std::vector<Column> ratios;
        for (const std::string& way : m_comparison.Subjects)
            for (const std::string& reference : m_comparison.References) {
                ratios.push_back({way, way, reference});
                ratios.back().Heading.append(" : ").append(reference);
            }
        const std::string unit = benchmark::GetTimeUnitString(m_comparison.Unit);
        const std::string text = "## " + m_comparison.Title + "\n\n" + m_comparison.Text + "\n\n" +
                                 Table(unit + " per " + m_comparison.Item, times) + "\n" +
                                 Table("times as fast", ratios) + "\n" + SpreadText() + "\n\n";
        GetOutputStream() << "\n" << text;
        if (const char* path = std::getenv("KELVANE_BENCH_REPORT"))
            if (!(std::ofstream(path, std::ios::app) << text))
                Fail(std::string("cannot write ") + path);
    }

private:
    struct Column {
        std::string Heading;
        std::string Way;
        std::string Reference; // the column tells times unless there is one
    };

    std::optional<double> Cell(const std::string& row, const Column& column) const
    {
        const auto mine = m_times.find(row + "/" + column.Way);
        const auto theirs = m_times.find(row + "/" + column.Reference);
        if (mine == m_times.end() || (!column.Reference.empty() && theirs == m_times.end()))
            return std::nullopt;
        const double time = Quantile(mine->second, 0.5);
        return column.Reference.empty() ? time : Quantile(theirs->second, 0.5) / time;
    }

    // A line of a table: each cell as wide as the heading above it.
    static std::string Line(const std::string& name, const std::vector<Column>& columns,
                            const std::function<std::string(const Column&)>& cell)
    {
        std::ostringstream text;
        text << "| " << std::left << std::setw(40) << name << std::right;
        for (const Column& column : columns)
            text << " | " << std::setw(static_cast<int>(column.Heading.size())) << cell(column);
        return text.str() + " |\n";
    }

    std::string Table(const std::string& heading, const std::vector<Column>& columns) const
    {
        std::string text = Line(heading, columns, [](const Column& c) { return c.Heading; }) +
                           Line(":--", columns, [](const Column&) { return "--:"; });
        const auto add = [&](const std::string& name,
                             const std::function<std::optional<double>(const Column&)>& value) {
            if (std::any_of(columns.begin(), columns.end(),
                            [&](const Column& column) { return value(column).has_value(); }))
                text += Line(name, columns, [&](const Column& c) { return NumberText(value(c)); });
        };
        for (const std::string& row : m_comparison.Rows)
            add(row, [&](const Column& column) { return Cell(row, column); });
        add("geometric mean", [&](const Column& column) { return MeanRatio(column); });
        return text;
    }

    // Geometric; nothing where there are too few ratios for a mean.
    std::optional<double> MeanRatio(const Column& column) const
    {
        int count = 0;
        double logarithms = 0;
        for (const std::string& row : m_comparison.Rows)
            if (const auto ratio = Cell(row, column); ratio && !column.Reference.empty()) {
                ++count;
                logarithms += std::log(*ratio);
            }
        return count < 3 ? std::nullopt : std::optional(std::exp(logarithms / count));
    }

    // How far apart the middle half of a benchmark's repetitions lies.
    std::string SpreadText() const
    {
        Times spreads;
        for (const auto& [name, times] : m_times)
            spreads.push_back(100 * (Quantile(times, 0.75) - Quantile(times, 0.25)) /
                              Quantile(times, 0.5));
        return "Medians of " + std::to_string(m_times.begin()->second.size()) +
               " repetitions; the middle half of them spans " + NumberText(Quantile(spreads, 0.5)) +
               " % in a typical cell, " + NumberText(Quantile(spreads, 1)) + " % in the worst.";
    }

    const Comparison& m_comparison;
    std::map<std::string, Times> m_times; // of all repetitions, by "row/way"
};

} // namespace

void Fail(const std::string& reason)
{
    std::cerr << reason << "\n";
    std::exit(EXIT_FAILURE);
}

void Add(Comparison& comparison, const std::string& row, const std::string& way,
         const std::function<std::int64_t()>& run)
{
    if (comparison.Rows.empty() || comparison.Rows.back() != row)
        comparison.Rows.push_back(row);
    const auto repeat = [run](benchmark::State& state) {
        std::int64_t items = 0;
        for ([[maybe_unused]] auto _ : state) {
            items += run();
            benchmark::ClobberMemory();
        }
        state.SetItemsProcessed(items);
    };
    // The processor's time is told: others that use the machine disturb it less.
    benchmark::RegisterBenchmark((row + "/" + way).c_str(), repeat)
        ->MeasureProcessCPUTime()
        ->Unit(benchmark::kMicrosecond);
}

int Run(const Comparison& comparison, int argc, char** argv)
{
    std::array<std::string, 3> defaults{"--benchmark_enable_random_interleaving=true",
                                        "--benchmark_repetitions=11", "--benchmark_min_time=0.02"};
    std::vector<char*> arguments{argv[0]};
    for (std::string& argument : defaults)
        arguments.push_back(argument.data());
    arguments.insert(arguments.end(), argv + 1, argv + argc + 1); // with the closing null
    int count = static_cast<int>(arguments.size()) - 1;
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return EXIT_FAILURE;
    Report report(comparison);
    benchmark::RunSpecifiedBenchmarks(&report);
    benchmark::Shutdown();
    return EXIT_SUCCESS;
}

} // namespace kelvane
