#pragma once

#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowingProtocol.hpp"
#include "Tests/HostContract/NamedHost.hpp"
#include "Tests/HostContract/NotingComponent.hpp"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// The contract of `RemoteCoding::CaptureComponentProtocol` as tests, for any host. Include this header in one source file of a
/// test program, derive a fixture, and instantiate `CaptureContract` with it.
namespace HostContract {

/// One host with a capture. Made, used and destroyed on the test's thread, which counts as the main thread.
class CaptureFixture {
public:
    virtual ~CaptureFixture() = default;

    /// Whom the host tells from now on. The host need not hold it.
    virtual void setComponent(const std::shared_ptr<RemoteCoding::RemoteCodingComponentProtocol>&) = 0;

    [[nodiscard]] virtual Base::ExecutionProtocol& execution() = 0;
    [[nodiscard]] virtual RemoteCoding::NotificationCenterProtocol& notificationCenter() = 0;
    [[nodiscard]] virtual RemoteCoding::WindowingProtocol& windowing() = 0;
    [[nodiscard]] virtual RemoteCoding::TimelineComponentProtocol& timelines() = 0;
    [[nodiscard]] virtual RemoteCoding::CaptureComponentProtocol& capture() = 0;

    /// What the capture publishes into; it may be one that a service has opened.
    [[nodiscard]] virtual std::shared_ptr<RemoteCoding::PublishSessionProtocol> makePublishSession() = 0;

    // What the user does.
    /// The feeds that are there, in the capture window's order; which of them are chosen.
    virtual void setFeeds(const std::vector<std::pair<std::string, bool>>& feeds) = 0;
    virtual std::string startCapture() = 0;  ///< on a timeline of its own, whose id it gives
    virtual void stopCapture() = 0;

    // What becomes of the published stream.
    virtual void interruptStream() = 0;
    virtual void mendStream() = 0;
    virtual void endStream() = 0;  ///< for good; the capture goes on
    /// The next publishing cannot begin, for this reason.
    virtual void refusePublishing(const std::exception_ptr& error) = 0;

    /// Runs the main loop on this thread until the predicate holds. False when the host gives up (after long).
    [[nodiscard]] virtual bool runUntil(const std::function<bool()>& predicate) = 0;

    /// Runs it until all has been told that there is to tell.
    virtual void settle() = 0;
};

using CaptureHost = NamedHost<CaptureFixture>;

class CaptureContract : public testing::TestWithParam<CaptureHost> {
protected:
    using Words = std::vector<std::string>;

    CaptureContract() {
        fixture->setComponent(component);
        (void)fixture->notificationCenter().addObserver(
            RemoteCoding::Notifications::streamStatusChanged, nullptr, [this](const auto& changed) {
                const auto status =
                    std::any_cast<RemoteCoding::StreamingStatus>(changed.userInfo.at("status"));
                const char* const words[] = {"starting", "live", "interrupted", "stopped"};
                component->note(words[static_cast<std::size_t>(status)], id);
            });
    }

    Base::Result<void> publish() {
        return capture().captureToTevuLibraryWithPublishSession(fixture->makePublishSession(), "team",
                                                                capture().selectedCaptureDevices().front());
    }
    /// A capture whose stream is live.
    void goLive() {
        fixture->setFeeds({{"Main camera", true}});
        id = fixture->startCapture();
        ASSERT_TRUE(publish().succeeded());
        ASSERT_TRUE(fixture->runUntil([&] { return !told.empty() && told.back() == about("live"); }));
        EXPECT_EQ(std::exchange(told, {}), (Words{about("starting"), about("live")}));
    }
    RemoteCoding::CaptureComponentProtocol& capture() { return fixture->capture(); }
    std::string about(const char* word) const { return word + (" " + id); }

    std::shared_ptr<CaptureFixture> fixture = GetParam().make();
    std::shared_ptr<NotingComponent> component = std::make_shared<NotingComponent>(fixture->execution());
    Words& told = component->told;
    std::string id;
};

TEST_P(CaptureContract, GivesTheChosenFeedsInTheOrderOfItsWindowEachWithALastingIdOfItsOwn) {
    EXPECT_TRUE(capture().selectedCaptureDevices().empty()) << "There are none yet.";
    fixture->setFeeds({{"Wide", true}, {"Bench", false}, {"Goal", true}, {"Archive", true}});
    const auto devices = capture().selectedCaptureDevices();
    Words names;
    std::vector<std::string> ids;
    for (const auto& device : devices) {
        names.push_back(device->localizedName());
        EXPECT_EQ(std::ranges::count(ids, device->uniqueID()), 0) << device->localizedName();
        ids.push_back(device->uniqueID());
    }
    EXPECT_EQ(names, (Words{"Wide", "Goal", "Archive"}));
    const auto again = capture().selectedCaptureDevices();
    EXPECT_TRUE(std::ranges::equal(again, ids, {}, [](const auto& device) { return device->uniqueID(); }));
}

TEST_P(CaptureContract, TellsHowThePublishedStreamIsFromItsStartOn) {
    goLive();
    for (int time = 0; time < 2; ++time) {
        fixture->interruptStream();
        fixture->mendStream();
    }
    fixture->settle();
    EXPECT_EQ(told, (Words{about("interrupted"), about("live"), about("interrupted"), about("live")}));
    EXPECT_TRUE(capture().isCapturing());
}

TEST_P(CaptureContract, PublishesNothingWithoutACaptureAndGivesItsOwnErrorWhereItCannotBegin) {
    fixture->setFeeds({{"Main camera", true}});
    EXPECT_FALSE(capture().isCapturing());
    EXPECT_FALSE(fixture->timelines().capturingTimeline());
    EXPECT_FALSE(publish().succeeded());
    capture().endCapturing();

    id = fixture->startCapture();
    EXPECT_TRUE(capture().isCapturing());
    EXPECT_EQ(fixture->timelines().capturingTimeline(), fixture->timelines().timelineWith(id));
    fixture->refusePublishing(std::make_exception_ptr(std::runtime_error("The encoder is busy")));
    const auto refused = publish();
    ASSERT_FALSE(refused.succeeded());
    EXPECT_EQ(Base::describe(refused.error()), "The encoder is busy");
    fixture->settle();
    EXPECT_EQ(told, Words()) << "There is no stream to tell of.";
    EXPECT_TRUE(capture().isCapturing());
}

TEST_P(CaptureContract, TellsTheComponentLastThatTheStreamIsOverForGood) {
    const auto stop = [this] { fixture->stopCapture(); };
    const auto end = [this] { fixture->endStream(); };
    for (const std::function<void()>& over : std::vector<std::function<void()>>{end, stop}) {
        goLive();
        over();
        fixture->settle();
        EXPECT_EQ(std::exchange(told, {}), (Words{about("stopped"), about("stream ended")}));
        EXPECT_TRUE(fixture->timelines().timelineWith(id));
    }
    EXPECT_FALSE(capture().isCapturing());
    EXPECT_FALSE(fixture->timelines().capturingTimeline());
}

TEST_P(CaptureContract, EndsWhatItPublishesWithTheCaptureAlsoBeforeTheStreamIsLive) {
    for (const bool isLive : {true, false}) {
        if (isLive) {
            goLive();
        } else {
            id = fixture->startCapture();
            EXPECT_TRUE(publish().succeeded());
        }
        capture().endCapturing();
        EXPECT_FALSE(capture().isCapturing());
        EXPECT_FALSE(fixture->timelines().capturingTimeline());
        EXPECT_TRUE(fixture->timelines().timelineWith(id)) << "It stays open.";
        fixture->settle();
        EXPECT_EQ(std::ranges::count(told, about("stopped")), 1);
        EXPECT_EQ(std::ranges::count(told, about("live")), 0) << "Nothing begins any more.";
        told.clear();
    }
    (void)fixture->startCapture();
    EXPECT_TRUE(publish().succeeded());
    capture().endCapturing();
    told.clear();
    id = fixture->startCapture();
    EXPECT_TRUE(publish().succeeded());
    fixture->settle();
    EXPECT_EQ(told, (Words{about("starting"), about("live")})) << "Not a word about the one before.";
}

TEST_P(CaptureContract, ShowsItsOneWindowInFront) {
    id = fixture->startCapture();
    const auto before = fixture->windowing().applicationWindows();
    capture().openOrFocusCaptureWindow();
    const auto window = fixture->windowing().applicationWindows().front();
    EXPECT_EQ(std::ranges::count(before, window), 0);
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(fixture->timelines().isTimelineWindow(window));

    before.front()->show();
    capture().openOrFocusCaptureWindow();
    EXPECT_EQ(fixture->windowing().applicationWindows().front(), window);
    EXPECT_EQ(fixture->windowing().applicationWindows().size(), before.size() + 1);
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(CaptureContract);

}  // namespace HostContract
