#include "ReferenceHost/Execution/RunLoop.hpp"

#include "ReferenceHost/Execution/RealClock.hpp"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace ReferenceHost {

namespace {

/// How often `runUntil` asks its predicate while there is no job: what it reads may change without one.
constexpr Instant predicateInterval = std::chrono::milliseconds(5);

}  // namespace

/// Marks the calling thread as the loop's while it runs.
class RunLoop::Run {
public:
    explicit Run(RunLoop& loop) : loop_(loop) {
        if (loop.isRunning_.exchange(true)) {
            throw std::logic_error("The run loop runs already");
        }
        loop.thread_.store(std::this_thread::get_id());
    }
    ~Run() { loop_.isRunning_.store(false); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

private:
    RunLoop& loop_;
};

RunLoop::RunLoop() : thread_(std::this_thread::get_id()) {}

RunLoop::~RunLoop() {
    std::deque<Base::Job> jobs;
    std::vector<Base::Job> waiting;
    const std::lock_guard lock(mutex_);
    closed_ = true;
    jobs.swap(jobs_);
    waiting = waiting_.takeAll([](const Base::Job&) { return true; });
    // The lock goes first, then the jobs, which may post while they are destroyed.
}

void RunLoop::run() {
    const Run run(*this);
    while (step(std::nullopt) != Step::stopped) {}
}

void RunLoop::stop() {
    const std::lock_guard lock(mutex_);
    stopRequested_ = true;
    changed_.notify_all();
}

bool RunLoop::runUntil(const std::function<bool()>& predicate, Base::Seconds limit) {
    const Run run(*this);
    const Instant deadline = later(RealClock::now(), limit);
    while (!predicate()) {
        const Instant now = RealClock::now();
        if (now >= deadline) {
            return false;
        }
        if (step(std::min(deadline, now + predicateInterval)) == Step::stopped) {
            return predicate();
        }
    }
    return true;
}

void RunLoop::post(Base::Job job) {
    const std::lock_guard lock(mutex_);
    if (closed_) {
        return;  // The parameter is destroyed after the lock.
    }
    joinDueJobs();
    jobs_.push_back(std::move(job));
    changed_.notify_all();
}

void RunLoop::postAfter(Base::Seconds delay, Base::Job job) {
    const std::lock_guard lock(mutex_);
    if (closed_) {
        return;
    }
    waiting_.add(later(RealClock::now(), delay), std::move(job));
    joinDueJobs();
    changed_.notify_all();
}

bool RunLoop::isLoopThread() const noexcept { return thread_.load() == std::this_thread::get_id(); }

RunLoop::Step RunLoop::step(std::optional<Instant> until) {
    std::unique_lock lock(mutex_);
    while (true) {
        if (std::exchange(stopRequested_, false)) {
            return Step::stopped;
        }
        joinDueJobs();
        if (!jobs_.empty()) {
            break;
        }
        std::optional<Instant> wake = waiting_.nextDue();
        if (until) {
            if (RealClock::now() >= *until) {
                return Step::waited;
            }
            wake = wake ? std::min(*wake, *until) : *until;
        }
        if (wake) {
            changed_.wait_until(lock, RealClock::timePoint(*wake));
        } else {
            changed_.wait(lock);
        }
    }
    const Base::Job job = std::move(jobs_.front());
    jobs_.pop_front();
    lock.unlock();
    job();
    return Step::ranJob;
}

/// Called with the lock held, also before each post: a job that became due earlier runs earlier.
void RunLoop::joinDueJobs() {
    const Instant now = RealClock::now();
    while (std::optional<Base::Job> due = waiting_.takeDue(now)) {
        jobs_.push_back(std::move(*due));
    }
}

}  // namespace ReferenceHost
