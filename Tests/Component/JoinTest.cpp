#include "Tests/Component/ComponentTest.hpp"

#include <stdexcept>
#include <thread>

namespace RemoteCoding {
namespace {

class JoinTest : public ComponentTest {};

TEST_F(JoinTest, RegistersTheSessionThreeSecondsAfterTheShareHasOpened) {
    host_.timelines().liveShares.openingTime = Base::Seconds(1.5);
    const auto doors = useFaultyTimelineComponent();
    doors->completionRepeats = 2;
    join();
    runFor(4.49);
    const auto timeline = host_.timelines().frontTimeline();
    ASSERT_TRUE(timeline);
    EXPECT_FALSE(statusOf(timeline));
    runFor(0.02);

    EXPECT_TRUE(doors->opensOneFileWithoutWindow);
    const auto details = component_->sessionDetails(timeline->uniqueId());
    ASSERT_TRUE(details);
    EXPECT_EQ(details->name, "Cup final");
    EXPECT_EQ(details->status, Status::starting);
    EXPECT_THAT(details->streams, ElementsAre(LiveStreamingVideoStream("Stream 1")));
    EXPECT_FALSE(details->isHost);
    EXPECT_EQ(details->tevuVideoId, "video");
    EXPECT_TRUE(component_->hasActiveSession(timeline->uniqueId()));
    EXPECT_TRUE(component_->isActiveSessionCollaborator(timeline->uniqueId()));
    settle();
    EXPECT_EQ(updates_.size(), 1U) << "a repeated completion is ignored";
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JoinTest, TheHostMayCompleteOnAnyThreadAndBeforeItsCallReturns) {
    for (const bool insideCall : {false, true}) {
        host_.timelines().liveShares.completesInsideCall = insideCall;
        host_.timelines().liveShares.completesInBackground = !insideCall;
        joined();
    }
}

TEST_F(JoinTest, WithoutAVideoOrItsTimelineNothingIsRegisteredAndNothingIsSaid) {
    using Behaviour = ReferenceHost::LiveShareBehaviour;
    const std::vector<std::function<void(Behaviour&)>> faults{
        [](Behaviour& behaviour) { behaviour.completesWithoutId = true; },
        [](Behaviour& behaviour) { behaviour.opensTimeline = false; },
        [](Behaviour& behaviour) { behaviour.timelineLag = Base::Seconds(3.5); },
        [](Behaviour& behaviour) { behaviour.completes = false; },
    };
    for (const auto& fault : faults) {
        host_.timelines().liveShares = Behaviour();
        fault(host_.timelines().liveShares);
        join();
        settle();
    }
    host_.timelines().liveShares = Behaviour();
    join();
    runFor(1);
    host_.closeTimeline(host_.timelines().frontTimeline()->uniqueId());
    settle();
    join();
    runFor(1);
    host_.locator().setTimelineComponent(nullptr);
    settle();
    useFaultyTimelineComponent();
    host_.signOut();
    join();
    settle();
    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JoinTest, AShareThatCannotBeOpenedIsLoggedAndTheNextJoinWorks) {
    host_.timelines().liveShares.refusal = std::make_exception_ptr(std::runtime_error("No player"));
    join();
    host_.timelines().liveShares.refusal = nullptr;
    host_.locator().setTimelineComponent(nullptr);
    join();
    const auto doors = useFaultyTimelineComponent();
    doors->throws = true;
    join();
    doors->throws = false;
    join();
    runFor(1);
    doors->throws = true;
    settle();
    EXPECT_THAT(errors(),
                ElementsAre("Failed to open a remote coding session.: No player",
                            "Failed to open a remote coding session.: The host has no timeline component",
                            "Failed to open a remote coding session.: timeline component",
                            "The host failed unexpectedly: timeline component"));
    const auto entry = trace_.entries("Ann", ReferenceHost::TraceKind::logError).front();
    EXPECT_EQ(entry.field("file"), "Components/RemoteCoding/Component/RemoteCodingComponent");
    EXPECT_EQ(entry.field("function"),
              "joinRemoteCodingSession(shareFile:streamName:tevuVideoId:teamId:taggingSessionId:)");
    EXPECT_THAT(updates_, IsEmpty());
    doors->throws = false;
    joined();
}

TEST_F(JoinTest, ACompletionMayOutliveTheComponentAndItsEnvironment) {
    FaultyTimelineComponent::ShareCompletion completion;
    {
        ReferenceHost::VirtualExecution execution(time_);
        ReferenceHost::Host host("Bob", execution, service_, trace_);
        host.signIn("bob");
        host.timelines().liveShares.completes = false;
        const auto doors = std::make_shared<FaultyTimelineComponent>(host.timelines());
        host.locator().setTimelineComponent(doors);
        auto component = RemoteCodingComponent::make(host.environment());
        component->joinRemoteCodingSession(ShareFile(), "Stream 1", "video", "team", std::nullopt);
        completion = doors->completion;
        component.reset();
        completion("before the environment goes");
    }
    std::thread([&] { completion("after"); }).join();
    settle();
    EXPECT_TRUE(trace_.entries("Bob", ReferenceHost::TraceKind::logError).empty());
}

}  // namespace
}  // namespace RemoteCoding
