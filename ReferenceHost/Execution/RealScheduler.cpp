#include "ReferenceHost/Execution/RealScheduler.hpp"

#include "ReferenceHost/Execution/RealClock.hpp"

#include <optional>
#include <utility>
#include <vector>

namespace ReferenceHost {

RealScheduler::RealScheduler() : thread_([this] { work(); }) {}

RealScheduler::~RealScheduler() {
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        changed_.notify_all();
    }
    thread_.join();
    std::vector<Base::Job> destroyedHere;
    const std::lock_guard lock(mutex_);
    destroyedHere = waiting_.takeAll([](const Base::Job&) { return true; });
}

Base::Seconds RealScheduler::now() const { return RealClock::now(); }

void RealScheduler::postAfter(Base::Seconds delay, Base::Job job) {
    const std::lock_guard lock(mutex_);
    if (stopped_) {
        return;  // The parameter is destroyed after the lock.
    }
    waiting_.add(later(RealClock::now(), delay), std::move(job));
    changed_.notify_one();
}

void RealScheduler::work() {
    std::unique_lock lock(mutex_);
    while (!stopped_) {
        if (std::optional<Base::Job> job = waiting_.takeDue(RealClock::now())) {
            lock.unlock();
            (*job)();
            job.reset();
            lock.lock();
        } else if (const std::optional<Instant> due = waiting_.nextDue()) {
            changed_.wait_until(lock, RealClock::timePoint(*due));
        } else {
            changed_.wait(lock);
        }
    }
}

}  // namespace ReferenceHost
