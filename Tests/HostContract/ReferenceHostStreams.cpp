#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Host.hpp"
#include "ReferenceHost/Player.hpp"
#include "Tests/HostContract/CaptureContract.hpp"
#include "Tests/HostContract/PlayerContract.hpp"
#include "Tests/HostContract/ReferenceHostClocks.hpp"

namespace HostContract {

namespace {

using RemoteCoding::RemoteCodingComponentProtocol;

/// One host, with its cloud, on either clock.
template <typename Clock>
struct WholeHost {
    explicit WholeHost(std::uint64_t seed) : clock(seed) {}
    ~WholeHost() {
        EXPECT_EQ(execution->wrongThreadCount(), 0U);
        execution->stop();
    }

    Clock clock;
    ReferenceHost::Trace trace{[this] { return clock.scheduler.now(); }};
    ReferenceHost::CloudService service{clock.scheduler};
    std::unique_ptr<ReferenceHost::ReportingExecution> execution = clock.makeExecution();
    ReferenceHost::Host host{"Ann", *execution, service, trace};
};

template <typename Clock>
class ReferencePlayerFixture final : public PlayerFixture, private WholeHost<Clock> {
public:
    explicit ReferencePlayerFixture(std::uint64_t seed) : WholeHost<Clock>(seed) {}

    void setComponent(const std::shared_ptr<RemoteCodingComponentProtocol>& component) override {
        this->host.setRemoteCodingComponent(component);
    }
    Base::ExecutionProtocol& execution() override { return *WholeHost<Clock>::execution; }
    RemoteCoding::NotificationCenterProtocol& notificationCenter() override {
        return this->host.notificationCenter();
    }
    RemoteCoding::TimelineComponentProtocol& timelines() override { return this->host.timelines(); }

    std::string play() override {
        this->service.videos().add(ReferenceHost::liveVideo("video", "team", "Derby"));
        mendStream();
        this->host.timelines().liveShares.completesInsideCall = true;
        const RemoteCoding::SharedVideo video("share", "Derby", std::nullopt, false, {}, {});
        (void)this->host.timelines().openLiveShareWithShareFiles({RemoteCoding::ShareFile(video, 0)}, nullptr,
                                                                 std::nullopt, [](const auto&) {});
        timelineId_ = this->host.timelines().timelineInFront()->uniqueId();
        ReferenceHost::PlayerSettings settings;
        settings.fragmentLength = fragmentLength;
        settings.streamIds = {"stream"};
        player_ = ReferenceHost::Player::make(this->host, timelineId_, "video", settings);
        player_->start();
        return timelineId_;
    }
    void interruptStream() override { setStream(ReferenceHost::StreamState::interrupted); }
    void mendStream() override { setStream(ReferenceHost::StreamState::flowing); }
    void endPlaylist() override { setStream(ReferenceHost::StreamState::over); }
    void loseFragment(const std::exception_ptr& error) override { player_->failDownload(error); }
    void pause() override { player_->pause(); }
    void jam(const std::exception_ptr& error) override { player_->pause(error); }
    void goOn() override { player_->resume(); }
    void closeTimeline() override { this->host.closeTimeline(timelineId_); }
    bool runUntil(const std::function<bool()>& predicate) override { return this->clock.runUntil(predicate); }
    void runForFragments(std::size_t number) override {
        bool passed = false;
        execution().postToMainAfter(fragmentLength * double(number), [&] { passed = true; });
        EXPECT_TRUE(runUntil([&] { return passed; }));
    }

private:
    static constexpr Base::Seconds fragmentLength{0.004};

    void setStream(ReferenceHost::StreamState state) { this->service.videos().setStream("video", state); }

    std::string timelineId_;
    std::shared_ptr<ReferenceHost::Player> player_;
};

template <typename Clock>
class ReferenceCaptureFixture final : public CaptureFixture, private WholeHost<Clock> {
public:
    explicit ReferenceCaptureFixture(std::uint64_t seed) : WholeHost<Clock>(seed) {
        own().connectingTime = Base::Seconds(0.004);
    }

    void setComponent(const std::shared_ptr<RemoteCodingComponentProtocol>& component) override {
        this->host.setRemoteCodingComponent(component);
    }
    Base::ExecutionProtocol& execution() override { return *WholeHost<Clock>::execution; }
    RemoteCoding::NotificationCenterProtocol& notificationCenter() override {
        return this->host.notificationCenter();
    }
    RemoteCoding::WindowingProtocol& windowing() override { return this->host.windowing(); }
    RemoteCoding::TimelineComponentProtocol& timelines() override { return this->host.timelines(); }
    RemoteCoding::CaptureComponentProtocol& capture() override { return own(); }
    std::shared_ptr<RemoteCoding::PublishSessionProtocol> makePublishSession() override {
        return ReferenceHost::makePublishSession("video");
    }

    void setFeeds(const std::vector<std::pair<std::string, bool>>& feeds) override {
        std::vector<std::shared_ptr<ReferenceHost::CaptureDevice>> devices;
        for (const auto& [name, isChosen] : feeds) {
            devices.push_back(std::make_shared<ReferenceHost::CaptureDevice>(name));
        }
        own().setDevices(devices);
        own().openOrFocusCaptureWindow();
        auto window = this->host.person().window("Capture");
        for (const auto& [name, isChosen] : feeds) {
            isChosen ? void() : window.clickCheckBox("Feeds", name);
        }
        window.close();
    }
    std::string startCapture() override {
        timelineId_ = this->host.startCapture("Match")->uniqueId();
        return timelineId_;
    }
    void stopCapture() override {
        this->host.stopCapture();
        tellComponent();
    }
    void interruptStream() override { own().interruptStream(); }
    void mendStream() override { own().resumeStream(); }
    void endStream() override {
        own().stopPublishing();
        tellComponent();
    }
    void refusePublishing(const std::exception_ptr& error) override { own().refusal = error; }
    bool runUntil(const std::function<bool()>& predicate) override { return this->clock.runUntil(predicate); }
    void settle() override { this->clock.settle(); }

private:
    ReferenceHost::CaptureComponent& own() { return this->host.capture(); }
    /// The reference host leaves this to whoever uses it.
    void tellComponent() { this->host.locator().remoteCodingComponent()->streamEnded(timelineId_); }

    std::string timelineId_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(ReferenceHost, PlayerContract,
                         (hostsOnEachClock<PlayerHost, ReferencePlayerFixture>()), nameOf<PlayerHost>);
INSTANTIATE_TEST_SUITE_P(ReferenceHost, CaptureContract,
                         (hostsOnEachClock<CaptureHost, ReferenceCaptureFixture>()), nameOf<CaptureHost>);

}  // namespace HostContract
