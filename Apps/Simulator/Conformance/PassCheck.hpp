#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

namespace Simulator::Conformance {

/// The uploads: what they ask the timeline for, the order of their calls, and how they end. Finds out to which upload each call
/// belongs; where several are under way that is not always possible.
class PassCheck {
public:
    explicit PassCheck(Report& report) : report_(report) {}

    void see(const Entry& entry);

private:
    void started(const Entry& entry);
    void called(const Entry& entry);
    void took(Pass& pass, const Entry& entry);
    void answered(const Entry& entry);
    void ended(const Entry& entry);
    void blockEnded(const Entry& entry);

    Report& report_;
};

}  // namespace Simulator::Conformance
