#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

const std::string function = "||syncRemoteTaggingSessionToLocalTimeline(completion:)";
const std::string noSession = "error Expected a tagging session on Tevu, but none found." + function;
const std::string otherSession =
    "error TaggingSessionId does not match the primary tagging session for the Tevu video." + function;
const std::string noTimeline = "error Unable to get timeline" + function;
const std::string fetchFailed = "warn Unable to get remote tagging session. Error=" + requestFailed;

class PullTest : public SynchroniserTest {
protected:
    /// A session of somebody else's with a moment on Attack, and Ann, whose timeline has that row with another colour.
    void SetUp() override {
        cloud.addTaggingSession("team", videoId, "stranger");
        momentId = addRemoteMoment("Attack", 1, 2);
        add("Ann").timeline->addRow("Attack", Base::Color(10, 20, 30));
    }

    /// What the pull reports; it has to report something.
    bool pull() {
        trace.clear();
        std::optional<bool> result;
        ann().service->syncRemoteTaggingSessionToLocalTimeline([&](bool succeeded) { result = succeeded; });
        EXPECT_TRUE(time.runUntil([&] { return result.has_value(); }, Base::Seconds(60)));
        return result.value_or(false);
    }

    std::string momentId;
};

TEST_F(PullTest, TheFirstOfTheVideosSessionsIsApplied) {
    cloud.addTaggingSession("team", videoId, "stranger");
    ann().start(sessionId());
    settle();
    // Without a presentation view the rows stay as they are.
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30): 1-2/" + momentId + "\n");
    EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
    EXPECT_EQ(log(ann()).front(), "info Syncing remote tagging session to the local timeline");
    EXPECT_EQ(complaints(ann()), Strings());
    EXPECT_EQ(cloudCalls(ann()), Strings({"fetchTaggingSessions", "subscribeToTaggingSessionChanges"}));
}

TEST_F(PullTest, ASessionThatDoesNotFitIsLoggedAndTriedNoFurther) {
    const std::string mine = cloud.addTaggingSession("team", videoId, "stranger");
    ann().start(mine);
    runFor(5);
    EXPECT_EQ(complaints(ann()), Strings({otherSession}));
    EXPECT_TRUE(pull());
    EXPECT_EQ(ann().service->taggingSessionId(), mine);
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30):\n");
    EXPECT_EQ(ann().service->lastModifyCount(), 0);

    add("Ben").start("mine", "another video");
    runFor(5);
    EXPECT_GT(logCount(ben(), noSession), 0);
    ben().service->cancelSyncing();
}

TEST_F(PullTest, AFailedPullLeavesTheTimelineAloneAndIsNotRepeatedAtTheStart) {
    ann().holdBackEvents(60);  // the subscription brings what happened since the last fetch, so everything
    ann().faultNext(Operation::fetchTaggingSessions, Kind::failBeforeEffect);
    ann().faultNext(Operation::fetchTaggingSessions, Kind::failBeforeEffect);
    ann().start(sessionId());
    runFor(10);
    EXPECT_EQ(complaints(ann()), Strings({fetchFailed}));
    EXPECT_FALSE(pull());
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30):\n");
    EXPECT_EQ(ann().service->lastModifyCount(), 0);

    ann().host.closeTimeline(ann().timeline->uniqueId());
    EXPECT_FALSE(pull());
    EXPECT_EQ(complaints(ann()), Strings({noTimeline}));
}

TEST_F(PullTest, TheFirstPullMergesAndLaterOnesAlsoUpdateAndRemove) {
    ann().client().setUnreadable({addRemoteMoment("Attack", 3, 4)});
    ann().tag("Attack", 5, 6);
    ann().tag("Attack", 7, 8)->setExternalId("of another session");
    ann().start(sessionId());
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline),
              "Attack(10,20,30): 1-2/" + momentId + " 5-6/unsent 7-8/of another session\n");
    EXPECT_EQ(complaints(ann()), Strings());

    // While Ann is offline one moment changes, one comes and one goes.
    const std::string removed = addRemoteMoment("Attack", 9, 10);
    settle();
    ann().host.setLinkUp(false);
    runFor(5);
    retimeRemoteMoment(momentId, 11, 12);
    removeRemoteMoment(removed);
    const std::string added = addRemoteMoment("Corner", 13, 14);
    ann().host.setLinkUp(true);
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30): 11-12/" + momentId +
                                              " 5-6/unsent 7-8/of another session\nCorner(1,2,3): 13-14/" +
                                              added + "\n");
}

TEST_F(PullTest, EditsMadeDuringALaterPullAreSentBeforeItsReplyIsApplied) {
    ann().start(sessionId());
    settle();
    ann().faultNext(Operation::fetchTaggingSessions, Kind::none, 5);
    ann().client().dropSubscriptions();
    runFor(1);
    const auto clip = ann().tag("Attack", 3, 4);
    const InstanceList clips = ann().row("Attack")->allInstances();
    ann().timeline->retimeInstance(clips->front()->uniqueId(), 1, 3);
    runFor(3);
    EXPECT_EQ(remote().moments.size(), 1U);
    settle();
    EXPECT_EQ(remote().moments.size(), 2U);
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30): 1-3/" + momentId + " 3-4/session-1.moment-2\n");
    EXPECT_EQ(remote().moments.front()->end, 3);
}

TEST_F(PullTest, AClipThatTheCloudNamesDuringASlowPullIsNotTakenForDeleted) {
    ann().start(sessionId());
    settle();
    // A change on its way in sends the new clip, whose creation is repeated after the reconnection's fetch was made.
    const auto clip = ann().tag("Attack", 3, 4);
    retimeRemoteMoment(momentId, 1, 3);
    trace.clear();
    ASSERT_TRUE(time.runUntil([&] { return !cloudCalls(ann()).empty(); }, Base::Seconds(1)));
    ann().faultNext(Operation::fetchTaggingSessions, Kind::none, 5);
    ann().host.setLinkUp(false);
    ann().host.setLinkUp(true);
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30): 1-3/" + momentId + " 3-4/session-1.moment-2\n");
    EXPECT_EQ(ann().row("Attack")->allInstances()->back()->uniqueId(), clip->uniqueId());
}

}  // namespace
}  // namespace RemoteCoding
