#pragma once

#include "Tests/HostContract/CloudFixture.hpp"

#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The contract of the GraphQL client's live subscription as tests, for any host. Include this header in one source file of
/// a test program, derive a `CloudFixture`, and instantiate `SubscriptionContract` with it.
namespace HostContract {

class SubscriptionContract : public CloudContractTest {
protected:
    using Type = RemoteCoding::TaggingSessionChangeType;
    using Event = std::pair<Type, Ids>;  ///< in short: the moments that it is about
    using Events = std::vector<Event>;

    /// Whoever listens. What the handlers write is the main thread's, which the thread sanitizer checks.
    struct Listener {
        std::shared_ptr<RemoteCoding::SubscriptionHandle> handle;
        std::weak_ptr<int> life;  ///< what the handlers hold
        Events events;
        std::optional<RemoteCoding::PresentationViewItem> lastView;
        int errors = 0;
        bool cancelsItself = false;
    };
    using ListenerPointer = std::shared_ptr<Listener>;

    /// Subscribes in the background and waits for the handle. The subscription may not have reached the service by then.
    ListenerPointer subscribe(std::size_t analyst, const std::string& session) {
        auto listener = std::make_shared<Listener>();
        listeners_.push_back(listener);
        auto& execution = host().execution(analyst);
        const auto life = std::make_shared<int>(0);
        listener->life = life;
        const auto onEvent = [to = listener.get(), &execution, life](Type type, const auto& change) {
            EXPECT_TRUE(execution.isMainThread());
            to->lastView = change.presentationView;
            to->events.emplace_back(type, Ids());
            for (std::size_t i = 0; change.moments && i < change.moments->size(); ++i) {
                to->events.back().second.push_back((*change.moments)[i]->identifier());
            }
            if (to->cancelsItself) {
                to->handle->cancel();
            }
        };
        const auto onError = [to = listener.get(), &execution, life](const std::exception_ptr& error) {
            EXPECT_TRUE(error && execution.isMainThread());
            ++to->errors;
        };
        std::atomic<bool> isDone = false;
        execution.postToBackground([&, analyst, onEvent, onError, id = timeline(analyst)->uniqueId()] {
            listener->handle =
                host().graphQLClient(analyst).subscribeToTaggingSessionChanges(session, id, onEvent, onError);
            isDone = true;
        });
        runUntil([&] { return isDone.load(); });
        return listener;
    }

    ListenerPointer follow(std::size_t analyst, const std::string& session) {  // from the present state on
        EXPECT_TRUE(wait(startFetch(analyst)).succeeded());
        return subscribe(analyst, session);
    }

    void TearDown() override {
        for (const auto& listener : listeners_) {
            listener->handle->cancel();
        }
    }

private:
    std::vector<ListenerPointer> listeners_;
};

TEST_P(SubscriptionContract, TellsEverybodyEverythingInOneOrder) {
    const std::string session = createSession(ann);
    const auto atAnn = follow(ann, session);
    const auto atBen = follow(ben, session);
    std::vector<Call<Ids>> creations;
    for (int i = 0; i < 20; ++i) {
        const std::size_t analyst = i % 2 == 0 ? ann : ben;
        creations.push_back(startCreate(
            analyst, session, timeline(analyst),
            {tag(analyst, Clip("Shot", i, i + 1, "")), tag(analyst, Clip("Pass", i, i + 2, ""))}));
    }
    for (std::size_t i = 0; i < creations.size(); i += 2) {
        (void)startRemove(ben, session, {wait(creations[i]).value().back()});
    }
    const std::size_t concurrent = creations.size() * 3 / 2;
    runUntil([&] { return atAnn->events.size() >= concurrent; });
    const Instance last = tag(ann, Clip("Goal", 1, 2, ""));
    const Ids lastIds = create(ann, session, {last});
    host().retime(timeline(ann), last, 1, 3);
    EXPECT_TRUE(wait(startUpdate(ann, session, {last})).value());
    EXPECT_TRUE(wait(startRemove(ann, session, {"no such moment"})).value());
    EXPECT_TRUE(wait(startSaveRows(ann, session)).succeeded());
    runUntil([&] { return atAnn->lastView && atBen->lastView; });
    host().settle();

    EXPECT_EQ(atAnn->events, atBen->events);
    const auto& rows = atBen->lastView->subViews;
    ASSERT_EQ(rows.size(), 3U) << "shot, pass, goal";
    EXPECT_EQ(rows.back().name, "Goal");
    EXPECT_EQ(rows.back().color(), timeline(ann)->allRows()->back()->color());
    ASSERT_EQ(atBen->events.size(), concurrent + 3) << "One event of each call that changes anything.";
    EXPECT_EQ(Events(atBen->events.end() - 2, atBen->events.end()),
              (Events{{Type::momentsUpdated, lastIds}, {Type::presentationViewUpdated, {}}}));
    Ids followed;
    for (const auto& [type, ids] : atBen->events) {
        for (const std::string& id : ids) {
            if (type == Type::momentsAdded) {
                followed.push_back(id);
            }
            EXPECT_TRUE(type != Type::momentsDeleted || std::erase(followed, id) == 1) << "gone, never come";
        }
    }
    EXPECT_EQ(followed, fetchIds(cleo)) << "Who follows the events ends where the service is.";
}

TEST_P(SubscriptionContract, BeginsWithWhatHappenedSinceTheLastFetch) {
    const std::string session = createSession(ann);
    const Ids first = create(ann, session, {tag(ann, Clip("Shot", 1, 2, ""))});
    EXPECT_EQ(fetchIds(ben), first);
    const Ids second = create(ann, session, {tag(ann, Clip("Shot", 3, 4, ""))});
    EXPECT_TRUE(wait(startRemove(ann, session, second)).value());

    const auto listener = subscribe(ben, session);
    const auto late = subscribe(cleo, session);
    host().settle();
    const Ids third = create(ann, session, {tag(ann, Clip("Shot", 5, 6, ""))});
    runUntil([&] { return listener->events.size() >= 3 && late->events.size() >= 4; });
    host().settle();

    Events expected{
        {Type::momentsAdded, second}, {Type::momentsDeleted, second}, {Type::momentsAdded, third}};
    EXPECT_EQ(listener->events, expected);
    expected.insert(expected.begin(), {Type::momentsAdded, first});
    EXPECT_EQ(late->events, expected) << "It never fetched.";
    late->handle->cancel();
    const auto resumed = subscribe(cleo, session);
    host().settle();
    EXPECT_EQ(resumed->events, Events()) << "What the timeline was told is not told again.";
    const auto again = follow(ben, session);
    host().settle();
    EXPECT_EQ(again->events, Events()) << "What was fetched is not told again.";
}

TEST_P(SubscriptionContract, IsSilentAfterCancelAndLetsGoOfItsHandlers) {
    const std::string session = createSession(ann);
    const auto early = follow(ben, session);
    const auto inside = follow(ben, session);
    const auto background = follow(cleo, session);
    inside->cancelsItself = true;
    for (int i = 0; i < 6; ++i) {
        (void)startCreate(ann, session, timeline(ann), {tag(ann, Clip("Shot", i, i, ""))});
    }
    runUntil([&] { return early->events.size() > 1 && !inside->events.empty(); });

    early->handle->cancel();
    const std::size_t told = early->events.size();
    EXPECT_TRUE(early->life.expired() && inside->life.expired());
    host().execution(cleo).postToBackground([background] { background->handle->cancel(); });
    runUntil([&] { return background->life.expired(); });
    host().settle();

    EXPECT_EQ(early->events.size(), told);
    EXPECT_EQ(inside->events.size(), 1U);
    EXPECT_EQ(early->errors + inside->errors + background->errors, 0);
}

TEST_P(SubscriptionContract, FailsOnceWithTheLinkAndMissesNothingWhenOpenedAnew) {
    const std::string session = createSession(ann);
    const auto listener = follow(ben, session);
    const Ids first = create(ann, session, {tag(ann, Clip("Shot", 1, 2, ""))});
    runUntil([&] { return listener->events.size() == 1; });

    host().setLinkUp(ben, false);
    const Ids missed = create(ann, session, {tag(ann, Clip("Shot", 3, 4, ""))});
    const auto offline = subscribe(ben, session);
    const auto nowhere = subscribe(ann, "nowhere");
    runUntil([&] { return listener->errors + offline->errors + nowhere->errors == 3; });
    host().setLinkUp(ben, true);
    const auto renewed = subscribe(ben, session);
    runUntil([&] { return !renewed->events.empty(); });
    host().settle();

    EXPECT_EQ(listener->events, (Events{{Type::momentsAdded, first}}))
        << "After its error a subscription tells nothing.";
    EXPECT_EQ(renewed->events, (Events{{Type::momentsAdded, missed}}))
        << "All since the last fetch, but for what an earlier subscription of the timeline has told.";
    EXPECT_EQ((std::vector{listener->errors, offline->errors, nowhere->errors, renewed->errors}),
              (std::vector{1, 1, 1, 0}));
}

}  // namespace HostContract
