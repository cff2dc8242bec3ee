// What the player of a live stream tells the component, and what it asks.

#include "Components/RemoteCoding/HostInterfaces/TevuAPIError.hpp"
#include "Tests/Component/ComponentTest.hpp"

namespace RemoteCoding {
namespace {

const std::string videoInError = "The video has an error status";

struct LiveStreamTest : ComponentTest {
    using Status = std::optional<std::string>;

    LiveStreamTest() {
        service_.videos().add(ReferenceHost::liveVideo("video", "team", "Cup final"));
        host_.person().onAlert([this](const Alert& alert) {
            alerts_.push_back(alert.messageText);
            host_.person().answer("Quit Session");
        });
    }

    void setStatus(const Status& status) { service_.videos().setStatus("video", status); }
    /// Joins a session; a fragment has just arrived.
    void watch() {
        timelineId_ = joined()->uniqueId();
        component_->fragmentDownloaded(timelineId_);
        runFor(0);
        (void)requests();
    }
    /// How often the service was asked for the video since this was last looked up.
    std::size_t requests() {
        const auto calls = trace_.entries("Ann", ReferenceHost::TraceKind::call);
        const auto all = static_cast<std::size_t>(
            std::ranges::count_if(calls, [](const auto& call) { return call.field("name") == "getVideo"; }));
        return all - std::exchange(requestsBefore_, all);
    }

    std::string timelineId_;
    std::vector<std::string> alerts_;
    std::size_t requestsBefore_ = 0;
};

TEST_F(LiveStreamTest, TheServiceIsAskedOnceWhenThePlayerIsSilentForAsLongAsItsLastWordAllows) {
    join();
    runFor(17.9);
    EXPECT_EQ(requests(), 0U) << "joined after 3 seconds";
    runFor(0.2);
    EXPECT_EQ(requests(), 1U);

    const auto id = host_.timelines().frontTimeline()->uniqueId();
    const auto arrive = [&] { component_->fragmentDownloaded(id); };
    const auto pause = [&] { component_->fragmentDownloadPaused(nullptr, id); };
    const auto resume = [&] { component_->fragmentDownloadResumed(id); };
    const auto complete = [&] { component_->fragmentDownloadComplete(id); };
    const auto completeAtOnce = [&] { arrive(), pause(), complete(); };
    const auto resumeAtOnce = [&] { complete(), resume(); };
    const std::tuple<std::function<void()>, double, std::size_t> words[] = {
        {arrive, 14.9, 0}, {arrive, 14.9, 0}, {arrive, 100, 1},        {pause, 4.9, 0},
        {resume, 14.9, 0}, {pause, 5.1, 1},   {pause, 4, 0},           {complete, 60, 0},
        {arrive, 1, 0},    {complete, 60, 0}, {completeAtOnce, 60, 0}, {resumeAtOnce, 15.1, 1}};
    for (const auto& [word, seconds, expected] : words) {
        word();
        runFor(seconds);
        EXPECT_EQ(requests(), expected) << seconds << " s after a word";
    }
}

TEST_F(LiveStreamTest, OnlyAVideoInErrorIsAFailureUnlessAFragmentArrivesMeanwhile) {
    watch();
    for (const Status& status : {Status("LiveVideoReady"), Status("error"), Status("Error "), Status()}) {
        setStatus(status);
        component_->fragmentDownloaded(timelineId_);
        runFor(16);
        EXPECT_EQ(requests(), 1U);
    }
    setStatus("Error");
    host_.cloudClient().faultNext(ReferenceHost::CloudOperation::getVideo,
                                  ReferenceHost::Fault(ReferenceHost::Fault::Kind::failAfterEffect));
    component_->fragmentDownloaded(timelineId_);
    runFor(16);
    EXPECT_THAT(trace_.entries("Ann", ReferenceHost::TraceKind::logWarn).back().field("message"),
                testing::StartsWith("Failed to fetch video status. Error=The cloud service"));
    component_->fragmentDownloaded(timelineId_);
    runFor(15.001);
    component_->fragmentDownloaded(timelineId_);
    runFor(14.9);
    EXPECT_THAT(alerts_, IsEmpty());

    runFor(2);
    EXPECT_THAT(alerts_, ElementsAre("Unable to Load Session"));
    expectedErrors_ = {videoInError};
}

TEST_F(LiveStreamTest, WhatThePlayerReportsAsAnErrorFailsAtOnceAndForJoinedSessionsOnly) {
    setStatus("Error");
    const auto error = std::make_exception_ptr(std::runtime_error("404"));
    const auto report = [&](const std::string& timelineId) {
        component_->fragmentDownloadPaused(error, timelineId);
        component_->fragmentDownloadDidError(error, timelineId);
        EXPECT_THAT(alerts_, IsEmpty()) << "never inside the call";
    };
    for (const auto& ignored : {host()->uniqueId(), std::string("unknown")}) {
        report(ignored);
        component_->fragmentDownloaded(ignored);
        component_->fragmentDownloadComplete(ignored);
    }
    watch();
    report(timelineId_);
    settle();
    EXPECT_THAT(alerts_, testing::SizeIs(2)) << "one for each event";
    EXPECT_EQ(requests(), 0U);
    runFor(16);
    EXPECT_EQ(requests(), 1U) << "neither an error nor the session's end stops the timer";
    const std::string tooLate = "Tried to end live streaming session when session does not exist";
    EXPECT_THAT(errors(), ElementsAre("Fragment Download Paused with Error: 404",
                                      "Fragment Download Error: 404", tooLate, videoInError, tooLate));
    watch();
    runFor(15.001);
    component_->fragmentDownloadDidError(nullptr, timelineId_);
    component_.reset();
    alerts_.clear();
    settle();
    EXPECT_THAT(alerts_, IsEmpty()) << "nobody is left to show one";
    expectedErrors_ = errors();
    EXPECT_EQ(expectedErrors_.back(), videoInError) << "of the request that was under way";
}

using Stream = ReferenceHost::VideoStreamRecord;
using Streams = std::optional<std::vector<Stream>>;

std::string describe(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const TevuAPIError::Video& video) {
        return "Video " + std::to_string(static_cast<int>(video.errorCase()));
    } catch (const TevuAPIError& service) {
        return "service " + std::to_string(static_cast<int>(service.errorCase())) + " " +
               std::to_string(service.value().value_or(-1));
    }
}
std::string describe(const std::optional<std::string>& manifestURL) { return manifestURL.value_or("absent"); }
std::string describe(const std::map<std::string, Base::URL>& urls) {
    std::string text;
    for (const auto& [id, url] : urls) {
        text += id + "=" + url.text() + " ";
    }
    return text;
}

struct URLsTest : ComponentTest {
    auto keepAnswer() {
        return [this](const auto& result) {
            EXPECT_TRUE(execution_.isMainThread());
            answers_.push_back(result.succeeded() ? describe(result.value()) : describe(result.error()));
        };
    }
    std::vector<std::string> answers() {
        EXPECT_THAT(answers_, IsEmpty()) << "never inside the call";
        settle();
        return std::exchange(answers_, {});
    }

    const Stream a_{.id = "a", .playbackURL = "https://a"};
    const Stream b_{.id = "b", .playbackURL = "https://b"};
    const Stream mute_{.id = "mute"};
    const Stream broken_{.id = "broken", .playbackURL = "https://no host"};
    std::vector<std::string> answers_;
};

TEST_F(URLsTest, TheManifestIsTheFirstStreamsAndAnUpdateTellsOfIt) {
    const auto timelineId = joined()->uniqueId();
    const std::tuple<Streams, const char*, std::size_t> cases[] = {{{{b_, a_}}, "https://b", 1},
                                                                   {{{broken_}}, "https://no host", 1},
                                                                   {{{mute_, a_}}, "absent", 0},
                                                                   {Streams(std::in_place), "absent", 0},
                                                                   {std::nullopt, "Video 1", 0}};
    for (const auto& [streams, answer, updates] : cases) {
        service_.videos().add({.id = "video 2", .status = "Error", .streams = streams});
        component_->getManifestURL(timelineId, "video 2", keepAnswer());
        EXPECT_THAT(answers(), ElementsAre(answer));
        EXPECT_EQ(std::exchange(updates_, {}).size(), updates) << answer;
    }
    host_.setLinkUp(false);
    component_->getManifestURL(timelineId, "video 2", keepAnswer());
    component_->getManifestURL("unknown", "video 2", keepAnswer());
    EXPECT_THAT(answers(), ElementsAre("absent", "service 3 -1")) << "without a session nobody is asked";
}

TEST_F(URLsTest, StreamsAreGivenByIdAndOneThatIsMissingOrCannotBePlayedFailsAll) {
    const std::tuple<std::optional<std::string>, Streams, std::vector<std::string>, const char*> cases[] = {
        {"Ready", {{b_, a_, mute_}}, {"a", "b", "a"}, "a=https://a b=https://b "},
        {{}, {{a_, {.id = "a", .playbackURL = "https://later"}}}, {"a"}, "a=https://later "},
        {{}, {{a_}}, {}, ""},
        {{}, {{broken_, b_}}, {"b", "broken"}, "b=https://b "},
        {"Error", {{mute_}}, {"mute", "a"}, "Video 2"},
        {"Error", {{a_, mute_}}, {"mute", "a"}, "Video 3"},
        {"Error", {{a_}}, {"a"}, "service 2 4"},
        {"Error", Streams(std::in_place), {}, "service 2 4"},
        {"Error", {}, {}, "Video 1"}};
    for (const auto& [status, streams, ids, answer] : cases) {
        service_.videos().add({.id = "video 2", .status = status, .streams = streams});
        component_->streamURLs("video 2", ids, keepAnswer());
        EXPECT_THAT(answers(), ElementsAre(answer));
    }
    component_->streamURLs("no such video", {}, keepAnswer());
    EXPECT_THAT(answers(), ElementsAre("Video 0")) << "the client's own error";
    expectedErrors_ = {"Unable to cast playbackURL String to URL"};
}

TEST_F(URLsTest, EveryAnswerComesWhateverBecomesOfTheSessionAndTheComponent) {
    service_.videos().add({.id = "video 2", .streams = {{a_}}});
    const auto timelineId = joined()->uniqueId();
    component_->streamURLs("video 2", {}, nullptr);
    component_->streamURLs("video 2", {}, [](const auto&) { throw std::runtime_error("completion"); });
    component_->getManifestURL(timelineId, "video 2", keepAnswer());
    component_->exitRemoteCodingSession(timelineId);
    EXPECT_THAT(answers(), ElementsAre("https://a"));
    EXPECT_THAT(updates_, ElementsAre(Status::ended)) << "nobody is told of its address";

    component_->getManifestURL(joined()->uniqueId(), "video 2", keepAnswer());
    component_->streamURLs("video 2", {"a"}, keepAnswer());
    component_.reset();
    EXPECT_THAT(answers(), testing::UnorderedElementsAre("https://a", "a=https://a "));
    expectedErrors_ = {"The host failed unexpectedly: completion"};
}

}  // namespace
}  // namespace RemoteCoding
