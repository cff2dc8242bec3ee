#include "Base/Error.hpp"
#include "ReferenceHost/LogManager.hpp"
#include "Tests/Services/SynchroniserTest.hpp"

#include <algorithm>
#include <stdexcept>

namespace RemoteCoding {
namespace {

using Strings = std::vector<std::string>;
using Activity = SynchronisationStatus::Activity;

const std::string lost =
    "warn Error while listening for tagging session changes. Error=The connection to the "
    "cloud service was lost.";
const std::string disconnected = "warn Disconnected from tagging session updates. Attempting to reconnect.";
const std::string attemptLine = "info Attempting to reconnect to the remote tagging session. Attempt=";

class SubscriptionTest : public SynchroniserTest {
protected:
    void SetUp() override {
        startTwo({"Attack"});
        forgetTrace();
    }

    /// Ben's fetches fail from now on.
    void breakFetches() {
        ben().host.cloudClient().setFaultPlan([](const ReferenceHost::CloudCall& call) {
            return Fault(call.operation == Operation::fetchTaggingSessions ? Fault::Kind::failBeforeEffect
                                                                           : Fault::Kind::none);
        });
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
        EXPECT_EQ(ben().service->status().activity, Activity::cancelled);
        const std::weak_ptr<TimelineUploadService> service = ben().service;
        ben().release();
        runFor(60);
        EXPECT_TRUE(service.expired());
        EXPECT_EQ(ben().host.unfinishedTasks(), 0U);
        EXPECT_EQ(ben().host.cloudClient().numberOfUncancelledSubscriptions(), 0U);
        EXPECT_EQ(blocks(ben()).size(), trace.entries("Ben", ReferenceHost::TraceKind::blockEnd).size());
    }
};

TEST_F(SubscriptionTest, AfterAFailureItCatchesUpInBothDirectionsAndSubscribesAgain) {
    ann().tag("Attack", 1, 2);
    ben().tag("Attack", 3, 4);
    ben().host.cloudClient().dropSubscriptions();
    settle();
    Strings lines = log(ben());
    lines.resize(std::min<std::size_t>(lines.size(), 6));
    EXPECT_EQ(lines,
              Strings({lost, disconnected, attemptLine + "1", "info Uploading all local timeline updates",
                       "info Syncing remote tagging session to the local timeline",
                       "info Subscribing to tagging session updates. TeamId=team, VideoId=video, "
                       "TaggingSessionId=session-1, TimelineId=" +
                           ben().timeline->uniqueId()}));
    EXPECT_EQ(cloudCalls(ben()),
              Strings({"createMoments", "fetchTaggingSessions", "subscribeToTaggingSessionChanges"}));
    EXPECT_EQ(ben().host.cloudClient().numberOfUncancelledSubscriptions(), 1U);
    expectAllEqual();

    // An attempt whose upload fails does not pull.
    forgetTrace();
    ben().host.cloudClient().faultNext(Operation::createMoments, Fault(Fault::Kind::failBeforeEffect));
    ben().tag("Attack", 5, 6);
    ben().host.cloudClient().dropSubscriptions();
    settle();
    EXPECT_EQ(cloudCalls(ben()), Strings({"createMoments", "createMoments", "fetchTaggingSessions",
                                          "subscribeToTaggingSessionChanges"}));
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
    EXPECT_EQ(ben().service->status().activity, Activity::waitingToReconnect);
    EXPECT_EQ(static_cast<std::size_t>(ben().service->status().reconnectionAttempt), times.size());

    ann().tag("Attack", 1, 2);
    ben().tag("Attack", 3, 4);
    ben().timeline->addRow("Corner", Base::Color(1, 1, 1));
    for (int i = 0; i < 120; ++i) {
        runFor(0.5);
        const auto status = ben().service->status();
        ASSERT_TRUE(status.hasUnsentEdits);
        ASSERT_FALSE(status.receivesChanges);
        ASSERT_EQ(status.activity, Activity::waitingToReconnect);
    }
    EXPECT_TRUE(logHas(ben(), "warn Some upload operations are unsuccessful"));
    ben().host.setLinkUp(true);
    settle();
    EXPECT_TRUE(ben().service->status().isSettled());
    EXPECT_TRUE(ben().service->status().receivesChanges);
    EXPECT_EQ(remote().moments.size(), 2U);
    expectAllEqual();
}

TEST_F(SubscriptionTest, AfterThreeHundredAttemptsItSubscribesAllTheSame) {
    breakFetches();
    ben().host.cloudClient().dropSubscriptions();
    runFor(700);
    EXPECT_EQ(attemptTimes().size(), 300U);
    EXPECT_EQ(
        logCount(ben(), "error Hit maximum reconnection attempts||attemptReconnection(attempt:completion:)"),
        1);
    EXPECT_EQ(cloudCalls(ben()).back(), "subscribeToTaggingSessionChanges");
    EXPECT_TRUE(ben().service->status().isSettled());
    ann().tag("Attack", 1, 2);
    settle();
    expectAllEqual();
}

TEST_F(SubscriptionTest, WhatWasQueuedDuringAnAttemptRunsBeforeTheNextOne) {
    breakFetches();
    ben().host.cloudClient().dropSubscriptions();
    runFor(1);
    ben().tag("Attack", 1, 2);
    deliver(ben(), TaggingSessionChangeType::momentsDeleted, {nullptr});
    EXPECT_EQ(blocks(ben()), Strings({"reconnection"}));
    runFor(2.5);
    EXPECT_EQ(blocks(ben()), Strings({"reconnection", "event", "upload", "reconnection"}));
    EXPECT_EQ(remote().moments.size(), 1U);

    // A wait that the host breaks off is logged, and the next attempt follows all the same.
    ben().execution.setSleepsAreCancelled(true);
    runFor(2);
    EXPECT_TRUE(logHas(ben(), "error Unable to wait between tagging session sync attempts||"
                              "waitForTime(timeInSeconds:completion:)"));
    EXPECT_GT(attemptTimes().size(), 4U);
    ben().execution.setSleepsAreCancelled(false);
    ben().host.cloudClient().setFaultPlan({});
    settle();
    expectAllEqual();
}

TEST_F(SubscriptionTest, ASubscriptionThatCannotBeOpenedIsTreatedAsOneThatFailed) {
    int subscriptions = 0;
    ben().host.cloudClient().setFaultPlan([&](const ReferenceHost::CloudCall& call) {
        const bool isSubscription = call.operation == Operation::subscribe;
        if (isSubscription && ++subscriptions == 1) {
            throw std::runtime_error("no such luck");
        }
        return Fault(isSubscription && subscriptions == 2 ? Fault::Kind::failBeforeEffect
                                                          : Fault::Kind::none);
    });
    ben().host.cloudClient().dropSubscriptions();
    settle();
    EXPECT_EQ(
        complaints(ben()),
        Strings({lost, disconnected,
                 "warn Error while listening for tagging session changes. Error=no such luck", disconnected,
                 "warn Error while listening for tagging session changes. Error=The cloud service could "
                 "not carry out the request.",
                 disconnected}));
    EXPECT_EQ(logCount(ben(), attemptLine + "1"), 3);
    ann().tag("Attack", 1, 2);
    settle();
    expectAllEqual();
}

TEST_F(SubscriptionTest, TheEndOfASessionInTheMiddleOfAPullAppliesNothing) {
    holdBackEvents(ben(), 60);
    ann().tag("Attack", 1, 2);
    runFor(2);
    ben().host.cloudClient().faultNext(Operation::fetchTaggingSessions,
                                       Fault(Fault::Kind::none, Base::Seconds(5)));
    ben().host.cloudClient().dropSubscriptions();
    runFor(2);
    deliver(ben(), {PresentationViewItem("New", Base::Color())});
    const auto count = ben().timeline->modifyCount();
    endAndExpectGone();
    EXPECT_EQ(remote().moments.size(), 1U);
    EXPECT_EQ(ben().timeline->modifyCount(), count);
    // The event that waited behind the pull logs its first line; there is no new subscription.
    EXPECT_EQ(log(ben()).back(), "info Received timeline update. ChangeType=presentationViewUpdated");
    EXPECT_EQ(cloudCalls(ben()), Strings({"fetchTaggingSessions"}));
}

TEST_F(SubscriptionTest, TheEndOfASessionStopsItsReconnection) {
    breakFetches();
    ben().host.cloudClient().dropSubscriptions();
    runFor(5);
    const auto attempts = attemptTimes().size();
    endAndExpectGone();
    EXPECT_EQ(attemptTimes().size(), attempts);
    EXPECT_EQ(std::ranges::count(cloudCalls(ben()), "subscribeToTaggingSessionChanges"), 0);
}

TEST_F(SubscriptionTest, TheEndOfASessionWhileItsSubscriptionIsBeingOpenedLeavesNoneOpen) {
    ben().host.cloudClient().faultNext(Operation::subscribe, Fault(Fault::Kind::none, Base::Seconds(5)));
    ben().host.cloudClient().dropSubscriptions();
    const auto isOpening = [&] {
        return std::ranges::count(cloudCalls(ben()), "subscribeToTaggingSessionChanges") == 1;
    };
    ASSERT_TRUE(time.runUntil(isOpening, Base::Seconds(5)));
    endAndExpectGone();
    EXPECT_EQ(cloud.numberOfSubscribers(sessionId()), 1U);
}

TEST_F(SubscriptionTest, TheEndOfASessionSendsTheLastEditsAtOnceAndNothingKeepsTheSynchroniser) {
    ben().tag("Attack", 1, 2);
    endAndExpectGone();
    ASSERT_EQ(cloudCalls(ben()), Strings({"createMoments"}));
    EXPECT_EQ(trace.entries("Ben", ReferenceHost::TraceKind::blockStart).front().time,
              trace.entries("Ben", ReferenceHost::TraceKind::notification).back().time);
    EXPECT_EQ(complaints(ben()), Strings());
    settle();
    EXPECT_EQ(pictureOf(*ann().timeline), remotePicture());
}

TEST_F(SubscriptionTest, TheLastReferenceMayGoInTheBackground) {
    std::optional<bool> destroyedOnMainThread;
    ben().hooks.released = [&] { destroyedOnMainThread = ben().execution.isMainThread(); };
    ben().service->cancelSyncing();
    inBackground(ben(), [&] { ben().service.reset(); });
    runFor(5);
    EXPECT_EQ(destroyedOnMainThread, true);
    ben().hooks.released = nullptr;
}

/// Hands out handles that count, and calls what the test puts in before it returns one.
class ScriptedClient final : public GraphQLTaggingSessionProtocol {
public:
    struct Handle final : SubscriptionHandle {
        void cancel() override { ++cancelled; }
        int cancelled = 0;
    };

    void fetchTaggingSessions(const std::string&, const std::string&,
                              const std::optional<FetchTaggingSessionsOptions>&,
                              Base::Completion<std::vector<TaggingSessionItem>>) override {}
    std::shared_ptr<SubscriptionHandle> subscribeToTaggingSessionChanges(const std::string&,
                                                                         const std::string&, ChangeHandler,
                                                                         ErrorHandler failed) override {
        handles.push_back(std::make_shared<Handle>());
        auto handle = handles.back();
        if (opening) {
            std::exchange(opening, nullptr)(failed);
        }
        return handle;
    }

    std::vector<std::shared_ptr<Handle>> handles;
    std::function<void(const ErrorHandler&)> opening;
};

TEST(TaggingSessionSubscriptionTest, HoldsOneHandleAndCancelsWhateverItDoesNotHold) {
    Strings lines;
    ReferenceHost::LogManager logManager(
        "", nullptr, [&](ReferenceHost::LogLevel, std::string_view line) { lines.emplace_back(line); });
    const auto client = std::make_shared<ScriptedClient>();
    const auto cancelled = [&](std::size_t number) { return client->handles.at(number)->cancelled; };
    {
        TaggingSessionSubscription subscription(client, logManager);
        const auto subscribe = [&](const std::function<void()>& failed) {
            subscription.subscribe("session", "timeline", {},
                                   [failed](const std::exception_ptr&) { failed(); });
        };
        subscribe([] {});
        subscribe([] {});
        EXPECT_EQ(cancelled(0), 1);
        EXPECT_EQ(cancelled(1), 0);
        EXPECT_TRUE(subscription.isSubscribed());

        // It fails before the handle is there: the handle that comes afterwards is of no use.
        client->opening = [](const auto& failed) {
            failed(std::make_exception_ptr(Base::DescribedError("It is raining.")));
        };
        subscribe([&] { subscription.unsubscribe(); });
        EXPECT_EQ(lines,
                  Strings({"Error while listening for tagging session changes. Error=It is raining."}));
        EXPECT_FALSE(subscription.isSubscribed());
        EXPECT_EQ(cancelled(2), 1);

        // Two that overtake each other: one stays, and it is the later one.
        client->opening = [&](const auto&) { subscribe([] {}); };
        subscribe([] {});
        EXPECT_TRUE(subscription.isSubscribed());
        EXPECT_EQ(cancelled(3), 1);
        EXPECT_EQ(cancelled(4), 0);
        subscription.unsubscribe();
        EXPECT_EQ(cancelled(4), 1);

        client->opening = [&](const auto&) { subscription.close(); };
        subscribe([] {});
        EXPECT_EQ(cancelled(5), 1);
        subscribe([] {});
        EXPECT_EQ(client->handles.size(), 6U);
    }
    {
        TaggingSessionSubscription subscription(client, logManager);
        subscription.subscribe("session", "timeline", {}, {});
    }
    EXPECT_EQ(cancelled(6), 1);
}

}  // namespace
}  // namespace RemoteCoding
