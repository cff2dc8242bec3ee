#include "ReferenceHost/Host.hpp"

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Execution/VirtualExecution.hpp"
#include "ReferenceHost/Execution/VirtualScheduler.hpp"

#include <gtest/gtest.h>

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
            const RemoteCoding::SharedVideo video("share", "Derby", std::nullopt, false, {}, {});
            ben.component->joinRemoteCodingSession(RemoteCoding::ShareFile(video, 0), "Stream", "video",
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

}  // namespace
