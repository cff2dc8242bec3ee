#include "ReferenceHost/Execution/VirtualExecution.hpp"

#include "Base/Error.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

namespace {

/// The seed of the tolerances follows from the time's own only through what the host is called: two hosts differ, and a
/// host's timers do not shift when another one is added.
constexpr std::uint64_t toleranceSeed = 0x746F6C6572616E63ULL;

}  // namespace

/// The lane owns the job, so that closing it destroys the job; the handle only reaches it.
class VirtualExecution::Timer final : public Base::TimerProtocol {
public:
    explicit Timer(std::weak_ptr<VirtualLane> lane) : lane_(std::move(lane)) {}

    void start(Base::Seconds interval, Base::Job job) {
        const auto lane = lane_.lock();
        const auto cell = std::make_shared<Base::Job>(std::move(job));
        job_ = cell;
        ticket_ = lane->postAfter(interval, [cell] {
            if (const Base::Job due = std::exchange(*cell, nullptr)) {
                due();
            }
        });
    }

    void invalidate() override {
        if (const auto cell = job_.lock()) {
            const Base::Job destroyedHere = std::exchange(*cell, nullptr);
        }
        if (const auto lane = lane_.lock()) {
            lane->cancel(ticket_);
        }
    }

private:
    std::weak_ptr<VirtualLane> lane_;
    std::weak_ptr<Base::Job> job_;
    VirtualLane::Ticket ticket_;
};

VirtualExecution::VirtualExecution(VirtualTime& time, std::string host, Trace* trace, Options options)
    : ReportingExecution(host, trace),
      time_(time),
      main_(std::make_shared<VirtualLane>(time)),
      sleeps_(time),
      toleranceRandom_(SeededRandom::stream(toleranceSeed, host)),
      timersUseTolerance_(options.timersUseTolerance) {
    for (std::size_t i = 0; i < std::max<std::size_t>(options.backgroundLanes, 1); ++i) {
        background_.emplace_back(time);
    }
}

VirtualExecution::~VirtualExecution() { VirtualExecution::stop(); }

bool VirtualExecution::isMainThread() const noexcept { return main_->isRunning() || !main_->isAnyRunning(); }

void VirtualExecution::postToMain(Base::Job job) { main_->post(std::move(job)); }

void VirtualExecution::postToMainAfter(Base::Seconds delay, Base::Job job) {
    main_->postAfter(delay, std::move(job));
}

void VirtualExecution::postToBackground(Base::Job job) {
    nextBackgroundLane_ = (nextBackgroundLane_ + 1) % background_.size();
    background_[nextBackgroundLane_].post(std::move(job));
}

std::shared_ptr<Base::TimerProtocol> VirtualExecution::startTimer(Base::Seconds interval,
                                                                  Base::Seconds tolerance, Base::Job job) {
    if (timersUseTolerance_) {
        interval += toleranceRandom_.unit() * tolerance;
    }
    auto timer = std::make_shared<Timer>(main_);
    timer->start(interval, std::move(job));
    return timer;
}

void VirtualExecution::sleep(std::chrono::duration<std::uint64_t, std::nano> duration,
                             Base::Completion<void> completion) {
    if (sleepsAreCancelled_) {
        // Not at once: who waits again each time would otherwise do nothing else, without any time passing.
        constexpr std::chrono::milliseconds soon{50};
        sleeps_.postAfter(std::min<Base::Seconds>(duration, soon), [completion = std::move(completion)] {
            completion(Base::failure<void>(Base::DescribedError("The wait was cancelled")));
        });
        return;
    }
    sleeps_.postAfter(duration, [completion = std::move(completion)] { completion(Base::Result<void>()); });
}

bool VirtualExecution::waitModally(const Signal& signal, Base::Seconds limit) {
    const std::shared_ptr<VirtualLane> held = main_;
    return time_.runHolding(*held, [&] { return signal.isGiven(); }, limit);
}

void VirtualExecution::stop() {
    main_->close();
    for (VirtualLane& lane : background_) {
        lane.close();
    }
    sleeps_.close();
}

}  // namespace ReferenceHost
