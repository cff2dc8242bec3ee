#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

using Strings = std::vector<std::string>;

class ChangeDetectionTest : public SynchroniserTest {
protected:
    void startAnn(const Strings& rowNames) {
        add("Ann");
        for (const std::string& name : rowNames) {
            ann().timeline->addRow(name, Base::Color(10, 20, 30));
        }
        ann().start();
        settle();
    }

    [[nodiscard]] ReferenceHost::AcceptedCall lastCall() const { return cloud.log(sessionId()).back(); }
};

TEST_F(ChangeDetectionTest, OnlyChangesOfItsOwnTimelineMakeItWork) {
    startAnn({"Attack"});
    forgetTrace();
    const auto other = ann().host.openTimeline("Another match");
    other->addInstance(other->addRow("Attack", Base::Color())->uniqueId(), 1, 2);
    auto& center = ann().host.notificationCenter();
    center.post(Notification(TimelineNotifications::timelineDidAnyChange));
    center.post(Notification(TimelineNotifications::timelineDidAnyChange, ann().row("Attack")));
    EXPECT_TRUE(ann().service->status().isSettled());
    runFor(5);
    EXPECT_EQ(blocks(ann()), Strings());

    // A notification without a change makes a pass that finds nothing to do.
    center.post(Notification(TimelineNotifications::timelineDidAnyChange, ann().timeline));
    runFor(5);
    EXPECT_EQ(blocks(ann()), Strings({"upload"}));
    EXPECT_EQ(log(ann()), Strings());
}

TEST_F(ChangeDetectionTest, ABurstOfEditsIsSentInFewPassesAndItsLastEditWithoutAFurtherOne) {
    startAnn({"Attack"});
    forgetTrace();
    for (int i = 0; i < 300; ++i) {
        ann().tag("Attack", i, i + 1);
        runFor(0.01);
    }
    runFor(1.5);
    EXPECT_EQ(remote().moments.size(), 300U);
    EXPECT_LE(blocks(ann()).size() - trace.entries("Ann", "delivery").size(), 4U);
    settle();
    expectAllEqual();
}

TEST_F(ChangeDetectionTest, ClipsAreSentAsNewUpdatedOrDeletedByWhatTheCloudKnows) {
    startAnn({"Attack"});
    const auto deleted = ann().tag("Attack", 1, 2);
    settle();
    const std::string firstMoment = deleted->externalId().value();
    ann().timeline->removeInstance(deleted->uniqueId());
    settle();
    EXPECT_TRUE(ann().service->momentCache().hasDeletedMoment(deleted->uniqueId()));

    // Its moment is gone for good; when the deletion is undone, the clip becomes a new one.
    ann().timeline->restoreInstance(deleted->uniqueId());
    settle();
    EXPECT_EQ(lastCall().operation, Operation::createMoments);
    EXPECT_NE(deleted->externalId().value(), firstMoment);
    expectAllEqual();

    // An instance that has a moment counts as updated, even if the cache has never seen that moment.
    holdBackEvents(ann(), 60);
    const std::string foreignMoment = addRemoteMoment("Attack", 3, 4);
    forgetTrace();
    ann().tag("Attack", 5, 6)->setExternalId(foreignMoment);
    runFor(2);
    EXPECT_EQ(cloudCalls(ann()), Strings({"updateMoments"}));

    // What comes and goes between two passes is nobody's business.
    forgetTrace();
    const auto row = ann().timeline->addRow("Brief", Base::Color());
    ann().timeline->removeInstance(ann().tag("Brief", 7, 8)->uniqueId());
    ann().timeline->removeRow(row->uniqueId());
    runFor(2);
    EXPECT_TRUE(logHas(ann(), "info Uploading all local timeline updates"));
    EXPECT_EQ(cloudCalls(ann()), Strings());
}

TEST_F(ChangeDetectionTest, ARenamedRowSendsAllItsClipsOnceAndOtherChangesOfARowNone) {
    startAnn({"Attack", "Defence"});
    const auto first = ann().tag("Attack", 1, 2);
    const auto second = ann().tag("Attack", 3, 4);
    ann().tag("Defence", 5, 6);
    settle();

    ann().timeline->renameRow(ann().row("Attack")->uniqueId(), "Break");
    ann().timeline->retimeInstance(second->uniqueId(), 3, 5);
    const auto third = ann().tag("Break", 7, 8);
    const auto callsBefore = cloud.log(sessionId()).size();
    settle();
    const auto calls = cloud.log(sessionId());
    ASSERT_EQ(calls.size(), callsBefore + 3);
    const auto& update = calls.at(callsBefore);
    ASSERT_EQ(update.drafts.size(), 2U);
    EXPECT_EQ(update.drafts.at(0).externalId, first->externalId());
    EXPECT_EQ(update.drafts.at(1).externalId, second->externalId());
    EXPECT_EQ(update.drafts.at(0).code, "Break");
    const auto& creation = calls.at(callsBefore + 1);
    ASSERT_EQ(creation.drafts.size(), 1U);
    EXPECT_EQ(creation.drafts.at(0).instanceId, third->uniqueId());
    expectAllEqual();

    forgetTrace();
    ann().timeline->recolorRow(ann().row("Break")->uniqueId(), Base::Color(0, 0, 200));
    settle();
    ann().timeline->moveRow(ann().row("Break")->uniqueId(), 1);
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"savePresentationView", "savePresentationView"}));
    expectAllEqual();
}

TEST_F(ChangeDetectionTest, ARowIsNewOrUpdatedWhenNameColourOrNumberDifferFromWhatWasSent) {
    startAnn({"Attack", "Defence"});
    const auto row = ann().row("Attack");
    const auto isNewOrUpdated = [&] {
        bool result = false;
        inBackground(ann(), [&] { result = ann().service->rowIsNewOrUpdated(*row); });
        return result;
    };
    EXPECT_FALSE(isNewOrUpdated());
    ann().timeline->renameRow(row->uniqueId(), "attack");
    EXPECT_TRUE(isNewOrUpdated());
    ann().timeline->renameRow(row->uniqueId(), "Attack");
    EXPECT_FALSE(isNewOrUpdated());
    ann().timeline->recolorRow(row->uniqueId(), Base::Color(10, 20, 30, 254));
    EXPECT_TRUE(isNewOrUpdated());
    ann().timeline->recolorRow(row->uniqueId(), Base::Color(10, 20, 30));
    ann().timeline->moveRow(row->uniqueId(), 1);
    EXPECT_TRUE(isNewOrUpdated());
    ann().timeline->moveRow(row->uniqueId(), 0);
    EXPECT_FALSE(isNewOrUpdated());
    ann().service->momentCache().removeUploadedRow(row->uniqueId());
    EXPECT_TRUE(isNewOrUpdated());
}

}  // namespace
}  // namespace RemoteCoding
