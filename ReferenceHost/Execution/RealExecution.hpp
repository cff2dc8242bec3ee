#pragma once

#include "ReferenceHost/Execution/ReportingExecution.hpp"
#include "ReferenceHost/Execution/RunLoop.hpp"
#include "ReferenceHost/Execution/Scheduler.hpp"
#include "ReferenceHost/Execution/WorkerPool.hpp"

#include <memory>
#include <string>

namespace ReferenceHost {

class JobShelf;

/// One host's threads in real time. Loop, pool and scheduler may be shared with other hosts, whose work goes on when this
/// one stops; they outlive this object. The scheduler only counts the time of sleeps: they end in the pool, and none
/// occupies a thread.
class RealExecution final : public ReportingExecution {
public:
    RealExecution(RunLoop& loop, WorkerPool& pool, Scheduler& scheduler, std::string host = {},
                  Trace* trace = nullptr);
    ~RealExecution() override;

    [[nodiscard]] bool isMainThread() const noexcept override;
    void postToMain(Base::Job job) override;
    void postToMainAfter(Base::Seconds delay, Base::Job job) override;
    void postToBackground(Base::Job job) override;
    [[nodiscard]] std::shared_ptr<Base::TimerProtocol>
    startTimer(Base::Seconds interval, Base::Seconds tolerance, Base::Job job) override;
    void sleep(std::chrono::duration<std::uint64_t, std::nano> duration,
               Base::Completion<void> completion) override;

    /// Hosts that share the loop share its thread: they all wait.
    [[nodiscard]] bool waitModally(const Signal& signal, Base::Seconds limit) override {
        return signal.wait(limit);
    }

    void stop() override;

private:
    class Timer;

    RunLoop& loop_;
    WorkerPool& pool_;
    Scheduler& scheduler_;
    std::shared_ptr<JobShelf> shelf_;
};

}  // namespace ReferenceHost
