// What the component does until a session runs, and the shared component.

#include "Tests/Component/ComponentTest.hpp"

#include "Base/Error.hpp"
#include "Components/RemoteCoding/Services/TevuRemoteCodingService.hpp"

#include <future>
#include <thread>

namespace RemoteCoding {
namespace {

class CreateTest : public ComponentTest {};
class JoinTest : public ComponentTest {};
class ProtocolTest : public ComponentTest {};

/// What a host hands out that has gone meanwhile.
struct GoneDevice final : CaptureDeviceProtocol {
    std::string localizedName() const override { throw std::runtime_error("gone"); }
    const std::string& uniqueID() const override { throw std::runtime_error("gone"); }
    bool isRTPWithoutSDP() const override { return false; }
};
struct GonePublishSession final : PublishSessionProtocol {
    const std::string& videoId() const override { throw std::runtime_error("gone"); }
};

void expectNew(const RemoteCodingSessionDetails& details, const char* name, const char* stream, bool isHost) {
    EXPECT_EQ(details.name, name);
    EXPECT_EQ(details.status, Status::starting);
    EXPECT_THAT(details.streams, ElementsAre(LiveStreamingVideoStream(stream)));
    EXPECT_EQ(details.isHost, isHost);
    EXPECT_EQ(details.tevuVideoId, "video");
}

TEST_F(CreateTest, WithoutACaptureOrAUserNothingFailsAndWhateverElseIsMissingIsAFailure) {
    host_.capture().startCapturing();
    EXPECT_TRUE(create().succeeded()) << "no capturing timeline";
    const auto timeline = host_.startCapture("Match");
    host_.signOut();
    EXPECT_TRUE(create().succeeded()) << "nobody signed in";
    host_.signIn("ann");
    using Session = std::shared_ptr<PublishSessionProtocol>;
    using Device = std::shared_ptr<CaptureDeviceProtocol>;
    const Session session = ReferenceHost::makePublishSession("video");
    const Device device = std::make_shared<ReferenceHost::CaptureDevice>("Main camera");
    for (const auto& [given, feed] : {std::pair(Session(), device), std::pair(session, Device()),
                                      std::pair(session, Device(std::make_shared<GoneDevice>())),
                                      std::pair(Session(std::make_shared<GonePublishSession>()), device)}) {
        EXPECT_FALSE(component_->createNewRemoteCodingSession("Derby", given, "team", feed).succeeded());
    }
    EXPECT_FALSE(host_.capture().publication());

    host_.capture().refusal = std::make_exception_ptr(std::runtime_error("No encoder"));
    EXPECT_EQ(create().error(), host_.capture().refusal);
    host_.locator().setCaptureComponent(nullptr);
    host_.environment().languages = {"fr"};
    EXPECT_EQ(Base::describe(create().error()), "La capture n’est pas disponible.");
    host_.locator().setTimelineComponent(nullptr);
    EXPECT_TRUE(create().succeeded()) << "no timeline component";
    settle();
    EXPECT_FALSE(statusOf(timeline));
    EXPECT_THAT(updates_, IsEmpty());
}

TEST_F(CreateTest, PublishesTheCaptureAndRegistersASession) {
    const auto timeline = host_.startCapture("Match");
    ASSERT_TRUE(create().succeeded());
    EXPECT_EQ(host_.capture().publication().value().teamId, "team");
    expectNew(component_->sessionDetails(timeline->uniqueId()).value(), "Derby", "Main camera", true);
    EXPECT_TRUE(component_->hasActiveSession(timeline->uniqueId()));
    EXPECT_FALSE(component_->isActiveSessionCollaborator(timeline->uniqueId()));
    EXPECT_FALSE(component_->synchronisationStatus(timeline->uniqueId())) << "timelines are not shared";

    EXPECT_THAT(updates_, IsEmpty()) << "updates are posted when the operation is over";
    settle();
    EXPECT_FALSE(updates_.empty());
}

TEST_F(CreateTest, ASessionWhoseSettingsCannotBeReadIsNotShared) {
    host_.userDefaults().setBool(UserDefaultsKeys::enableSharedTimelines, true);
    host_.userDefaults().fault = std::make_exception_ptr(std::runtime_error("settings"));
    const auto timeline = host();
    EXPECT_EQ(statusOf(timeline), Status::live);
    EXPECT_FALSE(component_->synchronisationStatus(timeline->uniqueId()));
    expectedErrors_ = {"The host failed unexpectedly: settings"};
}

TEST_F(CreateTest, FollowsItsStreamAndAnUpdateShowsTheStateAtTheTimeOfItsPost) {
    const auto timeline = host();
    const std::pair<StreamingStatus, Status> transitions[] = {
        {StreamingStatus::interrupted, Status::interrupted},
        {StreamingStatus::live, Status::live},
        {StreamingStatus::stopped, Status::interrupted},
        {StreamingStatus::starting, Status::starting},
        {static_cast<StreamingStatus>(200), Status::interrupted}};
    for (const auto& [stream, status] : transitions) {
        post(Notifications::streamStatusChanged, {{"status", stream}});
        EXPECT_EQ(statusOf(timeline), status);
        EXPECT_THAT(updates_, IsEmpty());
        settle();
        EXPECT_THAT(std::exchange(updates_, {}), ElementsAre(status));
    }
    host_.capture().interruptStream();
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
    post(TimelineNotifications::liveShareDidComplete, {});
    post(TimelineNotifications::liveShareDidComplete, {{"timelineId", std::string("unknown")}});
    post(TimelineNotifications::timelineDidRemove, {{"timelineId", timeline->uniqueId()}});
    post(TimelineNotifications::timelineDidRemove, {}, std::make_shared<ReferenceHost::CaptureDevice>(""));
    settle();

    EXPECT_EQ(statusOf(timeline), Status::live);
    EXPECT_THAT(updates_, IsEmpty());
}

TEST_F(JoinTest, RegistersTheSessionThreeSecondsAfterTheShareHasOpened) {
    host_.timelines().liveShares.openingTime = Base::Seconds(1.5);
    host_.timelines().liveShares.completesInBackground = true;
    const auto doors = useFaultyTimelineComponent();
    doors->completionRepeats = 2;
    join();
    runFor(4.49);
    const auto timeline = host_.timelines().timelineInFront();
    EXPECT_FALSE(statusOf(timeline));
    runFor(0.02);

    EXPECT_TRUE(doors->opensOneFileWithoutWindow);
    expectNew(component_->sessionDetails(timeline->uniqueId()).value(), "Cup final", "Stream 1", false);
    EXPECT_TRUE(component_->isActiveSessionCollaborator(timeline->uniqueId()));
    settle();
    EXPECT_EQ(updates_.size(), 1U) << "a repeated completion is ignored";
}

TEST_F(JoinTest, WithoutAVideoOrItsTimelineNothingIsRegisteredAndNothingIsSaid) {
    auto& behaviour = host_.timelines().liveShares;
    const auto closeFront = [&] { host_.closeTimeline(host_.timelines().timelineInFront()->uniqueId()); };
    // Before the join, and a second after it.
    const std::pair<std::function<void()>, std::function<void()>> faults[] = {
        {[&] { behaviour.completesWithoutId = true; }, [] {}},
        {[&] { behaviour.opensTimeline = false; }, [] {}},
        {[&] { behaviour.timelineLag = Base::Seconds(3.5); }, [] {}},
        {[&] { behaviour.completes = false; }, [] {}},
        {[] {}, closeFront},
        {[&] { host_.signOut(); }, [&] { host_.signIn("ann"); }},
        {[] {}, [&] { host_.locator().setTimelineComponent(nullptr); }},
    };
    for (const auto& [before, after] : faults) {
        behaviour = {};
        before();
        join();
        runFor(1);
        after();
        settle();
    }
    EXPECT_THAT(updates_, IsEmpty());
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
    expectedErrors_ = {"Failed to open a remote coding session.: No player",
                       "Failed to open a remote coding session.: The host has no timeline component",
                       "Failed to open a remote coding session.: timeline component",
                       "The host failed unexpectedly: timeline component"};
    doors->throws = false;
    host_.timelines().liveShares.completesInsideCall = true;
    doors->failsAfterOpening = true;
    EXPECT_FALSE(statusOf(joined())) << "it has opened, but the host says that it has not";
    expectedErrors_.emplace_back("Failed to open a remote coding session.: after opening");
    doors->failsAfterOpening = false;
    EXPECT_TRUE(component_->hasActiveSession(joined()->uniqueId()));
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

TEST_F(ProtocolTest, TheSharedComponentIsBuiltOnceOnTheInstalledHost) {
    EXPECT_THROW((void)RemoteCodingComponent::shared(), std::logic_error);
    EXPECT_THROW((void)TevuRemoteCodingService::shared(), std::logic_error);
    RemoteCodingComponent::installHost(host_.environment());
    // Whichever thread comes first builds it; the reference host takes other threads than this one for its main thread too.
    std::vector<std::future<std::shared_ptr<RemoteCodingComponent>>> found(4);
    for (auto& component : found) {
        component = std::async(std::launch::async, RemoteCodingComponent::shared);
    }
    for (auto& component : found) {
        EXPECT_EQ(component.get(), RemoteCodingComponent::shared());
    }

    ReferenceHost::VirtualExecution execution(time_);
    ReferenceHost::Host other("Bob", execution, service_, trace_);
    EXPECT_THROW(RemoteCodingComponent::installHost(other.environment()), std::logic_error);
    EXPECT_NO_THROW(RemoteCodingComponent::installHost(host_.environment()));
    RemoteCodingComponent::uninstallHost();
    EXPECT_THROW((void)RemoteCodingComponent::shared(), std::logic_error);

    RemoteCodingComponent::installHost(other.environment());
    const auto service = TevuRemoteCodingService::shared();
    EXPECT_EQ(service->tevuGraphQLClient(), other.environment().graphQLClient);
    EXPECT_THROW(RemoteCodingComponent::installHost(host_.environment()), std::logic_error);
    EXPECT_EQ(TevuRemoteCodingService::shared(), service);
    RemoteCodingComponent::uninstallHost();
    EXPECT_THROW((void)TevuRemoteCodingService::shared(), std::logic_error);
}

TEST_F(ProtocolTest, ACallerOnAnotherThreadIsReported) {
    execution_.postToBackground([&] { (void)component_->hasActiveSession("timeline"); });
    settle();
    const auto report = trace_.entries("Ann", ReferenceHost::TraceKind::wrongThread).back();
    EXPECT_EQ(report.field("function"), "hasActiveSession(timelineId:)");
    expectedWrongThreads_ = 1;
}

}  // namespace
}  // namespace RemoteCoding
