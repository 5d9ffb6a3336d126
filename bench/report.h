#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Times several ways of doing the same work against each other, with Google Benchmark. Unless the
// command line says otherwise, all of them are repeated in turns, in random order, so that whatever
// else the machine does meanwhile hits them alike; what counts is the median.

namespace kelvane {

struct Comparison {
    std::string Title;
    std::string Text;                    // what is compared with what
    std::string Item;                    // whose time is told, such as "evaluation"
    benchmark::TimeUnit Unit;            // of these times
    std::vector<std::string> Ways;       // the columns, in this order
    std::vector<std::string> Subjects;   // ways whose speed is compared
    std::vector<std::string> References; // with these
    std::vector<std::string> Rows = {};  // by Add, in its order
};

// One way to do a row's work; run does it once and returns how many items that were. Becomes the
// benchmark "row/way".
void Add(Comparison& comparison, const std::string& row, const std::string& way,
         const std::function<std::int64_t()>& run);

// Says what is wrong and ends the program.
[[noreturn]] void Fail(const std::string& reason);

// Runs everything as the command line says, and prints the tables as Markdown. They are also
// appended to the file that the environment variable KELVANE_BENCH_REPORT names, if any. Returns
// the program's exit code.
int Run(const Comparison& comparison, int argc, char** argv);

} // namespace kelvane
