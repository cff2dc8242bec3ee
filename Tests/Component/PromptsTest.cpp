// What the component asks and tells its user, and the windows it opens.

#include "Tests/Component/PersonTest.hpp"

namespace RemoteCoding {
namespace {

const auto failure = std::make_exception_ptr(std::runtime_error("failure"));

struct PromptsTest : PersonTest {
    PromptsTest() { host_.userDefaults().setBool(UserDefaultsKeys::enableSharedTimelines, true); }

    /// Asks on the timeline's own window when no other is given.
    WindowOnScreen prompt(const TimelinePointer& timeline, bool toEnd,
                          std::shared_ptr<ReferenceHost::HeadlessWindow> on = nullptr) {
        on = on ? on : host_.timelines().windowOf(timeline->uniqueId());
        toEnd ? component_->promptEndRemoteCodingSession(on, timeline->uniqueId())
              : component_->promptExitRemoteCodingSession(on, timeline->uniqueId());
        runFor(1);
        return WindowOnScreen(on);
    }
    void answer(WindowOnScreen window, const char* button) {
        EXPECT_TRUE(window.sheet()->buttons[1].isDestructive);
        window.answerSheet(button);
        runFor(1);
    }
    /// What was done since the last time about sessions and what belongs to them, in order.
    Texts deeds() {
        const std::set<std::string> known{"SessionEnded", "frontTimeline", "stopLiveShareWithTimelineId",
                                          "endCapturing"};
        Texts deeds;
        for (const auto& entry : trace_.entries(std::exchange(entriesSeen_, trace_.size()))) {
            const std::string deed(entry.field(entry.kind == TraceKind::logUsage ? "message" : "name"));
            if (known.contains(deed)) {
                deeds.push_back(deed + std::string(entry.field("timelineId")));
            }
        }
        return deeds;
    }
    std::shared_ptr<ReferenceHost::HeadlessWindow> plain_ = host_.windowing().makePlainWindow("Plain");
    std::size_t entriesSeen_ = 0;
};

TEST_F(PromptsTest, EndingAsksByTheStateOfTheStreamAndEndsTheSessionThenItsCapture) {
    const auto timeline = host();
    answer(prompt(timeline, true), "Cancel");
    EXPECT_EQ(last(TraceKind::sheet),
              (Texts{"Match", "critical", "Are you sure you want to end the session?",
                     "Collaborators will no longer have access to the capture or new shared data. You can "
                     "continue to use the timeline after ending the session.",
                     "\"Cancel\", \"End Session\""}));
    EXPECT_EQ(statusOf(timeline), Status::live);
    component_->streamEnded(timeline->uniqueId());
    answer(prompt(timeline, true), "End Session");
    EXPECT_EQ(last(TraceKind::sheet)[3],
              "Collaborators will no longer be able to share data. You can continue "
              "to use the timeline after ending the session.");
    EXPECT_EQ(deeds(), (Texts{"SessionEnded", "endCapturing"}));
    const auto window = prompt(host(), true);
    host_.startCapture("Another match");
    answer(window, "End Session");
    EXPECT_EQ(deeds(), Texts{"SessionEnded"}) << "the capture is another timeline's";
}

TEST_F(PromptsTest, LeavingLooksForTheFrontTimelineBeforeTheSessionEndsAndStopsItsShareAfter) {
    const auto timeline = joined();
    answer(prompt(timeline, false), "Cancel");
    EXPECT_EQ(last(TraceKind::sheet),
              (Texts{"Cup final", "warning", "Are you sure you want to exit the session?",
                     "You\u2019ll no longer be able to view the capture or share data with others in the "
                     "session. You can continue to use the timeline after exiting the session.",
                     "\"Cancel\", \"Exit Session\""}));
    EXPECT_EQ(deeds(), Texts());
    const auto window = prompt(timeline, false);
    const auto front = host_.openTimeline("Front")->uniqueId();
    answer(window, "Exit Session");
    EXPECT_EQ(deeds(), (Texts{"frontTimeline", "SessionEnded", "stopLiveShareWithTimelineId" + front}));
    const auto hosted = host();
    for (const auto& open : host_.timelines().openTimelines()) {
        host_.closeTimeline(open->uniqueId());
    }
    plain_->show();
    answer(prompt(hosted, false, plain_), "Exit Session");
    EXPECT_EQ(deeds(), (Texts{"frontTimeline", "SessionEnded", "stopLiveShareWithTimelineId"}));
}

TEST_F(PromptsTest, WithoutAnActiveSessionNobodyIsAskedAndWithoutAnAnswerNothingEnds) {
    const auto timeline = host();
    plain_->show();
    host_.windowing().faults.noSheets = failure;
    (void)prompt(timeline, true, plain_);
    host_.windowing().faults.noSheets = nullptr;
    component_->promptExitRemoteCodingSession(nullptr, timeline->uniqueId());
    (void)prompt(timeline, false);
    host_.closeTimeline(timeline->uniqueId());
    settle();
    EXPECT_EQ(statusOf(timeline), Status::live);
    const auto window = prompt(timeline, true, plain_);
    component_->streamEnded(timeline->uniqueId());
    answer(window, "End Session");
    (void)prompt(timeline, false, plain_);
    EXPECT_FALSE(window.sheet());
    (void)prompt(host(), true, plain_);
    component_.reset();
    answer(window, "End Session");
    EXPECT_THAT(deeds(), ElementsAre("SessionEnded"));
    const std::string gone = "Tried to end live streaming session when session does not exist";
    expectedErrors_ = {"Unable to show remote coding finish session alert", gone, gone};
}

TEST_F(PromptsTest, AFailedSessionCanOnlyBeQuit) {
    const auto timeline = joined();
    component_->fragmentDownloadDidError(failure, timeline->uniqueId());
    EXPECT_EQ(deeds(), Texts()) << "never inside the call";
    settle();
    EXPECT_EQ(last(TraceKind::alert),
              (Texts{"warning", "Unable to Load Session",
                     "You can rejoin the session if it is still active or join a new session.",
                     "\"Quit Session\""}));
    EXPECT_EQ(deeds(),
              (Texts{"frontTimeline", "stopLiveShareWithTimelineId" + timeline->uniqueId(), "SessionEnded"}));
    expectedErrors_ = {"Fragment Download Error: failure"};
}

TEST_F(PromptsTest, ASessionStartsFromACaptureUnlessOneIsHosted) {
    component_->openCreateSharingSessionWindow();
    EXPECT_EQ(ann_.windowTitles(), Texts());
    ann_.willAnswer("Open Capture Window");
    component_->openCreateSharingSessionWindow();
    EXPECT_EQ(last(TraceKind::alert), (Texts{"warning", "Capture Not Started",
                                             "To create a live streaming session you must start a capture.",
                                             "\"Open Capture Window\", \"Cancel\""}));
    (void)host();
    component_->openCreateSharingSessionWindow();
    host_.windowing().faults.makesNoWindow = true;
    component_->openJoinSharingSessionWindow();
    expectedErrors_ = {"Unable to make the window: VideoSharingJoinSessionWindowController"};
    EXPECT_EQ(ann_.windowTitles(), (Texts{"Match", "Capture"}));
    host_.windowing().faults.makesNoWindow = false;
    EXPECT_TRUE(open(true).isOpen());
    component_.reset();
    EXPECT_EQ(ann_.windowTitles(), (Texts{"Match", "Capture"})) << "its windows close with it";
}

}  // namespace
}  // namespace RemoteCoding
