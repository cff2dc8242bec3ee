#include "ReferenceHost/Cloud/CloudMomentItem.hpp"
#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

class RemoteChangesTest : public SynchroniserTest {
protected:
    void SetUp() override { startAnn({"Attack", "Defence"}); }

    /// The moment as another client would send it, with this code and these times.
    [[nodiscard]] std::shared_ptr<const MomentItem> moment(const std::string& id, const std::string& code,
                                                           double start = 1, double end = 2) const {
        return std::make_shared<ReferenceHost::CloudMomentItem>(
            std::make_shared<ReferenceHost::MomentRecord>(
                ReferenceHost::MomentRecord{id, code, {}, start, end, {}, "elsewhere", {}}),
            cloud.rules());
    }

    /// What must hold after each applied event: nothing of it is taken for a local edit.
    void expectApplied() {
        EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
        runFor(3);
        EXPECT_EQ(cloudCalls(ann()), Strings());
    }
};

TEST_F(RemoteChangesTest, AppliesAddedUpdatedAndDeletedMomentsWithoutSendingThemBack) {
    const std::string first = addRemoteMoment("Attack", 1, 2);
    const std::string second = addRemoteMoment("Corner", 3, 4);
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline),
              "Attack(10,20,30): 1-2/" + first + "\nDefence(10,20,30):\nCorner(1,2,3): 3-4/" + second + "\n");
    EXPECT_TRUE(ann().service->momentCache().uploadedRow(ann().row("Corner")->uniqueId()));
    retimeRemoteMoment(first, 5, 6);
    removeRemoteMoment(second);
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline),
              "Attack(10,20,30): 5-6/" + first + "\nDefence(10,20,30):\nCorner(1,2,3):\n");
    expectApplied();
    EXPECT_EQ(log(ann()), Strings({"info Received timeline update. ChangeType=momentsAdded",
                                   "info Received timeline update. ChangeType=momentsAdded",
                                   "info Received timeline update. ChangeType=momentsUpdated",
                                   "info Received timeline update. ChangeType=momentsDeleted"}));
}

TEST_F(RemoteChangesTest, OwnEchoesRepeatedEventsAndUnknownMomentsChangeNothing) {
    ann().client().setEventFaultPlan(
        [](const ReferenceHost::CloudEvent&) { return ReferenceHost::EventFault(false, 2); });
    ann().tag("Attack", 1, 2);
    addRemoteMoment("Defence", 3, 4);
    settle();
    const auto count = ann().timeline->modifyCount();
    ann().deliver(Type::momentsUpdated, {moment("never seen", "Attack")});
    ann().deliver(Type::momentsDeleted, {moment("never seen", "Attack"), nullptr});
    EXPECT_EQ(ann().timeline->modifyCount(), count);
    EXPECT_EQ(logCount(ann(), "info Received timeline update. ChangeType=momentsAdded"), 6);
    EXPECT_EQ(complaints(ann()), Strings());
    expectAllEqual();
}

TEST_F(RemoteChangesTest, AChangedCodeRenamesTheRowUnlessAnotherRowHasThatName) {
    ann().deliver(Type::momentsAdded, {moment("m", "Attack")});
    const auto row = ann().row("Attack");
    ann().deliver(Type::momentsUpdated, {moment("m", "Defence", 3, 4)});
    EXPECT_EQ(complaints(ann()), Strings({"error Instance for moment is on the wrong row||"
                                          "updateMomentsOnTimeline(timeline:moments:)"}));
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30): 3-4/m\nDefence(10,20,30):\n");

    ann().deliver(Type::momentsUpdated, {moment("m", "Défense ", 3, 4)});
    EXPECT_EQ(log(ann()).back(), "info Moment has a different code, renaming row");
    EXPECT_EQ(row->name(), "Défense ");
    ann().tag("Défense ", 5, 6);
    settle();
    EXPECT_EQ(cloudCalls(ann()).front(), "createMoments");  // the others are not sent for their new code

    // The host keeps the name that its user has given the row since: that one is sent.
    ann().timeline->renameRow(row->uniqueId(), "Fence");
    trace.clear();
    ann().deliver(Type::momentsUpdated, {moment("m", "Hedge", 3, 4)});
    settle();
    EXPECT_EQ(row->name(), "Fence");
    EXPECT_EQ(cloudCalls(ann()), Strings({"updateMoments", "savePresentationView"}));

    // The coding target or the recorded row is gone: nothing to follow the code.
    ann().timeline->setCodingTargetAvailable(false);
    ann().deliver(Type::momentsUpdated, {moment("m", "Break", 5, 6)});
    EXPECT_EQ(row->name(), "Fence");
    ann().timeline->removeRow(row->uniqueId());
    ann().deliver(Type::momentsUpdated, {moment("m", "Break", 7, 8)});
    EXPECT_EQ(complaints(ann()), Strings());
}

TEST_F(RemoteChangesTest, EventsThatCannotBeAppliedAreLoggedAndLeaveTheCountAlone) {
    ann().tag("Attack", 1, 2);
    const auto count = ann().service->lastModifyCount();
    for (const auto type :
         {Type::momentsAdded, Type::momentsUpdated, Type::momentsDeleted, Type::presentationViewUpdated}) {
        ann().service->handleTaggingSessionUpdate(type, ChangedTaggingSession());
    }
    ann().deliver(Type::momentsAdded, {});
    const std::string noMoments = "warn No moments found for update to tagging session moments.";
    EXPECT_EQ(complaints(ann()),
              Strings({noMoments, noMoments, noMoments,
                       "warn No presentation view found for update to tagging session presentation view.",
                       noMoments}));
    EXPECT_EQ(ann().service->lastModifyCount(), count);

    // An unknown event counts as applied, after the pending edit was sent on its way.
    trace.clear();
    ann().deliver(Type::unknown, {});
    const std::string first =
        "Uploading local timeline updates before applying timeline update from subscription";
    EXPECT_EQ(log(ann()),
              Strings({"info Received timeline update. ChangeType=unknown", "info " + first,
                       "info Uploading all local timeline updates",
                       "error Unknown change type for tagging session update||"
                       "updateTimelineForChangeType(_:changeType:moments:presentationViewItem:)"}));
    EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
    settle();
    expectAllEqual();

    trace.clear();
    ann().host.closeTimeline(ann().timeline->uniqueId());
    ann().deliver(Type::momentsAdded, {moment("m", "Attack")});
    EXPECT_EQ(complaints(ann()), Strings({"error Unable to find the timeline||"
                                          "handleTaggingSessionUpdate(changeType:taggingSession:)"}));
}

TEST_F(RemoteChangesTest, WithoutACodingTargetADeletionReachesTheCacheOnly) {
    ann().deliver(Type::momentsAdded, {moment("m", "Attack")});
    ann().timeline->setCodingTargetAvailable(false);
    ann().deliver(Type::momentsDeleted, {moment("m", "Attack")});
    EXPECT_EQ(ann().row("Attack")->numberOfInstances(), 1);
    EXPECT_FALSE(ann().service->momentCache().instanceId("m"));
    EXPECT_EQ(complaints(ann()), Strings());
    expectApplied();
}

TEST_F(RemoteChangesTest, PendingEditsAreSentOnTheirWayAndTheEventDoesNotWaitForThem) {
    ann().faultNext(Operation::createMoments, Kind::none, 10);
    ann().tag("Attack", 3, 4);
    ann().deliver(Type::momentsAdded, {moment("m", "Defence")});
    EXPECT_EQ(ann().row("Defence")->numberOfInstances(), 1);
    runFor(8);
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments"}));
    EXPECT_TRUE(ann().status().hasUnsentEdits);
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline),
              "Attack(10,20,30): 3-4/session-1.moment-1\nDefence(10,20,30): 1-2/m\n");
    EXPECT_EQ(complaints(ann()), Strings());
}

TEST_F(RemoteChangesTest, AHundredThousandEventsBehindASlowPullAreAllAppliedAfterIt) {
    add("Ben").faultNext(Operation::fetchTaggingSessions, Kind::none, 10);
    ben().start(sessionId());
    runFor(1);
    trace.setRecording(false);
    const TaggingSessionMoments moments{moment("m", "Attack")};
    for (int i = 0; i < 100'000; ++i) {
        ben().deliver(Type::momentsDeleted, moments);
    }
    ben().deliver(Type::momentsAdded, moments);
    EXPECT_FALSE(ben().row("Attack"));
    runFor(15);
    ASSERT_TRUE(ben().row("Attack"));
    EXPECT_EQ(ben().row("Attack")->numberOfInstances(), 1);
    trace.setRecording(true);
}

TEST_F(RemoteChangesTest, AMomentThatCannotBePlacedIsNotRecordedAndTheOthersOfItsBatchAreApplied) {
    auto rules = cloud.rules();
    rules.missingRowIsMade = false;
    cloud.setRules(rules);
    ann().deliver(Type::momentsAdded, {moment("c", "Nowhere"), nullptr, moment("d", "Attack", 5, 6)});
    EXPECT_EQ(complaints(ann()), Strings({"error No row found||addNewMomentsToTimeline(timeline:moments:)"}));
    EXPECT_FALSE(ann().service->momentCache().instanceId("c"));
    EXPECT_TRUE(ann().service->momentCache().instanceId("d"));
    expectApplied();
}

}  // namespace
}  // namespace RemoteCoding
