#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <cstdint>

namespace Simulator::Conformance {

/// The fetches of whole sessions: where they are made, and that what they bring is applied.
class PullCheck {
public:
    explicit PullCheck(Report& report) : report_(report) {}

    void see(const Entry& entry);

private:
    enum class Answer : std::uint8_t { none, failed, useless, useful, unknown };
    struct State {
        const Call* fetch = nullptr;  // of the block that runs
        Answer answer = Answer::none;
        int applied = 0;
    };

    void fetched(const Entry& entry);
    void blockEnded(const Entry& entry);

    Report& report_;
    ForEach<State> states_;
};

}  // namespace Simulator::Conformance
