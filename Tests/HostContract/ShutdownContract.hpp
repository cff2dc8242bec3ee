#pragma once

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Tests/HostContract/NamedHost.hpp"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// The contract of a host's shutdown as tests: what each step of it leaves behind. Include this header in one source file of a test
/// program, derive a fixture, and instantiate `ShutdownContract` with it.
namespace HostContract {

/// One whole host, on which nobody is signed in. Made, used and destroyed on the test's thread, which counts as the main thread. The
/// suite makes the component and takes host and component down, or leaves that to the fixture's destructor in the midst of it.
class ShutdownFixture {
public:
    virtual ~ShutdownFixture() = default;

    [[nodiscard]] virtual RemoteCoding::HostEnvironment& environment() = 0;

    /// As the host does when it starts, and before the component is released; then with null.
    virtual void registerComponent(const std::shared_ptr<RemoteCoding::RemoteCodingComponent>&) = 0;

    virtual void signIn() = 0;
    /// Starts a capture with edits shared in sessions. Gives its timeline, which shows in a window.
    virtual std::shared_ptr<RemoteCoding::TimelineProtocol> startCapture() = 0;
    [[nodiscard]] virtual std::shared_ptr<RemoteCoding::PublishSessionProtocol> makePublishSession() = 0;
    virtual void tagClip() = 0;  ///< on the timeline of the capture

    [[nodiscard]] virtual std::size_t momentsInCloud() = 0;

    /// Runs the main loop on this thread. The predicate is asked at first and after each job. False when the host gives up.
    [[nodiscard]] virtual bool runUntil(const std::function<bool()>& predicate) = 0;

    // Steps of the shutdown, each once.
    virtual void stopJobs() = 0;
    virtual void destroyEnvironment() = 0;  ///< and what it refers to; the execution last

    /// Lets all arrive that is on its way, as the service and its network go on.
    virtual void letTimePass() = 0;
};

using ShutdownHost = NamedHost<ShutdownFixture>;

class ShutdownContract : public testing::TestWithParam<ShutdownHost> {
protected:
    using Component = RemoteCoding::RemoteCodingComponent;

    ShutdownContract() { start(); }
    ~ShutdownContract() override { release(); }

    void start() {
        fixture = GetParam().make();
        component = Component::make(fixture->environment());
        fixture->registerComponent(component);
    }
    void goDown() {
        fixture->stopJobs();
        letGo();
    }
    /// Steps 4 to 6.
    void letGo() {
        const std::weak_ptr<Component> watched = component;
        release();
        EXPECT_TRUE(watched.expired()) << "The host still holds it.";
        fixture->destroyEnvironment();
        fixture->letTimePass();
        fixture.reset();
    }
    void release() {
        if (fixture && component) {
            fixture->registerComponent(nullptr);
        }
        component.reset();
    }

    /// A session that is hosted here.
    void publish() {
        fixture->signIn();
        const auto timeline = fixture->startCapture();
        timelineId = timeline->uniqueId();
        const auto devices = environment().componentLocator.captureComponent()->selectedCaptureDevices();
        ASSERT_TRUE(component
                        ->createNewRemoteCodingSession("Derby", fixture->makePublishSession(), "team",
                                                       devices.front())
                        .succeeded());
    }
    void runUntil(const std::function<bool()>& predicate) {
        ASSERT_TRUE(fixture->runUntil(predicate)) << "The host did not get there.";
    }
    [[nodiscard]] bool isSettled() const {
        const auto status = component->synchronisationStatus(timelineId);
        return status && status->isSettled();
    }
    RemoteCoding::HostEnvironment& environment() { return fixture->environment(); }
    std::vector<std::shared_ptr<RemoteCoding::WindowProtocol>> windows() {
        return environment().windowing.applicationWindows();
    }

    std::shared_ptr<ShutdownFixture> fixture;
    std::shared_ptr<Component> component;
    std::string timelineId;
};

TEST_P(ShutdownContract, SendsTheEditsOfTheLastMomentWhenItWaitsForTheTasks) {
    publish();
    fixture->tagClip();
    runUntil([this] { return isSettled(); });
    EXPECT_EQ(fixture->momentsInCloud(), 1U);
    fixture->tagClip();
    fixture->tagClip();
    component->endRemoteCodingSession(timelineId);
    EXPECT_EQ(fixture->momentsInCloud(), 1U);
    bool hasRun = false;
    environment().execution.postToMain([&] { hasRun = true; });
    runUntil([&] { return hasRun && environment().tasks.count() == 0; });
    EXPECT_EQ(fixture->momentsInCloud(), 3U);
    goDown();
}

TEST_P(ShutdownContract, HasNothingToWaitForWhenTheWindowsAreClosed) {
    publish();
    runUntil([this] { return isSettled() && environment().tasks.count() == 0; });
    component->promptEndRemoteCodingSession(windows().front(), timelineId);
    component->openJoinSharingSessionWindow();
    fixture->letTimePass();
    EXPECT_GE(environment().tasks.count(), 1U) << "The sheet waits for an answer.";
    for (const auto& window : windows()) {
        window->performClose(nullptr);
    }
    EXPECT_TRUE(windows().empty());
    component->endRemoteCodingSession(timelineId);
    runUntil([this] { return environment().tasks.count() == 0; });
    goDown();
}

TEST_P(ShutdownContract, EndsASignInWithItsWindow) {
    component->openJoinSharingSessionWindow();
    fixture->letTimePass();
    EXPECT_EQ(environment().tasks.count(), 1U) << "The window waits for its user to sign in.";
    windows().front()->performClose(nullptr);
    runUntil([this] { return environment().tasks.count() == 0; });
    goDown();
}

TEST_P(ShutdownContract, ClosesTheWindowsOfAComponentThatGoesFirst) {
    publish();
    const auto before = windows();
    component->openJoinSharingSessionWindow();
    fixture->letTimePass();
    EXPECT_EQ(windows().size(), before.size() + 1);
    fixture->stopJobs();
    release();
    EXPECT_EQ(windows(), before);
    fixture->destroyEnvironment();
    fixture->letTimePass();
}

/// Above all for the sanitizers.
TEST_P(ShutdownContract, GoesWithoutPatienceWhateverIsUnderWay) {
    for (const int patience : {0, 1, 2, 4, 8, 16, 32}) {
        fixture ? void() : start();
        publish();
        fixture->tagClip();
        int asked = 0;
        (void)fixture->runUntil([&] { return ++asked > patience; });
        component->openJoinSharingSessionWindow();
        component->endRemoteCodingSession(timelineId);
        (void)fixture->runUntil([&] { return ++asked > 2 * patience; });
        const auto unfinished = std::make_shared<int>();
        environment().execution.postToMainAfter(Base::Seconds(3600), [unfinished] { ADD_FAILURE(); });
        fixture->stopJobs();
        EXPECT_EQ(unfinished.use_count(), 1) << "What has not run is destroyed.";
        environment().execution.postToMain([unfinished] { ADD_FAILURE(); });
        fixture->letTimePass();
        letGo();
        EXPECT_EQ(unfinished.use_count(), 1);
    }
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ShutdownContract);

}  // namespace HostContract
