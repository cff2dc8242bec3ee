#include "Benchmarks/Support/Measure.hpp"

#include "Benchmarks/Support/Allocations.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

namespace Benchmarks {
namespace {

/// Enough of them that the clock's steps do not matter.
std::int64_t iterationsFor(std::int64_t size) { return std::clamp<std::int64_t>(100'000 / size, 3, 30); }

using Seconds = std::vector<double>;

double median(Seconds values) {
    const auto middle = values.begin() + std::ssize(values) / 2;
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// What one counter says of the iterations.
void report(benchmark::State& state, const std::string& name, const Seconds& values) {
    if (values.empty()) {
        return;
    }
    state.counters[name + "Least"] = *std::ranges::min_element(values);
    state.counters[name + "Median"] = median(values);
    state.counters[name + "Most"] = *std::ranges::max_element(values);
}

/// Room for the jobs is taken before any of them is timed.
Seconds timedJobs(const Trial& trial) {
    Seconds jobs;
    jobs.reserve(static_cast<std::size_t>(trial.operations) + 1'000);
    double start = 0;
    trial.watched->watchMainJobs([&start] { start = cpuSeconds(); },
                                 [&] { jobs.push_back(cpuSeconds() - start); });
    trial.run();
    trial.watched->watchMainJobs({}, {});
    return jobs;
}

/// Of each iteration; the first job of an upload says what has changed, the others are small and many.
struct Jobs {
    Seconds first;
    Seconds usual;
    Seconds longest;
    Seconds longestLater;

    void add(const Seconds& jobs) {
        first.push_back(jobs.front());
        usual.push_back(median(jobs));
        longest.push_back(*std::ranges::max_element(jobs));
        if (jobs.size() > 1) {
            longestLater.push_back(*std::max_element(jobs.begin() + 1, jobs.end()));
        }
    }
};

void measure(benchmark::State& state, const Case& measured) {
    Seconds times;
    Jobs jobs;
    std::uint64_t allocations = 0;
    std::int64_t bytes = 0;
    double operations = 1;
    for (auto _ : state) {
        const Trial trial = measured.prepare(state.range(0));
        operations = static_cast<double>(trial.operations);
        const auto allocationsBefore = allocationsSoFar();
        const double start = cpuSeconds();
        if (trial.countsBytes) {
            bytes = bytesGained(trial.run);
        } else if (trial.watched) {
            jobs.add(timedJobs(trial));
        } else {
            trial.run();
        }
        const double time = cpuSeconds() - start;
        allocations = allocationsSoFar() - allocationsBefore;
        state.SetIterationTime(time);
        times.push_back(time / operations);
    }
    state.counters["allocations"] = static_cast<double>(allocations) / operations;
    state.counters["bytes"] = static_cast<double>(bytes) / operations;
    report(state, "time", times);
    report(state, "firstJob", jobs.first);
    report(state, "usualJob", jobs.usual);
    report(state, "longestJob", jobs.longest);
    report(state, "longestLaterJob", jobs.longestLater);
}

}  // namespace

void registerMeasurements() {
    for (const Case& measured : allCases()) {
        for (const std::int64_t size : measured.sizes) {
            benchmark::RegisterBenchmark(measured.name.c_str(),
                                         [&measured](benchmark::State& state) { measure(state, measured); })
                ->Arg(size)
                ->Iterations(iterationsFor(size))
                ->UseManualTime();
        }
    }
}

}  // namespace Benchmarks
