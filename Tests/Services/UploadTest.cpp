#include "ReferenceHost/Timeline/TimelineInstance.hpp"
#include "Tests/Services/SynchroniserTest.hpp"

#include <stdexcept>

namespace RemoteCoding {
namespace {

using Strings = std::vector<std::string>;
using Kind = ReferenceHost::Fault::Kind;
using ReferenceHost::nameOf;

const std::string requestFailed = "The cloud service could not carry out the request.";

/// Ann with the rows Attack and Defence and three clips on Attack, all sent; the cloud tells her nothing more by itself.
class UploadTest : public SynchroniserTest {
protected:
    void SetUp() override {
        add("Ann");
        ann().timeline->addRow("Attack", Base::Color(10, 20, 30));
        ann().timeline->addRow("Defence", Base::Color(40, 50, 60));
        ann().start();
        for (int i = 0; i < 3; ++i) {
            sent.push_back(ann().tag("Attack", i, i + 1));
        }
        settle();
        holdBackEvents(ann(), 600);
        forgetTrace();
    }

    /// One of each kind: an update, a creation, a removal, a row.
    void editEverything() {
        ann().timeline->retimeInstance(sent.at(0)->uniqueId(), 10, 11);
        created = ann().tag("Attack", 20, 21);
        ann().timeline->removeInstance(sent.at(2)->uniqueId());
        ann().timeline->addRow("Corner", Base::Color(70, 80, 90));
    }

    void announceChange() {
        ann().host.notificationCenter().post(
            Notification(TimelineNotifications::timelineDidAnyChange, ann().timeline));
    }

    void faultNext(Operation operation, Kind kind, double hang = 0) {
        ann().host.cloudClient().faultNext(operation, Fault(kind, Base::Seconds(hang)));
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

    forgetTrace();
    ann().tag("Attack", 24, 25);
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments"}));
    EXPECT_EQ(log(ann()), Strings({"info Uploading all local timeline updates"}));
}

TEST_F(UploadTest, AStepThatFailsStopsTheOthersAndTheNextPassSendsTheSameRange) {
    struct Step {
        Operation operation;
        std::string warning;
        Strings calls;
        Strings callsAfterwards;
    };
    const std::vector<Step> steps = {
        {Operation::updateMoments,
         "warn Unable to update moments. Error=" + requestFailed,
         {"updateMoments"},
         {"updateMoments", "createMoments", "removeMoments", "savePresentationView"}},
        {Operation::createMoments,
         "warn Unable to upload new moments. Error=" + requestFailed + ".",
         {"updateMoments", "createMoments"},
         {"updateMoments", "createMoments", "removeMoments", "savePresentationView"}},
        // From here on the new clip has its moment, and is sent again as an updated one.
        {Operation::removeMoments,
         "warn Unable to delete moments. Error=" + requestFailed + ".",
         {"updateMoments", "createMoments", "removeMoments"},
         {"updateMoments", "removeMoments", "savePresentationView"}},
        {Operation::savePresentationView,
         "warn Unable to upload presentation view. Error=" + requestFailed,
         {"updateMoments", "createMoments", "removeMoments", "savePresentationView"},
         {"updateMoments", "savePresentationView"}},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(nameOf(step.operation));
        const auto countBefore = ann().service->lastModifyCount();
        faultNext(step.operation, Kind::failBeforeEffect);
        editEverything();
        runFor(3);
        EXPECT_EQ(cloudCalls(ann()), step.calls);
        EXPECT_EQ(complaints(ann()), Strings({step.warning, "warn Some upload operations are unsuccessful"}));
        EXPECT_EQ(ann().service->lastModifyCount(), countBefore);
        EXPECT_TRUE(ann().service->status().hasUnsentEdits);

        forgetTrace();
        announceChange();
        settle();
        EXPECT_EQ(cloudCalls(ann()), step.callsAfterwards);
        EXPECT_EQ(complaints(ann()), Strings());
        EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
        expectAllEqual();

        ann().timeline->removeRow(ann().row("Corner")->uniqueId());
        ann().timeline->restoreInstance(sent.at(2)->uniqueId());
        ann().timeline->retimeInstance(sent.at(0)->uniqueId(), 0, 1);
        settle();
        forgetTrace();
    }
}

TEST_F(UploadTest, AFalseAnswerIsAWarningAndThePassGoesOn) {
    faultNext(Operation::updateMoments, Kind::answerFalse);
    faultNext(Operation::removeMoments, Kind::answerFalse);
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

TEST_F(UploadTest, ClipsWithoutAPartnerInAShortAnswerStayWithoutAMoment) {
    faultNext(Operation::createMoments, Kind::answerShort);
    const auto first = ann().tag("Attack", 20, 21);
    const auto second = ann().tag("Attack", 22, 23);
    settle();
    EXPECT_EQ(complaints(ann()), Strings());
    EXPECT_TRUE(first->externalId());
    EXPECT_FALSE(second->externalId());
    ann().timeline->retimeInstance(second->uniqueId(), 22, 24);
    settle();
    EXPECT_EQ(second->externalId(), "session-1.moment-5");
    expectAllEqual();
}

TEST_F(UploadTest, AMomentIdForWhatHasVanishedMeanwhileIsDropped) {
    faultNext(Operation::createMoments, Kind::none, 3);
    const auto removed = ann().tag("Attack", 20, 21);
    const auto stays = ann().tag("Attack", 22, 23);
    const auto onRemovedRow = ann().tag("Defence", 24, 25);
    runFor(2);
    ann().timeline->removeInstance(removed->uniqueId());
    ann().timeline->removeRow(ann().row("Defence")->uniqueId());
    settle();
    EXPECT_EQ(complaints(ann()), Strings());
    EXPECT_EQ(stays->externalId(), "session-1.moment-5");
    auto& cache = ann().service->momentCache();
    EXPECT_EQ(cache.momentId(stays->uniqueId()), "session-1.moment-5");
    EXPECT_FALSE(cache.momentId(removed->uniqueId()));
    EXPECT_FALSE(cache.momentId(onRemovedRow->uniqueId()));

    ann().service->setExternalIdAndCacheInstance(
        std::make_shared<ReferenceHost::TimelineInstance>(
            "loose", std::weak_ptr<ReferenceHost::TimelineRow>(), ReferenceHost::ClipValues(), 0, false),
        "a moment");
    EXPECT_EQ(complaints(ann()), Strings({"error Trying to cache an instance without a row.||"
                                          "setExternalIdAndCacheInstance(instance:externalId:)"}));
    const auto entries = trace.entries("Ann", ReferenceHost::TraceKind::logError);
    EXPECT_EQ(entries.back().field("file"), "Components/RemoteCoding/Services/TimelineUploadService");
    ann().host.closeTimeline(ann().timeline->uniqueId());
    ann().service->setExternalIdAndCacheInstance(stays, "another moment");
    EXPECT_EQ(stays->externalId(), "session-1.moment-5");
    EXPECT_EQ(complaints(ann()).size(), 1U);
}

TEST_F(UploadTest, ADeletionSavesAllRowsAndADeletedRowIsForgottenOnlyThen) {
    ann().timeline->removeInstance(sent.at(0)->uniqueId());
    settle();
    ASSERT_EQ(cloudCalls(ann()), Strings({"removeMoments", "savePresentationView"}));
    EXPECT_EQ(cloud.log(sessionId()).back().presentationView->size(), 2U);

    const std::string rowId = ann().row("Defence")->uniqueId();
    faultNext(Operation::savePresentationView, Kind::failBeforeEffect);
    ann().timeline->removeRow(rowId);
    runFor(3);
    EXPECT_TRUE(ann().service->momentCache().uploadedRow(rowId));
    announceChange();
    settle();
    EXPECT_FALSE(ann().service->momentCache().uploadedRow(rowId));
    expectAllEqual();
}

TEST_F(UploadTest, WithoutATaggingSessionItKeepsRunningAndSendsNothing) {
    Analyst& ben = add("Ben");
    ben.timeline->addRow("Attack", Base::Color());
    ben.host.cloudClient().faultNext(Operation::createTaggingSession, Fault(Kind::failBeforeEffect));
    ben.start();
    runFor(5);
    ben.tag("Attack", 1, 2);
    runFor(5);
    EXPECT_EQ(log(ben), Strings({"error Unable to create tagging session|Error=" + requestFailed +
                                     "|createNewTaggingSession()",
                                 "error No TaggingSessionId found, cannot subscribe to updates||"
                                 "subscribeToTaggingSessionUpdates(timelineId:)"}));
    EXPECT_EQ(cloudCalls(ben), Strings({"createTaggingSession"}));
    EXPECT_FALSE(ben.service->taggingSessionId());
    EXPECT_EQ(ben.service->status().activity, SynchronisationStatus::Activity::idle);
    EXPECT_TRUE(ben.service->status().hasUnsentEdits);
}

TEST_F(UploadTest, ThousandsOfNewMomentIdsAreWrittenBackInOrderAndLeaveTheMainThreadInBetween) {
    constexpr std::size_t count = 3000;
    std::vector<std::shared_ptr<ReferenceHost::TimelineInstance>> clips;
    clips.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        clips.push_back(ann().tag("Attack", 100, 101));
    }
    ASSERT_TRUE(time.runUntil([&] { return clips.front()->externalId().has_value(); }, Base::Seconds(10)));
    EXPECT_FALSE(clips.back()->externalId());
    ann().timeline->removeInstance(clips.at(count - 2)->uniqueId());
    settle();
    for (std::size_t i = 0; i < count; ++i) {
        const bool isRemoved = i == count - 2;
        ASSERT_EQ(clips.at(i)->externalId().value_or("none"),
                  isRemoved ? "none" : "session-1.moment-" + std::to_string(i + 4));
    }
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments"}));
}

TEST_F(UploadTest, ACallThatThrowsOrHangsDoesNotHoldUpTheQueueForLonger) {
    const auto expectFailure = [this](const std::string& error, const ReferenceHost::FaultPlan& plan) {
        ann().host.cloudClient().setFaultPlan(plan);
        ann().tag("Attack", 20, 21);
        runFor(3);
        EXPECT_EQ(complaints(ann()), Strings({"warn Unable to upload new moments. Error=" + error + ".",
                                              "warn Some upload operations are unsuccessful"}));
        ann().host.cloudClient().setFaultPlan({});
        announceChange();
        settle();
        expectAllEqual();
        forgetTrace();
    };
    expectFailure("no such luck", [](const auto&) -> Fault { throw std::runtime_error("no such luck"); });
    expectFailure("Unknown error", [](const auto&) -> Fault { throw 42; });

    faultNext(Operation::createMoments, Kind::none, 30);
    ann().tag("Attack", 30, 31);
    runFor(2);
    ann().tag("Attack", 32, 33);
    runFor(20);
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments"}));
    EXPECT_EQ(ann().service->status().activity, SynchronisationStatus::Activity::working);
    settle();
    EXPECT_EQ(cloudCalls(ann()), Strings({"createMoments", "createMoments"}));
    expectAllEqual();

    // A host that throws where no failure is foreseen.
    class Throwing final : public TimelineComponentProtocol {
    public:
        std::shared_ptr<TimelineProtocol> capturingTimeline() override { return nullptr; }
        std::shared_ptr<TimelineProtocol> timelineWith(const std::string&) override {
            throw std::runtime_error("out of order");
        }
        std::shared_ptr<TimelineProtocol> getTimelineWithVideoId(const std::string&) override {
            return nullptr;
        }
        Base::Result<void>
        openLiveShareWithShareFiles(const std::vector<ShareFile>&, std::shared_ptr<WindowProtocol>,
                                    std::optional<std::string>,
                                    std::function<void(std::optional<std::string>)>) override {
            return {};
        }
    };
    forgetTrace();
    ann().host.locator().setTimelineComponent(std::make_shared<Throwing>());
    ann().tag("Attack", 34, 35);
    runFor(3);
    ASSERT_EQ(complaints(ann()).size(), 1U);
    EXPECT_TRUE(complaints(ann()).front().starts_with("error The host failed unexpectedly|out of order|"));
    ann().host.locator().setTimelineComponent(
        std::shared_ptr<TimelineComponentProtocol>(&ann().host.timelines(), [](auto*) {}));
    ann().tag("Attack", 36, 37);
    runFor(3);
    EXPECT_EQ(ann().service->lastModifyCount(), ann().timeline->modifyCount());
    expectAllEqual();
}

}  // namespace
}  // namespace RemoteCoding
