#include "Tests/HostContract/ExecutionContract.hpp"
#include "Tests/HostContract/ReferenceHostClocks.hpp"

namespace HostContract {

namespace {

template <typename Clock>
class ReferenceExecutionFixture final : public ExecutionFixture {
public:
    explicit ReferenceExecutionFixture(std::uint64_t seed) : clock_(seed) {}

    Base::ExecutionProtocol& execution() override { return *execution_; }
    Base::Seconds now() override { return clock_.scheduler.now(); }
    bool runUntil(const std::function<bool()>& predicate) override { return clock_.runUntil(predicate); }
    void stop() override {
        execution_->stop();
        clock_.settle();
    }

private:
    Clock clock_;
    std::unique_ptr<ReferenceHost::ReportingExecution> execution_ = clock_.makeExecution();
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(ReferenceHost, ExecutionContract,
                         (hostsOnEachClock<ExecutionHost, ReferenceExecutionFixture>()),
                         nameOf<ExecutionHost>);

}  // namespace HostContract
