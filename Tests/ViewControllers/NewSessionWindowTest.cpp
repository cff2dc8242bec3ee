#include "Tests/Component/PersonTest.hpp"

namespace RemoteCoding {
namespace {

constexpr const char* createButton = "Create Session";
constexpr const char* feeds = "Feed to Share";
constexpr const char* name = "Video Name";

struct NewSessionWindowTest : PersonTest {
    /// With all that a session needs.
    WindowOnScreen filledIn() {
        timeline_ = host_.startCapture("/Videos/Derby.mp4");
        auto window = open(false);
        window.clickCheckBox(feeds, "Goal camera");
        window.choose("Team", "Blues");
        return window;
    }
    TimelinePointer timeline_;
};

TEST_F(NewSessionWindowTest, OffersNameFeedsAndTeamsAndCreatesOnlyWithOneOfEach) {
    host_.capture().startCapturing();
    auto window = open(false);
    EXPECT_EQ(window.textOf(name), "Untitled");
    host_.openTimeline("/Videos/Derby.mp4");
    EXPECT_EQ(open(false).textOf(name), "Derby") << "loaded anew";
    EXPECT_THAT(window.items("Team"), ElementsAre("Reds", "Blues"));
    EXPECT_FALSE(window.isEnabled(createButton)) << "no feed";
    window.clickCheckBox(feeds, "Main camera");
    EXPECT_TRUE(window.isEnabled(createButton));
    window.clickCheckBox(feeds, "Goal camera");
    window.clickCheckBox(feeds, "Goal camera");
    EXPECT_THAT(window.rows(feeds), ElementsAre(Texts{"[ ]", "Main camera"}, Texts{"[x]", "Goal camera"}));

    setTeams("Reds", "Blues", {});
    host_.capture().setDevices({});
    EXPECT_FALSE(open(false).isEnabled("Team"));
    EXPECT_THAT(window.items("Team"), IsEmpty());
    EXPECT_THAT(window.rows(feeds), IsEmpty());
    setTeams(std::nullopt, std::nullopt);
    EXPECT_TRUE(open(false).isEnabled("Team"));
    EXPECT_THAT(window.items("Team"), IsEmpty()) << "teams without names";
    EXPECT_FALSE(window.isEnabled(createButton));
    setTeams(std::nullopt, "Blues");
    EXPECT_TRUE(open(false).isEnabled(createButton)) << "the feed stays chosen";
}

TEST_F(NewSessionWindowTest, ANameIsCorrectedAsItIsTypedWithABeepForEachReason) {
    std::string breaks;
    for (int count = 0; count < 255; ++count) {
        breaks += "\r\n";
    }
    const std::string longest(255, 'x');
    const std::tuple<std::string, std::string, std::size_t> edits[] = {
        {":\n:", "", 1},       {" ", " ", 0},
        {"a:b", "ab", 1},      {"a\r\nb\n", "a\rb", 1},
        {longest, longest, 0}, {longest + "x", longest, 1},
        {"\xFF:", "\xFF", 1},  {breaks + "x", std::string(255, '\r'), 2}};
    auto window = filledIn();
    for (const auto& [typed, text, beeps] : edits) {
        const auto before = ann_.numberOfBeeps();
        window.type(name, typed);
        EXPECT_EQ(window.textOf(name), text) << typed;
        EXPECT_EQ(window.isEnabled(createButton), !text.empty());
        EXPECT_EQ(ann_.numberOfBeeps() - before, beeps) << typed;
    }
}

TEST_F(NewSessionWindowTest, TheWindowIsGoneBeforeAnyReplyAndRetriesWithoutEndCreateWhatWasChosen) {
    auto window = filledIn();
    window.type(name, "Cup final");
    letFail(CloudOperation::openPublishSession, 5000, "Retry");
    window.pressReturn();
    EXPECT_FALSE(window.isOpen());
    EXPECT_EQ(calls("openPublishSession"), 0);
    runFor(1000);
    EXPECT_EQ(traced(TraceKind::alert), Texts(5000, "Unable to Create Session"));
    EXPECT_EQ(traced(TraceKind::logWarn).back(),
              std::string("Failed to create a new publish session. Error=") + requestFailed);
    const auto publication = host_.capture().publication().value();
    const auto video = service_.videos().find(publication.session->videoId()).value();
    EXPECT_EQ(last(TraceKind::logUsage),
              (Texts{"SessionStarted", "remoteCoding", "Cup final", "blues", video.id}));
    EXPECT_EQ(video.title + " by " + video.streams->front().name.value(), "Cup final by Goal camera");
    EXPECT_EQ(publication.device->localizedName(), "Goal camera");
    EXPECT_EQ(component_->sessionDetails(timeline_->uniqueId()).value().name, "Cup final");
    component_->endRemoteCodingSession(timeline_->uniqueId());
    EXPECT_FALSE(open(false).isEnabled(createButton)) << "a new window remembers nothing";
}

TEST_F(NewSessionWindowTest, WhatFailsBehindTheServiceIsToldOnceAndARefusedSessionCountsAsStarted) {
    const auto create = [&](const std::exception_ptr& refusal) {
        host_.capture().refusal = refusal;
        filledIn().click(createButton);
        settle();
    };
    service_.videos().changeNextPublishReply([](PublishSessionSummary& reply) { reply.region.reset(); });
    create(nullptr);
    EXPECT_THAT(traced(TraceKind::logUsage), IsEmpty());
    expectedErrors_ = {"Not all needed information returned in publish session call.",
                       "Unable to get the publish session."};
    create(std::make_exception_ptr(Base::DescribedError("No encoder.", "Restart.")));
    EXPECT_THAT(last(TraceKind::alert), ElementsAre("warning", "No encoder.", "Restart.", "\"OK\""));
    create(std::make_exception_ptr(std::runtime_error("No disk")));
    EXPECT_THAT(last(TraceKind::alert), ElementsAre("warning", "No disk", "", "\"OK\""));
    filledIn().click(createButton);
    component_.reset();
    settle();
    EXPECT_EQ(traced(TraceKind::alert).back(), "Sharing sessions are not available.");
    EXPECT_EQ(traced(TraceKind::logUsage), Texts(3, "SessionStarted"));
}

}  // namespace
}  // namespace RemoteCoding
