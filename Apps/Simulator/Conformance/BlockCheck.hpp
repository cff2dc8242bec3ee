#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

namespace Simulator::Conformance {

/// Blocks of one synchroniser: one at a time, in the order of their numbers, each begun and ended once.
class BlockCheck {
public:
    explicit BlockCheck(Report& report) : report_(report) {}

    void see(const Entry& entry);

private:
    void started(const Entry& entry);
    void ended(const Entry& entry);

    Report& report_;
};

}  // namespace Simulator::Conformance
