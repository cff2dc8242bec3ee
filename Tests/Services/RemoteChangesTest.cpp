#include "ReferenceHost/Cloud/CloudMomentItem.hpp"
#include "Tests/Services/SynchroniserTest.hpp"

#include <stdexcept>

namespace RemoteCoding {
namespace {

using Strings = std::vector<std::string>;
using Type = TaggingSessionChangeType;

/// A moment whose library does what the test says.
class ScriptedMoment final : public MomentItem {
public:
    using Instance = std::shared_ptr<TimelineInstanceProtocol>;

    ScriptedMoment(std::string identifier, std::function<Instance()> work)
        : identifier_(std::move(identifier)), work_(std::move(work)) {}

    [[nodiscard]] const std::string& identifier() const override { return identifier_; }
    [[nodiscard]] const std::string& code() const override { return code_; }
    [[nodiscard]] Instance appendToTimeline(const std::shared_ptr<TimelineProtocol>&) const override {
        return work_();
    }
    [[nodiscard]] Instance updateOnTimeline(const std::shared_ptr<TimelineProtocol>&, const std::string&,
                                            const std::string&) const override {
        return work_();
    }

private:
    std::string identifier_;
    std::string code_ = "Attack";
    std::function<Instance()> work_;
};

class RemoteChangesTest : public SynchroniserTest {
protected:
    void SetUp() override {
        add("Ann");
        ann().timeline->addRow("Attack", Base::Color(10, 20, 30));
        ann().timeline->addRow("Defence", Base::Color(40, 50, 60));
        ann().start();
        settle();
        forgetTrace();
    }

    /// The moment as another client would send it, with this code and these times.
    [[nodiscard]] std::shared_ptr<const MomentItem> moment(const std::string& id, const std::string& code,
                                                           double start = 1, double end = 2) const {
        auto record = std::make_shared<ReferenceHost::MomentRecord>();
        record->id = id;
        record->code = code;
        record->start = start;
        record->end = end;
        record->originTimelineId = "elsewhere";
        return std::make_shared<ReferenceHost::CloudMomentItem>(std::move(record), cloud.rules());
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
              "Attack(10,20,30): 1-2/" + first + "\nDefence(40,50,60):\nCorner(1,2,3): 3-4/" + second + "\n");
    EXPECT_TRUE(ann().service->momentCache().uploadedRow(ann().row("Corner")->uniqueId()));
    expectApplied();

    ReferenceHost::MomentDraft draft;
    draft.externalId = first;
    draft.start = 5;
    draft.end = 6;
    static_cast<void>(cloud.updateMoments(stranger, videoId, sessionId(), "elsewhere", {draft}).value());
    static_cast<void>(cloud.removeMoments(stranger, videoId, sessionId(), "elsewhere", {second}).value());
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline),
              "Attack(10,20,30): 5-6/" + first + "\nDefence(40,50,60):\nCorner(1,2,3):\n");
    expectApplied();
    EXPECT_EQ(log(ann()), Strings({"info Received timeline update. ChangeType=momentsAdded",
                                   "info Received timeline update. ChangeType=momentsAdded",
                                   "info Received timeline update. ChangeType=momentsUpdated",
                                   "info Received timeline update. ChangeType=momentsDeleted"}));
}

TEST_F(RemoteChangesTest, OwnEchoesRepeatedEventsAndUnknownMomentsChangeNothing) {
    ann().host.cloudClient().setEventFaultPlan(
        [](const ReferenceHost::CloudEvent&) { return ReferenceHost::EventFault(false, 2); });
    ann().tag("Attack", 1, 2);
    addRemoteMoment("Defence", 3, 4);
    settle();
    const auto count = ann().timeline->modifyCount();
    EXPECT_EQ(ann().row("Attack")->numberOfInstances(), 1);
    EXPECT_EQ(ann().row("Defence")->numberOfInstances(), 1);
    deliver(ann(), Type::momentsUpdated, {moment("never seen", "Attack")});
    deliver(ann(), Type::momentsDeleted, {moment("never seen", "Attack"), nullptr});
    EXPECT_EQ(ann().timeline->modifyCount(), count);
    EXPECT_EQ(logCount(ann(), "info Received timeline update. ChangeType=momentsAdded"), 6);
    EXPECT_EQ(complaints(ann()), Strings());
    expectAllEqual();
}

TEST_F(RemoteChangesTest, AChangedCodeRenamesTheRowUnlessAnotherRowHasThatName) {
    deliver(ann(), Type::momentsAdded, {moment("m", "Attack")});
    const auto row = ann().row("Attack");
    deliver(ann(), Type::momentsUpdated, {moment("m", "Defence", 3, 4)});
    EXPECT_EQ(complaints(ann()), Strings({"error Instance for moment is on the wrong row||"
                                          "updateMomentsOnTimeline(timeline:moments:)"}));
    EXPECT_EQ(pictureOf(*ann().timeline), "Attack(10,20,30): 3-4/m\nDefence(40,50,60):\n");

    deliver(ann(), Type::momentsUpdated, {moment("m", "Défense ", 3, 4)});
    EXPECT_EQ(log(ann()).back(), "info Moment has a different code, renaming row");
    EXPECT_EQ(row->name(), "Défense ");

    // The recorded row is gone: nothing to follow the code.
    ann().timeline->setCodingTargetAvailable(false);
    deliver(ann(), Type::momentsUpdated, {moment("m", "Break", 5, 6)});
    EXPECT_EQ(row->name(), "Défense ");
    ann().timeline->removeRow(row->uniqueId());
    deliver(ann(), Type::momentsUpdated, {moment("m", "Break", 7, 8)});
    EXPECT_EQ(complaints(ann()).size(), 1U);
}

TEST_F(RemoteChangesTest, EventsThatCannotBeAppliedAreLoggedAndLeaveTheCountAlone) {
    ann().tag("Attack", 1, 2);
    const auto count = ann().service->lastModifyCount();
    deliver(ann(), Type::momentsAdded, {});
    ann().service->handleTaggingSessionUpdate(Type::momentsDeleted, ChangedTaggingSession());
    ann().service->handleTaggingSessionUpdate(Type::presentationViewUpdated, ChangedTaggingSession());
    EXPECT_EQ(log(ann()),
              Strings({"info Received timeline update. ChangeType=momentsAdded",
                       "warn No moments found for update to tagging session moments.",
                       "info Received timeline update. ChangeType=momentsDeleted",
                       "warn No moments found for update to tagging session moments.",
                       "info Received timeline update. ChangeType=presentationViewUpdated",
                       "warn No presentation view found for update to tagging session presentation view."}));
    EXPECT_EQ(ann().service->lastModifyCount(), count);

    // An unknown event counts as applied, after the pending edit was sent on its way.
    forgetTrace();
    ann().service->handleTaggingSessionUpdate(Type::unknown, ChangedTaggingSession());
    EXPECT_EQ(log(ann()),
              Strings({"info Received timeline update. ChangeType=unknown",
                       "info Uploading local timeline updates before applying timeline update from "
                       "subscription",
                       "info Uploading all local timeline updates",
                       "error Unknown change type for tagging session update||"
                       "updateTimelineForChangeType(_:changeType:moments:presentationViewItem:)"}));
    EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
    settle();
    expectAllEqual();

    forgetTrace();
    ann().host.closeTimeline(ann().timeline->uniqueId());
    deliver(ann(), Type::momentsAdded, {moment("m", "Attack")});
    EXPECT_EQ(complaints(ann()), Strings({"error Unable to find the timeline||"
                                          "handleTaggingSessionUpdate(changeType:taggingSession:)"}));
}

TEST_F(RemoteChangesTest, WithoutACodingTargetADeletionReachesTheCacheOnly) {
    deliver(ann(), Type::momentsAdded, {moment("m", "Attack")});
    const InstanceList clips = ann().row("Attack")->allInstances();
    const std::string clipId = clips->front()->uniqueId();
    ann().timeline->setCodingTargetAvailable(false);
    deliver(ann(), Type::momentsDeleted, {moment("m", "Attack")});
    EXPECT_TRUE(ann().timeline->findInstance(clipId));
    EXPECT_TRUE(ann().service->momentCache().hasDeletedMoment(clipId));
    EXPECT_EQ(complaints(ann()), Strings());
    expectApplied();

    // A clip that outlived its moment gets a new one when it changes.
    ann().timeline->retimeInstance(clipId, 3, 4);
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments"}));
    expectAllEqual();
}

TEST_F(RemoteChangesTest, PendingEditsAreSentOnTheirWayAndTheEventDoesNotWaitForThem) {
    add("Ben");
    ben().start(sessionId());
    settle();
    ben().tag("Attack", 1, 2);
    runFor(0.9);
    ann().tag("Attack", 3, 4);
    ann().host.cloudClient().faultNext(Operation::createMoments, Fault(Fault::Kind::none, Base::Seconds(10)));
    runFor(0.5);
    EXPECT_TRUE(logHas(ann(), "info Uploading local timeline updates before applying timeline update from "
                              "subscription"));
    EXPECT_EQ(ann().row("Attack")->numberOfInstances(), 2);
    EXPECT_TRUE(ann().service->status().hasUnsentEdits);
    EXPECT_TRUE(complaints(ann()).empty());
    settle();
    EXPECT_EQ(remote().moments.size(), 2U);
    expectAllEqual();
}

TEST_F(RemoteChangesTest, AHundredThousandEventsBehindASlowPullAreAppliedInTheirOrder) {
    add("Ben");
    ben().host.cloudClient().faultNext(Operation::fetchTaggingSessions,
                                       Fault(Fault::Kind::none, Base::Seconds(10)));
    ben().start(sessionId());
    runFor(1);
    trace.setRecording(false);
    constexpr int count = 100'000;
    int next = 0;
    bool inOrder = true;
    for (int i = 0; i < count; ++i) {
        deliver(ben(), Type::momentsAdded, {std::make_shared<ScriptedMoment>("m", [&, i] {
                    inOrder = inOrder && next++ == i;
                    return nullptr;
                })});
    }
    EXPECT_EQ(next, 0);
    runFor(15);
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(next, count);
    trace.setRecording(true);
    settle();
}

TEST_F(RemoteChangesTest, AMomentThatFailsDoesNotTakeTheOthersOfItsBatchWithIt) {
    const auto failing = std::make_shared<ScriptedMoment>(
        "bad", []() -> ScriptedMoment::Instance { throw std::runtime_error("no such luck"); });
    deliver(ann(), Type::momentsAdded,
            {moment("a", "Attack"), nullptr, failing, moment("b", "Attack", 3, 4)});
    EXPECT_EQ(ann().row("Attack")->numberOfInstances(), 2);
    EXPECT_EQ(complaints(ann()), Strings({"error The host failed unexpectedly|no such luck|"
                                          "addNewMomentsToTimeline(timeline:moments:)"}));

    // A moment that the library cannot place is left as it made it, and not recorded.
    auto rules = cloud.rules();
    rules.missingRowIsMade = false;
    cloud.setRules(rules);
    deliver(ann(), Type::momentsAdded, {moment("c", "Nowhere"), moment("d", "Attack", 5, 6)});
    EXPECT_EQ(complaints(ann()).back(), "error No row found||addNewMomentsToTimeline(timeline:moments:)");
    EXPECT_FALSE(ann().service->momentCache().instanceId("c"));
    EXPECT_TRUE(ann().service->momentCache().instanceId("d"));
    expectApplied();
}

}  // namespace
}  // namespace RemoteCoding
