#include "Tests/Component/ComponentTest.hpp"

namespace RemoteCoding {
namespace {

using testing::Pair;

struct EndTest : ComponentTest {
    std::vector<ReferenceHost::TraceEntry> usage() const {
        return trace_.entries("Ann", ReferenceHost::TraceKind::logUsage);
    }
};

TEST_F(EndTest, AnEndedSessionIsToldLoggedAndForgottenAndAnUnknownOneIsAnErrorLine) {
    for (const bool isHost : {true, false}) {
        const auto id = (isHost ? host() : joined())->uniqueId();
        isHost ? component_->endRemoteCodingSession(id) : component_->exitRemoteCodingSession(id);
        EXPECT_FALSE(component_->hasActiveSession(id));
        EXPECT_FALSE(component_->sessionDetails(id));
        EXPECT_THAT(usage().back().fields,
                    ElementsAre(Pair("message", "SessionEnded"), Pair("operation", "remoteCoding"),
                                Pair("TaggingSessionId", ""), Pair("TeamId", "team"), Pair("TimelineId", id),
                                Pair("VideoId", "video"), Pair("isHost", isHost ? "true" : "false")));
        EXPECT_THAT(updates_, IsEmpty());
        settle();
        EXPECT_THAT(std::exchange(updates_, {}), ElementsAre(Status::ended));
    }
    component_->endRemoteCodingSession("unknown");
    component_->exitRemoteCodingSession("");
    component_->streamEnded("unknown");
    settle();
    const std::string message = "Tried to end live streaming session when session does not exist";
    expectedErrors_ = {message, message, message};
    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_EQ(usage().size(), 2U);
}

TEST_F(EndTest, WithItsTimelineASessionEndsAndWithItsStreamItLastsAsLongAsItsTimeline) {
    const auto closed = joined();
    host_.closeTimeline(closed->uniqueId());
    EXPECT_FALSE(statusOf(closed));

    const auto live = host();
    host_.timelines().completeLiveShare(live->uniqueId());
    host_.closeTimeline(live->uniqueId());
    EXPECT_EQ(statusOf(live), Status::live) << "hosted sessions go by their own stream";
    EXPECT_TRUE(component_->hasActiveSession(live->uniqueId()));
    component_->streamEnded(live->uniqueId());
    EXPECT_FALSE(statusOf(live)) << "its timeline is gone";

    const auto over = host();
    component_->streamEnded(over->uniqueId());
    host_.closeTimeline(over->uniqueId());
    EXPECT_FALSE(statusOf(over));

    const auto never = host_.openTimeline("Never shared");
    component_->streamEnded(never->uniqueId());
    host_.closeTimeline(never->uniqueId());
    const auto timeline = joined();
    host_.timelines().completeLiveShare(timeline->uniqueId());
    EXPECT_EQ(statusOf(timeline), Status::streamEnded);
    EXPECT_FALSE(component_->hasActiveSession(timeline->uniqueId())) << "no stream and nothing shared";
    settle();
    host_.locator().setTimelineComponent(nullptr);
    component_->streamEnded(timeline->uniqueId());
    settle();
    EXPECT_THAT(updates_, ElementsAre(Status::streamEnded, Status::ended));
}

TEST_F(EndTest, AHostThatThrowsKeepsNoSessionFromEnding) {
    const auto timeline = joined();
    (void)host_.notificationCenter().addObserver(
        Notifications::remoteCodingSessionUpdatedNotification, nullptr,
        [](const Notification&) { throw std::runtime_error("observer"); });
    useFaultyTimelineComponent()->throws = true;
    component_->streamEnded(timeline->uniqueId());
    component_->exitRemoteCodingSession(timeline->uniqueId());
    settle();
    EXPECT_FALSE(statusOf(timeline));
    EXPECT_THAT(updates_, ElementsAre(Status::ended));
    expectedErrors_ = {"The host failed unexpectedly: timeline component"};
}

/// The same where sessions share their timelines.
struct EndSharedTest : EndTest {
    EndSharedTest() { host_.userDefaults().setBool(UserDefaultsKeys::enableSharedTimelines, true); }
};

TEST_F(EndSharedTest, ASharedTimelineStaysActiveAfterTheStreamAndItsLastEditsGoOutAtTheEnd) {
    const auto timeline = host();
    const auto& id = timeline->uniqueId();
    component_->streamEnded(id);
    EXPECT_EQ(statusOf(timeline), Status::streamEnded);
    EXPECT_TRUE(component_->hasActiveSession(id));
    EXPECT_TRUE(component_->synchronisationStatus(id)->isSettled());

    timeline->addInstance(timeline->addRow("Pass", Base::Color(200, 0, 0))->uniqueId(), 1, 2);
    component_->endRemoteCodingSession(id);
    EXPECT_EQ(host_.cloudClient().numberOfUncancelledSubscriptions(), 0U);
    for (const bool hasUnsentEdits : {true, false}) {
        const auto status = component_->synchronisationStatus(id).value();
        EXPECT_EQ(status.activity, SynchronisationStatus::Activity::cancelled);
        EXPECT_EQ(status.hasUnsentEdits, hasUnsentEdits);
        settle();
    }
    EXPECT_EQ(service_.snapshot(*service_.primarySessionOf("video"))->moments.size(), 1U);
}

TEST_F(EndSharedTest, AReplacedSessionIsDroppedWithoutBeingEndedAndIsSynchronisedNoMore) {
    const auto timeline = host();
    ASSERT_TRUE(create().succeeded());
    settle();
    EXPECT_EQ(host_.cloudClient().numberOfUncancelledSubscriptions(), 1U);
    EXPECT_THAT(usage(), IsEmpty());
    EXPECT_THAT(updates_, testing::Not(testing::Contains(Status::ended)));
    EXPECT_TRUE(component_->synchronisationStatus(timeline->uniqueId())->isSettled());
}

TEST_F(EndSharedTest, ACollaboratorIsSynchronisedWithTheGivenTaggingSessionUntilTheComponentGoes) {
    const auto sessionId = service_.createTaggingSession("team", "video", "bob");
    join(sessionId);
    settle();
    EXPECT_EQ(service_.numberOfSubscribers(sessionId), 1U);
    const auto id = host_.timelines().timelineInFront()->uniqueId();
    EXPECT_TRUE(component_->synchronisationStatus(id).value().isSettled());

    updates_.clear();
    join();
    runFor(1);
    component_.reset();
    host_.closeTimeline(host_.timelines().timelineInFront()->uniqueId());
    settle();
    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_EQ(host_.unfinishedTasks(), 0U);
    EXPECT_EQ(host_.cloudClient().numberOfUncancelledSubscriptions(), 0U);
}

}  // namespace
}  // namespace RemoteCoding
