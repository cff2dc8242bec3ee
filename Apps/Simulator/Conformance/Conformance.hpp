#pragma once

#include "Apps/Simulator/Finding.hpp"
#include "Apps/Simulator/Record.hpp"

#include <vector>

namespace Simulator {

/// What must hold in every run, whatever the faults: the order and the exclusion of blocks, the order of calls in an upload, the
/// counts, threads, the cloud's contents, idleness. Gives what does not hold.
[[nodiscard]] Findings checkConformance(const Record& record);

struct ConformanceRule {
    const char* name;  ///< as in `Finding::rule`
    const char* says;  ///< the rule in a sentence
};

/// All rules that `checkConformance` knows, by subject.
[[nodiscard]] const std::vector<ConformanceRule>& conformanceRules();

}  // namespace Simulator
