#pragma once

#include "Tests/HostContract/CloudFixture.hpp"

/// The contract of the GraphQL client's live subscription as tests, for any host. Include this header in one source file of
/// a test program, derive a `CloudFixture`, and instantiate `SubscriptionContract` with it.
namespace HostContract {

using RemoteCoding::TaggingSessionChangeType;

class SubscriptionContract : public CloudContractTest {
protected:
    /// An event in short: its type and the moments it is about.
    struct Event {
        Event(TaggingSessionChangeType type_, Ids ids_) : type(type_), ids(std::move(ids_)) {}
        TaggingSessionChangeType type;
        Ids ids;
        friend bool operator==(const Event&, const Event&) = default;
        friend void PrintTo(const Event& event, std::ostream* stream) {
            *stream << static_cast<int>(event.type);
            for (const std::string& id : event.ids) {
                *stream << ' ' << id;
            }
        }
    };

    /// Whoever listens.
    class Listener {
    public:
        std::weak_ptr<int> life;  ///< what the handlers hold
        std::vector<Event> events;
        std::vector<RemoteCoding::ChangedTaggingSession> changes;
        int errors = 0;
        bool wasCalledOffMain = false;
        std::function<void()> onEvent;

        void keep(std::shared_ptr<RemoteCoding::SubscriptionHandle> handle) {
            const std::lock_guard lock(mutex_);
            handle_ = std::move(handle);
        }
        [[nodiscard]] std::shared_ptr<RemoteCoding::SubscriptionHandle> handle() {
            const std::lock_guard lock(mutex_);
            return handle_;
        }

        /// Whether somebody still holds the handlers.
        [[nodiscard]] bool isHeld() const { return !life.expired(); }

    private:
        std::mutex mutex_;
        std::shared_ptr<RemoteCoding::SubscriptionHandle> handle_;
    };
    using ListenerPointer = std::shared_ptr<Listener>;

    /// Subscribes in the background and waits for the handle. The subscription may not have reached the service by then.
    ListenerPointer subscribe(std::size_t analyst, const std::string& session) {
        auto listener = std::make_shared<Listener>();
        Base::ExecutionProtocol& execution = host().execution(analyst);
        Listener* const kept = listener.get();
        const auto made = std::make_shared<int>(0);
        listener->life = made;
        listeners_.push_back(listener);
        execution.postToBackground([this, analyst, session, kept, &execution, life = made] {
            auto handle = host().graphQLClient(analyst).subscribeToTaggingSessionChanges(
                session, timeline(analyst)->uniqueId(),
                [kept, &execution, life](TaggingSessionChangeType type,
                                         const RemoteCoding::ChangedTaggingSession& change) {
                    kept->wasCalledOffMain = kept->wasCalledOffMain || !execution.isMainThread();
                    kept->changes.push_back(change);
                    Ids ids;
                    if (change.moments) {
                        for (const auto& moment : *change.moments) {
                            ids.push_back(moment->identifier());
                        }
                    }
                    kept->events.emplace_back(type, std::move(ids));
                    if (kept->onEvent) {
                        kept->onEvent();
                    }
                },
                [kept, &execution, life](const std::exception_ptr& error) {
                    kept->wasCalledOffMain = kept->wasCalledOffMain || !execution.isMainThread();
                    kept->errors += error ? 1 : 100;
                });
            kept->keep(std::move(handle));
        });
        runUntil([&] { return kept->handle() != nullptr; });
        return listener;
    }

    /// Subscribes from the present state on.
    ListenerPointer follow(std::size_t analyst, const std::string& session) {
        EXPECT_TRUE(wait(startFetch(analyst)).succeeded());
        return subscribe(analyst, session);
    }

    void TearDown() override {
        for (const auto& listener : listeners_) {
            listener->handle()->cancel();
            host().settle();
            EXPECT_FALSE(listener->wasCalledOffMain);
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
    for (int i = 0; i < 10; ++i) {
        for (const std::size_t analyst : {ann, ben}) {
            creations.push_back(
                startCreate(analyst, session, timeline(analyst),
                            {tag(analyst, Clip("Shot", i, i + 1)), tag(analyst, Clip("Pass", i, i + 2))}));
        }
    }
    std::vector<Call<bool>> removals;
    for (std::size_t i = 0; i < creations.size(); i += 3) {
        removals.push_back(startRemove(i % 2 == 0 ? ben : ann, session, {wait(creations[i]).value().back()}));
    }
    const auto view = startSaveRows(ben, session);
    for (const auto& removal : removals) {
        EXPECT_TRUE(wait(removal).value());
    }
    for (const auto& creation : creations) {
        EXPECT_TRUE(wait(creation).succeeded());
    }
    EXPECT_TRUE(wait(view).succeeded());

    const std::size_t expected = creations.size() + removals.size() + 1;
    runUntil([&] { return atAnn->events.size() >= expected && atBen->events.size() >= expected; });
    host().settle();

    EXPECT_EQ(atAnn->events.size(), expected);
    EXPECT_EQ(atAnn->events, atBen->events);
    Ids followed;
    for (const Event& event : atAnn->events) {
        for (const std::string& id : event.ids) {
            if (event.type == TaggingSessionChangeType::momentsAdded) {
                followed.push_back(id);
            } else {
                EXPECT_EQ(std::erase(followed, id), 1U) << "Nothing goes before it has come.";
            }
        }
    }
    EXPECT_EQ(followed, fetchIds(cleo)) << "Who follows the events ends where the service is.";
}

TEST_P(SubscriptionContract, MakesOneEventOfOneCallAndTwoOfAMixedCreation) {
    const std::string session = createSession(ann);
    const auto listener = follow(ben, session);
    const Instance first = tag(ann, Clip("Shot", 1, 2));
    const Instance second = tag(ann, Clip("Pass", 3, 4));
    const Instance third = tag(ann, Clip("Shot", 5, 6));

    const Ids ids = create(ann, session, {first, second});
    EXPECT_TRUE(wait(startUpdate(ann, session, {second, first})).value());
    const Ids mixed = create(ann, session, {first, third, second});
    EXPECT_TRUE(wait(startRemove(ann, session, {"no such moment"})).value());
    EXPECT_TRUE(wait(startRemove(ann, session, {ids[1], ids[0]})).value());
    host().addRow(timeline(ann), "Goal", Base::Color(1, 2, 3));
    EXPECT_TRUE(wait(startSaveRows(ann, session)).succeeded());
    runUntil([&] { return listener->events.size() >= 6; });
    host().settle();

    EXPECT_EQ(listener->events,
              (std::vector<Event>{Event(TaggingSessionChangeType::momentsAdded, ids),
                                  Event(TaggingSessionChangeType::momentsUpdated, {ids[1], ids[0]}),
                                  Event(TaggingSessionChangeType::momentsAdded, {mixed[1]}),
                                  Event(TaggingSessionChangeType::momentsUpdated, ids),
                                  Event(TaggingSessionChangeType::momentsDeleted, {ids[1], ids[0]}),
                                  Event(TaggingSessionChangeType::presentationViewUpdated, {})}));
    const auto& view = listener->changes.back().presentationView;
    ASSERT_TRUE(view.has_value());
    ASSERT_EQ(view->subViews.size(), 3U);
    EXPECT_EQ(view->subViews.back().name, "Goal");
    EXPECT_EQ(view->subViews.back().color(), Base::Color(1, 2, 3));
    EXPECT_FALSE(listener->changes.front().presentationView.has_value());
}

TEST_P(SubscriptionContract, BeginsWithWhatHappenedSinceTheLastFetch) {
    const std::string session = createSession(ann);
    create(ann, session, {tag(ann, Clip("Shot", 1, 2))});
    ASSERT_EQ(fetchIds(ben).size(), 1U);
    const Ids second = create(ann, session, {tag(ann, Clip("Shot", 3, 4))});
    EXPECT_TRUE(wait(startRemove(ann, session, second)).value());

    const auto listener = subscribe(ben, session);
    const auto late = subscribe(cleo, session);
    runUntil([&] { return listener->events.size() >= 2; });
    host().settle();
    const Ids third = create(ann, session, {tag(ann, Clip("Shot", 5, 6))});
    runUntil([&] { return listener->events.size() >= 3 && !late->events.empty(); });
    host().settle();

    const Event addedThird(TaggingSessionChangeType::momentsAdded, third);
    EXPECT_EQ(listener->events,
              (std::vector<Event>{Event(TaggingSessionChangeType::momentsAdded, second),
                                  Event(TaggingSessionChangeType::momentsDeleted, second), addedThird}));
    EXPECT_EQ(late->events, std::vector<Event>{addedThird}) << "Who never fetched is told from then on.";

    ASSERT_EQ(fetchIds(ben).size(), 2U);
    const auto again = subscribe(ben, session);
    host().settle();
    EXPECT_TRUE(again->events.empty()) << "What was fetched is not told again.";
}

TEST_P(SubscriptionContract, IsSilentAfterCancelAndLetsGoOfItsHandlers) {
    const std::string session = createSession(ann);
    const auto early = follow(ben, session);
    const auto inside = follow(ben, session);
    const auto background = follow(cleo, session);
    inside->onEvent = [inside = inside.get()] { inside->handle()->cancel(); };
    create(ann, session, {tag(ann, Clip("Shot", 1, 2))});
    runUntil([&] { return early->events.size() == 1 && inside->events.size() == 1; });

    std::vector<Call<Ids>> creations;
    creations.reserve(5);
    for (int i = 0; i < 5; ++i) {
        creations.push_back(startCreate(ann, session, timeline(ann), {tag(ann, Clip("Shot", i, i))}));
    }
    runUntil([&] { return early->events.size() > 1; });
    early->handle()->cancel();
    const std::size_t told = early->events.size();
    EXPECT_FALSE(early->isHeld());
    EXPECT_FALSE(inside->isHeld());
    early->handle()->cancel();

    const auto cancelled = start<bool>(cleo, [&](auto completion) {
        background->handle()->cancel();
        completion(true);
    });
    EXPECT_TRUE(wait(cancelled).value());
    host().settle();
    runUntil([&] { return !background->isHeld(); });
    for (const auto& creation : creations) {
        EXPECT_TRUE(wait(creation).succeeded());
    }
    host().settle();
    EXPECT_EQ(early->events.size(), told);
    EXPECT_EQ(inside->events.size(), 1U);
    EXPECT_EQ(early->errors + inside->errors + background->errors, 0);
}

TEST_P(SubscriptionContract, FailsOnceWithTheLinkAndMissesNothingWhenOpenedAnew) {
    const std::string session = createSession(ann);
    const auto listener = follow(ben, session);
    const Ids first = create(ann, session, {tag(ann, Clip("Shot", 1, 2))});
    runUntil([&] { return listener->events.size() == 1; });

    host().setLinkUp(ben, false);
    const Ids missed = create(ann, session, {tag(ann, Clip("Shot", 3, 4))});
    runUntil([&] { return listener->errors != 0; });
    host().setLinkUp(ben, true);
    const auto renewed = subscribe(ben, session);
    runUntil([&] { return renewed->events.size() == 2; });
    host().settle();

    EXPECT_EQ(listener->errors, 1);
    EXPECT_EQ(listener->events.size(), 1U) << "After its error a subscription tells nothing.";
    EXPECT_EQ(renewed->events, (std::vector<Event>{Event(TaggingSessionChangeType::momentsAdded, first),
                                                   Event(TaggingSessionChangeType::momentsAdded, missed)}))
        << "All since the last fetch, also what an earlier subscription has told.";
    EXPECT_EQ(renewed->errors, 0);
}

TEST_P(SubscriptionContract, TellsByItsErrorHandlerThatItCannotBeOpened) {
    const std::string session = createSession(ann);
    const auto nowhere = subscribe(ben, "nowhere");
    runUntil([&] { return nowhere->errors != 0; });

    host().setLinkUp(ben, false);
    const auto offline = subscribe(ben, session);
    runUntil([&] { return offline->errors != 0; });
    const auto cancelledAtOnce = subscribe(ben, session);
    cancelledAtOnce->handle()->cancel();
    const int errors = cancelledAtOnce->errors;
    host().settle();

    EXPECT_EQ(nowhere->errors, 1);
    EXPECT_EQ(offline->errors, 1);
    EXPECT_EQ(cancelledAtOnce->errors, errors);
    runUntil([&] { return !cancelledAtOnce->isHeld(); });
}

}  // namespace HostContract
