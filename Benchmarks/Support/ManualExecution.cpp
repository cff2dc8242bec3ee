#include "Benchmarks/Support/ManualExecution.hpp"

#include <ctime>
#include <utility>

namespace Benchmarks {

class ManualExecution::Timer final : public Base::TimerProtocol {
public:
    explicit Timer(Base::Job job) : job_(std::move(job)) {}

    void invalidate() override { job_ = nullptr; }
    [[nodiscard]] Base::Job takeJob() { return std::exchange(job_, nullptr); }

private:
    Base::Job job_;
};

void ManualExecution::postToMainAfter(Base::Seconds /*delay*/, Base::Job job) {
    timers_.push_back(std::make_shared<Timer>(std::move(job)));
}

std::shared_ptr<Base::TimerProtocol> ManualExecution::startTimer(Base::Seconds /*interval*/,
                                                                 Base::Seconds /*tolerance*/, Base::Job job) {
    timers_.push_back(std::make_shared<Timer>(std::move(job)));
    return timers_.back();
}

void ManualExecution::sleep(std::chrono::duration<std::uint64_t, std::nano> /*duration*/,
                            Base::Completion<void> completion) {
    timers_.push_back(
        std::make_shared<Timer>([completion = std::move(completion)] { completion(Base::Result<void>()); }));
}

bool ManualExecution::waitModally(const ReferenceHost::Signal& signal, Base::Seconds /*limit*/) {
    return signal.isGiven();
}

void ManualExecution::stop() {
    while (!main_.empty() || !background_.empty() || !timers_.empty()) {
        const auto main = std::exchange(main_, {});
        const auto background = std::exchange(background_, {});
        const auto timers = std::exchange(timers_, {});
    }
}

void ManualExecution::runAll() {
    while (!main_.empty() || !background_.empty()) {
        if (!main_.empty()) {
            runMainJob();
            continue;
        }
        const Base::Job job = std::move(background_.front());
        background_.pop_front();
        isInBackground_ = true;
        job();
        isInBackground_ = false;
    }
}

void ManualExecution::letTimePass() {
    const auto due = std::exchange(timers_, {});
    for (const auto& timer : due) {
        if (auto job = timer->takeJob()) {
            main_.push_back(std::move(job));
        }
    }
    runAll();
}

void ManualExecution::runMainJob() {
    if (willRunMainJob_) {
        willRunMainJob_();
    }
    {
        const Base::Job job = std::move(main_.front());
        main_.pop_front();
        job();
    }
    if (didRunMainJob_) {
        didRunMainJob_();
    }
}

void ManualExecution::watchMainJobs(std::function<void()> willRun, std::function<void()> didRun) {
    willRunMainJob_ = std::move(willRun);
    didRunMainJob_ = std::move(didRun);
}

double cpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

}  // namespace Benchmarks
