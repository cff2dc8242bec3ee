#include "Components/RemoteCoding/ViewControllers/VideoSharingJoinSessionWindowController.hpp"
#include "Tests/ViewControllers/SessionWindowTest.hpp"

namespace RemoteCoding {
namespace {

using testing::Pair;

constexpr const char* table = "Active Sessions";

struct JoinSessionWindowTest : SessionWindowTest {
    JoinSessionWindowTest() {
        service_.videos().add(ReferenceHost::liveVideo("cup", "reds", "Cup final", {"Wide", "Close"}));
        service_.videos().add(ReferenceHost::liveVideo("derby", "blues", "Derby"));
    }
    [[nodiscard]] static bool canJoin(const ReferenceHost::WindowOnScreen& window) {
        return window.isEnabled("Join Session");
    }
    [[nodiscard]] static std::vector<std::string> titles(const ReferenceHost::WindowOnScreen& window) {
        std::vector<std::string> titles;
        for (const auto& row : window.rows(table)) {
            titles.push_back(row.front());
        }
        return titles;
    }
    void delayNextSessions(double seconds) {
        host_.cloudClient().faultNext(CloudOperation::getVideosForTeamId,
                                      Fault(Fault::Kind::none, Base::Seconds(seconds)));
    }
};

TEST_F(JoinSessionWindowTest, ListsTheFirstTeamsSessionsAndJoinsTheSelectedOne) {
    const auto date = host_.windowing().mediumDateShortTime(service_.time());
    auto window = openJoin();
    EXPECT_EQ(window.selectedItem("Team"), "Reds");
    EXPECT_EQ(window.rows(table), (Rows{{"Cup final", date}}));
    EXPECT_FALSE(canJoin(window));
    window.selectRow(table, "Cup final");
    EXPECT_TRUE(canJoin(window));
    window.deselect(table);
    EXPECT_FALSE(canJoin(window));
    window.selectRow(table, 0);
    window.pressReturn();
    EXPECT_FALSE(window.isOpen());
    EXPECT_THAT(usage(), ElementsAre(Pair("message", "SessionJoined"), Pair("operation", "remoteCoding"),
                                     Pair("Status", "LiveVideoReady"), Pair("TeamId", "reds"),
                                     Pair("UploadedDate", date), Pair("VideoId", "cup")));
    settle();
    const auto details = component_->sessionDetails(host_.timelines().timelineInFront()->uniqueId()).value();
    EXPECT_EQ(details.name, "Cup final");
    EXPECT_EQ(details.tevuVideoId, "cup");
    EXPECT_THAT(details.streams, ElementsAre(LiveStreamingVideoStream("Wide")));
}

TEST_F(JoinSessionWindowTest, AStreamWithoutANameIsUnknown) {
    auto video = ReferenceHost::liveVideo("cup", "reds", "Cup final");
    for (const bool hasStream : {true, false}) {
        hasStream ? video.streams->front().name.reset() : video.streams->clear();
        service_.videos().add(video);
        auto window = openJoin();
        window.selectRow(table, 0);
        window.click("Join Session");
        settle();
        const auto timeline = host_.timelines().timelineInFront();
        EXPECT_THAT(component_->sessionDetails(timeline->uniqueId()).value().streams,
                    ElementsAre(LiveStreamingVideoStream("Unknown")));
    }
}

TEST_F(JoinSessionWindowTest, AnotherTeamLeavesTheSelectedSessionAsItIsUntilTheTableTellsOfAnother) {
    auto window = openJoin();
    window.selectRow(table, "Cup final");
    window.choose("Team", "Blues");
    EXPECT_TRUE(canJoin(window));
    settle();
    EXPECT_THAT(titles(window), ElementsAre("Derby"));
    EXPECT_TRUE(canJoin(window)) << "the row is still selected";
    window.click("Join Session");
    EXPECT_EQ(trace_.entries("Ann", TraceKind::logUsage).back().field("TeamId"), "blues");
    EXPECT_EQ(trace_.entries("Ann", TraceKind::logUsage).back().field("VideoId"), "cup");

    window = openJoin();
    window.selectRow(table, "Cup final");
    service_.videos().markDeleted("cup");
    window.choose("Team", "Reds");
    settle();
    EXPECT_THAT(titles(window), IsEmpty());
    EXPECT_FALSE(canJoin(window)) << "the row is gone";
}

TEST_F(JoinSessionWindowTest, OfTwoFetchesTheLaterReplyWins) {
    delayNextSessions(12);
    auto window = openJoin();
    window.choose("Team", "Blues");
    runFor(1);
    EXPECT_THAT(titles(window), ElementsAre("Derby"));
    settle();
    EXPECT_THAT(titles(window), ElementsAre("Cup final"));
    delayNextSessions(12);
    window.choose("Team", "Reds");
    window.click("Cancel");
    settle();
}

TEST_F(JoinSessionWindowTest, SessionsThatCannotBeFetchedLeaveThePreviousOnesAndMayBeRetried) {
    auto window = openJoin();
    fail(CloudOperation::getVideosForTeamId, 2);
    ann_.willAnswer("Retry");
    ann_.willAnswer("Cancel");
    window.choose("Team", "Blues");
    settle();
    EXPECT_THAT(titles(window), ElementsAre("Cup final"));
    const std::string warning =
        "Failed to fetch live streaming video sessions. Error=" + std::string(requestFailed) + ".";
    EXPECT_THAT(warnings(), ElementsAre(warning, warning));
    const std::string message = "Unable to Fetch Active Sessions";
    EXPECT_THAT(alerts(), ElementsAre(message, message));

    fail(CloudOperation::getVideosForTeamId);
    ann_.willAnswer("Retry");
    window.choose("Team", "Blues");
    settle();
    EXPECT_THAT(titles(window), ElementsAre("Derby"));
    fail(CloudOperation::fetchTeams);
    (void)openJoin();
    EXPECT_THAT(titles(window), ElementsAre("Cup final")) << "the first of the previous teams";
}

TEST_F(JoinSessionWindowTest, WithoutTeamsNothingIsFetchedAndTheTableStaysAsItIs) {
    auto window = openJoin();
    service_.teams().add({.id = "reds"});
    service_.teams().add({.id = "blues"});
    (void)openJoin();
    EXPECT_FALSE(window.isEnabled("Team"));
    EXPECT_THAT(titles(window), ElementsAre("Cup final"));
    window.selectRow(table, 0);
    EXPECT_FALSE(canJoin(window)) << "no team";
    EXPECT_EQ(calls("getVideosForTeamId"), 1);

    host_.windowing().faults.makesNoWindow = true;
    const auto controller = VideoSharingJoinSessionWindowController::make(host_.environment(), nullptr);
    controller->showWindow(nullptr);
    controller->loadContent();
    settle();
    for (const char* action : {"teamSelected", "joinSession", "cancel"}) {
        controller->perform(action, nullptr);
    }
    expectedErrors_ = {"Unable to make the window: VideoSharingJoinSessionWindowController"};
}

TEST_F(JoinSessionWindowTest, WithoutAComponentTheJoinIsLoggedAsFailed) {
    auto window = openJoin();
    window.selectRow(table, 0);
    host_.setRemoteCodingComponent(nullptr);
    window.click("Join Session");
    EXPECT_FALSE(window.isOpen());
    expectedErrors_ = {"Failed to open a remote coding session.: The host has no remote coding component"};
}

}  // namespace
}  // namespace RemoteCoding
