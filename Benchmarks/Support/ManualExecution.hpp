#pragma once

#include "ReferenceHost/Execution/ReportingExecution.hpp"

#include <deque>
#include <functional>
#include <memory>
#include <utility>

namespace Benchmarks {

/// A main thread and a background on one thread, with next to no cost of their own. Nothing runs by itself, and delays are over
/// when the benchmark says so.
class ManualExecution final : public ReferenceHost::ReportingExecution {
public:
    ManualExecution() : ReportingExecution("", nullptr) {}

    [[nodiscard]] bool isMainThread() const noexcept override { return !isInBackground_; }
    void postToMain(Base::Job job) override { main_.push_back(std::move(job)); }
    void postToMainAfter(Base::Seconds delay, Base::Job job) override;
    void postToBackground(Base::Job job) override { background_.push_back(std::move(job)); }
    [[nodiscard]] std::shared_ptr<Base::TimerProtocol>
    startTimer(Base::Seconds interval, Base::Seconds tolerance, Base::Job job) override;
    void sleep(std::chrono::duration<std::uint64_t, std::nano> duration,
               Base::Completion<void> completion) override;
    [[nodiscard]] bool waitModally(const ReferenceHost::Signal& signal, Base::Seconds limit) override;
    void stop() override;

    /// Runs what is posted, and what that posts, until nothing is left.
    void runAll();

    /// All delays and timers are over; then as above.
    void letTimePass();

    /// From now on these are called around each job of the main thread.
    void watchMainJobs(std::function<void()> willRun, std::function<void()> didRun);

private:
    class Timer;

    void runMainJob();

    std::deque<Base::Job> main_;
    std::deque<Base::Job> background_;
    std::deque<std::shared_ptr<Timer>> timers_;
    bool isInBackground_ = false;
    std::function<void()> willRunMainJob_;
    std::function<void()> didRunMainJob_;
};

/// CPU time of this thread in seconds: others that share the machine do not count.
[[nodiscard]] double cpuSeconds();

}  // namespace Benchmarks
