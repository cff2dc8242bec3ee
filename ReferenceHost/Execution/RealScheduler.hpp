#pragma once

#include "ReferenceHost/Execution/DelayQueue.hpp"
#include "ReferenceHost/Execution/Scheduler.hpp"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace ReferenceHost {

/// A thread of its own for a service's jobs in real time. Must not be destroyed by one of its jobs. A job that throws ends
/// the process.
class RealScheduler final : public Scheduler {
public:
    RealScheduler();
    ~RealScheduler() override;
    RealScheduler(const RealScheduler&) = delete;
    RealScheduler& operator=(const RealScheduler&) = delete;

    /// The same for all objects of this class in a process.
    [[nodiscard]] Base::Seconds now() const override;
    void postAfter(Base::Seconds delay, Base::Job job) override;

private:
    void work();

    std::mutex mutex_;  // guards what follows, but the thread
    std::condition_variable changed_;
    DelayQueue<Base::Job> waiting_;
    bool stopped_ = false;
    std::thread thread_;
};

}  // namespace ReferenceHost
