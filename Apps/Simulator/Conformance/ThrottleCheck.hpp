#pragma once

#include "Apps/Simulator/Conformance/Report.hpp"
#include "Apps/Simulator/Conformance/State.hpp"

#include <cstddef>
#include <deque>
#include <limits>
#include <optional>

namespace Simulator::Conformance {

/// Upload blocks begin one second after the first change of a burst, or as soon as the queue is free, and at the end of the session
/// when there is anything to send; for no other reason.
class ThrottleCheck {
public:
    explicit ThrottleCheck(Report& report) : report_(report) {}

    void see(const Entry& entry);
    void settled(const Entry& entry, const std::deque<Synchroniser>& synchronisers);
    void left(const Entry& entry, const std::deque<Synchroniser>& synchronisers);

private:
    struct State {
        std::optional<double> due;  // a change waits until then
        std::deque<double> fired;   // when blocks were queued that have not begun
        int firstUploads = 0;       // of a session that was created
        double lastUpload = -std::numeric_limits<double>::infinity();  // when the last upload block began
        double idleSince = -std::numeric_limits<double>::infinity();
        bool owesLast = false;             // the session has ended before its last changes were uploaded
        std::optional<std::size_t> early;  // the entry of a block that only the end of the session explains
        bool isUnsure =
            false;  // a change came in the very instant in which the wait ended behind a busy queue
    };

    [[nodiscard]] bool isChecked(const Synchroniser& synchroniser);
    void announced(const Entry& entry);
    void change(const Entry& entry, const Synchroniser& synchroniser);
    void blockStarted(const Entry& entry);
    void ended(const Entry& entry);
    void advance(const Entry& entry, const Synchroniser& synchroniser);
    static void fire(const Synchroniser& synchroniser, State& state, double now);

    Report& report_;
    ForEach<State> states_;
};

}  // namespace Simulator::Conformance
