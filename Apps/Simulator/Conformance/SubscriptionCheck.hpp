#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <deque>
#include <string_view>

namespace Simulator::Conformance {

/// Who subscribes, when, and what is told to whom afterwards.
class SubscriptionCheck {
public:
    SubscriptionCheck(Report& report, const Record& record);

    void see(const Entry& entry);
    void settled(const Entry& entry, const std::deque<Synchroniser>& synchronisers);

private:
    void opened(const Entry& entry);
    void changed(const Entry& entry);
    void delivered(const Entry& entry);
    void ended(const Entry& entry);

    Report& report_;
    bool isInOrder_;
    const ReferenceHost::TraceEntry* line_ = nullptr;  // the one before this entry, faults aside
};

}  // namespace Simulator::Conformance
