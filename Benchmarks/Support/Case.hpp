#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Benchmarks {

/// Something that is ready to be measured: once, because it uses up what was prepared for it.
struct Trial {
    Trial(std::int64_t operations_, std::function<void()> run_,
          std::function<std::vector<double>()> mainJobs_ = {})
        : operations(operations_), run(std::move(run_)), mainJobs(std::move(mainJobs_)) {}

    std::int64_t operations;  ///< what times and counts are divided by
    std::function<void()> run;
    std::function<std::vector<double>()> mainJobs;  ///< after `run`: how many seconds each took; may be empty
    bool countsBytes = false;                       ///< and is not timed
};

/// "what/component" and "what/floor" are the two sides of one row.
struct Case {
    std::string name;
    std::vector<std::int64_t> sizes;
    std::function<Trial(std::int64_t size)> prepare;
};

/// Every source file of a row group adds its cases before `main` begins.
struct CaseGroup {
    explicit CaseGroup(std::vector<Case> cases);
};

[[nodiscard]] const std::vector<Case>& allCases();

/// The sizes of most rows, in clips.
[[nodiscard]] std::vector<std::int64_t> usualSizes();

}  // namespace Benchmarks
