#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Simulator {

/// Something in a run that must not be.
struct Finding {
    Finding(std::string rule_, std::string what_, std::optional<std::size_t> entry_ = std::nullopt)
        : rule(std::move(rule_)), what(std::move(what_)), entry(entry_) {}

    std::string rule;                  ///< the broken rule's short name; a shortened plan must break the same
    std::string what;                  ///< in words, with the names of analysts and objects
    std::optional<std::size_t> entry;  ///< where in the trace it shows
};
using Findings = std::vector<Finding>;

}  // namespace Simulator
