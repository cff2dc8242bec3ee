// Measures every case: times and allocations as Google Benchmark reports them, or instructions under callgrind.
//
//   SynchroniserBenchmarks [Google Benchmark's options]
//   valgrind --tool=callgrind --instr-atstart=no SynchroniserBenchmarks --instructions [FILTER]
//
// The second form makes one dump for each case and size, triggered as "name/size/operations".

#include "Benchmarks/Support/Allocations.hpp"
#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/ManualExecution.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <iostream>
#include <string_view>
#include <thread>
#include <vector>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#define REMOTE_CODING_HAS_CALLGRIND 1
#else
#define REMOTE_CODING_HAS_CALLGRIND 0
#endif

namespace {

using Benchmarks::Case;
using Benchmarks::Trial;

/// Enough of them that the clock's steps do not matter.
std::int64_t iterationsFor(std::int64_t size) { return std::clamp<std::int64_t>(100'000 / size, 3, 30); }

constexpr double never = 1e9;  // seconds

/// Of all iterations the least disturbed one counts.
void measure(benchmark::State& state, const Case& measured) {
    double firstJob = never;
    double laterJob = never;
    std::uint64_t allocations = 0;
    std::int64_t bytes = 0;
    std::int64_t operations = 1;
    for (auto _ : state) {
        const Trial trial = measured.prepare(state.range(0));
        operations = trial.operations;
        const auto allocationsBefore = Benchmarks::allocationsSoFar();
        const double start = Benchmarks::cpuSeconds();
        if (trial.countsBytes) {
            bytes = Benchmarks::bytesGained(trial.run);
        } else {
            trial.run();
        }
        state.SetIterationTime(Benchmarks::cpuSeconds() - start);
        allocations = Benchmarks::allocationsSoFar() - allocationsBefore;
        const auto jobs = trial.mainJobs ? trial.mainJobs() : std::vector<double>();
        if (!jobs.empty()) {
            firstJob = std::min(firstJob, jobs.front());
            laterJob =
                std::min(laterJob, *std::max_element(jobs.begin() + (jobs.size() > 1 ? 1 : 0), jobs.end()));
            state.counters["firstJob"] = firstJob;
            state.counters["laterJob"] = laterJob;
        }
    }
    const auto count = static_cast<double>(operations);
    state.counters["operations"] = count;
    state.counters["allocations"] = static_cast<double>(allocations) / count;
    state.counters["bytes"] = static_cast<double>(bytes) / count;
}

int countInstructions(std::string_view filter) {
#if REMOTE_CODING_HAS_CALLGRIND
    for (const Case& measured : Benchmarks::allCases()) {
        if (measured.name.find(filter) == std::string::npos) {
            continue;
        }
        for (const std::int64_t size : measured.sizes) {
            const Trial trial = measured.prepare(size);
            const std::string label =
                measured.name + "/" + std::to_string(size) + "/" + std::to_string(trial.operations);
            CALLGRIND_START_INSTRUMENTATION;
            CALLGRIND_ZERO_STATS;
            trial.run();
            CALLGRIND_DUMP_STATS_AT(label.c_str());
            CALLGRIND_STOP_INSTRUMENTATION;
        }
    }
    return 0;
#else
    std::cerr << "Built without valgrind's headers: nothing to count " << filter << " with\n";
    return 1;
#endif
}

}  // namespace

int main(int argumentCount, char** arguments) {
    // A host has several threads: in a process that never had a second one, locks and reference counts cost less than there.
    std::thread([] {}).join();
    if (argumentCount > 1 && std::string_view(arguments[1]) == "--instructions") {
        return countInstructions(argumentCount > 2 ? arguments[2] : "");
    }
    for (const Case& measured : Benchmarks::allCases()) {
        for (const std::int64_t size : measured.sizes) {
            benchmark::RegisterBenchmark(measured.name.c_str(),
                                         [&measured](benchmark::State& state) { measure(state, measured); })
                ->Arg(size)
                ->Iterations(iterationsFor(size))
                ->UseManualTime();
        }
    }
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
