#include "Base/TaskScope.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuAPIError.hpp"
#include "Components/RemoteCoding/ViewModel/VideoName.hpp"
#include "Components/RemoteCoding/ViewModel/VideoSharingJoinSessionViewModel.hpp"
#include "Components/RemoteCoding/ViewModel/VideoSharingNewSessionViewModel.hpp"
#include "Tests/Component/ComponentTest.hpp"

namespace RemoteCoding {
namespace {

template <typename Value>
Base::Task<void> keepResult(Base::Task<Value> task, std::optional<Base::Result<Value>>* result) {
    Value value = co_await task;
    result->emplace(std::move(value));
}

struct ViewModelTest : ComponentTest {
    using Reply = PublishSessionSummary;

    template <typename Value>
    Base::Result<Value> run(Base::Task<Value> task) {
        std::optional<Base::Result<Value>> result;
        host_.environment().tasks.scope().start(
            execution_, Base::Home::mainThread, keepResult(std::move(task), &result),
            [&](std::exception_ptr error) { result = Base::Result<Value>::failure(std::move(error)); });
        settle();
        return *std::move(result);
    }
    // The view models are gone before the service has answered, as when their windows are closed.
    auto open(std::function<void(Reply&)> changeReply) {
        service_.videos().changeNextPublishReply(std::move(changeReply));
        const VideoSharingNewSessionViewModel viewModel(host_.environment());
        return viewModel.createNewPublishSession("Main", "Derby", "team");
    }
    auto fetch() {
        const auto service = std::make_shared<TevuRemoteCodingService>(host_.environment().graphQLClient);
        const VideoSharingJoinSessionViewModel viewModel(host_.environment(), service);
        return viewModel.fetchLiveSessions(TeamSummary("team"));
    }
};

/// Cannot tell what the front window is.
struct UnsureTimelineComponent final : FaultyTimelineComponent {
    using FaultyTimelineComponent::FaultyTimelineComponent;
    bool isTimelineWindow(const std::shared_ptr<WindowProtocol>& window) override {
        return window == unsure ? throw std::runtime_error("window")
                                : FaultyTimelineComponent::isTimelineWindow(window);
    }
    std::shared_ptr<WindowProtocol> unsure;
};

TEST(VideoName, IsTheLastPathComponentWithoutItsExtension) {
    for (const std::string_view name : {"", "Derby", "Derby.", ".derby", "Rovers vs. United"}) {
        EXPECT_EQ(videoNameFromTitle(name), name);
    }
    const std::pair<const char*, const char*> names[] = {{"/Videos/Cup/Derby.mp4", "Derby"},
                                                         {"Derby.2026.mp4", "Derby.2026"},
                                                         {"/Rovers vs. United.mp4", "Rovers vs. United"},
                                                         {"/Cup.2026/Derby", "Derby"},
                                                         {"Videos/.derby", ".derby"},
                                                         {"/Videos/Derby.mp4//", "Derby"},
                                                         {"//", "/"}};
    for (const auto& [title, name] : names) {
        EXPECT_EQ(videoNameFromTitle(title), name);
    }
}

TEST_F(ViewModelTest, OffersTheNameOfTheFrontTimelineAndTheFeedsThatTheHostCanPublish) {
    const VideoSharingNewSessionViewModel viewModel(host_.environment());
    const auto other = host_.windowing().makePlainWindow("Preferences.window");
    other->show();
    EXPECT_FALSE(viewModel.defaultVideoName());

    const auto first = host_.openTimeline("/Videos/Rovers vs. United.mp4");
    host_.openTimeline("Training");
    other->show();
    EXPECT_EQ(viewModel.defaultVideoName(), "Training");
    host_.timelines().bringToFront(first->uniqueId());
    EXPECT_EQ(viewModel.defaultVideoName(), "Rovers vs. United");
    const auto doors = std::make_shared<UnsureTimelineComponent>(host_.timelines());
    doors->unsure = host_.timelines().windowOf(first->uniqueId());
    host_.locator().setTimelineComponent(doors);
    EXPECT_EQ(viewModel.defaultVideoName(), "Training");
    host_.locator().setTimelineComponent(nullptr);
    EXPECT_FALSE(viewModel.defaultVideoName());

    const auto rtp = std::make_shared<ReferenceHost::CaptureDevice>("RTP", "1", true);
    const auto camera = std::make_shared<ReferenceHost::CaptureDevice>("Camera", "2");
    host_.capture().setDevices({rtp, camera});
    EXPECT_THAT(viewModel.availableFeeds(), ElementsAre(rtp, camera));
    host_.userDefaults().setBool(UserDefaultsKeys::disableEnhancedCapture, true);
    EXPECT_THAT(viewModel.availableFeeds(), ElementsAre(camera));
    host_.userDefaults().fault = std::make_exception_ptr(std::runtime_error("settings"));
    EXPECT_THAT(viewModel.availableFeeds(), ElementsAre(rtp, camera));
    expectedErrors_ = {"The host failed unexpectedly: window", "The host failed unexpectedly: settings"};
    host_.locator().setCaptureComponent(nullptr);
    EXPECT_THAT(viewModel.availableFeeds(), IsEmpty());
}

TEST_F(ViewModelTest, OpensAPublishSessionWithOneAngle) {
    Reply reply;
    const auto session = run(open([&](Reply& given) {
                             given.mediaStreamIds->push_back("another");
                             reply = given;
                         })).value();
    const auto video = service_.videos().find(reply.videoId.value()).value();
    EXPECT_EQ(video.title + " " + video.teamId + " " + video.streams->at(0).name.value(), "Derby team Main");
    ASSERT_TRUE(session);
    const auto& [accessKey, secretKey, token, endpoint, streamKey, expiresIn] = session->credentials();
    const auto& given = reply.credentials.value();
    EXPECT_EQ(std::tie(accessKey, secretKey, token, endpoint, streamKey, expiresIn),
              std::tie(*given.accessKey, *given.secretKey, *given.sessionToken, *given.endpoint,
                       *given.streamKey, *given.expiresIn));
    EXPECT_EQ(std::tie(session->id(), session->region(), session->videoId(), session->primaryMediaStreamId(),
                       session->videoName()),
              std::tie(reply.id, *reply.region, *reply.videoId, reply.mediaStreamIds->at(0), video.title));
}

TEST_F(ViewModelTest, AnIncompleteAnswerIsLoggedAndGivesNoSessionAndAFailureIsHandedOn) {
    const std::function<void(Reply&)> gaps[] = {
        [](Reply& reply) { reply.mediaStreamIds.reset(); },
        [](Reply& reply) { reply.mediaStreamIds->clear(); }, [](Reply& reply) { reply.credentials.reset(); },
        [](Reply& reply) { reply.videoId.reset(); },
        [](Reply& reply) { reply.region = reply.credentials->endpoint = std::nullopt; }};
    for (const auto& leaveOut : gaps) {
        EXPECT_FALSE(run(open(leaveOut)).value());
    }
    expectedErrors_.assign(5, "Not all needed information returned in publish session call.");
    for (const auto field : {&Credentials::accessKey, &Credentials::secretKey, &Credentials::sessionToken,
                             &Credentials::endpoint, &Credentials::streamKey}) {
        EXPECT_FALSE(run(open([&](Reply& reply) { (*reply.credentials.*field).reset(); })).value());
    }
    EXPECT_FALSE(run(open([](Reply& reply) { reply.credentials->expiresIn.reset(); })).value());
    expectedErrors_.resize(11, "Not all credentials needed are provided.");
    host_.setLinkUp(false);
    EXPECT_THROW((void)run(open({})).value(), TevuAPIError);
}

TEST_F(ViewModelTest, ListsTheLiveSessionsSinceYesterdayInTheServicesOrder) {
    // The clocks of Berlin went forward that night: its calendar's yesterday is 23 hours away.
    ::setenv("TZ", "Europe/Berlin", 1);
    host_.environment().now = [] { return Base::RFC3339::parse("2026-03-29T12:00:00Z").value(); };
    using Video = ReferenceHost::VideoRecord;
    const std::pair<const char*, std::function<void(Video&)>> videos[] = {
        {"older", [](Video& video) { video.status = "Uploading", video.createdAt = "2026-01-01T00:00:00Z"; }},
        {"ready", [](Video& video) { video.status = "VideoReady"; }},
        {"lower case", [](Video& video) { video.status = "uploading"; }},
        {"recorded", [](Video& video) { video.playbackURL = "https://a.example/video.m3u8"; }},
        {"upper case", [](Video& video) { video.playbackURL = "https://a.example/Video.live.m3u8"; }},
        {"undated", [](Video& video) { video.createdAt = "yesterday"; }},
        {"deleted", [](Video& video) { video.isDeleted = true; }},
        {"old", [](Video& video) { video.updatedAt = Base::RFC3339::parse("2026-03-28T12:30:00Z"); }},
        {"newer", [](Video& video) { video.updatedAt = Base::RFC3339::parse("2026-03-28T13:30:00Z"); }}};
    for (const auto& [id, change] : videos) {
        auto video = ReferenceHost::liveVideo(id, "team", "Derby");
        change(video);
        service_.videos().add(video);
    }
    const auto sessions = run(fetch()).value();
    EXPECT_THAT(sessions, ElementsAre(testing::Property(&TevuRemoteCodingSession::videoId, "older"),
                                      testing::Property(&TevuRemoteCodingSession::videoId, "newer")));
    EXPECT_THAT(sessions, testing::Each(testing::Property(&TevuRemoteCodingSession::teamId, "team")));
    host_.setLinkUp(false);
    EXPECT_THROW((void)run(fetch()).value(), TevuAPIError);
    ::unsetenv("TZ");
}

}  // namespace
}  // namespace RemoteCoding
