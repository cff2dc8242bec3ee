#pragma once

#include "Base/Completion.hpp"
#include "Base/Export.hpp"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace Base {

/// A piece of work. It runs once or is destroyed without having run.
using Job = std::function<void()>;

/// A length of time in seconds.
using Seconds = std::chrono::duration<double>;

/// A caller that was found on the wrong thread by one of the component's own checks.
struct WrongThread {
    std::string_view file;      ///< repository-relative source file, without extension
    std::string_view function;  ///< the operation, with its argument labels
    std::uint_least32_t line = 0;
    bool expectedMainThread = true;  ///< false: the main thread was the one that must not call
};

/// One pending one-shot timer.
class REMOTE_CODING_EXPORT TimerProtocol {
public:
    virtual ~TimerProtocol() = default;

    /// Main thread only. The job will not run any more and is destroyed before this returns (or, when called from
    /// within the job, as soon as that has returned). Harmless when the timer has fired or was invalidated before.
    virtual void invalidate() = 0;
};

/// The host's threads: one main thread and a background. The component makes no thread of its own.
///
/// Ordering and threads: every operation may be called from any thread unless it says otherwise, also from inside a
/// job; none of them runs a job before it returns. Jobs of the main thread run there one at a time, first in, first
/// out, those of `postToMain` and those of `postToMainAfter` that have become due alike. Jobs of the background run
/// on any thread that is not the main thread, several at a time and in any order.
///
/// Ownership: a posted job belongs to the host until it has run. A job that is never going to run is destroyed, on
/// any thread.
///
/// Failure: jobs of the component do not throw. An implementation takes every job until it is stopped. A job that it cannot
/// take it refuses by throwing; the call that needed the job then fails, or is lost where there is nobody to tell.
///
/// Shutdown: once the host has stopped its main loop, it destroys what is still posted, without running it, on the main
/// thread and before the `HostEnvironment` goes: waiting jobs may own objects of the component.
class REMOTE_CODING_EXPORT ExecutionProtocol {
public:
    virtual ~ExecutionProtocol() = default;

    /// True on the main thread (and inside the main thread's jobs, where several hosts share one thread).
    [[nodiscard]] virtual bool isMainThread() const noexcept = 0;

    /// Queues the job behind everything posted to the main thread before.
    virtual void postToMain(Job job) = 0;

    /// Queues the job on the main thread once `delay` has passed, never earlier.
    virtual void postToMainAfter(Seconds delay, Job job) = 0;

    /// Runs the job off the main thread.
    virtual void postToBackground(Job job) = 0;

    /// Main thread only. A one-shot timer: `job` runs on the main thread `interval` from now, at most `tolerance` later
    /// where the host's load allows. The timer holds the job until it has fired or been invalidated; dropping the
    /// returned handle does not stop it.
    [[nodiscard]] virtual std::shared_ptr<TimerProtocol> startTimer(Seconds interval, Seconds tolerance,
                                                                    Job job) = 0;

    /// Completes after at least `duration`, on any thread; fails only when the host cancels the wait.
    virtual void sleep(std::chrono::duration<std::uint64_t, std::nano> duration,
                       Completion<void> completion) = 0;

    /// A check of the component found a caller on the wrong thread. The component goes on; the host logs it, stops in
    /// a debugger, or counts it in a test. Called on the wrong thread itself; must not throw.
    virtual void didCallOnWrongThread(const WrongThread& report) noexcept = 0;
};

}  // namespace Base
