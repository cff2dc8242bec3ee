#include "Base/Error.hpp"
#include "Components/RemoteCoding/ViewControllers/VideoNameText.hpp"
#include "Components/RemoteCoding/ViewControllers/VideoSharingNewSessionWindowController.hpp"
#include "Tests/ViewControllers/SessionWindowTest.hpp"

namespace RemoteCoding {
namespace {

using testing::Each;
using testing::Pair;

const std::string publishFailed =
    "Failed to create a new publish session. Error=The cloud service could not carry out the request..";

struct NewSessionWindowTest : SessionWindowTest {
    /// The window with all that a session needs.
    ReferenceHost::WindowOnScreen filledIn() {
        timeline_ = host_.startCapture("/Videos/Derby.mp4");
        auto window = openNew();
        window.clickCheckBox("Feed to Share", "Goal camera");
        window.choose("Team", "Blues");
        return window;
    }
    [[nodiscard]] static bool canCreate(const ReferenceHost::WindowOnScreen& window) {
        return window.isEnabled("Create Session");
    }
    /// The usage event, and what became of the session.
    void expectStarted(const char* name) {
        const auto videoId = host_.capture().publication().value().session->videoId();
        EXPECT_THAT(usage(), ElementsAre(Pair("message", "SessionStarted"), Pair("operation", "remoteCoding"),
                                         Pair("SessionName", name), Pair("TeamId", "blues"),
                                         Pair("VideoId", videoId)));
        EXPECT_EQ(host_.capture().publication()->device->uniqueID(), "2");
        EXPECT_EQ(service_.videos().find(videoId)->title, name);
        EXPECT_EQ(service_.videos().find(videoId)->streams->front().name, "Goal camera");
        EXPECT_EQ(component_->sessionDetails(timeline_->uniqueId()).value().name, name);
    }

    TimelinePointer timeline_;
};

TEST_F(NewSessionWindowTest, OffersNameFeedsAndTeamsAndCreatesOnlyWithOneOfEach) {
    host_.startCapture("/Videos/Derby.mp4");
    auto window = openNew();
    EXPECT_EQ(window.textOf("Video Name"), "Derby");
    EXPECT_THAT(window.items("Team"), ElementsAre("Reds", "Blues"));
    EXPECT_EQ(window.rows("Feed to Share"), (Rows{{"[ ]", "Main camera"}, {"[ ]", "Goal camera"}}));
    EXPECT_FALSE(canCreate(window)) << "no feed";
    window.clickCheckBox("Feed to Share", "Main camera");
    EXPECT_TRUE(canCreate(window));
    window.clickCheckBox("Feed to Share", "Goal camera");
    window.clickCheckBox("Feed to Share", "Goal camera");
    EXPECT_EQ(window.rows("Feed to Share"), (Rows{{"[ ]", "Main camera"}, {"[x]", "Goal camera"}}));
    window.type("Video Name", "");
    EXPECT_FALSE(canCreate(window));
    window.type("Video Name", "  ");
    EXPECT_TRUE(canCreate(window));

    service_.teams().add({.id = "reds"});
    service_.teams().add({.id = "blues"});
    host_.capture().setDevices({std::make_shared<ReferenceHost::CaptureDevice>("Other", "3")});
    EXPECT_EQ(openNew().textOf("Video Name"), "Derby") << "loaded anew";
    EXPECT_FALSE(window.isEnabled("Team")) << "a member of no team";
    EXPECT_THAT(window.items("Team"), IsEmpty());
    EXPECT_EQ(window.rows("Feed to Share"), (Rows{{"[ ]", "Other"}}));
    addTeam("reds", std::nullopt);
    (void)openNew();
    EXPECT_TRUE(window.isEnabled("Team"));
    EXPECT_THAT(window.items("Team"), IsEmpty()) << "the only team has no name";
    EXPECT_FALSE(canCreate(window));
    addTeam("blues", "Blues");
    (void)openNew();
    EXPECT_TRUE(canCreate(window)) << "the feed stays chosen";
}

TEST_F(NewSessionWindowTest, WithoutATimelineFeedsOrControlsThereIsNothingToCreate) {
    host_.capture().startCapturing();
    host_.capture().setDevices({});
    const auto window = openNew();
    EXPECT_EQ(window.textOf("Video Name"), "Untitled");
    EXPECT_THAT(window.rows("Feed to Share"), IsEmpty());
    host_.windowing().faults.makesNoWindow = true;
    const auto controller = VideoSharingNewSessionWindowController::make(host_.environment());
    controller->showWindow(nullptr);
    controller->loadContent();
    settle();
    for (const char* action : {"checkSelectFeedCheckbox", "createNewSession", "cancel", "unknown"}) {
        controller->perform(action, nullptr);
    }
    controller->controlTextDidChange(nullptr);
    EXPECT_FALSE(controller->tableView(nullptr, "FeedNameColumn", 0));
    expectedErrors_ = {"Unable to make the window: VideoSharingNewSessionWindowController"};
    EXPECT_EQ(usage(), ReferenceHost::TraceFields());
}

TEST(VideoNameTextTest, Keeps255PerceivedCharactersAndNoColonsOrLineFeeds) {
    const auto repeated = [](std::size_t times, const std::string& text) {
        std::string all;
        for (std::size_t time = 0; time < times; ++time) {
            all += text;
        }
        return all;
    };
    const std::string flag = "\U0001F1EB\U0001F1F7";
    const struct {
        std::string typed, text;
        bool wasCut, hadForbiddenCharacters;
    } cases[] = {
        {"", "", false, false},
        {"a:b", "ab", false, true},
        {":\n:", "", false, true},
        {"a\r\nb\n", "a\rb", false, true},
        {repeated(255, flag), repeated(255, flag), false, false},
        {repeated(256, flag), repeated(255, flag), true, false},
        {repeated(255, "\r\n") + "x", repeated(255, "\r"), true, true},
        {repeated(255, "e\u0301") + ":", repeated(255, "e\u0301"), true, false},
        {"\xFF:\xFE", "\xFF\xFE", false, true},
    };
    for (const auto& [typed, text, wasCut, hadForbiddenCharacters] : cases) {
        const VideoNameText name(typed);
        EXPECT_EQ(name.text, text) << typed;
        EXPECT_EQ(name.wasCut, wasCut) << typed;
        EXPECT_EQ(name.hadForbiddenCharacters, hadForbiddenCharacters) << typed;
    }
}

TEST_F(NewSessionWindowTest, ANameIsCorrectedAsItIsTypedWithABeepForEachReason) {
    auto window = filledIn();
    const std::pair<std::string, std::size_t> edits[] = {{std::string(255, 'x'), 0},
                                                         {std::string(300, 'x'), 1},
                                                         {"ab\nc", 1},
                                                         {':' + std::string(255, 'x'), 2}};
    for (const auto& [typed, beeps] : edits) {
        const auto before = ann_.numberOfBeeps();
        window.type("Video Name", typed);
        EXPECT_EQ(window.textOf("Video Name"), VideoNameText(typed).text);
        EXPECT_EQ(ann_.numberOfBeeps() - before, beeps) << typed;
    }
    window.type("Video Name", "::");
    EXPECT_FALSE(canCreate(window)) << "nothing is left";
}

TEST_F(NewSessionWindowTest, TheWindowIsGoneBeforeAnyReplyAndRetryCreatesWithTheSameChoices) {
    auto window = filledIn();
    window.type("Video Name", "Cup final");
    fail(CloudOperation::openPublishSession, 2);
    ann_.willAnswer("Retry", Base::Seconds(3), "Unable to Create Session");
    ann_.willAnswer("Retry");
    window.pressReturn();
    EXPECT_FALSE(window.isOpen());
    EXPECT_EQ(calls("openPublishSession"), 0);
    settle();
    EXPECT_THAT(warnings(), ElementsAre(publishFailed, publishFailed));
    expectStarted("Cup final");
    component_->endRemoteCodingSession(timeline_->uniqueId());
    EXPECT_EQ(openNew().textOf("Video Name"), "Derby") << "a new window remembers nothing";
    EXPECT_FALSE(canCreate(ann_.window(newTitle)));
}

TEST_F(NewSessionWindowTest, RetryingNeedsNoStackAndCancelEndsIt) {
    auto window = filledIn();
    constexpr int retries = 5000;
    fail(CloudOperation::openPublishSession, retries + 1);
    for (int retry = 0; retry < retries; ++retry) {
        ann_.willAnswer("Retry");
    }
    window.click("Create Session");
    time_.runFor(Base::Seconds(1000));
    EXPECT_EQ(warnings().size(), retries + 1U);
    EXPECT_FALSE(host_.capture().publication());
}

TEST_F(NewSessionWindowTest, WhatFailsBehindTheServiceIsToldOnceAndARefusedSessionCountsAsStarted) {
    auto window = filledIn();
    service_.videos().changeNextPublishReply([](PublishSessionSummary& reply) { reply.region.reset(); });
    window.click("Create Session");
    settle();
    EXPECT_THAT(alerts(), IsEmpty());
    EXPECT_EQ(usage(), ReferenceHost::TraceFields());
    expectedErrors_ = {"Not all needed information returned in publish session call.",
                       "Unable to get the publish session."};

    const auto create = [&] {
        window = filledIn();
        window.click("Create Session");
        settle();
        EXPECT_EQ(usage().front().second, "SessionStarted");
        trace_.record("Ann", TraceKind::logUsage);
    };
    host_.capture().refusal = std::make_exception_ptr(Base::DescribedError("No encoder.", "Restart."));
    create();
    host_.capture().refusal = std::make_exception_ptr(std::runtime_error("No disk"));
    create();
    host_.setRemoteCodingComponent(nullptr);
    create();
    EXPECT_THAT(alerts(), ElementsAre("No encoder.", "No disk", "The host has no remote coding component"));
    EXPECT_THAT(traced(TraceKind::alert, "text"), ElementsAre("Restart.", "", ""));
    EXPECT_THAT(traced(TraceKind::alert, "buttons"), Each("\"OK\""));
}

TEST_F(NewSessionWindowTest, ACreationOutlivesItsComponent) {
    filledIn().click("Create Session");
    component_.reset();
    settle();
    EXPECT_THAT(alerts(), ElementsAre("The host has no remote coding component"));
}

}  // namespace
}  // namespace RemoteCoding
