#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "Tests/HostContract/ExecutionContract.hpp"

namespace HostContract {

namespace {

class VirtualFixture final : public ExecutionFixture {
public:
    explicit VirtualFixture(std::uint64_t seed) : time_(seed) {}

    Base::ExecutionProtocol& execution() override { return execution_; }
    Base::Seconds now() override { return time_.now(); }
    bool runUntil(const std::function<bool()>& predicate) override {
        return time_.runUntil(predicate, Base::Seconds(60));
    }
    void stop() override {
        execution_.stop();
        (void)time_.runUntilIdle(Base::Seconds(7200));
    }

private:
    ReferenceHost::VirtualTime time_;
    ReferenceHost::VirtualExecution execution_{time_};
};

class RealFixture final : public ExecutionFixture {
public:
    Base::ExecutionProtocol& execution() override { return execution_; }
    Base::Seconds now() override { return scheduler_.now(); }
    bool runUntil(const std::function<bool()>& predicate) override {
        return loop_.runUntil(predicate, Base::Seconds(60));
    }
    void stop() override { execution_.stop(); }

private:
    ReferenceHost::RunLoop loop_;
    ReferenceHost::WorkerPool pool_{3};
    ReferenceHost::RealScheduler scheduler_;
    ReferenceHost::RealExecution execution_{loop_, pool_, scheduler_};
};

ExecutionHost virtualHost(std::uint64_t seed) {
    return ExecutionHost("VirtualTimeSeed" + std::to_string(seed),
                         [seed] { return std::make_unique<VirtualFixture>(seed); });
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(ReferenceHost, ExecutionContract,
                         testing::Values(virtualHost(1), virtualHost(2), virtualHost(3),
                                         ExecutionHost("RealTime",
                                                       [] { return std::make_unique<RealFixture>(); })),
                         nameOf<ExecutionHost>);

}  // namespace HostContract
