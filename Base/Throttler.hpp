#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <functional>
#include <memory>

namespace Base {

/// Turns a burst of requests into few calls of its callback. The first request starts a wait of one interval, requests during
/// the wait are absorbed, and at its end the callback runs once: at most one call an interval, and each request is
/// followed by a call.
///
/// Main thread only, the destructor included. After the destructor the callback does not run any more; when the callback
/// itself destroys the throttler, it runs to its end. The execution must outlive the throttler.
class Throttler {
public:
    /// What `callback` throws at the end of a wait is dropped, because a job of the main thread must not throw; a callback
    /// that can fail reports so itself.
    Throttler(ExecutionProtocol& execution, Seconds coalesceInterval, std::function<void()> callback);
    ~Throttler();
    Throttler(const Throttler&) = delete;
    Throttler& operator=(const Throttler&) = delete;

    /// Requests a call. When the host refuses the timer its error comes out, and nothing waits.
    void throttle();

    /// Calls the callback now when a request waits, and ends the wait. What the callback throws comes out.
    void fireNow();

    [[nodiscard]] bool isWaiting() const;

private:
    struct State;

    std::shared_ptr<State> state_;  // shared with the timer's job, weakly
};

}  // namespace Base
