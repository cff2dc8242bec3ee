#include "Benchmarks/Support/Instructions.hpp"

#include "Benchmarks/Support/Allocations.hpp"
#include "Benchmarks/Support/Case.hpp"

#include <iostream>
#include <set>
#include <string>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#define REMOTE_CODING_HAS_CALLGRIND 1
#else
#define REMOTE_CODING_HAS_CALLGRIND 0
#endif

namespace Benchmarks {

#if REMOTE_CODING_HAS_CALLGRIND

namespace {

std::string labelOf(const Case& counted, std::int64_t size, const Trial& trial) {
    return counted.name + "/" + std::to_string(size) + "/" + std::to_string(trial.operations);
}

void count(const Case& counted, std::int64_t size) {
    const Trial trial = counted.prepare(size);
    const std::string label = labelOf(counted, size, trial);
    CALLGRIND_START_INSTRUMENTATION;
    trial.run();
    CALLGRIND_DUMP_STATS_AT(label.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
}

using Numbers = std::set<std::int64_t>;

Numbers growingJobs(const Trial& trial) {
    Numbers growing{0};
    std::int64_t number = 0;
    std::uint64_t largeAllocations = 0;
    trial.watched->watchMainJobs([&] { largeAllocations = largeAllocationsSoFar(); },
                                 [&] {
                                     if (largeAllocationsSoFar() > largeAllocations) {
                                         growing.insert(number);
                                     }
                                     ++number;
                                 });
    trial.run();
    trial.watched->watchMainJobs({}, {});
    return growing;
}

/// Counting starts and ends with each job: callgrind keeps something of what came before when it is only set to zero.
void countJobs(const Case& counted, std::int64_t size) {
    // A trial repeats exactly: the jobs of the second have the numbers of the first.
    const bool countsAll = counted.counted == Counted::wholeAndJobs;
    const Numbers growing = countsAll ? Numbers() : growingJobs(counted.prepare(size));
    const Trial trial = counted.prepare(size);
    const std::string label = labelOf(counted, size, trial) + "/";
    std::string jobLabel;
    std::int64_t number = 0;
    bool isCounting = false;
    const auto willRun = [&] {
        isCounting = countsAll || growing.contains(number);
        if (isCounting) {
            jobLabel = label + std::to_string(number);
            CALLGRIND_START_INSTRUMENTATION;
        }
        ++number;
    };
    const auto didRun = [&] {
        if (isCounting) {
            CALLGRIND_DUMP_STATS_AT(jobLabel.c_str());
            CALLGRIND_STOP_INSTRUMENTATION;
        }
    };
    trial.watched->watchMainJobs(willRun, didRun);
    trial.run();
    trial.watched->watchMainJobs({}, {});
}

template <typename Counts, typename Count>
bool forEachCase(std::string_view filter, const Counts& counts, const Count& countIn) {
    for (const Case& measured : allCases()) {
        if (!counts(measured.counted) || measured.name.find(filter) == std::string::npos) {
            continue;
        }
        for (const std::int64_t size : measured.sizes) {
            countIn(measured, size);
        }
    }
    return true;
}

}  // namespace

bool countInstructions(std::string_view filter) { return forEachCase(filter, countsWhole, count); }
bool countInstructionsOfJobs(std::string_view filter) { return forEachCase(filter, countsJobs, countJobs); }

#else

bool countInstructions(std::string_view filter) {
    std::cerr << "Built without valgrind's headers: nothing to count " << filter << " with\n";
    return false;
}
bool countInstructionsOfJobs(std::string_view filter) { return countInstructions(filter); }

#endif

}  // namespace Benchmarks
