#include "Tests/Component/PersonTest.hpp"

namespace RemoteCoding {
namespace {

constexpr const char* joinButton = "Join Session";
constexpr const char* table = "Active Sessions";

struct JoinSessionWindowTest : PersonTest {
    JoinSessionWindowTest() {
        service_.videos().add(cup_);
        service_.videos().add(ReferenceHost::liveVideo("derby", "blues", "Derby"));
    }
    /// The title of the only session; none when there is no session.
    [[nodiscard]] static std::string listed(const WindowOnScreen& window) {
        const auto rows = window.rows(table);
        return rows.empty() ? "none" : rows.front().front();
    }

    ReferenceHost::VideoRecord cup_ = ReferenceHost::liveVideo("cup", "reds", "Cup final", {"Wide", "Close"});
};

TEST_F(JoinSessionWindowTest, ListsTheFirstTeamsSessionsAndJoinsTheSelectedOne) {
    const auto date = host_.windowing().mediumDateShortTime(service_.time());
    for (const char* stream : {"Wide", "Unknown", "Unknown"}) {
        auto window = open(true);
        EXPECT_THAT(window.rows(table), ElementsAre(Texts{"Cup final", date}));
        window.selectRow(table, 0);
        EXPECT_TRUE(window.isEnabled(joinButton));
        window.deselect(table);
        EXPECT_FALSE(window.isEnabled(joinButton));
        window.selectRow(table, 0);
        window.pressReturn();
        EXPECT_FALSE(window.isOpen());
        EXPECT_EQ(last(TraceKind::logUsage),
                  (Texts{"SessionJoined", "remoteCoding", "LiveVideoReady", "reds", date, "cup"}));
        settle();
        const auto timeline = host_.timelines().timelineInFront();
        const auto details = component_->sessionDetails(timeline->uniqueId()).value();
        EXPECT_EQ(details.name + details.tevuVideoId, "Cup finalcup");
        EXPECT_THAT(details.streams, ElementsAre(LiveStreamingVideoStream(stream)));
        // Next a stream without a name, then no stream.
        if (auto& streams = *cup_.streams; !streams.empty() && streams.front().name) {
            streams.front().name.reset();
        } else {
            streams.clear();
        }
        cup_.createdAt = service_.videos().find("cup")->createdAt;
        service_.videos().add(cup_);
    }
}

TEST_F(JoinSessionWindowTest, AnotherTeamLeavesTheSelectedSessionAsItIsUntilTheTableTellsOfAnother) {
    auto window = open(true);
    window.selectRow(table, "Cup final");
    window.choose("Team", "Blues");
    host_.setRemoteCodingComponent(nullptr);
    window.click(joinButton);
    EXPECT_EQ(last(TraceKind::logUsage)[3], "blues");
    EXPECT_EQ(last(TraceKind::logUsage)[5], "cup");
    expectedErrors_ = {"Failed to open a remote coding session.: The host has no remote coding component"};

    window = open(true);
    window.selectRow(table, "Cup final");
    window.choose("Team", "Blues");
    EXPECT_TRUE(window.isEnabled(joinButton));
    settle();
    EXPECT_EQ(listed(window), "Derby");
    EXPECT_FALSE(window.isEnabled(joinButton)) << "the row is not selected any more";
    setTeams("Reds", "Blues", {});
    EXPECT_FALSE(open(true).isEnabled("Team"));
    EXPECT_EQ(listed(window), "Derby");
    window.selectRow(table, 0);
    EXPECT_FALSE(window.isEnabled(joinButton)) << "no team";
}

TEST_F(JoinSessionWindowTest, OfTwoFetchesTheLaterReplyWinsAndAFailureLeavesTheListAsItIs) {
    delay(CloudOperation::getVideosForTeamId, 12);
    auto window = open(true);
    window.choose("Team", "Blues");
    runFor(1);
    EXPECT_EQ(listed(window), "Derby");
    settle();
    EXPECT_EQ(listed(window), "Cup final");

    for (const char* answer : {"Cancel", "Retry"}) {
        EXPECT_EQ(listed(window), "Cup final");
        letFail(CloudOperation::getVideosForTeamId, 1, answer);
        window.choose("Team", "Blues");
        settle();
    }
    EXPECT_EQ(listed(window), "Derby");
    EXPECT_EQ(traced(TraceKind::alert), Texts(2, "Unable to Fetch Active Sessions"));
    EXPECT_EQ(traced(TraceKind::logWarn).back(),
              std::string("Failed to fetch live streaming video sessions. Error=") + requestFailed);
    letFail(CloudOperation::fetchTeams, 1, "Cancel");
    EXPECT_EQ(listed(open(true)), "Cup final") << "of the first of the previous teams";
    window.choose("Team", "Blues");
    window.click("Cancel");
}

}  // namespace
}  // namespace RemoteCoding
