#pragma once

#include "ReferenceHost/Execution/DelayQueue.hpp"
#include "ReferenceHost/Execution/RealClock.hpp"

#include <condition_variable>
#include <mutex>

namespace ReferenceHost {

/// Given once, by whoever has the news; any thread.
class Signal {
public:
    void give() {
        const std::lock_guard lock(mutex_);
        isGiven_ = true;
        changed_.notify_all();
    }

    [[nodiscard]] bool isGiven() const {
        const std::lock_guard lock(mutex_);
        return isGiven_;
    }

    /// Blocks the calling thread. False when so much real time has passed before.
    [[nodiscard]] bool wait(Base::Seconds limit) const {
        std::unique_lock lock(mutex_);
        return changed_.wait_until(lock, RealClock::timePoint(later(RealClock::now(), limit)),
                                   [this] { return isGiven_; });
    }

private:
    mutable std::mutex mutex_;  // guards what follows
    mutable std::condition_variable changed_;
    bool isGiven_ = false;
};

}  // namespace ReferenceHost
