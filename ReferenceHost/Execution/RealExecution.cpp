#include "ReferenceHost/Execution/RealExecution.hpp"

#include "ReferenceHost/Execution/JobShelf.hpp"

#include <utility>

namespace ReferenceHost {

class RealExecution::Timer final : public Base::TimerProtocol {
public:
    Timer(std::weak_ptr<JobShelf> shelf, JobShelf::Number number)
        : shelf_(std::move(shelf)), number_(number) {}

    void invalidate() override {
        if (const auto shelf = shelf_.lock()) {
            shelf->drop(number_);
        }
    }

private:
    std::weak_ptr<JobShelf> shelf_;
    JobShelf::Number number_;
};

RealExecution::RealExecution(RunLoop& loop, WorkerPool& pool, Scheduler& scheduler, std::string host,
                             Trace* trace)
    : ReportingExecution(std::move(host), trace),
      loop_(loop),
      pool_(pool),
      scheduler_(scheduler),
      shelf_(std::make_shared<JobShelf>()) {}

RealExecution::~RealExecution() { RealExecution::stop(); }

bool RealExecution::isMainThread() const noexcept { return loop_.isLoopThread(); }

void RealExecution::postToMain(Base::Job job) {
    loop_.post([shelf = shelf_, number = shelf_->put(std::move(job))] { shelf->run(number); });
}

void RealExecution::postToMainAfter(Base::Seconds delay, Base::Job job) {
    loop_.postAfter(delay, [shelf = shelf_, number = shelf_->put(std::move(job))] { shelf->run(number); });
}

void RealExecution::postToBackground(Base::Job job) {
    pool_.post([shelf = shelf_, number = shelf_->put(std::move(job))] { shelf->run(number); });
}

std::shared_ptr<Base::TimerProtocol> RealExecution::startTimer(Base::Seconds interval, Base::Seconds,
                                                               Base::Job job) {
    const JobShelf::Number number = shelf_->put(std::move(job));
    loop_.postAfter(interval, [shelf = shelf_, number] { shelf->run(number); });
    return std::make_shared<Timer>(shelf_, number);
}

void RealExecution::sleep(std::chrono::duration<std::uint64_t, std::nano> duration,
                          Base::Completion<void> completion) {
    const JobShelf::Number number =
        shelf_->put([completion = std::move(completion)] { completion(Base::Result<void>()); });
    scheduler_.postAfter(duration, [shelf = shelf_, number, &pool = pool_] {
        // The pool is there as long as this host's jobs wait, and no longer.
        shelf->ifWaiting(number, [&] { pool.post([shelf, number] { shelf->run(number); }); });
    });
}

void RealExecution::stop() { shelf_->close(); }

}  // namespace ReferenceHost
