#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <cstddef>
#include <deque>
#include <string_view>

namespace Simulator::Conformance {

/// Each change that is delivered becomes one block, in the order of delivery, which sends what is unsent, applies the change and
/// ends at once.
class EventCheck {
public:
    EventCheck(Report& report, const Record& record)
        : report_(report), countsAreKnown_(countsAreKnown(record)) {}

    void see(const Entry& entry);
    void settled(const Entry& entry, const std::deque<Synchroniser>& synchronisers);

private:
    struct Delivery {
        std::string_view type;
        bool holdsMoments = false;
    };
    struct State {
        std::deque<Delivery> delivered;  // that wait for their blocks
        Delivery current;                // of the block that runs
        int applied = 0;                 // how often it has set the count
        bool isBehind = false;           // it began with edits unsent
        bool hasUploaded = false;
        std::string_view complaint;  // why the block does nothing, or what it does not understand
    };

    void started(const Entry& entry);
    void ended(const Entry& entry);
    void readLine(const Entry& entry);

    Report& report_;
    bool countsAreKnown_;
    ForEach<State> states_;
    const Synchroniser* mustStart_ = nullptr;  // with the next entry, because it is idle
    const Synchroniser* mustTell_ = nullptr;   // that it has received a change
    const Synchroniser* running_ = nullptr;    // whose event block began last and runs
};

}  // namespace Simulator::Conformance
