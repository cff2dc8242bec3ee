#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

using Strings = std::vector<std::string>;

const std::string noSession = "error Expected a tagging session on Tevu, but none "
                              "found.||syncRemoteTaggingSessionToLocalTimeline(completion:)";
const std::string otherSession =
    "error TaggingSessionId does not match the primary tagging session for the Tevu "
    "video.||syncRemoteTaggingSessionToLocalTimeline(completion:)";

class PullTest : public SynchroniserTest {
protected:
    /// A session of somebody else's with a moment on Attack, and Ann, whose timeline has that row with another colour.
    void SetUp() override {
        cloud.addTaggingSession("team", videoId, "stranger");
        momentId = addRemoteMoment("Attack", 1, 2);
        add("Ann");
        ann().timeline->addRow("Attack", Base::Color(10, 20, 30));
    }

    /// What the pull reports; it has to report something.
    bool pull() {
        std::optional<bool> result;
        ann().service->syncRemoteTaggingSessionToLocalTimeline([&](bool succeeded) { result = succeeded; });
        EXPECT_TRUE(time.runUntil([&] { return result.has_value(); }, Base::Seconds(60)));
        return result.value_or(false);
    }

    std::string momentId;
};

TEST_F(PullTest, TheFirstOfTheVideosSessionsIsApplied) {
    const std::string second = cloud.addTaggingSession("team", videoId, "stranger");
    ReferenceHost::MomentDraft draft;
    draft.instanceId = "clip";
    draft.code = "Attack";
    static_cast<void>(cloud.createMoments(stranger, videoId, second, "elsewhere", {draft}).value());
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

    forgetTrace();
    ann().hooks.fetched = [](std::vector<TaggingSessionItem>& sessions) { sessions.clear(); };
    EXPECT_TRUE(pull());
    EXPECT_EQ(complaints(ann()), Strings({noSession}));

    forgetTrace();
    ann().hooks.fetched = [](std::vector<TaggingSessionItem>& sessions) {
        sessions.front().identifier.reset();
    };
    EXPECT_TRUE(pull());
    EXPECT_EQ(complaints(ann()), Strings({otherSession}));

    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30):\n");
    EXPECT_EQ(ann().service->lastModifyCount(), 0);

    forgetTrace();
    ann().host.closeTimeline(ann().timeline->uniqueId());
    EXPECT_TRUE(pull());
    EXPECT_EQ(
        complaints(ann()),
        Strings({"error Unable to get timeline||syncRemoteTaggingSessionToLocalTimeline(completion:)"}));
    EXPECT_EQ(cloudCalls(ann()), Strings());
}

TEST_F(PullTest, AFailedPullLeavesTheTimelineAloneAndIsNotRepeatedAtTheStart) {
    ann().host.cloudClient().faultNext(Operation::fetchTaggingSessions, Fault(Fault::Kind::failBeforeEffect));
    ann().host.cloudClient().faultNext(Operation::fetchTaggingSessions, Fault(Fault::Kind::failBeforeEffect));
    ann().start(sessionId());
    runFor(5);
    const std::string warning = "warn Unable to get remote tagging session. Error=The cloud service could "
                                "not carry out the request.";
    EXPECT_EQ(complaints(ann()), Strings({warning}));
    EXPECT_EQ(cloudCalls(ann()), Strings({"fetchTaggingSessions", "subscribeToTaggingSessionChanges"}));
    EXPECT_FALSE(pull());
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30):\n");
    EXPECT_EQ(ann().service->lastModifyCount(), 0);
}

TEST_F(PullTest, WithoutIdentifiersOnBothSidesTheSessionIsApplied) {
    ann().host.cloudClient().faultNext(Operation::createTaggingSession, Fault(Fault::Kind::failBeforeEffect));
    ann().start();
    runFor(3);
    EXPECT_TRUE(pull());
    EXPECT_EQ(complaints(ann()).back(), otherSession);
    ann().hooks.fetched = [](std::vector<TaggingSessionItem>& sessions) {
        sessions.front().identifier.reset();
        sessions.front().presentationViews.reset();
        sessions.front().moments->insert(sessions.front().moments->begin(), nullptr);
    };
    EXPECT_TRUE(pull());
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30): 1-2/" + momentId + "\n");
    ann().hooks.fetched = [](std::vector<TaggingSessionItem>& sessions) {
        sessions.front() = TaggingSessionItem();
        sessions.front().presentationViews.emplace().push_back(nullptr);
    };
    EXPECT_TRUE(pull());
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30):\n");
}

TEST_F(PullTest, TheFirstPullMergesAndLaterOnesAlsoUpdateAndRemove) {
    const std::string unreadable = addRemoteMoment("Attack", 3, 4);
    ann().host.cloudClient().setUnreadable({unreadable});
    const auto local = ann().tag("Attack", 5, 6);
    const auto unknown = ann().tag("Attack", 7, 8);
    unknown->setExternalId("of another session");
    ann().start(sessionId());
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline),
              "Attack(10,20,30): 1-2/" + momentId + " 5-6/unsent 7-8/of another session\n");
    EXPECT_EQ(complaints(ann()), Strings());
    forgetTrace();

    // While Ann is offline one moment changes, one comes and one goes.
    addRemoteMoment("Attack", 9, 10);
    settle();
    ann().host.setLinkUp(false);
    runFor(5);
    ReferenceHost::MomentDraft draft;
    draft.externalId = momentId;
    draft.start = 11;
    draft.end = 12;
    static_cast<void>(cloud.updateMoments(stranger, videoId, sessionId(), "elsewhere", {draft}).value());
    static_cast<void>(
        cloud.removeMoments(stranger, videoId, sessionId(), "elsewhere", {"session-1.moment-3"}).value());
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
    ann().host.cloudClient().faultNext(Operation::fetchTaggingSessions,
                                       Fault(Fault::Kind::none, Base::Seconds(5)));
    ann().host.cloudClient().dropSubscriptions();
    runFor(1);
    const auto clip = ann().tag("Attack", 3, 4);
    const InstanceList clips = ann().row("Attack")->allInstances();
    ann().timeline->retimeInstance(clips->front()->uniqueId(), 1, 3);
    runFor(3);
    EXPECT_EQ(remote().moments.size(), 1U);
    settle();
    EXPECT_EQ(remote().moments.size(), 2U);
    EXPECT_TRUE(clip->externalId());
    EXPECT_EQ(remote().moments.front()->end, 3);
    EXPECT_EQ(pictureOf(*ann().timeline),
              "Attack(10,20,30): 1-3/" + momentId + " 3-4/" + clip->externalId().value_or("") + "\n");
}

}  // namespace
}  // namespace RemoteCoding
