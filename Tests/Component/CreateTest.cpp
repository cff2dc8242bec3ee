#include "Tests/Component/ComponentTest.hpp"

#include <exception>
#include <stdexcept>

namespace RemoteCoding {
namespace {

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

    EXPECT_FALSE(statusOf(timeline));
    EXPECT_FALSE(host_.capture().publication());
    EXPECT_THAT(updates_, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(CreateTest, ARefusalIsHandedOnAndWhateverIsMissingIsAFailureThatPublishesNothing) {
    const auto timeline = host_.startCapture("Match");
    const auto publishSession = std::make_shared<ReferenceHost::PublishSession>("video");
    const auto device = std::make_shared<ReferenceHost::CaptureDevice>("Main camera");
    EXPECT_FALSE(component_->createNewRemoteCodingSession("Derby", nullptr, "team", device).succeeded());
    EXPECT_FALSE(
        component_->createNewRemoteCodingSession("Derby", publishSession, "team", nullptr).succeeded());
    EXPECT_FALSE(host_.capture().publication());

    host_.capture().refusal = std::make_exception_ptr(std::runtime_error("No encoder"));
    EXPECT_EQ(create().error(), host_.capture().refusal);
    host_.locator().setCaptureComponent(nullptr);
    EXPECT_FALSE(create().succeeded()) << "no capture component";
    settle();
    EXPECT_FALSE(statusOf(timeline));
    EXPECT_THAT(updates_, IsEmpty());
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
    EXPECT_THAT(details->streams, ElementsAre(LiveStreamingVideoStream("Main camera")));
    EXPECT_TRUE(details->isHost);
    EXPECT_EQ(details->tevuVideoId, "video");
    EXPECT_TRUE(component_->hasActiveSession(timeline->uniqueId()));
    EXPECT_FALSE(component_->isActiveSessionCollaborator(timeline->uniqueId()));
    EXPECT_FALSE(component_->synchronisationStatus(timeline->uniqueId())) << "timelines are not shared";

    EXPECT_THAT(updates_, IsEmpty()) << "updates are posted when the operation is over";
    runFor(0);
    EXPECT_FALSE(updates_.empty());
}

TEST_F(CreateTest, FollowsItsStreamAndAnUpdateShowsTheStateAtTheTimeOfItsPost) {
    const auto timeline = host();
    const auto expectStatus = [&](Status status) {
        EXPECT_EQ(statusOf(timeline), status);
        EXPECT_THAT(updates_, IsEmpty());
        settle();
        EXPECT_THAT(std::exchange(updates_, {}), ElementsAre(status));
    };
    host_.capture().interruptStream();
    expectStatus(Status::interrupted);
    host_.capture().resumeStream();
    expectStatus(Status::live);
    host_.capture().stopPublishing();
    expectStatus(Status::interrupted);
    post(Notifications::streamStatusChanged, {{"status", StreamingStatus::starting}});
    expectStatus(Status::starting);
    post(Notifications::streamStatusChanged, {{"status", static_cast<StreamingStatus>(200)}});
    expectStatus(Status::interrupted);

    post(Notifications::streamStatusChanged, {{"status", StreamingStatus::live}});
    component_->streamEnded(timeline->uniqueId());
    settle();
    EXPECT_THAT(updates_, ElementsAre(Status::streamEnded, Status::streamEnded));
}

TEST_F(CreateTest, NotificationsThatAreNotForASessionOrDoNotSayWhatTheyShouldAreIgnored) {
    const auto joinedTimeline = joined();
    post(Notifications::streamStatusChanged, {{"status", StreamingStatus::live}});
    EXPECT_EQ(statusOf(joinedTimeline), Status::starting) << "no hosted session";
    const auto timeline = host();

    post(Notifications::streamStatusChanged, {});
    post(Notifications::streamStatusChanged, {{"status", 2}});
    post(Notifications::streamStatusChanged, {{"Status", StreamingStatus::stopped}});
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
}  // namespace RemoteCoding
