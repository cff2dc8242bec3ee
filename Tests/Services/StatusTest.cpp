#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

class StatusTest : public SynchroniserTest {};

TEST_F(StatusTest, TellsWorkingFromIdleAndWhetherEditsAreStillUnsent) {
    add("Ann").timeline->addRow("Attack", Base::Color());
    ann().start();
    EXPECT_EQ(ann().status().activity, Activity::working);
    EXPECT_TRUE(ann().status().hasUnsentEdits);
    EXPECT_FALSE(ann().status().receivesChanges);
    settle();
    EXPECT_EQ(ann().status().activity, Activity::idle);
    EXPECT_TRUE(ann().status().isSettled());
    EXPECT_TRUE(ann().status().receivesChanges);

    // From the edit to the answer.
    ann().tag("Attack", 1, 2);
    EXPECT_TRUE(ann().status().hasUnsentEdits);
    EXPECT_EQ(ann().status().activity, Activity::working);
    ann().faultNext(Operation::createMoments, Kind::none, 10);
    runFor(10);
    EXPECT_TRUE(ann().status().hasUnsentEdits);
    settle();
    EXPECT_TRUE(ann().status().isSettled());

    // A closed timeline has nothing that could still be sent.
    ann().host.closeTimeline(ann().timeline->uniqueId());
    EXPECT_TRUE(ann().status().isSettled());
    ann().service->cancelSyncing();
    EXPECT_EQ(ann().status().activity, Activity::cancelled);
    EXPECT_FALSE(ann().status().receivesChanges);
    EXPECT_TRUE(ann().status().isSettled());
}

TEST_F(StatusTest, EditsThatNobodyWillSendAreNeverCalledSettled) {
    startAnn({"Attack"});
    ann().faultNext(Operation::createMoments, Kind::failBeforeEffect);
    ann().tag("Attack", 1, 2);
    // A remote change is applied while the upload that then fails is under way, and so the range is passed over.
    ann().deliver(Type::unknown, {});
    runFor(10);
    EXPECT_EQ(ann().status().activity, Activity::idle);
    EXPECT_TRUE(ann().status().hasUnsentEdits);
    ann().tag("Attack", 3, 4);
    runFor(10);
    EXPECT_EQ(remote().moments.size(), 1U);
    EXPECT_TRUE(ann().status().hasUnsentEdits);

    // Edits made before the session was first received are not the session's.
    Analyst& cleo = add("Cleo");
    cleo.faultNext(Operation::fetchTaggingSessions, Kind::none, 5);
    cleo.timeline->addRow("Corner", Base::Color());
    cleo.start(sessionId());
    cleo.tag("Corner", 5, 6);
    runFor(20);
    EXPECT_EQ(cleo.status().activity, Activity::idle);
    EXPECT_TRUE(cleo.status().hasUnsentEdits);
    EXPECT_EQ(remote().moments.size(), 1U);
}

}  // namespace
}  // namespace RemoteCoding
