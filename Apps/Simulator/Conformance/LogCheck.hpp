#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <deque>
#include <map>
#include <string_view>
#include <vector>

namespace Simulator::Conformance {

/// The lines of the log: only those that the system has, and those that tell of failures when there was one and only then. And
/// the reports of hosts of what must never happen.
class LogCheck {
public:
    explicit LogCheck(Report& report) : report_(report) {}

    void see(const Entry& entry);
    void settled(const Entry& entry);

private:
    /// A line that a failure must be followed by: the three one after the other.
    struct Expected {
        const Synchroniser* synchroniser = nullptr;
        const Call* call = nullptr;
        std::string_view beginning;
        std::string_view error;
        std::string_view end;
        bool isCertain = true;
    };

    void readLine(const Entry& entry);
    void readAnswer(const Entry& entry);
    void readEnd(const Entry& entry);
    [[nodiscard]] bool wasExpected(const Entry& entry);

    Report& report_;
    std::map<const HostState*, std::vector<Expected>> expected_;
};

}  // namespace Simulator::Conformance
