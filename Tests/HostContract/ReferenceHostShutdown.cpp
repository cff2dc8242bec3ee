#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Host.hpp"
#include "Tests/HostContract/ReferenceHostClocks.hpp"
#include "Tests/HostContract/ShutdownContract.hpp"

namespace HostContract {

namespace {

template <typename Clock>
class ReferenceShutdownFixture final : public ShutdownFixture {
public:
    explicit ReferenceShutdownFixture(std::uint64_t seed) : clock_(seed) {
        ReferenceHost::HostOptions options;
        options.network.leastLatency = Base::Seconds(0);
        options.network.mostLatency = Base::Seconds(0.001);
        host_ = std::make_unique<ReferenceHost::Host>("Ann", *execution_, service_, trace_, options);
        host_->capture().setDevices({std::make_shared<ReferenceHost::CaptureDevice>("Main camera")});
    }
    ~ReferenceShutdownFixture() override { EXPECT_EQ(execution_->wrongThreadCount(), 0U); }

    RemoteCoding::HostEnvironment& environment() override { return host_->environment(); }
    void registerComponent(const std::shared_ptr<RemoteCoding::RemoteCodingComponent>& component) override {
        host_->setRemoteCodingComponent(component);
    }
    void signIn() override { host_->signIn("ann"); }
    std::shared_ptr<RemoteCoding::TimelineProtocol> startCapture() override {
        return timeline_ = host_->startCapture("Match");
    }
    std::shared_ptr<RemoteCoding::PublishSessionProtocol> makePublishSession() override {
        return ReferenceHost::makePublishSession("video");
    }
    void tagClip() override {
        const auto row = timeline_->findRowNamed("Shot");
        timeline_->addInstance((row ? row : timeline_->addRow("Shot", Base::Color()))->uniqueId(), 1, 2);
    }
    std::size_t momentsInCloud() override {
        const auto session = service_.primarySessionOf("video");
        return session ? service_.snapshot(*session)->moments.size() : 0;
    }
    bool runUntil(const std::function<bool()>& predicate) override { return clock_.runUntil(predicate); }
    void stopJobs() override { host_->stop(); }
    void destroyEnvironment() override {
        timeline_.reset();
        host_.reset();
    }
    void letTimePass() override { clock_.settle(); }

private:
    Clock clock_;
    ReferenceHost::Trace trace_{[this] { return clock_.scheduler.now(); }};
    ReferenceHost::CloudService service_{clock_.scheduler};
    std::unique_ptr<ReferenceHost::ReportingExecution> execution_ = clock_.makeExecution();
    std::unique_ptr<ReferenceHost::Host> host_;
    std::shared_ptr<ReferenceHost::Timeline> timeline_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(ReferenceHost, ShutdownContract,
                         (hostsOnEachClock<ShutdownHost, ReferenceShutdownFixture>()), nameOf<ShutdownHost>);

}  // namespace HostContract
