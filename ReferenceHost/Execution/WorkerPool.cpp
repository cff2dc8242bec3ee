#include "ReferenceHost/Execution/WorkerPool.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

WorkerPool::WorkerPool(std::size_t threads) {
    for (std::size_t i = 0; i < std::max<std::size_t>(threads, 1); ++i) {
        threads_.emplace_back([this] { work(); });
    }
}

WorkerPool::~WorkerPool() { stop(); }

void WorkerPool::post(Base::Job job) {
    const std::lock_guard lock(mutex_);
    if (stopped_) {
        return;  // The parameter is destroyed after the lock.
    }
    jobs_.push_back(std::move(job));
    changed_.notify_one();
}

void WorkerPool::stop() {
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
        changed_.notify_all();
    }
    for (std::thread& thread : std::exchange(threads_, {})) {
        thread.join();
    }
    std::deque<Base::Job> destroyedHere;
    const std::lock_guard lock(mutex_);
    destroyedHere.swap(jobs_);
}

void WorkerPool::work() {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return stopped_ || !jobs_.empty(); });
        if (stopped_) {
            return;
        }
        {
            const Base::Job job = std::move(jobs_.front());
            jobs_.pop_front();
            lock.unlock();
            job();
        }
        lock.lock();
    }
}

}  // namespace ReferenceHost
