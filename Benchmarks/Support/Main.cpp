// Measures every case: times and allocations as Google Benchmark reports them, or instructions under callgrind.
//
//   SynchroniserBenchmarks [Google Benchmark's options]
//   valgrind --tool=callgrind --instr-atstart=no SynchroniserBenchmarks --instructions [FILTER]
//   valgrind --tool=callgrind --instr-atstart=no SynchroniserBenchmarks --instructions-of-jobs [FILTER]
//   SynchroniserBenchmarks --list    the cases, each as "name/size", and which instructions of it are counted: whole, jobs

#include "Benchmarks/Support/Case.hpp"
#include "Benchmarks/Support/Instructions.hpp"
#include "Benchmarks/Support/Measure.hpp"

#include <benchmark/benchmark.h>

#include <iostream>
#include <string_view>
#include <thread>

namespace {

void list() {
    for (const auto& entry : Benchmarks::allCases()) {
        for (const auto size : entry.sizes) {
            std::cout << entry.name << '/' << size << '\t'
                      << (Benchmarks::countsWhole(entry.counted) ? "whole " : "")
                      << (Benchmarks::countsJobs(entry.counted) ? "jobs" : "") << '\n';
        }
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    // A host has several threads: in a process that never had a second one, locks and reference counts cost less than there.
    std::thread([] {}).join();
    const std::string_view mode = argumentCount > 1 ? arguments[1] : "";
    const std::string_view filter = argumentCount > 2 ? arguments[2] : "";
    if (mode == "--instructions") {
        return Benchmarks::countInstructions(filter) ? 0 : 1;
    }
    if (mode == "--instructions-of-jobs") {
        return Benchmarks::countInstructionsOfJobs(filter) ? 0 : 1;
    }
    if (mode == "--list") {
        list();
        return 0;
    }
    Benchmarks::registerMeasurements();
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
