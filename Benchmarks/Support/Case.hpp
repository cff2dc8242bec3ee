#pragma once

#include "Benchmarks/Support/ManualExecution.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Benchmarks {

/// Something that is ready to be measured: once, because it uses up what was prepared for it.
struct Trial {
    Trial(std::int64_t operations_, std::function<void()> run_,
          std::shared_ptr<ManualExecution> watched_ = nullptr)
        : operations(operations_), run(std::move(run_)), watched(std::move(watched_)) {}

    std::int64_t operations;  ///< what times and counts are divided by
    std::function<void()> run;
    std::shared_ptr<ManualExecution> watched;  ///< each of its main thread's jobs is measured; may be null
    bool countsBytes = false;                  ///< and is not timed
};

/// Whose instructions are counted: those of the whole, and those of single jobs of the main thread.
enum class Counted : std::uint8_t {
    nothing,
    whole,
    wholeAndJobs,
    growingJobs,  ///< the first one and those that take a large block of memory, and not the whole
};

[[nodiscard]] constexpr bool countsWhole(Counted counted) {
    return counted != Counted::nothing && counted != Counted::growingJobs;
}
[[nodiscard]] constexpr bool countsJobs(Counted counted) {
    return counted != Counted::nothing && counted != Counted::whole;
}

/// "what/component" and "what/floor" are the two sides of one row.
struct Case {
    std::string name;
    std::vector<std::int64_t> sizes;
    std::function<Trial(std::int64_t size)> prepare;
    Counted counted = Counted::whole;
};

/// Every source file of a row group adds its cases before `main` begins.
struct CaseGroup {
    explicit CaseGroup(std::vector<Case> cases);
};

[[nodiscard]] const std::vector<Case>& allCases();

/// The sizes of most rows, in clips.
[[nodiscard]] std::vector<std::int64_t> usualSizes();

}  // namespace Benchmarks
