#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>

namespace Simulator::Conformance {

/// What follows the failure of a subscription: its cancellation, attempts to catch up with their pauses, a new subscription.
class ReconnectionCheck {
public:
    explicit ReconnectionCheck(Report& report) : report_(report) {}

    void see(const Entry& entry);

private:
    struct State {
        bool isLooping = false;
        std::int64_t announced = 0;      // attempt; 0: none
        std::int64_t begun = 0;          // the attempt whose block began last
        std::optional<double> failedAt;  // the running attempt's upload or pull
        bool hasPulled = false;          // in the running attempt
        std::size_t announcedAt = 0;     // index into the trace
        bool isCutShort = false;         // the host has cancelled the pause after it
    };
    struct Disconnection {
        Synchroniser* synchroniser = nullptr;
        std::string_view error;
        std::string_view subscription;
        int step = 0;
    };

    void checkEnd(const Entry& entry);
    void follow(const Entry& entry);
    void begin(const Entry& entry, const Synchroniser& synchroniser);
    void announced(const Entry& entry, std::int64_t attempt);
    void gaveUp(const Entry& entry);
    void checkPause(const Entry& entry, const State& state);
    void blockStarted(const Entry& entry, State& state);
    void blockEnded(const Entry& entry, State& state);

    Report& report_;
    ForEach<State> states_;
    std::optional<Disconnection> disconnection_;
};

}  // namespace Simulator::Conformance
