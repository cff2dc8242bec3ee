#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <cstdint>
#include <vector>

namespace Simulator::Conformance {

/// The modify count up to which the cloud is known to hold a timeline's changes: when it moves, and to what.
class CountCheck {
public:
    CountCheck(Report& report, const Record& record);

    void see(const Entry& entry);

private:
    struct State {
        std::int64_t accountedFor =
            0;  // everything up to here was sent, was being sent, or was not the user's
        std::vector<std::int64_t> edits;  // the user's, beyond that
    };

    void moved(const Entry& entry);
    void applied(const Entry& entry, State& state);

    Report& report_;
    bool countsAreKnown_;
    bool uploadsTellTheirRange_;
    ForEach<State> states_;
    const Synchroniser* succeeded_ =
        nullptr;                 // whose upload has just ended well: the count must move with the next entry
    std::int64_t sentUpTo_ = 0;  // by that upload
};

}  // namespace Simulator::Conformance
