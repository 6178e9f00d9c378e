// The yardstick: measures our work and its anchors in one run, on one thread, and prints the table
// of goals; then, unless options choose otherwise, what is counted and not timed. All options of
// Google Benchmark work; its own lines go to stderr, the table to stdout.
#include "bench/content.h"
#include "bench/goals.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <new>

namespace
{

long lAllocations = 0;
long lBlocksInUse = 0;

class Reporter : public benchmark::ConsoleReporter
{
public:
    Reporter() : ConsoleReporter(OO_Tabular)
    {
        SetOutputStream(&std::cerr);
        SetErrorStream(&std::cerr);
    }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration)
                continue;
            const std::string& args = run.run_name.args;
            const std::string name = run.run_name.function_name + (args.empty() ? "" : "/" + args);
            const auto [at, isNew] = times.emplace(name, run.GetAdjustedCPUTime());
            if (!isNew)
                at->second = std::min(at->second, run.GetAdjustedCPUTime());
        }
    }
    bench::Times times;
};

void PrintCounts()
{
    const std::string& file = bench::ContentOf(6).strFile;
    cSMLP parser(1);
    vorn::cRecord in = bench::WholeFile(file);
    const auto parse = [&] {
        bench::Records records;
        int count = 0;
        parser.SmlParser(in, records, count);
    };
    parse();
    const long allocations = lAllocations;
    parse();
    bench::PrintLine("allocations, six-entry file parsed",
                     static_cast<double>(lAllocations - allocations), 40);
    bench::PrintLine("sizeof(cSMLP), bytes", sizeof(cSMLP), 12 * 1024);
    const long blocks = lBlocksInUse;
    for (int i = 0; i < 1000000; ++i)
        parse();
    bench::PrintLine("blocks that a million files leave behind, plus 1",
                     static_cast<double>(lBlocksInUse - blocks + 1), 1);
    bench::PrintLine("libquarn.so, stripped, KiB",
                     static_cast<double>(std::filesystem::file_size(QUARN_STRIPPED_LIBRARY)) / 1024,
                     350);
}

} // namespace

// Not inlined: compilers compare what they see of new with what they see of delete.
__attribute__((noinline)) void* operator new(std::size_t size)
{
    ++lAllocations;
    ++lBlocksInUse;
    if (void* const p = std::malloc(size != 0 ? size : 1))
        return p;
    throw std::bad_alloc();
}
__attribute__((noinline)) void operator delete(void* p) noexcept
{
    lBlocksInUse -= p != nullptr ? 1 : 0;
    std::free(p);
}
__attribute__((noinline)) void operator delete(void* p, std::size_t) noexcept
{
    ::operator delete(p);
}

int main(int argc, char** argv)
{
    // Interleaved repetitions, of which the quickest counts: a neighbour's load meets all alike.
    std::string defaults[] = {"--benchmark_repetitions=9", "--benchmark_min_time=0.02",
                              "--benchmark_enable_random_interleaving=true"};
    std::vector<char*> args(argv, argv + 1);
    for (std::string& option : defaults)
        args.push_back(option.data());
    args.insert(args.end(), argv + 1, argv + argc);
    int count = static_cast<int>(args.size());
    benchmark::Initialize(&count, args.data());
    if (benchmark::ReportUnrecognizedArguments(count, args.data()))
        return 2;
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    bench::PrintRatios(reporter.times);
    if (argc == 1)
        PrintCounts();
    return 0;
}
