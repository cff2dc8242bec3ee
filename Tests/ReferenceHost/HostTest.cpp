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

/// One analyst with a component, taken down in the order that the environment asks for.
class Analyst {
public:
    Analyst(const std::string& name, ReportingExecution& execution, CloudService& cloud, Trace& trace)
        : host(name, execution, cloud, trace, {.userId = name, .network = {}, .logSink = {}}),
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

TEST(HostTest, CarriesASessionBothWaysAndWritesTheSameTraceForTheSameSeed) {
    const auto traceOf = [](std::uint64_t seed) {
        TwoAnalysts both(seed);
        both.begin();
        both.goOn();
        both.time.runFor(Seconds(30));
        const auto bensTimeline = both.ben.host.timelines().frontTimeline();
        EXPECT_NE(bensTimeline->findRowNamed("Corner"), nullptr);
        EXPECT_NE(both.annsTimeline->findRowNamed("Goal"), nullptr);
        EXPECT_EQ(both.annsExecution.wrongThreadCount() + both.bensExecution.wrongThreadCount(), 0U);

        both.ann.component->endRemoteCodingSession(both.annsTimeline->uniqueId());
        both.ben.component->exitRemoteCodingSession(bensTimeline->uniqueId());
        both.time.runFor(Seconds(20));
        EXPECT_EQ(both.ann.host.unfinishedTasks() + both.ben.host.unfinishedTasks(), 0U);
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
    bool isOver = false;
    for (std::uint64_t jobs = 0; !isOver; ++jobs) {
        std::weak_ptr<RemoteCodingComponent> watched;
        {
            TwoAnalysts both(5);
            both.begin();
            both.goOn();
            while (!isOver && both.time.jobCount() < jobs) {
                isOver = !both.time.runOne() || both.time.now() > Seconds(30);
            }
            watched = both.ann.component;
        }
        ASSERT_TRUE(watched.expired()) << "after " << jobs << " jobs";
    }
}

TEST(HostTest, RunsOnThreadsInRealTime) {
    RunLoop loop;
    WorkerPool pool(2);
    RealScheduler scheduler;
    Trace trace([&] { return scheduler.now(); });
    CloudService cloud(scheduler);
    RealExecution execution(loop, pool, scheduler, "Ann", &trace);
    Analyst ann("Ann", execution, cloud, trace);

    (void)ann.startSession();
    const auto isInTheCloud = [&] {
        const auto session = cloud.primarySessionOf(videoId);
        return session && cloud.snapshot(*session)->moments.size() == 1;
    };
    EXPECT_TRUE(loop.runUntil(isInTheCloud, Seconds(60)));
    // In the middle of whatever is under way, the destructors take everything down.
    EXPECT_EQ(execution.wrongThreadCount(), 0U);
}

}  // namespace

}  // namespace ReferenceHost
