#pragma once

#include "ReferenceHost/Execution/ReportingExecution.hpp"
#include "ReferenceHost/Execution/VirtualLane.hpp"

#include <cstddef>
#include <deque>
#include <memory>
#include <string>

namespace ReferenceHost {

struct VirtualExecutionOptions {
    /// Jobs of the background go to these lanes in turn, so that they overtake each other as on threads.
    std::size_t backgroundLanes = 3;

    /// Timers fire at a moment within their tolerance that the seed chooses; otherwise at the first.
    bool timersUseTolerance = false;
};

/// One host's threads on virtual time. Outside any job, and in the jobs of its own main lane, it takes itself to be on
/// the main thread; in its background jobs, in other hosts' and in services' jobs it does not.
class VirtualExecution final : public ReportingExecution {
public:
    using Options = VirtualExecutionOptions;

    explicit VirtualExecution(VirtualTime& time, std::string host = {}, Trace* trace = nullptr,
                              Options options = {});
    ~VirtualExecution() override;

    [[nodiscard]] bool isMainThread() const noexcept override;
    void postToMain(Base::Job job) override;
    void postToMainAfter(Base::Seconds delay, Base::Job job) override;
    void postToBackground(Base::Job job) override;
    [[nodiscard]] std::shared_ptr<Base::TimerProtocol>
    startTimer(Base::Seconds interval, Base::Seconds tolerance, Base::Job job) override;
    void sleep(std::chrono::duration<std::uint64_t, std::nano> duration,
               Base::Completion<void> completion) override;

    /// Runs the time from inside; see `VirtualTime::runHolding`.
    [[nodiscard]] bool waitModally(const Signal& signal, Base::Seconds limit) override;

    void stop() override;

    /// A fault on demand: while set, a new wait ends soon and with an error, as one does whose task was cancelled.
    void setSleepsAreCancelled(bool cancelled) { sleepsAreCancelled_ = cancelled; }

private:
    class Timer;

    VirtualTime& time_;
    // Shared with the timers, which may outlive this object.
    std::shared_ptr<VirtualLane> main_;
    std::deque<VirtualLane> background_;
    VirtualLane sleeps_;
    std::size_t nextBackgroundLane_ = 0;
    SeededRandom toleranceRandom_;
    bool timersUseTolerance_;
    bool sleepsAreCancelled_ = false;
};

}  // namespace ReferenceHost
