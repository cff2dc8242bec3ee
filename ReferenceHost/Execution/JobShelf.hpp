#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <unordered_map>

namespace ReferenceHost {

/// Keeps the jobs of one host whose turn is counted elsewhere: a loop or pool that many hosts share holds only the number
/// of a job, so that one host's jobs can be dropped at once while the others' go on. Any thread.
class JobShelf {
public:
    using Number = std::uint64_t;

    /// A number that was never given before. Once the shelf is closed the job is destroyed.
    Number put(Base::Job job);

    /// Runs the job, unless it has run or was dropped.
    void run(Number number);

    /// Calls `function`, with the shelf locked, when the job still waits.
    void ifWaiting(Number number, const std::function<void()>& function);

    /// Destroys the job, unless it runs, has run or was dropped.
    void drop(Number number);

    /// Waits for the jobs that run and destroys those that wait. Throws `std::logic_error` inside one of them.
    void close();

private:
    std::mutex mutex_;  // guards what follows
    std::condition_variable jobEnded_;
    std::unordered_map<Number, Base::Job> jobs_;
    Number lastNumber_ = 0;
    std::size_t runningCount_ = 0;
    bool isClosed_ = false;
};

}  // namespace ReferenceHost
