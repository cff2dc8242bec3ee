#include "Tests/Component/ComponentTest.hpp"

#include <exception>
#include <stdexcept>

namespace ComponentTests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Status = RemoteCodingSessionStatus;

class CreateTest : public ComponentTest {};

TEST_F(CreateTest, WithoutACaptureOrAUserNothingIsCreatedAndNothingFails) {
    host_.capture().startCapturing();
    EXPECT_TRUE(create().succeeded()) << "no capturing timeline";
    const auto timeline = host_.startCapture("Match");
    host_.signOut();
    EXPECT_TRUE(create().succeeded()) << "nobody signed in";
    host_.signIn("ann");
    host_.locator().setTimelineComponent(nullptr);
    EXPECT_TRUE(create().succeeded()) << "no timeline component";
    settle();

    EXPECT_FALSE(component_->hasActiveSession(timeline->uniqueId()));
    EXPECT_FALSE(host_.capture().publication());
    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(CreateTest, TheCapturesRefusalIsHandedOnUnchangedAndNothingIsCreated) {
    const auto timeline = host_.startCapture("Match");
    const auto refusal = std::make_exception_ptr(std::runtime_error("No encoder"));

    host_.capture().refusal = refusal;
    EXPECT_EQ(create().error(), refusal);
    host_.locator().setCaptureComponent(nullptr);
    EXPECT_FALSE(create().succeeded()) << "no capture component";
    settle();

    EXPECT_FALSE(component_->sessionDetails(timeline->uniqueId()));
    EXPECT_THAT(updates_, IsEmpty());
}

TEST_F(CreateTest, MissingObjectsAreAFailureAndPublishNothing) {
    host_.startCapture("Match");
    const auto publishSession = std::make_shared<ReferenceHost::PublishSession>("video");
    const auto device = std::make_shared<ReferenceHost::CaptureDevice>("Main camera");

    EXPECT_FALSE(component_->createNewRemoteCodingSession("Derby", nullptr, "team", device).succeeded());
    EXPECT_FALSE(
        component_->createNewRemoteCodingSession("Derby", publishSession, "team", nullptr).succeeded());
    EXPECT_FALSE(host_.capture().publication());
}

TEST_F(CreateTest, PublishesTheCaptureAndRegistersASession) {
    const auto timeline = host_.startCapture("Match");
    ASSERT_TRUE(create().succeeded());

    ASSERT_TRUE(host_.capture().publication());
    EXPECT_EQ(host_.capture().publication()->teamId, "team");
    EXPECT_EQ(host_.capture().publication()->session->videoId(), "video");
    const auto details = component_->sessionDetails(timeline->uniqueId());
    ASSERT_TRUE(details);
    EXPECT_EQ(details->name, "Derby");
    EXPECT_EQ(details->status, Status::starting);
    EXPECT_THAT(details->streams, ElementsAre(RemoteCoding::LiveStreamingVideoStream("Main camera")));
    EXPECT_TRUE(details->isHost);
    EXPECT_EQ(details->timelineId, timeline->uniqueId());
    EXPECT_EQ(details->tevuVideoId, "video");
    EXPECT_TRUE(component_->hasActiveSession(timeline->uniqueId()));
    EXPECT_FALSE(component_->isActiveSessionCollaborator(timeline->uniqueId()));
    EXPECT_FALSE(component_->synchronisationStatus(timeline->uniqueId())) << "timelines are not shared";

    EXPECT_THAT(updates_, IsEmpty()) << "updates are posted when the operation is over";
    time_.runOne();
    time_.runOne();
    ASSERT_EQ(updates_.size(), 1U);
    EXPECT_EQ(updates_.front().timelineId, timeline->uniqueId());
}

TEST_F(CreateTest, AnUpdateShowsTheStateAtTheTimeOfItsPost) {
    const auto timeline = host();
    takeUpdates();

    host_.capture().interruptStream();
    component_->streamEnded(timeline->uniqueId());
    EXPECT_THAT(updates_, IsEmpty());
    settle();

    EXPECT_THAT(takeUpdates(), ElementsAre(Status::streamEnded, Status::streamEnded));
}

TEST_F(CreateTest, FollowsItsStream) {
    const auto timeline = host_.startCapture("Match");
    ASSERT_TRUE(create().succeeded());
    settle();
    EXPECT_EQ(statusOf(timeline), Status::live);
    EXPECT_EQ(takeUpdates().back(), Status::live);

    host_.capture().interruptStream();
    EXPECT_EQ(statusOf(timeline), Status::interrupted);
    host_.capture().resumeStream();
    EXPECT_EQ(statusOf(timeline), Status::live);
    host_.capture().stopPublishing();
    EXPECT_EQ(statusOf(timeline), Status::interrupted) << "whatever is neither starting nor live";
    post(RemoteCoding::Notifications::streamStatusChanged,
         {{"status", static_cast<RemoteCoding::StreamingStatus>(200)}});
    EXPECT_EQ(statusOf(timeline), Status::interrupted);
    post(RemoteCoding::Notifications::streamStatusChanged,
         {{"status", RemoteCoding::StreamingStatus::starting}});
    EXPECT_EQ(statusOf(timeline), Status::starting);
    settle();
    EXPECT_EQ(takeUpdates().size(), 5U);
}

TEST_F(CreateTest, StreamStatusesTouchHostedSessionsOnly) {
    const auto timeline = joined();
    takeUpdates();

    for (const auto status : {RemoteCoding::StreamingStatus::live, RemoteCoding::StreamingStatus::stopped}) {
        post(RemoteCoding::Notifications::streamStatusChanged, {{"status", status}});
    }
    settle();

    EXPECT_EQ(statusOf(timeline), Status::starting);
    EXPECT_THAT(updates_, IsEmpty());
}

TEST_F(CreateTest, NotificationsThatDoNotSayWhatTheyShouldAreIgnored) {
    const auto timeline = host();
    takeUpdates();
    namespace Notifications = RemoteCoding::Notifications;
    namespace TimelineNotifications = RemoteCoding::TimelineNotifications;

    post(Notifications::streamStatusChanged, {});
    post(Notifications::streamStatusChanged, {{"status", 2}});
    post(Notifications::streamStatusChanged, {{"Status", RemoteCoding::StreamingStatus::stopped}});
    post(TimelineNotifications::liveShareDidComplete, {});
    post(TimelineNotifications::liveShareDidComplete, {{"timelineId", std::any()}});
    post(TimelineNotifications::liveShareDidComplete, {{"timelineId", std::string("unknown")}});
    post(TimelineNotifications::timelineDidRemove, {{"timelineId", timeline->uniqueId()}});
    post(TimelineNotifications::timelineDidRemove, {},
         std::make_shared<ReferenceHost::CaptureDevice>("no timeline"));
    settle();

    EXPECT_EQ(statusOf(timeline), Status::live);
    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

}  // namespace

}  // namespace ComponentTests
