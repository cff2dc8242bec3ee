// What both session windows do alike: signing in, the teams, and what a toolkit cannot do.

#include "Components/RemoteCoding/ViewControllers/VideoSharingNewSessionWindowController.hpp"
#include "Tests/Component/PersonTest.hpp"

namespace RemoteCoding {
namespace {

struct TeamsTest : PersonTest, testing::WithParamInterface<bool> {
    TeamsTest() {
        host_.startCapture("Derby");
        service_.videos().add(ReferenceHost::liveVideo("video", "reds", "Cup final"));
    }
    WindowOnScreen open() { return PersonTest::open(GetParam()); }
    [[nodiscard]] auto fetches() const { return calls("fetchTeams"); }
};

TEST_P(TeamsTest, ASignInIsAskedForUntilOneIsAcceptedAndWithoutOneThereIsNothing) {
    const auto error = std::make_exception_ptr(std::runtime_error("Wrong password"));
    host_.signOut();
    auto window = open();
    window.failSignIn(error);
    settle();
    EXPECT_FALSE(window.asksToSignIn()) << "loading has stopped";
    host_.account().hasNoLoginCoordinator = true;
    (void)open();
    EXPECT_EQ(fetches(), 0);

    host_.account().hasNoLoginCoordinator = false;
    host_.signIn("ann");
    service_.teams().expireSignIn("ann");
    (void)open();
    for (int attempt = 1; attempt <= 3; ++attempt) {
        EXPECT_EQ(fetches(), attempt);
        window.failSignIn(error);
        settle();
    }
    window.signIn("ann");
    settle();
    EXPECT_THAT(window.items("Team"), ElementsAre("Reds", "Blues"));
    EXPECT_EQ(fetches(), 5);
    EXPECT_THAT(traced(TraceKind::logWarn), IsEmpty());
}

TEST_P(TeamsTest, NobodySignsInThroughAWindowThatHasClosed) {
    host_.signOut();
    open().cancelSignIn();
    settle();
    EXPECT_EQ(fetches(), 1) << "loading goes on, without a user";
    for (const double duringTheFetch : {0, 15}) {
        host_.signIn("ann");
        service_.teams().expireSignIn("ann");
        delay(CloudOperation::fetchTeams, duringTheFetch);
        open().close();
        settle();
    }
    EXPECT_EQ(fetches(), 3);
    EXPECT_EQ(calls("makeLoginCoordinator"), 2);
    EXPECT_THAT(traced(TraceKind::logWarn), IsEmpty());
}

TEST_P(TeamsTest, TeamsThatCannotBeFetchedLeaveThePreviousOnesAndMayBeRetried) {
    auto window = open();
    window.choose("Team", "Blues");
    setTeams("Greens", std::nullopt);
    letFail(CloudOperation::fetchTeams, 1, "Cancel");
    EXPECT_EQ(open().selectedItem("Team"), "Reds") << "the first again";
    EXPECT_THAT(window.items("Team"), ElementsAre("Reds", "Blues"));
    letFail(CloudOperation::fetchTeams, 2, "Retry");
    EXPECT_THAT(open().items("Team"), ElementsAre("Greens"));
    EXPECT_EQ(traced(TraceKind::logWarn),
              Texts(3, std::string("Failed to fetch teams. Error=") + requestFailed));
    EXPECT_EQ(traced(TraceKind::alert), Texts(3, "Unable to Fetch Teams List"));
    host_.windowing().faults.noAlerts = std::make_exception_ptr(std::runtime_error("no screen"));
    letFail(CloudOperation::fetchTeams, 1, "Retry");
    EXPECT_THAT(open().items("Team"), ElementsAre("Greens"));
    expectedErrors_ = {"The host failed unexpectedly: no screen"};
}

TEST_P(TeamsTest, TablesShowNothingWhereTheToolkitHasNoFittingCell) {
    auto& faults = host_.windowing().faults;
    for (bool* fault : {&faults.makesNoCells, &faults.mixesUpCells, &faults.cellsHaveNoTextField}) {
        *fault = true;
        EXPECT_EQ(open().rows(GetParam() ? "Active Sessions" : "Feed to Share").front().back(), "");
        *fault = false;
    }
    faults.makesNoWindow = true;
    const auto controller = VideoSharingNewSessionWindowController::make(host_.environment());
    controller->showWindow(nullptr);
    controller->loadContent();
    settle();
    controller->perform("checkSelectFeedCheckbox", nullptr);
    controller->perform("cancel", nullptr);
    expectedErrors_ = {"Unable to make the window: VideoSharingNewSessionWindowController"};
}

INSTANTIATE_TEST_SUITE_P(, TeamsTest, testing::Bool(),
                         [](const auto& toJoin) { return toJoin.param ? "Join" : "New"; });

}  // namespace
}  // namespace RemoteCoding
