#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <string_view>

namespace Simulator::Conformance {

/// What is done to a timeline when remote changes are applied: in a fixed order, and of each kind of change only what belongs to it.
class ApplyCheck {
public:
    explicit ApplyCheck(Report& report) : report_(report) {}

    void see(const Entry& entry);

private:
    struct State {
        std::size_t block = 0;  // the entry with which it began
        int phase = 0;          // how far applying has come in it
    };

    void edited(const Entry& entry);

    Report& report_;
    ForEach<State> states_;
    std::string_view
        received_;  // the change that was handled last, by anybody: it is applied in the same job
};

}  // namespace Simulator::Conformance
