// What both session windows do alike: signing in, and the teams.

#include "Tests/ViewControllers/SessionWindowTest.hpp"

namespace RemoteCoding {
namespace {

using testing::AllOf;
using testing::Each;
using testing::SizeIs;

const std::string teamsFailed =
    "Failed to fetch teams. Error=The cloud service could not carry out the request..";

struct TeamsTest : SessionWindowTest, testing::WithParamInterface<const char*> {
    TeamsTest() { host_.startCapture("Derby"); }

    ReferenceHost::WindowOnScreen open() {
        return GetParam() == std::string(newTitle) ? openNew() : openJoin();
    }
    [[nodiscard]] auto fetches() const { return calls("fetchTeams"); }
    void expectSilence() const {
        EXPECT_THAT(alerts(), IsEmpty());
        EXPECT_THAT(warnings(), IsEmpty());
    }
};

TEST_P(TeamsTest, WhoIsNotSignedInIsAskedToAndSeesNothingWithout) {
    host_.signOut();
    auto window = open();
    ASSERT_TRUE(window.asksToSignIn());
    window.failSignIn(std::make_exception_ptr(std::runtime_error("No network")));
    settle();
    EXPECT_FALSE(window.asksToSignIn()) << "loading has stopped";
    EXPECT_EQ(fetches(), 0);
    host_.account().hasNoLoginCoordinator = true;
    (void)open();
    EXPECT_EQ(fetches(), 0);

    host_.account().hasNoLoginCoordinator = false;
    (void)open();
    window.signIn("ann");
    settle();
    EXPECT_THAT(window.items("Team"), ElementsAre("Reds", "Blues"));
    EXPECT_EQ(fetches(), 1);
    expectSilence();
}

TEST_P(TeamsTest, ASignInThatIsNotAcceptedIsRepeatedUntilOneIs) {
    service_.teams().expireSignIn("ann");
    const auto window = open();
    for (int attempt = 1; attempt <= 3; ++attempt) {
        EXPECT_EQ(fetches(), attempt);
        ASSERT_TRUE(window.asksToSignIn());
        ReferenceHost::WindowOnScreen(window).failSignIn(
            std::make_exception_ptr(std::runtime_error("Wrong password")));
        settle();
    }
    ReferenceHost::WindowOnScreen(window).signIn("ann");
    settle();
    EXPECT_THAT(window.items("Team"), ElementsAre("Reds", "Blues"));
    EXPECT_EQ(fetches(), 5);
    expectSilence();
}

TEST_P(TeamsTest, NobodySignsInThroughAWindowThatHasClosed) {
    host_.signOut();
    open().cancelSignIn();
    settle();
    EXPECT_EQ(fetches(), 1) << "loading goes on, without a user";
    host_.signIn("ann");
    for (const bool closesDuringTheFetch : {false, true}) {
        service_.teams().expireSignIn("ann");
        const auto before = fetches();
        if (closesDuringTheFetch) {
            host_.cloudClient().faultNext(CloudOperation::fetchTeams,
                                          Fault(Fault::Kind::none, Base::Seconds(15)));
        }
        open().close();
        settle();
        EXPECT_EQ(fetches(), before + 1);
        settle();
    }
    EXPECT_FALSE(ann_.sees(GetParam()));
    EXPECT_EQ(calls("makeLoginCoordinator"), 2);
    expectSilence();
}

TEST_P(TeamsTest, TeamsThatCannotBeFetchedLeaveThePreviousOnesAndMayBeRetried) {
    const auto window = open();
    addTeam("greens", "Greens");
    fail(CloudOperation::fetchTeams);
    (void)open();
    EXPECT_THAT(window.items("Team"), ElementsAre("Reds", "Blues"));
    fail(CloudOperation::fetchTeams, 5000);
    for (int retry = 0; retry < 5000; ++retry) {
        ann_.willAnswer("Retry");
    }
    (void)open();
    runFor(1000);
    EXPECT_THAT(window.items("Team"), ElementsAre("Reds", "Blues", "Greens"));
    EXPECT_THAT(warnings(), AllOf(SizeIs(5001), Each(teamsFailed)));
    EXPECT_THAT(alerts(), AllOf(SizeIs(5001), Each("Unable to Fetch Teams List")));

    host_.windowing().faults.noAlerts = std::make_exception_ptr(std::runtime_error("no screen"));
    fail(CloudOperation::fetchTeams);
    (void)open();
    EXPECT_TRUE(window.isEnabled("Team"));
    expectedErrors_ = {"The host failed unexpectedly: no screen"};
}

TEST_P(TeamsTest, TablesShowNothingWhereTheToolkitHasNoFittingCell) {
    service_.videos().add(ReferenceHost::liveVideo("video", "reds", "Cup final"));
    const bool isNew = GetParam() == std::string(newTitle);
    auto& faults = host_.windowing().faults;
    const std::pair<bool*, Rows> cases[] = {
        {&faults.makesNoCells, {{"", ""}}},
        {&faults.mixesUpCells, {{"", ""}}},
        {&faults.cellsHaveNoTextField, {{isNew ? "[ ]" : "", ""}}},
    };
    for (const auto& [fault, row] : cases) {
        *fault = true;
        const auto window = open();
        EXPECT_EQ(window.rows(isNew ? "Feed to Share" : "Active Sessions").front(), row.front());
        *fault = false;
        ReferenceHost::WindowOnScreen(window).close();
    }
}

TEST_P(TeamsTest, AReplyThatNeverComesKeepsAClosedWindowsControllerOnlyUntilTheHostStops) {
    host_.cloudClient().faultNext(CloudOperation::fetchTeams, Fault(Fault::Kind::neverAnswer));
    open().close();
    settle();
    EXPECT_EQ(host_.unfinishedTasks(), 1U);
    host_.stop();
    host_.environment().tasks.drop();
}

INSTANTIATE_TEST_SUITE_P(, TeamsTest,
                         testing::Values("New Video Sharing Session", "Join Video Sharing Session"),
                         [](const auto& title) { return title.param[0] == 'N' ? "New" : "Join"; });

}  // namespace
}  // namespace RemoteCoding
