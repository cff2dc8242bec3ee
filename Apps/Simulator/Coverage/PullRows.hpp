#pragma once

#include "Apps/Simulator/Conformance/State.hpp"
#include "Apps/Simulator/Coverage/Rows.hpp"

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

namespace Simulator {

/// How pulls, subscriptions and attempts to reconnect can end.
class PullRows {
public:
    [[nodiscard]] static std::span<const std::string_view> names();

    PullRows(Rows& rows, const Record& record);

    void see(const Conformance::Entry& entry);

private:
    void fetched(const Conformance::Entry& entry);

    Rows& rows_;
    std::map<std::string_view, std::uint64_t> firstList_;  // the number of the first list of rows, by session
    std::map<std::string_view, std::uint64_t> lastChange_;
    std::vector<std::string_view> hidden_;  // hosts that cannot read some moments
};

}  // namespace Simulator
