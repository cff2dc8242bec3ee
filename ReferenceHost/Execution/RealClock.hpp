#pragma once

#include "ReferenceHost/Execution/DelayQueue.hpp"

#include <algorithm>
#include <chrono>

namespace ReferenceHost {

/// Real time that never goes back, with the moment in which this process first asked for it as zero.
class RealClock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    [[nodiscard]] static Instant now() { return std::chrono::steady_clock::now() - start(); }

    /// For waiting on a condition variable; what lies beyond a century is moved there, within the clock's range.
    [[nodiscard]] static TimePoint timePoint(Instant instant) {
        constexpr Instant longest = std::chrono::hours(24 * 365 * 100);
        return start() + std::min(instant, longest);
    }

private:
    [[nodiscard]] static TimePoint start() {
        static const TimePoint start = std::chrono::steady_clock::now();
        return start;
    }
};

}  // namespace ReferenceHost
