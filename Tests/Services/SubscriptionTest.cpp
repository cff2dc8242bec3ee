#include "Tests/Services/SynchroniserTest.hpp"

#include <algorithm>
#include <stdexcept>

namespace RemoteCoding {
namespace {

const std::string broken = "warn Error while listening for tagging session changes. Error=";
const std::string disconnected = "warn Disconnected from tagging session updates. Attempting to reconnect.";
const std::string attemptLine = "info Attempting to reconnect to the remote tagging session. Attempt=";
const std::string opening = "subscribeToTaggingSessionChanges";

class SubscriptionTest : public SynchroniserTest {
protected:
    void SetUp() override { startTwo({"Attack"}); }

    /// Ben's subscription fails, and his fetches do from now on.
    void breakConnection() {
        ben().client().setFaultPlan([](const ReferenceHost::CloudCall& call) {
            return ReferenceHost::Fault(
                call.operation == Operation::fetchTaggingSessions ? Kind::failBeforeEffect : Kind::none);
        });
        ben().client().dropSubscriptions();
    }

    /// When Ben began each of his attempts, and that they are numbered from 1 on.
    std::vector<double> attemptTimes() {
        std::vector<double> times;
        for (const auto& entry : trace.entries("Ben", ReferenceHost::TraceKind::logInfo)) {
            const std::string line = "info " + std::string(entry.field("message"));
            if (line.starts_with(attemptLine)) {
                times.push_back(entry.time.count());
                EXPECT_EQ(line, attemptLine + std::to_string(times.size()));
            }
        }
        return times;
    }

    /// Ends Ben's session, and lets go of his synchroniser, at whatever moment it is: everything started comes to its end,
    /// and nothing keeps the synchroniser or the subscription.
    void endAndExpectGone() {
        ben().service->cancelSyncing();
        EXPECT_EQ(ben().status().activity, Activity::cancelled);
        const std::weak_ptr<TimelineUploadService> service = ben().service;
        ben().service.reset();
        runFor(60);
        EXPECT_TRUE(service.expired());
        EXPECT_EQ(ben().host.unfinishedTasks(), 0U);
        EXPECT_EQ(ben().client().numberOfUncancelledSubscriptions(), 0U);
        EXPECT_EQ(blocks(ben()).size(), trace.entries("Ben", ReferenceHost::TraceKind::blockEnd).size());
    }
};

TEST_F(SubscriptionTest, AfterAFailureItCatchesUpInBothDirectionsAndSubscribesAgain) {
    ann().tag("Attack", 1, 2);
    ben().tag("Attack", 3, 4);
    ben().client().dropSubscriptions();
    settle();
    Strings lines = log(ben());
    lines.resize(6);
    EXPECT_EQ(lines, Strings({broken + "The connection to the cloud service was lost", disconnected,
                              attemptLine + "1", "info Uploading all local timeline updates",
                              "info Syncing remote tagging session to the local timeline",
                              "info Subscribing to tagging session updates. TeamId=team, VideoId=video, "
                              "TaggingSessionId=session-1, TimelineId=" +
                                  ben().timeline->uniqueId()}));
    EXPECT_EQ(cloudCalls(ben()), Strings({"createMoments", "fetchTaggingSessions", opening}));
    expectAllEqual();

    // Subscribing again cancels what was held.
    ben().execution.postToBackground(
        [this] { ben().service->subscribeToTaggingSessionUpdates(ben().timeline->uniqueId()); });
    runFor(1);
    EXPECT_EQ(ben().client().numberOfUncancelledSubscriptions(), 1U);
    EXPECT_EQ(ben().client().numberOfOpeningSubscriptions(), 0U);
    EXPECT_TRUE(ben().status().receivesChanges);

    // An attempt whose upload fails does not pull.
    trace.clear();
    ben().faultNext(Operation::createMoments, Kind::failBeforeEffect);
    ben().tag("Attack", 5, 6);
    ben().client().dropSubscriptions();
    settle();
    EXPECT_EQ(cloudCalls(ben()),
              Strings({"createMoments", "createMoments", "fetchTaggingSessions", opening}));
    expectAllEqual();
}

TEST_F(SubscriptionTest, AttemptsAreTwoSecondsApartAndWhatHappenedMeanwhileArrivesAtAll) {
    ben().host.setLinkUp(false);
    runFor(10);
    const auto times = attemptTimes();
    ASSERT_GE(times.size(), 3U);
    for (std::size_t i = 1; i < times.size(); ++i) {
        EXPECT_GE(times[i] - times[i - 1], 2.0);
        EXPECT_LT(times[i] - times[i - 1], 2.2);  // the failed fetch takes its time
    }
    EXPECT_EQ(static_cast<std::size_t>(ben().status().reconnectionAttempt), times.size());

    ann().tag("Attack", 1, 2);
    ben().tag("Attack", 3, 4);
    ben().timeline->addRow("Corner", Base::Color(1, 1, 1));
    for (int i = 0; i < 120; ++i) {
        runFor(0.5);
        ASSERT_TRUE(ben().status().hasUnsentEdits);
        ASSERT_FALSE(ben().status().receivesChanges);
        ASSERT_EQ(ben().status().activity, Activity::waitingToReconnect);
    }
    ben().host.setLinkUp(true);
    settle();
    EXPECT_TRUE(ben().status().receivesChanges);
    EXPECT_EQ(remote().moments.size(), 2U);
    expectAllEqual();
}

TEST_F(SubscriptionTest, WithoutATimelineAttemptsAreTwoSecondsApartAsWell) {
    ben().host.closeTimeline(ben().timeline->uniqueId());
    ben().host.setLinkUp(false);
    runFor(20);
    const auto attempts = attemptTimes().size();
    EXPECT_GE(attempts, 9U);
    EXPECT_LE(attempts, 10U);
    EXPECT_EQ(std::ranges::count(cloudCalls(ben()), opening), 0);
    ben().host.setLinkUp(true);
    runFor(600);
    EXPECT_TRUE(ben().status().receivesChanges);
    EXPECT_EQ(attemptTimes().size(), 300U);
}

TEST_F(SubscriptionTest, AfterThreeHundredAttemptsItSubscribesAllTheSame) {
    breakConnection();
    runFor(700);
    EXPECT_EQ(attemptTimes().size(), 300U);
    EXPECT_EQ(
        logCount(ben(), "error Hit maximum reconnection attempts||attemptReconnection(attempt:completion:)"),
        1);
    EXPECT_EQ(cloudCalls(ben()).back(), opening);
    ann().tag("Attack", 1, 2);
    settle();
    expectAllEqual();
}

TEST_F(SubscriptionTest, WhatWasQueuedDuringAnAttemptRunsBeforeTheNextOne) {
    breakConnection();
    runFor(1);
    ben().tag("Attack", 1, 2);
    ben().deliver(Type::momentsDeleted, {nullptr});
    EXPECT_EQ(blocks(ben()), Strings({"reconnection"}));
    runFor(2.5);
    EXPECT_EQ(blocks(ben()), Strings({"reconnection", "event", "upload", "reconnection"}));
    EXPECT_EQ(remote().moments.size(), 1U);

    // A wait that the host breaks off is logged, and the next attempt follows all the same.
    ben().execution.setSleepsAreCancelled(true);
    runFor(2);
    EXPECT_GT(logCount(ben(), "error Unable to wait between tagging session sync attempts||"
                              "waitForTime(timeInSeconds:completion:)"),
              0);
    EXPECT_GT(attemptTimes().size(), 4U);
    ben().execution.setSleepsAreCancelled(false);
    ben().client().setFaultPlan({});
    settle();
    expectAllEqual();
}

TEST_F(SubscriptionTest, ASubscriptionThatCannotBeOpenedIsTreatedAsOneThatFailed) {
    bool hasThrown = false;
    ben().client().setFaultPlan([&](const ReferenceHost::CloudCall& call) {
        if (call.operation == Operation::subscribe && !std::exchange(hasThrown, true)) {
            throw std::runtime_error("no such luck");
        }
        return ReferenceHost::Fault();
    });
    ben().faultNext(Operation::subscribe, Kind::failBeforeEffect);
    ben().client().dropSubscriptions();
    settle();
    EXPECT_EQ(complaints(ben()),
              Strings({broken + "The connection to the cloud service was lost", disconnected,
                       broken + requestFailed, disconnected, broken + "no such luck", disconnected}));
    EXPECT_EQ(logCount(ben(), attemptLine + "1"), 3);
    EXPECT_TRUE(ben().status().receivesChanges);
}

TEST_F(SubscriptionTest, TheEndOfASessionInTheMiddleOfAPullAppliesNothing) {
    ben().holdBackEvents(60);
    ann().tag("Attack", 1, 2);
    runFor(2);
    ben().faultNext(Operation::fetchTaggingSessions, Kind::none, 5);
    ben().client().dropSubscriptions();
    runFor(2);
    ben().deliver({PresentationViewItem("New", Base::Color())});
    const auto count = ben().timeline->modifyCount();
    endAndExpectGone();
    EXPECT_EQ(remote().moments.size(), 1U);
    EXPECT_EQ(ben().timeline->modifyCount(), count);
    // The event that waited behind the pull logs its first line; there is no new subscription.
    EXPECT_EQ(log(ben()).back(), "info Received timeline update. ChangeType=presentationViewUpdated");
    EXPECT_EQ(cloudCalls(ben()), Strings({"fetchTaggingSessions"}));
}

TEST_F(SubscriptionTest, TheEndOfASessionStopsItsReconnectionAndASubscriptionThatIsBeingOpened) {
    breakConnection();
    runFor(5);
    const auto attempts = attemptTimes().size();
    endAndExpectGone();
    EXPECT_EQ(attemptTimes().size(), attempts);
    EXPECT_EQ(std::ranges::count(cloudCalls(ben()), opening), 0);

    trace.clear();
    ben().client().setFaultPlan({});
    ben().faultNext(Operation::subscribe, Kind::none, 5);
    ben().start(sessionId());
    runFor(2);
    EXPECT_EQ(std::ranges::count(cloudCalls(ben()), opening), 1);
    EXPECT_EQ(ben().client().numberOfOpeningSubscriptions(), 1U);
    endAndExpectGone();
    EXPECT_EQ(ben().client().numberOfOpeningSubscriptions(), 0U);
    EXPECT_EQ(cloud.numberOfSubscribers(sessionId()), 1U);
}

TEST_F(SubscriptionTest, TheEndOfASessionSendsTheLastEditsAtOnceAndNothingKeepsTheSynchroniser) {
    ben().tag("Attack", 1, 2);
    endAndExpectGone();
    ASSERT_EQ(cloudCalls(ben()), Strings({"createMoments"}));
    EXPECT_EQ(trace.entries("Ben", ReferenceHost::TraceKind::blockStart).front().time,
              trace.entries("Ben", ReferenceHost::TraceKind::notification).back().time);
    EXPECT_EQ(complaints(ben()), Strings());
}

TEST_F(SubscriptionTest, TheEndOfTheSessionSendsOnceMoreWhatCouldNotBeSent) {
    bool fails = true;
    for (Analyst* analyst : {&ann(), &ben()}) {
        analyst->client().setFaultPlan([&](const ReferenceHost::CloudCall& call) {
            const bool isOne = fails && call.operation == Operation::createMoments;
            return ReferenceHost::Fault(isOne ? Kind::failBeforeEffect : Kind::none);
        });
        analyst->tag("Attack", 1, 2);
    }
    runFor(10);
    ben().client().dropSubscriptions();
    runFor(10);
    EXPECT_EQ(ben().status().activity, Activity::waitingToReconnect);
    EXPECT_EQ(remote().moments.size(), 0U);
    fails = false;
    ann().service->cancelSyncing();
    endAndExpectGone();
    EXPECT_EQ(remote().moments.size(), 2U);
}

TEST_F(SubscriptionTest, TheLastReferenceMayGoInTheBackground) {
    std::optional<bool> destroyedOnMainThread;
    Analyst& cleo = add("Cleo");
    cleo.graphQLClient = std::shared_ptr<GraphQLTaggingSessionProtocol>(
        cleo.graphQLClient.get(), [&](auto*) { destroyedOnMainThread = cleo.execution.isMainThread(); });
    cleo.start(sessionId());
    cleo.graphQLClient.reset();
    runFor(5);
    cleo.service->cancelSyncing();
    cleo.execution.postToBackground([service = std::exchange(cleo.service, nullptr)] {});
    runFor(5);
    EXPECT_EQ(destroyedOnMainThread, true);
}

}  // namespace
}  // namespace RemoteCoding
