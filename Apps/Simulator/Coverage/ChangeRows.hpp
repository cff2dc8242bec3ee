#pragma once

#include "Apps/Simulator/Conformance/State.hpp"
#include "Apps/Simulator/Coverage/Rows.hpp"

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

namespace Simulator {

/// What can go otherwise when changes of others are applied, without a word in the log.
class ChangeRows {
public:
    [[nodiscard]] static std::span<const std::string_view> names();

    explicit ChangeRows(Rows& rows) : rows_(rows) {}

    void see(const Conformance::Entry& entry);

private:
    struct Delivery {
        std::string_view type;
        std::int64_t moments = 0;
    };
    struct State {
        std::deque<Delivery> delivered;  // that wait for their blocks
        Delivery current;
        std::int64_t done = 0;  // moments that were added, updated or removed in the block that runs
    };

    void called(const Conformance::Entry& entry, State& state);
    void blockEnded(const Conformance::Entry& entry, const State& state);
    void faulted(const Conformance::Entry& entry);
    [[nodiscard]] bool hasNoTarget(const Conformance::Entry& entry) const;

    Rows& rows_;
    Conformance::ForEach<State> states_;
    std::vector<std::string_view> withoutTarget_;   // timelines
    std::vector<std::string_view> lateInsertions_;  // hosts
};

}  // namespace Simulator
