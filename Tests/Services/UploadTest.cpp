#include "Tests/Component/HostDoors.hpp"
#include "Tests/Services/SynchroniserTest.hpp"

#include <stdexcept>

namespace RemoteCoding {
namespace {

const std::string partFailed = "warn Some upload operations are unsuccessful";

/// Ann with the rows Attack and Defence and three clips on Attack, all sent; the cloud tells her nothing more by itself.
class UploadTest : public SynchroniserTest {
protected:
    void SetUp() override {
        startAnn({"Attack", "Defence"});
        for (int i = 0; i < 3; ++i) {
            sent.push_back(ann().tag("Attack", i, i + 1));
        }
        settle();
        ann().holdBackEvents(600);
        trace.clear();
    }

    /// One of each kind: an update, a creation, a removal, a row.
    void editEverything() {
        ann().timeline->retimeInstance(sent.at(0)->uniqueId(), 10, 11);
        created = ann().tag("Attack", 20, 21);
        ann().timeline->removeInstance(sent.at(2)->uniqueId());
        ann().timeline->addRow("Corner", Base::Color(70, 80, 90));
    }

    /// Another pass, after which nothing is left to send.
    void uploadAgain() {
        trace.clear();
        ann().host.notificationCenter().post(
            Notification(TimelineNotifications::timelineDidAnyChange, ann().timeline));
        settle();
        EXPECT_EQ(complaints(ann()), Strings());
        EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
        expectAllEqual();
    }

    std::vector<std::shared_ptr<ReferenceHost::TimelineInstance>> sent;
    std::shared_ptr<ReferenceHost::TimelineInstance> created;
};

TEST_F(UploadTest, SendsUpdatesCreationsRemovalsAndRowsInThisOrder) {
    ann().timeline->retimeInstance(sent.at(1)->uniqueId(), 12, 13);
    editEverything();
    const auto alsoCreated = ann().tag("Defence", 22, 23);
    settle();
    EXPECT_EQ(cloudCalls(ann()),
              Strings({"updateMoments", "createMoments", "removeMoments", "savePresentationView"}));
    EXPECT_EQ(
        log(ann()),
        Strings({"info Uploading all local timeline updates",
                 "info Updating Tevu moments. MomentIds=[\"session-1.moment-1\", \"session-1.moment-2\"]",
                 "info Deleting Tevu moments. MomentIds=[\"session-1.moment-3\"]",
                 "info Updating Tevu presentation view."}));
    EXPECT_EQ(created->externalId(), "session-1.moment-4");
    EXPECT_EQ(alsoCreated->externalId(), "session-1.moment-5");
    EXPECT_EQ(ann().service->momentCache().momentId(alsoCreated->uniqueId()), "session-1.moment-5");
    EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
    expectAllEqual();
}

TEST_F(UploadTest, AStepThatFailsStopsTheOthersAndTheNextPassSendsTheSameRange) {
    const Strings all{"updateMoments", "createMoments", "removeMoments", "savePresentationView"};
    const Operation operations[] = {Operation::updateMoments, Operation::createMoments,
                                    Operation::removeMoments, Operation::savePresentationView};
    const Strings warnings{"warn Unable to update moments. Error=" + requestFailed,
                           "warn Unable to upload new moments. Error=" + requestFailed + ".",
                           "warn Unable to delete moments. Error=" + requestFailed + ".",
                           "warn Unable to upload presentation view. Error=" + requestFailed};
    // From the third on the new clip has its moment, and is sent again as an updated one.
    const std::vector<Strings> callsAfterwards{all, all, {all[0], all[2], all[3]}, {all[0], all[3]}};
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i]);
        const auto countBefore = ann().service->lastModifyCount();
        ann().faultNext(operations[i], Kind::failBeforeEffect);
        editEverything();
        runFor(3);
        EXPECT_EQ(cloudCalls(ann()), Strings(all.begin(), all.begin() + static_cast<long>(i) + 1));
        EXPECT_EQ(complaints(ann()), Strings({warnings[i], partFailed}));
        EXPECT_EQ(ann().service->lastModifyCount(), countBefore);
        EXPECT_TRUE(ann().status().hasUnsentEdits);
        uploadAgain();
        EXPECT_EQ(cloudCalls(ann()), callsAfterwards[i]);

        ann().timeline->removeRow(ann().row("Corner")->uniqueId());
        ann().timeline->restoreInstance(sent.at(2)->uniqueId());
        ann().timeline->retimeInstance(sent.at(0)->uniqueId(), 0, 1);
        settle();
        trace.clear();
    }
}

TEST_F(UploadTest, AFalseAnswerIsAWarningAndThePassGoesOn) {
    ann().faultNext(Operation::updateMoments, Kind::answerFalse);
    ann().faultNext(Operation::removeMoments, Kind::answerFalse);
    sent.at(0)->setExternalId("another moment");
    editEverything();
    settle();
    EXPECT_EQ(complaints(ann()), Strings({"warn Updating moments was unsuccessful.",
                                          "warn Deleting moments was unsuccessful."}));
    auto& cache = ann().service->momentCache();
    EXPECT_EQ(cache.instanceId("another moment"), sent.at(0)->uniqueId());
    EXPECT_FALSE(cache.hasDeletedMoment(sent.at(2)->uniqueId()));
    EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
    EXPECT_EQ(cloudCalls(ann()).back(), "savePresentationView");
}

TEST_F(UploadTest, AShortAnswerAndClipsThatHaveVanishedMeanwhileAreNoTrouble) {
    ann().faultNext(Operation::createMoments, Kind::answerShort, 3);
    const auto removed = ann().tag("Attack", 20, 21);
    const auto stays = ann().tag("Attack", 22, 23);
    const auto onRemovedRow = ann().tag("Defence", 24, 25);
    const auto withoutPartner = ann().tag("Defence", 26, 27);
    runFor(2);
    ann().timeline->removeInstance(removed->uniqueId());
    ann().timeline->removeRow(ann().row("Defence")->uniqueId());
    settle();
    EXPECT_EQ(complaints(ann()), Strings());
    EXPECT_EQ(stays->externalId(), "session-1.moment-5");
    for (const auto& clip : {removed, onRemovedRow, withoutPartner}) {
        EXPECT_FALSE(clip->externalId());
        EXPECT_FALSE(ann().service->momentCache().momentId(clip->uniqueId()));
    }
    ann().service->setExternalIdAndCacheInstance(
        std::make_shared<ReferenceHost::TimelineInstance>(
            "loose", std::weak_ptr<ReferenceHost::TimelineRow>(), ReferenceHost::ClipValues(), 0, false),
        "a moment");
    EXPECT_EQ(complaints(ann()), Strings({"error Trying to cache an instance without a row.||"
                                          "setExternalIdAndCacheInstance(instance:externalId:)"}));
}

TEST_F(UploadTest, ADeletionSavesAllRowsAndADeletedRowIsForgottenOnlyThen) {
    ann().timeline->removeInstance(sent.at(0)->uniqueId());
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"removeMoments", "savePresentationView"}));
    EXPECT_EQ(cloud.log(sessionId()).back().presentationView->size(), 2U);

    const std::string rowId = ann().row("Defence")->uniqueId();
    ann().faultNext(Operation::savePresentationView, Kind::failBeforeEffect);
    ann().timeline->removeRow(rowId);
    runFor(3);
    EXPECT_TRUE(ann().service->momentCache().uploadedRow(rowId));
    uploadAgain();
    EXPECT_FALSE(ann().service->momentCache().uploadedRow(rowId));
}

TEST_F(UploadTest, ARowThatWasSentIsNotSentAgainWithItsNextClip) {
    ann().timeline->renameRow(ann().row("Attack")->uniqueId(), "Break");
    settle();
    trace.clear();
    ann().timeline->retimeInstance(sent.at(0)->uniqueId(), 10, 11);
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"updateMoments"}));
    EXPECT_EQ(cloud.log(sessionId()).back().drafts.size(), 1U);
    expectAllEqual();
}

TEST_F(UploadTest, WithoutATaggingSessionItKeepsRunningAndSendsNothing) {
    Analyst& cleo = add("Cleo");
    cleo.timeline->addRow("Attack", Base::Color());
    cleo.faultNext(Operation::createTaggingSession, Kind::failBeforeEffect);
    cleo.start();
    runFor(5);
    cleo.tag("Attack", 1, 2);
    runFor(5);
    EXPECT_EQ(log(cleo), Strings({"error Unable to create tagging session|Error=" + requestFailed +
                                      "|createNewTaggingSession()",
                                  "error No TaggingSessionId found, cannot subscribe to updates||"
                                  "subscribeToTaggingSessionUpdates(timelineId:)"}));
    EXPECT_EQ(cloudCalls(cleo), Strings({"createTaggingSession"}));
    EXPECT_EQ(cleo.status().activity, Activity::idle);
    EXPECT_TRUE(cleo.status().hasUnsentEdits);
}

TEST_F(UploadTest, ThousandsOfNewMomentIdsAreWrittenBackInOrderAndLeaveTheMainThreadInBetween) {
    std::vector<std::shared_ptr<ReferenceHost::TimelineInstance>> clips(3000);
    for (auto& clip : clips) {
        clip = ann().tag("Attack", 100, 101);
    }
    ASSERT_TRUE(time.runUntil([&] { return clips.front()->externalId().has_value(); }, Base::Seconds(10)));
    EXPECT_FALSE(clips.back()->externalId());
    const std::size_t removed = clips.size() - 2;
    ann().timeline->removeInstance(clips[removed]->uniqueId());
    settle();
    for (std::size_t i = 0; i < clips.size(); ++i) {
        ASSERT_EQ(clips[i]->externalId().value_or("none"),
                  i == removed ? "none" : "session-1.moment-" + std::to_string(i + 4));
    }
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments"}));
}

TEST_F(UploadTest, ACallThatThrowsOrHangsDoesNotHoldUpTheQueueForLonger) {
    ann().client().setFaultPlan(
        [](const auto&) -> ReferenceHost::Fault { throw std::runtime_error("no such luck"); });
    ann().tag("Attack", 20, 21);
    runFor(3);
    EXPECT_EQ(complaints(ann()),
              Strings({"warn Unable to upload new moments. Error=no such luck.", partFailed}));
    ann().client().setFaultPlan({});
    uploadAgain();
    trace.clear();

    ann().faultNext(Operation::createMoments, Kind::none, 30);
    ann().tag("Attack", 30, 31);
    runFor(2);
    ann().tag("Attack", 32, 33);
    runFor(20);
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments"}));
    EXPECT_EQ(ann().status().activity, Activity::working);
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments", "createMoments"}));

    // So does a host that throws where no failure is foreseen.
    trace.clear();
    const auto doors = std::make_shared<FaultyTimelineComponent>(ann().host.timelines());
    ann().host.locator().setTimelineComponent(doors);
    doors->throws = true;
    ann().tag("Attack", 34, 35);
    runFor(3);
    EXPECT_EQ(complaints(ann()),
              Strings({"error The host failed unexpectedly|timeline component|updateTaggingSession(_:)"}));
    doors->throws = false;
    uploadAgain();
}

}  // namespace
}  // namespace RemoteCoding
