#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

using SynchronisationTest = SynchroniserTest;

TEST_F(SynchronisationTest, WhatOneEditsArrivesAtTheOther) {
    startTwo({"Attack", "Défense"});
    const auto clip = ann().tag("Attack", 1, 2);
    ben().tag("Défense", 3, 3);
    settle();
    expectAllEqual();
    ann().timeline->retimeInstance(clip->uniqueId(), 1.5, 2.5);
    ben().timeline->recolorRow(ben().row("Attack")->uniqueId(), Base::Color(200, 0, 0));
    ben().timeline->addRow("Set play", Base::Color(0, 200, 0), 0);
    settle();
    expectAllEqual();
    EXPECT_EQ(ann().timeline->rowAt(0)->name(), "Set play");
    ann().timeline->renameRow(ann().row("Attack")->uniqueId(), "Break");
    settle();
    expectAllEqual();
    ann().timeline->removeInstance(clip->uniqueId());
    ben().timeline->removeRow(ben().row("Set play")->uniqueId());
    settle();
    expectAllEqual();
    EXPECT_EQ(remote().moments.size(), 1U);
}

TEST_F(SynchronisationTest, TextsMayBeLongEmptyOrStrange) {
    startTwo(
        {"", std::string("a\0b", 3), std::string(100'000, 'x'), "\"], [\"", "e\u0301", "\u00e9", "\xff\xfe"});
    for (const auto& row : {ann().timeline->rowAt(0), ann().timeline->rowAt(3), ann().timeline->rowAt(6)}) {
        ann().timeline->addInstance(row->uniqueId(), 1, 1, "notes \n\t\U0001F3C0" + row->name());
    }
    settle();
    ben().timeline->renameRow(ben().timeline->rowAt(6)->uniqueId(), "\u202edetnuoc eb ot\n");
    settle();
    EXPECT_EQ(remote().moments.size(), 3U);
    expectAllEqual();
}

TEST_F(SynchronisationTest, TellsWorkingFromIdleAndWhetherEditsAreStillUnsent) {
    add("Ann").timeline->addRow("Attack", Base::Color());
    ann().start();
    EXPECT_EQ(ann().status().activity, Activity::working);
    EXPECT_TRUE(ann().status().hasUnsentEdits);
    EXPECT_FALSE(ann().status().receivesChanges);
    settle();
    EXPECT_TRUE(ann().status().isSettled());
    EXPECT_TRUE(ann().status().receivesChanges);

    // From the edit to the answer.
    ann().tag("Attack", 1, 2);
    EXPECT_FALSE(ann().status().isSettled());
    ann().faultNext(Operation::createMoments, Kind::none, 10);
    runFor(10);
    EXPECT_TRUE(ann().status().hasUnsentEdits);
    settle();
    // A closed timeline has nothing that could still be sent.
    ann().host.closeTimeline(ann().timeline->uniqueId());
    EXPECT_TRUE(ann().status().isSettled());
    ann().service->cancelSyncing();
    EXPECT_EQ(ann().status().activity, Activity::cancelled);
    EXPECT_FALSE(ann().status().receivesChanges);
    EXPECT_TRUE(ann().status().isSettled());
}

TEST_F(SynchronisationTest, EditsThatNobodyWillSendAreNeverCalledSettled) {
    startAnn({"Attack"});
    ann().faultNext(Operation::createMoments, Kind::failBeforeEffect);
    ann().tag("Attack", 1, 2);
    // A remote change is applied while the upload that then fails is under way, and so the range is passed over.
    ann().deliver(Type::unknown, {});
    runFor(10);
    EXPECT_EQ(ann().status().activity, Activity::idle);
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
    EXPECT_EQ(remote().moments.size(), 0U);
}

}  // namespace
}  // namespace RemoteCoding
