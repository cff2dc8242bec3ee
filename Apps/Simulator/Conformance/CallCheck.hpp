#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <deque>

namespace Simulator::Conformance {

/// Calls of the cloud and their answers.
class CallCheck {
public:
    explicit CallCheck(Report& report) : report_(report) {}

    void see(const Entry& entry);
    void settled(const Entry& entry, const std::deque<HostState>& hosts);

private:
    Report& report_;
};

}  // namespace Simulator::Conformance
