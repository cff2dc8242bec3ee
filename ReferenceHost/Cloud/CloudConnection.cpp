#include "ReferenceHost/Cloud/CloudConnection.hpp"

#include "Base/Error.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/CloudSubscription.hpp"
#include "ReferenceHost/Cloud/ConnectionErrors.hpp"
#include "ReferenceHost/Execution/Scheduler.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

CloudConnection::CloudConnection(CloudService& service, Base::ExecutionProtocol& execution, Trace& trace,
                                 std::string host, CloudClientSettings settings)
    : service_(service),
      execution_(execution),
      trace_(trace),
      host_(std::move(host)),
      settings_(settings),
      client_(service.addClient()),
      callRandom_(SeededRandom::stream(settings.seed, "calls")),
      eventRandom_(SeededRandom::stream(settings.seed, "events")) {}

void CloudConnection::close() {
    std::map<std::uint64_t, std::shared_ptr<PendingCall>> calls;
    std::map<std::uint64_t, Route> routes;
    {
        const std::lock_guard gate(gate_);
        isClosed_ = true;
        Base::synchronized(lock_, [&] {
            takesCalls_ = false;
            calls.swap(calls_);
            routes.swap(routes_);
            faultPlan_ = nullptr;
            eventFaultPlan_ = nullptr;
        });
        for (const auto& [number, route] : routes) {
            if (route.subscriber) {
                service_.unsubscribe(route.sessionId, *route.subscriber);
            }
        }
    }
    for (const auto& [number, route] : routes) {
        route.subscription->close();
    }
}

CloudRules CloudConnection::rules() const { return service_.rules(); }

bool CloudConnection::isReadable(const std::string& momentId) const {
    return Base::synchronized(lock_, [&] { return !unreadable_.contains(momentId); });
}

void CloudConnection::setUnreadable(std::vector<std::string> momentIds) {
    Base::synchronized(lock_,
                       [&] { unreadable_ = std::set<std::string>(momentIds.begin(), momentIds.end()); });
}

void CloudConnection::signIn(const std::string& userId) {
    SignIn signIn = service_.teams().signIn(userId);
    Base::synchronized(lock_, [&] { signIn_ = std::move(signIn); });
}

void CloudConnection::signOut() {
    Base::synchronized(lock_, [&] { signIn_.reset(); });
}

std::optional<SignIn> CloudConnection::signIn() const {
    return Base::synchronized(lock_, [&] { return signIn_; });
}

void CloudConnection::setFaultPlan(FaultPlan plan) {
    Base::synchronized(lock_, [&] { faultPlan_.swap(plan); });
}

void CloudConnection::setEventFaultPlan(EventFaultPlan plan) {
    Base::synchronized(lock_, [&] { eventFaultPlan_.swap(plan); });
}

void CloudConnection::faultNext(CloudOperation operation, Fault fault) {
    Base::synchronized(lock_, [&] { nextFaults_.emplace(operation, fault); });
}

Fault CloudConnection::faultFor(const CloudCall& call) {
    std::optional<Fault> next;
    FaultPlan plan;
    Base::synchronized(lock_, [&] {
        const auto found = nextFaults_.find(call.operation);
        if (found != nextFaults_.end()) {
            next = found->second;
            nextFaults_.erase(found);
        } else {
            plan = faultPlan_;
        }
    });
    if (next) {
        return *next;
    }
    return plan ? plan(call) : Fault();
}

bool CloudConnection::isLinkUp() const {
    return Base::synchronized(lock_, [&] { return isLinkUp_; });
}

void CloudConnection::setLinkUp(bool up) {
    const auto lostEpoch = Base::synchronized(lock_, [&]() -> std::optional<std::uint64_t> {
        const bool wasUp = std::exchange(isLinkUp_, up);
        return wasUp && !up ? std::optional(++epoch_) : std::nullopt;
    });
    trace_.record(host_, "link", {{"up", up ? "true" : "false"}});
    if (lostEpoch) {
        service_.scheduler().postAfter(
            settings_.detectionDelay,
            [self = shared_from_this(), epoch = *lostEpoch] { self->linkWasLost(epoch); });
    }
}

void CloudConnection::linkWasLost(std::uint64_t epoch) {
    std::vector<std::pair<std::shared_ptr<PendingCall>, std::uint64_t>> calls;
    std::vector<std::uint64_t> routes;
    Base::synchronized(lock_, [&] {
        for (const auto& [number, call] : calls_) {
            if (call->epoch < epoch && call->isOnTheWay && !call->isNeverAnswered) {
                calls.emplace_back(call, call->attempt);
            }
        }
        for (const auto& [number, route] : routes_) {
            if (route.epoch < epoch) {
                routes.push_back(number);
            }
        }
    });
    for (const std::uint64_t number : routes) {
        breakRoute(number, connectionLost());
    }
    for (const auto& [call, attempt] : calls) {
        attemptWasLost(call, attempt);
    }
}

Base::Seconds CloudConnection::now() const { return service_.scheduler().now(); }

Base::Seconds CloudConnection::drawLatency() {
    return Base::Seconds(callRandom_.between(settings_.leastLatency.count(), settings_.mostLatency.count()));
}

void CloudConnection::postToMain(Base::Job job) {
    try {
        execution_.postToMain(std::move(job));
    } catch (...) {
        // A host that is shutting down takes no jobs any more; nobody waits for this one either.
    }
}

}  // namespace ReferenceHost
