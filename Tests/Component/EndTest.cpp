#include "Tests/Component/ComponentTest.hpp"
#include "Tests/Component/HostDoors.hpp"

namespace ComponentTests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Status = RemoteCodingSessionStatus;
using Activity = RemoteCoding::SynchronisationStatus::Activity;

class EndTest : public ComponentTest {
protected:
    std::vector<ReferenceHost::TraceEntry> usage() const {
        return trace_.entries("Ann", ReferenceHost::TraceKind::logUsage);
    }
};

TEST_F(EndTest, AnEndedSessionIsToldLoggedAndForgotten) {
    const auto timeline = host();
    takeUpdates();

    component_->endRemoteCodingSession(timeline->uniqueId());

    EXPECT_FALSE(component_->hasActiveSession(timeline->uniqueId()));
    EXPECT_FALSE(component_->isActiveSessionCollaborator(timeline->uniqueId()));
    EXPECT_FALSE(component_->sessionDetails(timeline->uniqueId()));
    ASSERT_EQ(usage().size(), 1U);
    EXPECT_EQ(usage().front().fields, (ReferenceHost::TraceFields{{"message", "SessionEnded"},
                                                                  {"operation", "remoteCoding"},
                                                                  {"TaggingSessionId", ""},
                                                                  {"TeamId", "team"},
                                                                  {"TimelineId", timeline->uniqueId()},
                                                                  {"VideoId", "video"},
                                                                  {"isHost", "true"}}));
    EXPECT_THAT(updates_, IsEmpty());
    settle();
    EXPECT_THAT(takeUpdates(), ElementsAre(Status::ended));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(EndTest, LeavingIsTheSameForACollaborator) {
    const auto timeline = joined();
    takeUpdates();

    component_->exitRemoteCodingSession(timeline->uniqueId());
    settle();

    EXPECT_FALSE(component_->sessionDetails(timeline->uniqueId()));
    EXPECT_EQ(usage().front().field("isHost"), "false");
    EXPECT_THAT(takeUpdates(), ElementsAre(Status::ended));
}

TEST_F(EndTest, ATimelineWithoutASessionIsAnErrorLine) {
    const auto timeline = host();
    takeUpdates();

    component_->endRemoteCodingSession("unknown");
    component_->exitRemoteCodingSession("");
    component_->streamEnded("unknown");
    settle();

    const std::string message = "Tried to end live streaming session when session does not exist";
    EXPECT_THAT(errors(), ElementsAre(message, message, message));
    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_THAT(usage(), IsEmpty());
    EXPECT_TRUE(component_->hasActiveSession(timeline->uniqueId()));
}

TEST_F(EndTest, WhenTheStreamEndsTheSessionLastsAsLongAsItsTimeline) {
    const auto timeline = joined();
    takeUpdates();

    component_->streamEnded(timeline->uniqueId());
    settle();
    EXPECT_EQ(statusOf(timeline), Status::streamEnded);
    EXPECT_THAT(takeUpdates(), ElementsAre(Status::streamEnded));
    EXPECT_FALSE(component_->hasActiveSession(timeline->uniqueId())) << "no stream and nothing shared";

    host_.locator().setTimelineComponent(nullptr);
    component_->streamEnded(timeline->uniqueId());
    settle();
    EXPECT_FALSE(component_->sessionDetails(timeline->uniqueId()));
    EXPECT_THAT(takeUpdates(), ElementsAre(Status::ended));

    host_.locator().setTimelineComponent(
        std::shared_ptr<ReferenceHost::TimelineComponent>(std::shared_ptr<void>(), &host_.timelines()));
    component_->streamEnded(timeline->uniqueId());
    settle();
    EXPECT_THAT(updates_, IsEmpty()) << "an open timeline without a session";
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(EndTest, ALiveShareThatCompletesEndsTheStreamOfAJoinedSession) {
    const auto timeline = joined();
    host_.timelines().completeLiveShare(timeline->uniqueId());
    EXPECT_EQ(statusOf(timeline), Status::streamEnded);

    const auto hosted = host();
    host_.timelines().completeLiveShare(hosted->uniqueId());
    EXPECT_EQ(statusOf(hosted), Status::live) << "hosted sessions go by their own stream";
}

TEST_F(EndTest, ClosingATimelineEndsItsSessionUnlessItsOwnStreamIsStillLive) {
    const auto joinedTimeline = joined();
    host_.closeTimeline(joinedTimeline->uniqueId());
    EXPECT_FALSE(component_->sessionDetails(joinedTimeline->uniqueId()));

    const auto live = host();
    host_.closeTimeline(live->uniqueId());
    EXPECT_EQ(statusOf(live), Status::live);
    EXPECT_TRUE(component_->hasActiveSession(live->uniqueId()));
    component_->endRemoteCodingSession(live->uniqueId());

    const auto over = host();
    component_->streamEnded(over->uniqueId());
    host_.closeTimeline(over->uniqueId());
    EXPECT_FALSE(component_->sessionDetails(over->uniqueId()));

    host_.closeTimeline(host_.openTimeline("Never shared")->uniqueId());
    EXPECT_THAT(errors(), IsEmpty());
    EXPECT_EQ(usage().size(), 3U);
}

TEST_F(EndTest, ASessionWithoutATimelineEndsWhenItsStreamDoes) {
    const auto timeline = host();
    host_.closeTimeline(timeline->uniqueId());
    component_->streamEnded(timeline->uniqueId());
    EXPECT_FALSE(component_->sessionDetails(timeline->uniqueId()));
}

TEST_F(EndTest, AHostThatThrowsKeepsNoSessionFromEnding) {
    const auto timeline = joined();
    const auto observer = host_.notificationCenter().addObserver(
        RemoteCoding::Notifications::remoteCodingSessionUpdatedNotification, nullptr,
        [](const RemoteCoding::Notification&) { throw std::runtime_error("observer"); });
    const auto doors = std::make_shared<FaultyTimelineComponent>(host_.timelines());
    doors->throws = true;
    host_.locator().setTimelineComponent(doors);

    component_->streamEnded(timeline->uniqueId());
    EXPECT_THAT(errors(), ElementsAre("The host failed unexpectedly: timeline component"));
    component_->exitRemoteCodingSession(timeline->uniqueId());
    settle();
    host_.notificationCenter().removeObserver(observer);

    EXPECT_FALSE(component_->sessionDetails(timeline->uniqueId()));
    EXPECT_EQ(takeUpdates().back(), Status::ended);
}

using EndSharedTest = SharedTimelineTest;

TEST_F(EndSharedTest, ASharedTimelineKeepsItsSessionActiveAfterTheStream) {
    const auto timeline = host();
    component_->streamEnded(timeline->uniqueId());
    EXPECT_EQ(statusOf(timeline), Status::streamEnded);
    EXPECT_TRUE(component_->hasActiveSession(timeline->uniqueId()));
}

TEST_F(EndSharedTest, ItsSynchronisationIsCancelledAndItsStatusTellsWhetherTheLastEditsHaveGone) {
    const auto timeline = host();
    const auto& id = timeline->uniqueId();
    ASSERT_TRUE(component_->synchronisationStatus(id));
    EXPECT_TRUE(component_->synchronisationStatus(id)->isSettled());
    EXPECT_EQ(host_.cloudClient().numberOfUncancelledSubscriptions(), 1U);
    EXPECT_FALSE(component_->synchronisationStatus("unknown"));

    timeline->addInstance(timeline->addRow("Pass", Base::Color(200, 0, 0))->uniqueId(), 1, 2);
    component_->endRemoteCodingSession(id);

    EXPECT_EQ(host_.cloudClient().numberOfUncancelledSubscriptions(), 0U);
    auto status = component_->synchronisationStatus(id);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->activity, Activity::cancelled);
    EXPECT_TRUE(status->hasUnsentEdits);
    settle();
    status = component_->synchronisationStatus(id);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->activity, Activity::cancelled);
    EXPECT_FALSE(status->hasUnsentEdits);
    const auto remote = service_.snapshot(*service_.primarySessionOf("video"));
    ASSERT_TRUE(remote);
    EXPECT_EQ(remote->moments.size(), 1U) << "the last edits have gone out";
}

TEST_F(EndSharedTest, AReplacedSessionIsDroppedWithoutBeingEndedAndIsSynchronisedNoMore) {
    const auto timeline = host();
    takeUpdates();

    ASSERT_TRUE(create().succeeded());
    settle();

    EXPECT_EQ(host_.cloudClient().numberOfUncancelledSubscriptions(), 1U);
    EXPECT_THAT(trace_.entries("Ann", ReferenceHost::TraceKind::logUsage), IsEmpty());
    for (const auto status : takeUpdates()) {
        EXPECT_NE(status, Status::ended);
    }
    ASSERT_TRUE(component_->synchronisationStatus(timeline->uniqueId()));
    EXPECT_TRUE(component_->synchronisationStatus(timeline->uniqueId())->isSettled());
}

TEST_F(EndSharedTest, ACollaboratorIsSynchronisedWithTheGivenTaggingSession) {
    const auto sessionId = service_.createTaggingSession("team", "video", "bob");
    join(sessionId);
    settle();

    EXPECT_EQ(service_.numberOfSubscribers(sessionId), 1U);
    const auto status = component_->synchronisationStatus(host_.timelines().frontTimeline()->uniqueId());
    ASSERT_TRUE(status);
    EXPECT_TRUE(status->isSettled());
}

TEST_F(EndSharedTest, AComponentThatGoesAwayTakesItsSynchronisersAlong) {
    host();
    component_.reset();
    settle();
    EXPECT_EQ(host_.unfinishedTasks(), 0U);
    EXPECT_EQ(host_.cloudClient().numberOfUncancelledSubscriptions(), 0U);
}

}  // namespace

}  // namespace ComponentTests
