#include "ReferenceHost/Execution/JobShelf.hpp"

#include <stdexcept>
#include <utility>

namespace ReferenceHost {

namespace {

/// The shelf whose job runs on this thread.
thread_local const JobShelf* currentShelf = nullptr;

}  // namespace

JobShelf::Number JobShelf::put(Base::Job job) {
    const std::lock_guard lock(mutex_);
    const Number number = ++lastNumber_;
    if (!isClosed_) {
        jobs_.emplace(number, std::move(job));
    }
    return number;
}

void JobShelf::run(Number number) {
    Base::Job job;
    {
        const std::lock_guard lock(mutex_);
        const auto found = jobs_.find(number);
        if (found == jobs_.end()) {
            return;
        }
        job = std::move(found->second);
        jobs_.erase(found);
        ++runningCount_;
    }
    // Ends the run also when the job throws, and only after what the job owns has been destroyed.
    struct Running {
        Running(JobShelf& shelf_, Base::Job job_)
            : shelf(shelf_), previous(std::exchange(currentShelf, &shelf_)), job(std::move(job_)) {}
        ~Running() {
            job = nullptr;
            currentShelf = previous;
            const std::lock_guard lock(shelf.mutex_);
            --shelf.runningCount_;
            shelf.jobEnded_.notify_all();
        }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        JobShelf& shelf;
        const JobShelf* previous;
        Base::Job job;
    };
    const Running running(*this, std::move(job));
    running.job();
}

void JobShelf::ifWaiting(Number number, const std::function<void()>& function) {
    const std::lock_guard lock(mutex_);
    if (jobs_.contains(number)) {
        function();
    }
}

void JobShelf::drop(Number number) {
    Base::Job destroyedHere;
    const std::lock_guard lock(mutex_);
    if (const auto found = jobs_.find(number); found != jobs_.end()) {
        destroyedHere = std::move(found->second);
        jobs_.erase(found);
    }
}

void JobShelf::close() {
    if (currentShelf == this) {
        throw std::logic_error("A host's execution was stopped inside one of its own jobs");
    }
    std::unordered_map<Number, Base::Job> destroyedHere;
    std::unique_lock lock(mutex_);
    isClosed_ = true;
    destroyedHere.swap(jobs_);
    jobEnded_.wait(lock, [this] { return runningCount_ == 0; });
    // The lock goes first, then the jobs, which may come back here while they are destroyed.
}

}  // namespace ReferenceHost
