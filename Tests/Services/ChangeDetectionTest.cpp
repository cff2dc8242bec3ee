#include "Tests/Services/SynchroniserTest.hpp"

namespace RemoteCoding {
namespace {

class ChangeDetectionTest : public SynchroniserTest {};

TEST_F(ChangeDetectionTest, OnlyChangesOfItsOwnTimelineMakeItWork) {
    startAnn({"Attack"});
    const auto other = ann().host.openTimeline("Another match");
    other->addInstance(other->addRow("Attack", Base::Color())->uniqueId(), 1, 2);
    auto& center = ann().host.notificationCenter();
    center.post(Notification(TimelineNotifications::timelineDidAnyChange));
    center.post(Notification(TimelineNotifications::timelineDidAnyChange, ann().row("Attack")));
    runFor(5);
    EXPECT_EQ(blocks(ann()), Strings());

    // A notification without a change makes a pass that finds nothing to do.
    center.post(Notification(TimelineNotifications::timelineDidAnyChange, ann().timeline));
    runFor(5);
    EXPECT_EQ(blocks(ann()), Strings({"upload"}));
    EXPECT_EQ(log(ann()), Strings());
}

TEST_F(ChangeDetectionTest, ClipsAreSentAsNewUpdatedOrDeletedByWhatTheCloudKnows) {
    startAnn({"Attack"});
    const auto deleted = ann().tag("Attack", 1, 2);
    settle();
    const std::string firstMoment = deleted->externalId().value();
    ann().timeline->removeInstance(deleted->uniqueId());
    settle();

    // Its moment is gone for good; when the deletion is undone, the clip becomes a new one.
    ann().timeline->restoreInstance(deleted->uniqueId());
    settle();
    EXPECT_EQ(cloudCalls(ann()),
              Strings({"createMoments", "removeMoments", "savePresentationView", "createMoments"}));
    EXPECT_NE(deleted->externalId().value(), firstMoment);
    expectAllEqual();

    // An instance that has a moment counts as updated, even if the cache has never seen that moment.
    ann().holdBackEvents(60);
    const std::string foreignMoment = addRemoteMoment("Attack", 3, 4);
    trace.clear();
    ann().tag("Attack", 5, 6)->setExternalId(foreignMoment);
    runFor(2);
    EXPECT_EQ(cloudCalls(ann()), Strings({"updateMoments"}));

    // What comes and goes between two passes is nobody's business.
    trace.clear();
    const auto row = ann().timeline->addRow("Brief", Base::Color());
    ann().timeline->removeInstance(ann().tag("Brief", 7, 8)->uniqueId());
    ann().timeline->removeRow(row->uniqueId());
    runFor(2);
    EXPECT_EQ(log(ann()), Strings({"info Uploading all local timeline updates"}));
    EXPECT_EQ(cloudCalls(ann()), Strings());
}

TEST_F(ChangeDetectionTest, ARenamedRowSendsAllItsClipsOnceAndOtherChangesOfARowNone) {
    startAnn({"Attack", "Defence"});
    const auto first = ann().tag("Attack", 1, 2);
    const auto second = ann().tag("Attack", 3, 4);
    ann().tag("Defence", 5, 6);
    settle();

    const auto rowId = ann().row("Attack")->uniqueId();
    const auto callsBefore = cloud.log(sessionId()).size();
    ann().timeline->renameRow(rowId, "attack");
    ann().timeline->retimeInstance(second->uniqueId(), 3, 5);
    ann().tag("attack", 7, 8);
    settle();
    const auto calls = cloud.log(sessionId());
    ASSERT_EQ(calls.size(), callsBefore + 3);
    const auto& updated = calls.at(callsBefore).drafts;
    ASSERT_EQ(updated.size(), 2U);
    EXPECT_EQ(updated.at(0).externalId, first->externalId());
    EXPECT_EQ(updated.at(1).externalId, second->externalId());
    EXPECT_EQ(calls.at(callsBefore + 1).drafts.size(), 1U);
    expectAllEqual();

    // A row is sent when its name, colour or number differ from what was sent last, and only then.
    trace.clear();
    ann().timeline->recolorRow(rowId, Base::Color(10, 20, 30, 254));
    settle();
    ann().timeline->moveRow(rowId, 1);
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"savePresentationView", "savePresentationView"}));
    ann().timeline->renameRow(rowId, "Break");
    ann().timeline->moveRow(rowId, 0);
    ann().timeline->renameRow(rowId, "attack");
    ann().timeline->moveRow(rowId, 1);
    settle();
    EXPECT_EQ(cloudCalls(ann()).size(), 2U);
    expectAllEqual();
}

}  // namespace
}  // namespace RemoteCoding
