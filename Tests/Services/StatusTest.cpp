#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

using Activity = SynchronisationStatus::Activity;

class StatusTest : public SynchroniserTest {};

TEST_F(StatusTest, TellsWorkingFromIdleAndWhetherEditsAreStillUnsent) {
    add("Ann");
    ann().timeline->addRow("Attack", Base::Color());
    ann().start();
    const auto status = [this] { return ann().service->status(); };
    EXPECT_EQ(status().activity, Activity::working);
    EXPECT_TRUE(status().hasUnsentEdits);
    EXPECT_FALSE(status().receivesChanges);
    settle();
    EXPECT_EQ(status().activity, Activity::idle);
    EXPECT_TRUE(status().isSettled());
    EXPECT_TRUE(status().receivesChanges);

    // From the edit to the answer.
    ann().tag("Attack", 1, 2);
    EXPECT_TRUE(status().hasUnsentEdits);
    EXPECT_EQ(status().activity, Activity::working);
    ann().host.cloudClient().faultNext(Operation::createMoments, Fault(Fault::Kind::none, Base::Seconds(10)));
    runFor(10);
    EXPECT_TRUE(status().hasUnsentEdits);
    settle();
    EXPECT_TRUE(status().isSettled());

    // A closed timeline has nothing that could still be sent.
    ann().host.closeTimeline(ann().timeline->uniqueId());
    EXPECT_TRUE(status().isSettled());

    ann().service->cancelSyncing();
    EXPECT_EQ(status().activity, Activity::cancelled);
    EXPECT_FALSE(status().receivesChanges);
    EXPECT_TRUE(status().isSettled());
}

TEST_F(StatusTest, EditsThatNobodyWillSendAreNeverCalledSettled) {
    startTwo({"Attack"});
    ann().host.cloudClient().faultNext(Operation::createMoments, Fault(Fault::Kind::failBeforeEffect));
    ann().tag("Attack", 1, 2);
    // A remote change is applied while the upload that then fails is under way, and so the range is passed over.
    deliver(ann(), TaggingSessionChangeType::unknown, {});
    runFor(10);
    EXPECT_EQ(ann().service->status().activity, Activity::idle);
    EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
    EXPECT_TRUE(ann().service->status().hasUnsentEdits);
    ann().tag("Attack", 3, 4);
    runFor(10);
    EXPECT_EQ(remote().moments.size(), 1U);
    EXPECT_TRUE(ann().service->status().hasUnsentEdits);

    // Edits made before the session was first received are not the session's.
    add("Cleo");
    Analyst& cleo = *analysts.back();
    cleo.host.cloudClient().faultNext(Operation::fetchTaggingSessions,
                                      Fault(Fault::Kind::none, Base::Seconds(5)));
    cleo.timeline->addRow("Corner", Base::Color());
    cleo.start(sessionId());
    cleo.tag("Corner", 5, 6);
    runFor(20);
    EXPECT_EQ(cleo.service->status().activity, Activity::idle);
    EXPECT_TRUE(cleo.service->status().hasUnsentEdits);
    EXPECT_EQ(remote().moments.size(), 1U);
}

}  // namespace
}  // namespace RemoteCoding
