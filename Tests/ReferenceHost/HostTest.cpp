#include "ReferenceHost/Host.hpp"

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/RealExecution.hpp"
#include "ReferenceHost/Execution/RealScheduler.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace ReferenceHost {

namespace {

using Base::Seconds;
using RemoteCoding::RemoteCodingComponent;

constexpr const char* videoId = "video";

HostOptions optionsFor(const std::string& userId) {
    HostOptions options;
    options.userId = userId;
    return options;
}

/// One analyst with a component, taken down in the order that the environment asks for.
class Analyst {
public:
    Analyst(const std::string& name, ReportingExecution& execution, CloudService& cloud, Trace& trace)
        : host(name, execution, cloud, trace, optionsFor(name)),
          component(RemoteCodingComponent::make(host.environment())) {
        host.setRemoteCodingComponent(component);
    }
    ~Analyst() {
        host.stop();
        component.reset();
    }
    Analyst(const Analyst&) = delete;
    Analyst& operator=(const Analyst&) = delete;

    /// A capture with one clip, published as a session.
    std::shared_ptr<Timeline> startSession() {
        auto timeline = host.startCapture("Match");
        timeline->addInstance(timeline->addRow("Attack", {200, 0, 0})->uniqueId(), 1, 2);
        const auto created =
            component->createNewRemoteCodingSession("Derby", std::make_shared<PublishSession>(videoId),
                                                    "team", std::make_shared<CaptureDevice>("Main camera"));
        EXPECT_TRUE(created.succeeded());
        return timeline;
    }

    void join(const std::optional<std::string>& taggingSessionId) {
        const RemoteCoding::SharedVideo video("share", "Derby", std::nullopt, false, {}, {});
        component->joinRemoteCodingSession(RemoteCoding::ShareFile(video, 0), "Stream", videoId, "team",
                                           taggingSessionId);
    }

    Host host;
    std::shared_ptr<RemoteCodingComponent> component;
};

/// Two analysts on virtual time, who share a cloud.
struct TwoAnalysts {
    explicit TwoAnalysts(std::uint64_t seed) : time(seed) {}

    /// Ann's session, which Ben joins three seconds later.
    void begin() {
        annsTimeline = ann.startSession();
        ben.host.execution().postToMainAfter(Seconds(3),
                                             [this] { ben.join(cloud.primarySessionOf(videoId)); });
    }

    /// Afterwards both edit, and Ben's network breaks in the middle of it.
    void goOn() {
        annsExecution.postToMainAfter(Seconds(8), [this] {
            annsTimeline->addInstance(annsTimeline->addRow("Corner", {0, 0, 200})->uniqueId(), 3, 4);
        });
        bensExecution.postToMainAfter(Seconds(8.5), [this] {
            if (const auto timeline = ben.host.timelines().frontTimeline()) {
                timeline->addInstance(timeline->addRow("Goal", {0, 200, 0})->uniqueId(), 5, 6);
            }
        });
        bensExecution.postToMainAfter(Seconds(9.3), [this] { ben.host.setLinkUp(false); });
        bensExecution.postToMainAfter(Seconds(11), [this] { ben.host.setLinkUp(true); });
    }

    VirtualTime time;
    VirtualScheduler scheduler{time};
    Trace trace{[this] { return time.now(); }};
    CloudService cloud{scheduler};
    VirtualExecution annsExecution{time, "Ann", &trace};
    VirtualExecution bensExecution{time, "Ben", &trace};
    std::shared_ptr<Timeline> annsTimeline;
    Analyst ann{"Ann", annsExecution, cloud, trace};
    Analyst ben{"Ben", bensExecution, cloud, trace};
};

TEST(HostTest, CarriesASessionFromOneAnalystToAnother) {
    TwoAnalysts both(1);
    both.begin();
    both.time.runFor(Seconds(20));

    const auto bensTimeline = both.ben.host.timelines().frontTimeline();
    ASSERT_NE(bensTimeline, nullptr);
    const auto row = bensTimeline->findRowNamed("Attack");
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->numberOfInstances(), 1);
    EXPECT_NE(bensTimeline->uniqueId(), both.annsTimeline->uniqueId());
    EXPECT_EQ(both.annsExecution.wrongThreadCount() + both.bensExecution.wrongThreadCount(), 0U);

    both.ann.component->endRemoteCodingSession(both.annsTimeline->uniqueId());
    both.ben.component->exitRemoteCodingSession(bensTimeline->uniqueId());
    both.time.runFor(Seconds(20));
    EXPECT_EQ(both.ann.host.unfinishedTasks(), 0U);
    EXPECT_EQ(both.ben.host.unfinishedTasks(), 0U);
}

TEST(HostTest, WritesTheSameTraceForTheSameSeed) {
    const auto traceOf = [](std::uint64_t seed) {
        TwoAnalysts both(seed);
        both.begin();
        both.time.runFor(Seconds(20));
        return both.trace.text();
    };

    const std::string first = traceOf(3);
    EXPECT_EQ(first, traceOf(3));
    EXPECT_NE(first, traceOf(4));
    for (const char* kind :
         {" Ann call ", " Ann block.start ", " Ann count ", " Ben log.info ", " Ben notification "}) {
        EXPECT_NE(first.find(kind), std::string::npos) << kind;
    }
}

/// Above all for the sanitizers: whatever is under way when the hosts go is let go of, and nobody reaches for what is gone.
TEST(HostTest, GoesAtAnyMomentWithoutLeaksOrLateCalls) {
    std::uint64_t jobsOfWholeRun = 0;
    {
        TwoAnalysts both(5);
        both.begin();
        both.goOn();
        both.time.runFor(Seconds(30));
        jobsOfWholeRun = both.time.jobCount();
        const auto bensTimeline = both.ben.host.timelines().frontTimeline();
        ASSERT_NE(bensTimeline, nullptr);
        EXPECT_NE(bensTimeline->findRowNamed("Corner"), nullptr);
        EXPECT_NE(both.annsTimeline->findRowNamed("Goal"), nullptr);
    }
    for (std::uint64_t jobs = 0; jobs < jobsOfWholeRun; ++jobs) {
        std::weak_ptr<RemoteCodingComponent> watched;
        {
            TwoAnalysts both(5);
            both.begin();
            both.goOn();
            while (both.time.jobCount() < jobs) {
                both.time.runOne();
            }
            watched = both.ann.component;
        }
        ASSERT_TRUE(watched.expired()) << "after " << jobs << " jobs";
    }
}

TEST(HostTest, LeavesTheOthersRunningWhenOneHostGoes) {
    TwoAnalysts both(1);
    auto cleosExecution = std::make_unique<VirtualExecution>(both.time, "Cleo", &both.trace);
    auto cleo = std::make_unique<Analyst>("Cleo", *cleosExecution, both.cloud, both.trace);
    both.begin();
    both.time.runFor(Seconds(5));
    cleo->join(both.cloud.primarySessionOf(videoId));
    both.time.runFor(Seconds(3.1));

    cleo.reset();
    cleosExecution.reset();
    both.annsTimeline->addInstance(both.annsTimeline->findRowNamed("Attack")->uniqueId(), 5, 6);
    both.time.runFor(Seconds(10));

    EXPECT_EQ(both.ben.host.timelines().frontTimeline()->findRowNamed("Attack")->numberOfInstances(), 2);
}

TEST(HostTest, RunsOnThreadsInRealTime) {
    RunLoop loop;
    WorkerPool pool(2);
    RealScheduler scheduler;
    Trace trace([&] { return scheduler.now(); });
    CloudService cloud(scheduler);
    RealExecution execution(loop, pool, scheduler, "Ann", &trace);
    Analyst ann("Ann", execution, cloud, trace);

    const auto timeline = ann.startSession();
    const auto remoteMoments = [&]() -> std::size_t {
        const auto session = cloud.primarySessionOf(videoId);
        return session ? cloud.snapshot(*session)->moments.size() : 0;
    };
    EXPECT_TRUE(loop.runUntil([&] { return remoteMoments() == 1; }, Seconds(60)));
    // In the middle of whatever is under way, the destructors take everything down.
    EXPECT_EQ(execution.wrongThreadCount(), 0U);
}

TEST(HostTest, SignsInAndOutAndCaptures) {
    TwoAnalysts both(1);
    Host& host = both.ann.host;
    RemoteCoding::HostEnvironment& environment = host.environment();

    EXPECT_EQ(environment.account.user()->id, "Ann");
    host.signOut();
    EXPECT_FALSE(environment.account.user().has_value());

    const auto capture = environment.componentLocator.captureComponent();
    const auto timelines = environment.componentLocator.timelineComponent();
    const auto timeline = host.startCapture("Match");
    EXPECT_TRUE(capture->isCapturing());
    EXPECT_EQ(timelines->capturingTimeline(), timeline);
    host.stopCapture();
    EXPECT_FALSE(capture->isCapturing());
    EXPECT_EQ(timelines->capturingTimeline(), nullptr);
    EXPECT_EQ(timelines->timelineWith(timeline->uniqueId()), timeline);
    EXPECT_TRUE(host.closeTimeline(timeline->uniqueId()));
    EXPECT_EQ(timelines->timelineWith(timeline->uniqueId()), nullptr);
}

}  // namespace

}  // namespace ReferenceHost
