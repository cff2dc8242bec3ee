#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Record.hpp"

namespace Simulator::Conformance {

/// Between the end of all work and everybody's leaving nothing is done for any session.
class IdleCheck {
public:
    IdleCheck(Report& report, const Record& record) : report_(report), record_(record) {}

    void see(const Entry& entry);

private:
    Report& report_;
    const Record& record_;
};

}  // namespace Simulator::Conformance
