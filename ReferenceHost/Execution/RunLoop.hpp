#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "ReferenceHost/Execution/DelayQueue.hpp"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace ReferenceHost {

/// A main loop in real time. The thread that runs it is the main thread; until it has run, the one that made it is.
///
/// Threads: `post`, `postAfter`, `stop` and `isLoopThread` from any thread; `run` and `runUntil` from one at a time, not
/// inside a job. Jobs run one at a time, first in, first out; a delayed job joins the others when its moment has come.
/// Failure: what a job throws leaves the function that ran it; the other jobs stay.
/// Shutdown: the destructor destroys the jobs that have not run, and what those post while they are destroyed.
class RunLoop {
public:
    RunLoop();
    ~RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    /// Runs jobs until `stop` is called; a stop that came before counts, once.
    void run();

    /// The running function returns after its present job.
    void stop();

    /// Runs jobs until `predicate` holds. It is asked on this thread: at first, after each job, and every few
    /// milliseconds while there is none. False when `limit` has passed or `stop` was called before that.
    [[nodiscard]] bool runUntil(const std::function<bool()>& predicate, Base::Seconds limit);

    void post(Base::Job job);
    void postAfter(Base::Seconds delay, Base::Job job);

    [[nodiscard]] bool isLoopThread() const noexcept;

private:
    class Run;
    enum class Step : std::uint8_t { ranJob, stopped, waited };
    Step step(std::optional<Instant> until);
    void joinDueJobs();

    std::atomic<std::thread::id> thread_;
    std::atomic<bool> isRunning_{false};

    std::mutex mutex_;  // guards what follows
    std::condition_variable changed_;
    std::deque<Base::Job> jobs_;
    DelayQueue<Base::Job> waiting_;
    bool stopRequested_ = false;
    bool closed_ = false;
};

}  // namespace ReferenceHost
