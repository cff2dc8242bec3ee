#pragma once

#include "Apps/CodingDesk/Seat.hpp"
#include "Apps/CodingDesk/Workplace.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualTime.hpp"

#include <string>
#include <vector>

namespace CodingDesk {

/// One analyst on virtual time. Outside all jobs of that time.
class VirtualSeat final : public Seat {
public:
    /// All of these outlive the seat.
    VirtualSeat(AnalystIndex index, ReferenceHost::VirtualTime& time, const Surroundings& surroundings,
                bool isSignedIn);

    // Seat
    void at(const Deed& deed) override;
    void lookAround() override;

    /// For looking at any time; what the analyst does goes through `at`.
    [[nodiscard]] Workplace& workplace() { return workplace_; }

    /// What is there and should not be when everybody has left, a line each; nothing when all is well.
    [[nodiscard]] std::vector<std::string> leftovers();

protected:
    [[nodiscard]] bool comesTrue(const Question& question, Base::Seconds patience) override;

private:
    ReferenceHost::VirtualTime& time_;
    ReferenceHost::VirtualExecution execution_;
    Workplace workplace_;
};

}  // namespace CodingDesk
