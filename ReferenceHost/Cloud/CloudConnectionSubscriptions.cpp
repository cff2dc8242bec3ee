// The subscriptions of a connection: how events get from the service to the host's main thread.

#include "Base/Error.hpp"
#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudMomentItem.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/CloudSubscription.hpp"
#include "ReferenceHost/Cloud/ConnectionErrors.hpp"
#include "ReferenceHost/Execution/Scheduler.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

namespace {

ChangePointer meaningless(const RemoteChange& change, EventFault::Extra extra) {
    auto event = std::make_shared<RemoteChange>(change);
    if (extra == EventFault::Extra::ofUnknownType) {
        event->type = RemoteCoding::TaggingSessionChangeType::unknown;
    } else {
        event->moments.clear();
        event->presentationView = nullptr;
    }
    return event;
}

}  // namespace

std::shared_ptr<CloudSubscription>
CloudConnection::subscribe(const std::string& sessionId, const std::string& timelineId,
                           RemoteCoding::GraphQLTaggingSessionProtocol::ChangeHandler changeHandler,
                           RemoteCoding::GraphQLTaggingSessionProtocol::ErrorHandler errorHandler) {
    CloudCall info;
    info.host = host_;
    info.operation = CloudOperation::subscribe;
    info.sessionId = sessionId;
    info.timelineId = timelineId;
    std::uint64_t number = 0;
    const bool takesCalls = Base::synchronized(lock_, [&] {
        info.number = ++lastCall_;
        number = ++lastRoute_;
        return takesCalls_;
    });
    const auto subscription = std::make_shared<CloudSubscription>(
        weak_from_this(), number, std::move(changeHandler), std::move(errorHandler));
    if (!takesCalls) {
        subscription->close();
        return subscription;
    }
    info.time = now();
    const Fault fault = faultFor(info);
    Base::synchronized(lock_, [&] {
        Route& route = routes_[number];
        route.subscription = subscription;
        route.sessionId = sessionId;
        route.timelineId = timelineId;
        route.epoch = epoch_;
        if (fault.kind != Fault::Kind::neverAnswer) {
            route.failsToOpen = !isLinkUp_ || fault.kind == Fault::Kind::failBeforeEffect ||
                                fault.kind == Fault::Kind::failAfterEffect;
            service_.scheduler().postAfter(drawLatency() + fault.hang,
                                           [self = shared_from_this(), number] { self->open(number); });
        }
    });
    trace_.record(host_, TraceKind::call,
                  {{"name", nameOf(CloudOperation::subscribe)},
                   {"call", std::to_string(info.number)},
                   {"subscription", std::to_string(number)},
                   {"taggingSessionId", sessionId},
                   {"timelineId", timelineId}});
    return subscription;
}

void CloudConnection::openAfterFetch() {
    Base::synchronized(lock_, [&] {
        for (auto& numbered : routes_) {
            if (std::exchange(numbered.second.waitsForFetch, false)) {
                service_.scheduler().postAfter(
                    Base::Seconds{0},
                    [self = shared_from_this(), number = numbered.first] { self->open(number); });
            }
        }
    });
}

void CloudConnection::open(std::uint64_t number) {
    const std::lock_guard gate(gate_);
    if (isClosed_) {
        return;
    }
    const bool startsAtLastFetch = rules().subscriptionStartsAtLastFetch;
    std::string sessionId;
    std::optional<std::uint64_t> after;
    bool fails = false;
    const bool isWanted = Base::synchronized(lock_, [&] {
        const auto found = routes_.find(number);
        if (found == routes_.end() || found->second.epoch != epoch_ || found->second.isBroken) {
            return false;
        }
        Route& route = found->second;
        route.waitsForFetch = startsAtLastFetch && std::ranges::any_of(calls_, [](const auto& call) {
                                  return call.second->info.operation == CloudOperation::fetchTaggingSessions;
                              });
        sessionId = route.sessionId;
        fails = route.failsToOpen;
        if (startsAtLastFetch) {
            after = lastKnown({sessionId, route.timelineId});
        }
        return !route.waitsForFetch;
    });
    if (!isWanted) {
        return;
    }
    if (fails) {
        breakRoute(number, isLinkUp() ? requestFailed() : connectionLost());
        return;
    }
    auto opened = service_.subscribe(
        client_, sessionId, after,
        [self = shared_from_this(), number](const ChangePointer& change) { self->carry(number, change); });
    if (!opened.succeeded()) {
        breakRoute(number, opened.error());
        return;
    }
    trace_.record(host_, "subscription",
                  {{"subscription", std::to_string(number)},
                   {"state", "open"},
                   {"taggingSessionId", sessionId},
                   {"after", after ? std::to_string(*after) : "now"}});
    const bool isStillWanted = Base::synchronized(lock_, [&] {
        const auto route = routes_.find(number);
        if (route == routes_.end() || route->second.isBroken) {
            return false;
        }
        route->second.subscriber = opened.value();
        return true;
    });
    if (!isStillWanted) {
        service_.unsubscribe(sessionId, opened.value());
    }
}

std::uint64_t CloudConnection::lastKnown(const Listening& listening) const {
    const auto fetched = lastFetches_.find(listening.first);
    const auto delivered = lastDeliveries_.find(listening);
    return std::max(fetched != lastFetches_.end() ? fetched->second : 0,
                    delivered != lastDeliveries_.end() ? delivered->second : 0);
}

void CloudConnection::carry(std::uint64_t number, const ChangePointer& change) {
    CloudEvent met;
    EventFaultPlan plan;
    Base::synchronized(lock_, [&] {
        const auto route = routes_.find(number);
        if (eventFaultPlan_ && route != routes_.end() && !route->second.isBroken) {
            plan = eventFaultPlan_;
            met.sessionId = route->second.sessionId;
        }
    });
    EventFault fault;
    if (plan) {
        met.host = host_;
        met.subscription = number;
        met.change = change;
        fault = plan(met);
    }
    if (fault.dropSubscription) {
        service_.scheduler().postAfter(Base::Seconds{0}, [self = shared_from_this(), number] {
            self->breakRoute(number, connectionLost());
        });
    }
    const Base::Seconds time = now();
    Base::synchronized(lock_, [&] {
        const auto found = routes_.find(number);
        if (found == routes_.end() || found->second.isBroken) {
            return;
        }
        Route& route = found->second;
        if (fault.dropSubscription) {
            route.isBroken = true;
            route.onTheWay.clear();
            return;
        }
        const Base::Seconds latency(
            eventRandom_.between(settings_.leastLatency.count(), settings_.mostLatency.count()));
        route.lastArrival = std::max(route.lastArrival, time + latency + fault.delay);
        std::vector<ChangePointer> events(1 + fault.repeats, change);
        if (fault.extra != EventFault::Extra::none) {
            events.push_back(meaningless(*change, fault.extra));
        }
        for (ChangePointer& event : events) {
            route.onTheWay.push_back(std::move(event));
            service_.scheduler().postAfter(
                route.lastArrival - time, [self = shared_from_this(), number] { self->arriveEvent(number); });
        }
    });
}

void CloudConnection::arriveEvent(std::uint64_t number) {
    const std::lock_guard gate(gate_);
    if (isClosed_) {
        return;
    }
    const bool inOrder = rules().deliveredInOrder;
    std::shared_ptr<CloudSubscription> subscription;
    Listening listening;
    ChangePointer change;
    Base::synchronized(lock_, [&] {
        const auto found = routes_.find(number);
        if (found == routes_.end() || found->second.isBroken || found->second.epoch != epoch_ ||
            found->second.onTheWay.empty()) {
            return;
        }
        Route& route = found->second;
        subscription = route.subscription;
        listening = {route.sessionId, route.timelineId};
        // The events arrive one for each such job, in the order in which they left, whatever the clock's rounding.
        change = inOrder ? route.onTheWay.front() : route.onTheWay.back();
        inOrder ? route.onTheWay.pop_front() : route.onTheWay.pop_back();
    });
    if (change) {
        postToMain([self = shared_from_this(), subscription, number, listening, change] {
            self->deliver(*subscription, number, listening, change);
        });
    }
}

void CloudConnection::deliver(CloudSubscription& subscription, std::uint64_t number,
                              const Listening& listening, const ChangePointer& change) {
    if (!subscription.isListening()) {
        return;
    }
    Base::synchronized(lock_, [&] {
        std::uint64_t& last = lastDeliveries_[listening];
        last = std::max(last, change->sequence);
    });
    const CloudRules rules = this->rules();
    RemoteCoding::ChangedTaggingSession changed;
    std::vector<std::string> ids;
    if (change->presentationView) {
        changed.presentationView = presentationViewItemOf(*change->presentationView);
    } else {
        auto& items = changed.moments.emplace();
        for (const MomentPointer& moment : change->moments) {
            items.push_back(std::make_shared<CloudMomentItem>(moment, rules));
            ids.push_back(moment->id);
        }
    }
    if (trace_.isRecording()) {
        trace_.record(host_, "delivery",
                      {{"subscription", std::to_string(number)},
                       {"taggingSessionId", listening.first},
                       {"sequence", std::to_string(change->sequence)},
                       {"type", nameOf(change->type)},
                       {"client", std::to_string(change->client)},
                       {"count", std::to_string(ids.size())},
                       {"ids", joined(ids)}});
    }
    subscription.tellChange(change->type, changed);
}

void CloudConnection::breakRoute(std::uint64_t number, const std::exception_ptr& error) {
    const std::lock_guard gate(gate_);
    if (isClosed_) {
        return;
    }
    std::shared_ptr<CloudSubscription> subscription;
    std::string sessionId;
    std::optional<CloudService::SubscriberId> subscriber;
    Base::synchronized(lock_, [&] {
        const auto found = routes_.find(number);
        if (found == routes_.end() || std::exchange(found->second.hasFailed, true)) {
            return;
        }
        Route& route = found->second;
        route.isBroken = true;
        route.onTheWay.clear();
        subscription = route.subscription;
        sessionId = route.sessionId;
        subscriber = std::exchange(route.subscriber, std::nullopt);
    });
    if (!subscription) {
        return;
    }
    if (subscriber) {
        service_.unsubscribe(sessionId, *subscriber);
    }
    postToMain([self = shared_from_this(), subscription, number, error] {
        if (subscription->isListening()) {
            self->trace_.record(self->host_, "subscription",
                                {{"subscription", std::to_string(number)},
                                 {"state", "failed"},
                                 {"error", Base::describe(error)}});
            subscription->tellError(error);
        }
    });
}

void CloudConnection::subscriptionWasCancelled(std::uint64_t number) {
    const std::lock_guard gate(gate_);
    if (isClosed_) {
        return;
    }
    // Taken out first and destroyed last, outside the lock.
    const auto route = Base::synchronized(lock_, [&] { return routes_.extract(number); });
    if (route.empty()) {
        return;
    }
    trace_.record(host_, "subscription", {{"subscription", std::to_string(number)}, {"state", "cancelled"}});
    if (route.mapped().subscriber) {
        service_.unsubscribe(route.mapped().sessionId, *route.mapped().subscriber);
    }
}

void CloudConnection::dropSubscriptions() {
    std::vector<std::uint64_t> numbers;
    Base::synchronized(lock_, [&] {
        for (auto& [number, route] : routes_) {
            route.isBroken = true;
            route.onTheWay.clear();
            numbers.push_back(number);
        }
    });
    for (const std::uint64_t number : numbers) {
        service_.scheduler().postAfter(Base::Seconds{0}, [self = shared_from_this(), number] {
            self->breakRoute(number, connectionLost());
        });
    }
}

std::size_t CloudConnection::numberOfEventsUnderWay() const {
    return Base::synchronized(lock_, [&] {
        std::size_t events = 0;
        for (const auto& [number, route] : routes_) {
            events += route.onTheWay.size();
        }
        return events;
    });
}

std::size_t CloudConnection::numberOfUncancelledSubscriptions() const {
    return Base::synchronized(lock_, [&] { return routes_.size(); });
}

std::size_t CloudConnection::numberOfOpeningSubscriptions() const {
    return Base::synchronized(lock_, [&] {
        return static_cast<std::size_t>(std::ranges::count_if(
            routes_, [](const auto& route) { return !route.second.subscriber && !route.second.hasFailed; }));
    });
}

}  // namespace ReferenceHost
