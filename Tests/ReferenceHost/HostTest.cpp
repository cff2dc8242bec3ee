#include "ReferenceHost/Host.hpp"

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"
#include "ReferenceHost/Player.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

using namespace ReferenceHost;
using Base::Seconds;
using RemoteCoding::RemoteCodingComponent;

/// One analyst with a component, taken down in the order that the environment asks for.
struct Analyst {
    Analyst(const std::string& name, ReportingExecution& execution, CloudService& cloud, Trace& trace)
        : host(name, execution, cloud, trace, {.userId = name, .network = {}, .logSink = {}}),
          component(RemoteCodingComponent::make(host.environment())) {
        host.setRemoteCodingComponent(component);
    }
    ~Analyst() { host.stop(); }

    static void tag(const std::shared_ptr<Timeline>& timeline, const std::string& code) {
        timeline->addInstance(timeline->addRow(code, {200, 0, 0})->uniqueId(), 1, 2);
    }

    Host host;
    std::shared_ptr<RemoteCodingComponent> component;
};

/// Two analysts on virtual time, who share a cloud: Ben joins Ann's session three seconds after its start. Afterwards both
/// edit, and Ben's network breaks in the middle of it.
struct TwoAnalysts {
    explicit TwoAnalysts(std::uint64_t seed) : time(seed) {
        Analyst::tag(annsTimeline, "Attack");
        (void)ann.component->createNewRemoteCodingSession("Derby", makePublishSession("video"), "team",
                                                          std::make_shared<CaptureDevice>("Camera"));
        bensExecution.postToMainAfter(Seconds(3), [this] {
            const RemoteCoding::SharedVideo shared("share", "Derby", std::nullopt, false, {}, {});
            ben.component->joinRemoteCodingSession(RemoteCoding::ShareFile(shared, 0), "Stream", "video",
                                                   "team", cloud.primarySessionOf("video"));
        });
        annsExecution.postToMainAfter(Seconds(8), [this] { Analyst::tag(annsTimeline, "Corner"); });
        bensExecution.postToMainAfter(Seconds(8.5), [this] { Analyst::tag(bensTimeline(), "Goal"); });
        bensExecution.postToMainAfter(Seconds(9.3), [this] { ben.host.setLinkUp(false); });
        bensExecution.postToMainAfter(Seconds(11), [this] { ben.host.setLinkUp(true); });
    }
    std::shared_ptr<Timeline> bensTimeline() { return ben.host.timelines().timelineInFront(); }

    VirtualTime time;
    VirtualScheduler scheduler{time};
    Trace trace{[this] { return time.now(); }};
    CloudService cloud{scheduler};
    VirtualExecution annsExecution{time, "Ann", &trace};
    VirtualExecution bensExecution{time, "Ben", &trace};
    Analyst ann{"Ann", annsExecution, cloud, trace};
    Analyst ben{"Ben", bensExecution, cloud, trace};
    std::shared_ptr<Timeline> annsTimeline = ann.host.startCapture("Match");
};

TEST(HostTest, CarriesASessionBothWaysAndWritesTheSameTraceForTheSameSeed) {
    const auto traceOf = [](std::uint64_t seed) {
        TwoAnalysts both(seed);
        both.time.runFor(Seconds(30));
        EXPECT_NE(both.bensTimeline()->findRowNamed("Corner"), nullptr);
        EXPECT_NE(both.annsTimeline->findRowNamed("Goal"), nullptr);
        EXPECT_EQ(both.annsExecution.wrongThreadCount() + both.bensExecution.wrongThreadCount(), 0U);
        return both.trace.text();
    };

    EXPECT_EQ(traceOf(3), traceOf(3));
    EXPECT_NE(traceOf(3), traceOf(4));
}

TEST(HostTest, GivesEachTimelineAWindowAndRefusesToWaitForAnAnswerThatNobodyGives) {
    TwoAnalysts both(1);
    auto& host = both.ann.host;
    (void)host.openTimeline("Other");
    host.capture().openOrFocusCaptureWindow();
    EXPECT_EQ(host.person().windowTitles(), (std::vector<std::string>{"Capture", "Other", "Match"}));
    const auto windows = host.windowing().applicationWindows();
    EXPECT_FALSE(host.timelines().isTimelineWindow(windows[0]));
    EXPECT_TRUE(host.timelines().isTimelineWindow(windows[1]));
    EXPECT_NE(host.timelines().frontTimeline(), both.annsTimeline);
    host.person().window("Other").close();
    EXPECT_EQ(host.timelines().frontTimeline(), both.annsTimeline);

    for (const auto& plan : {PlannedAnswer{"No such button"}, PlannedAnswer{"OK", {}, "Other"}}) {
        host.windowing().alerts().plan(plan);
        EXPECT_THROW((void)host.windowing().runModal({"Message", "", {}}), std::logic_error);
    }
    EXPECT_THROW((void)host.windowing().runModal({"Message", "", {}}), std::logic_error);
}

/// Above all for the sanitizers: whatever is under way when the hosts go is let go of, and nobody reaches for what is gone.
TEST(HostTest, GoesAtAnyMomentWithoutLeaksOrLateCalls) {
    bool isOver = false;
    for (std::uint64_t jobs = 0; !isOver; ++jobs) {
        std::weak_ptr<RemoteCodingComponent> watched;
        {
            TwoAnalysts both(5);
            while (!isOver && both.time.jobCount() < jobs) {
                isOver = !both.time.runOne() || both.time.now() > Seconds(30);
            }
            watched = both.ann.component;
        }
        ASSERT_TRUE(watched.expired()) << "after " << jobs << " jobs";
    }
}

TEST(HostTest, PlayerTellsOfFragmentsWhileTheStreamFlowsAndTheLiveShareIsShown) {
    TwoAnalysts both(1);
    both.cloud.videos().add(liveVideo("video", "team", "Derby"));
    both.time.runFor(Seconds(12));
    const std::string timelineId = both.bensTimeline()->uniqueId();
    const auto player = Player::make(both.ben.host, timelineId, "video");
    const auto questions = [&] {
        return std::ranges::count(both.trace.entries("Ben", TraceKind::call), "getVideo",
                                  [](const TraceEntry& entry) { return entry.field("name"); });
    };
    player->start();
    both.time.runFor(Seconds(41));
    EXPECT_EQ(player->fragments(), 10U);
    EXPECT_EQ(player->manifestURL(), both.cloud.videos().find("video")->streams->front().playbackURL);
    EXPECT_EQ(questions(), 1) << "For the manifest: with fragments nobody asks for the status.";

    both.ann.host.setLinkUp(false);
    both.time.runFor(Seconds(12));
    EXPECT_EQ(player->fragments(), 10U);
    EXPECT_EQ(questions(), 2) << "A pause is looked into sooner than silence.";
    both.ann.host.setLinkUp(true);
    both.time.runFor(Seconds(8));
    EXPECT_EQ(player->fragments(), 12U);
    player->setHangs(true);
    both.time.runFor(Seconds(30));
    EXPECT_EQ(questions(), 3) << "And silence after 15 seconds.";
    player->setHangs(false);

    both.ann.host.capture().stopPublishing();
    both.time.runFor(Seconds(60));
    EXPECT_EQ(both.ben.component->sessionDetails(timelineId)->status,
              RemoteCoding::RemoteCodingSessionStatus::streamEnded);
    EXPECT_FALSE(player->isPlaying());
    EXPECT_EQ(questions(), 3);

    both.cloud.videos().setStream("video", StreamState::flowing);
    player->start();
    both.time.runFor(Seconds(9));
    both.ben.host.timelines().stopLiveShareWithTimelineId(timelineId);
    both.time.runFor(Seconds(30));
    EXPECT_EQ(player->fragments(), 2U);
}

TEST(HostTest, TheServiceLearnsOfTheEndOfAStreamWhenThePublishersLinkIsBack) {
    for (const std::string status : {"LiveVideoReady", "Error"}) {
        TwoAnalysts both(1);
        CloudVideos& videos = both.cloud.videos();
        videos.add(liveVideo("video", "team", "Derby"));
        both.time.runFor(Seconds(1));
        videos.setStatus("video", status);
        EXPECT_EQ(videos.stream("video"), StreamState::flowing);
        both.ann.host.setLinkUp(false);
        EXPECT_EQ(videos.stream("video"), StreamState::interrupted);
        both.ann.host.stopCapture();
        EXPECT_EQ(videos.find("video")->status, status);
        both.ann.host.setLinkUp(true);
        EXPECT_EQ(videos.find("video")->status, status == "Error" ? "Error" : "Ended");
    }
}

}  // namespace
