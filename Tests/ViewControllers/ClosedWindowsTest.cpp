// What neither a window that has closed nor a call of the host that fails may spoil.

#include "Components/RemoteCoding/ViewControllers/VideoSharingNewSessionWindowController.hpp"
#include "Tests/Component/PersonTest.hpp"

namespace RemoteCoding {
namespace {

struct ClosedWindowsTest : PersonTest {
    ClosedWindowsTest() { host_.startCapture("Derby"); }

    const std::exception_ptr failure_ = std::make_exception_ptr(std::runtime_error("failure"));
};

TEST_F(ClosedWindowsTest, ARetryGoesToTheTeamAndTheNameThatWereChosenWhateverIsLoadedMeanwhile) {
    auto window = open(false);
    window.clickCheckBox("Feed to Share", "Goal camera");
    window.choose("Team", "Blues");
    window.type("Video Name", "Cup final");
    const Fault late(Fault::Kind::failBeforeEffect, Base::Seconds(6));
    host_.cloudClient().faultNext(CloudOperation::openPublishSession, late);
    ann_.willAnswer("Retry");
    delay(CloudOperation::fetchTeams, 3);
    component_->openCreateSharingSessionWindow();
    window.click("Create Session");
    settle();
    EXPECT_EQ(traced(TraceKind::alert), Texts{"Unable to Create Session"});
    EXPECT_EQ(calls("fetchTeams"), 2);
    const auto usage = last(TraceKind::logUsage);
    EXPECT_THAT(Texts(usage.begin(), usage.begin() + 4),
                ElementsAre("SessionStarted", "remoteCoding", "Cup final", "blues"));
}

TEST_F(ClosedWindowsTest, LoadingGoesOnWithoutAUserWhenTheWindowClosesAtOnceAndStopsWhereNoFlowCanBeMade) {
    host_.signOut();
    for (const bool toJoin : {false, true}) {
        toJoin ? component_->openJoinSharingSessionWindow() : component_->openCreateSharingSessionWindow();
        ann_.window(ann_.windowTitles().front()).close();
        settle();
    }
    EXPECT_EQ(calls("makeLoginCoordinator"), 2);
    EXPECT_EQ(calls("fetchTeams"), 2);

    host_.account().noLoginCoordinator = failure_;
    EXPECT_EQ(open(false).textOf("Video Name"), "");
    EXPECT_EQ(calls("fetchTeams"), 2);
    expectedErrors_ = {"The host failed unexpectedly: failure"};
}

TEST_F(ClosedWindowsTest, ANameIsCorrectedWhereTheToolkitCannotBeep) {
    auto window = open(false);
    window.clickCheckBox("Feed to Share", 0);
    host_.windowing().faults.noBeeps = failure_;
    window.type("Video Name", ":" + std::string(255, 'a'));
    EXPECT_EQ(window.textOf("Video Name"), std::string(254, 'a'));
    EXPECT_TRUE(window.isEnabled("Create Session"));
    window.type("Video Name", ":");
    EXPECT_EQ(window.textOf("Video Name"), "");
    EXPECT_FALSE(window.isEnabled("Create Session"));
    expectedErrors_ = Texts(3, "The host failed unexpectedly: failure");
}

TEST_F(ClosedWindowsTest, AnActionOnTheWrongThreadIsReportedByItsFullName) {
    const auto controller = VideoSharingNewSessionWindowController::make(host_.environment());
    execution_.postToBackground([&] { controller->perform("checkSelectFeedCheckbox", nullptr); });
    settle();
    EXPECT_EQ(traced(TraceKind::wrongThread, "function"), Texts{"checkSelectFeedCheckbox(_:)"});
    expectedWrongThreads_ = 1;
}

}  // namespace
}  // namespace RemoteCoding
