#pragma once

#include "Apps/CodingDesk/Comparison.hpp"
#include "ReferenceHost/Trace.hpp"

#include <string>
#include <vector>

namespace CodingDesk {

/// Why that analyst's timeline may differ, as far as the record of what happened tells: the last thing that concerned the
/// clip there, and the last trouble that was logged there.
[[nodiscard]] std::string explanation(const std::vector<ReferenceHost::TraceEntry>& trace,
                                      const std::string& analyst, const Difference& difference);

}  // namespace CodingDesk
