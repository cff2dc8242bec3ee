#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace ReferenceHost {

/// A few threads that take jobs from one queue.
///
/// Threads: `post` from any thread. `stop` and the destructor from any thread that is none of the pool's.
/// Failure: a job that throws ends the process (an exception that leaves a thread).
class WorkerPool {
public:
    explicit WorkerPool(std::size_t threads);
    ~WorkerPool();  ///< as `stop`
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    void post(Base::Job job);

    /// Waits for the running jobs, then destroys the waiting ones. What is posted from now on is destroyed at once.
    void stop();

private:
    void work();

    std::mutex mutex_;  // guards what follows, but the threads
    std::condition_variable changed_;
    std::deque<Base::Job> jobs_;
    bool stopped_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace ReferenceHost
