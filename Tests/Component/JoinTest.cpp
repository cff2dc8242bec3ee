#include "Tests/Component/ComponentTest.hpp"
#include "Tests/Component/HostDoors.hpp"

#include <stdexcept>
#include <thread>

namespace ComponentTests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class JoinTest : public ComponentTest {
protected:
    std::shared_ptr<FaultyTimelineComponent> useFaultyTimelineComponent() {
        auto faulty = std::make_shared<FaultyTimelineComponent>(host_.timelines());
        host_.locator().setTimelineComponent(faulty);
        return faulty;
    }
};

TEST_F(JoinTest, RegistersTheSessionThreeSecondsAfterTheShareHasOpened) {
    host_.timelines().liveShares.openingTime = Seconds(1.5);
    const auto doors = useFaultyTimelineComponent();

    join();
    time_.runFor(Seconds(4.49));
    const auto timeline = host_.timelines().frontTimeline();
    ASSERT_TRUE(timeline);
    EXPECT_FALSE(component_->sessionDetails(timeline->uniqueId()));
    time_.runFor(Seconds(0.02));

    EXPECT_THAT(doors->arguments, ElementsAre(std::pair(std::size_t{1}, true)));
    const auto details = component_->sessionDetails(timeline->uniqueId());
    ASSERT_TRUE(details);
    EXPECT_EQ(details->name, "Cup final");
    EXPECT_EQ(details->status, RemoteCodingSessionStatus::starting);
    EXPECT_THAT(details->streams, ElementsAre(RemoteCoding::LiveStreamingVideoStream("Stream 1")));
    EXPECT_FALSE(details->isHost);
    EXPECT_EQ(details->timelineId, timeline->uniqueId());
    EXPECT_EQ(details->tevuVideoId, "video");
    EXPECT_TRUE(component_->hasActiveSession(timeline->uniqueId()));
    EXPECT_TRUE(component_->isActiveSessionCollaborator(timeline->uniqueId()));
    EXPECT_EQ(updates_.size(), 1U);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JoinTest, TheHostMayCompleteOnAnyThreadAndBeforeItsCallReturns) {
    auto& behaviour = host_.timelines().liveShares;
    for (const bool insideCall : {false, true}) {
        behaviour.completesInsideCall = insideCall;
        behaviour.completesInBackground = !insideCall;
        joined();
    }
    EXPECT_EQ(updates_.size(), 2U);
}

TEST_F(JoinTest, WhoeverIsSignedInWhenTheShareOpensJoins) {
    join();
    time_.runFor(Seconds(1));
    host_.signOut();
    settle();
    EXPECT_EQ(updates_.size(), 1U) << "the user is taken before the wait";

    join();
    settle();
    EXPECT_EQ(updates_.size(), 1U) << "nobody is signed in";
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JoinTest, WithoutAVideoOrItsTimelineNothingIsRegisteredAndNothingIsSaid) {
    const ReferenceHost::LiveShareBehaviour normal;
    auto& behaviour = host_.timelines().liveShares;

    behaviour.completesWithoutId = true;
    join();
    settle();
    behaviour = normal;
    behaviour.opensTimeline = false;
    join();
    settle();
    behaviour = normal;
    behaviour.timelineLag = Seconds(3.5);
    join();
    settle();
    behaviour = normal;
    behaviour.completes = false;
    join();
    settle();
    behaviour = normal;
    join();
    time_.runFor(Seconds(1));
    host_.closeTimeline(host_.timelines().frontTimeline()->uniqueId());
    settle();
    join();
    time_.runFor(Seconds(1));
    host_.locator().setTimelineComponent(nullptr);
    settle();

    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JoinTest, AShareThatCannotBeOpenedIsLogged) {
    host_.timelines().liveShares.refusal = std::make_exception_ptr(std::runtime_error("No player"));
    join();
    host_.timelines().liveShares.refusal = nullptr;
    useFaultyTimelineComponent()->throws = true;
    join();
    host_.locator().setTimelineComponent(nullptr);
    join();
    settle();

    EXPECT_THAT(errors(),
                ElementsAre("Failed to open a remote coding session.: No player",
                            "Failed to open a remote coding session.: timeline component",
                            "Failed to open a remote coding session.: The host has no timeline component"));
    const auto entry = trace_.entries("Ann", ReferenceHost::TraceKind::logError).front();
    EXPECT_EQ(entry.field("file"), "Components/RemoteCoding/Component/RemoteCodingComponent");
    EXPECT_EQ(entry.field("function"),
              "joinRemoteCodingSession(shareFile:streamName:tevuVideoId:teamId:taggingSessionId:)");
    EXPECT_THAT(updates_, IsEmpty());
}

TEST_F(JoinTest, ARepeatedCompletionIsIgnored) {
    useFaultyTimelineComponent()->completionRepeats = 2;
    join();
    settle();
    EXPECT_EQ(updates_.size(), 1U);
}

TEST_F(JoinTest, AHostThatThrowsLaterIsLoggedAndTheNextJoinWorks) {
    const auto doors = useFaultyTimelineComponent();
    join();
    time_.runFor(Seconds(1));
    doors->throws = true;
    settle();
    EXPECT_THAT(errors(), ElementsAre("The host failed unexpectedly: timeline component"));

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
        auto component = RemoteCoding::RemoteCodingComponent::make(host.environment());
        component->joinRemoteCodingSession(RemoteCoding::ShareFile(), "Stream 1", "video", "team",
                                           std::nullopt);
        completion = doors->completions.front();

        component.reset();
        completion("before the environment goes");
    }
    std::thread([&] { completion("after"); }).join();
    settle();
    EXPECT_TRUE(trace_.entries("Bob", ReferenceHost::TraceKind::logError).empty());
}

TEST_F(JoinTest, AComponentThatIsGoneJoinsNothingAndHearsNothing) {
    const auto timeline = joined();
    join();
    time_.runFor(Seconds(1));
    takeUpdates();
    const std::weak_ptr<RemoteCoding::RemoteCodingComponent> gone = component_;

    component_.reset();
    EXPECT_TRUE(gone.expired());
    host_.closeTimeline(timeline->uniqueId());
    settle();

    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

}  // namespace

}  // namespace ComponentTests
