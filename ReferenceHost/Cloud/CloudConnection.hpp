#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Base/Synchronized.hpp"
#include "ReferenceHost/Cloud/CloudClient.hpp"
#include "ReferenceHost/Cloud/CloudFaults.hpp"
#include "ReferenceHost/Cloud/CloudRules.hpp"
#include "ReferenceHost/Cloud/CloudTeams.hpp"
#include "ReferenceHost/Cloud/PendingCall.hpp"
#include "ReferenceHost/SeededRandom.hpp"
#include "ReferenceHost/Trace.hpp"

#include <atomic>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ReferenceHost {

class CloudService;
class CloudSubscription;

/// What lies between one host and the service: the link with its latency and its drops, the calls under way, and the
/// events under way to the host's subscriptions.
///
/// Each time the link goes down a new epoch begins. What was sent in an earlier epoch never arrives, in neither
/// direction; its owner notices after the detection delay.
///
/// Threads: any. Everything that happens later happens in jobs of the service's scheduler, which end as jobs of the
/// host's execution. Locks, in the order in which they may be held together: `gate_`, the service's locks, `lock_`.
class CloudConnection : public std::enable_shared_from_this<CloudConnection> {
public:
    CloudConnection(CloudService& service, Base::ExecutionProtocol& execution, Trace& trace, std::string host,
                    CloudClientSettings settings);

    /// Main thread. Nothing of the service, the execution or the trace is used any more when this returns.
    void close();

    [[nodiscard]] std::uint64_t client() const { return client_; }
    [[nodiscard]] CloudRules rules() const;

    // What writes to sessions is numbered in the order in which it is made, from 1.
    [[nodiscard]] std::uint64_t nextWriter() { return ++lastWriter_; }
    [[nodiscard]] std::uint64_t lastWriter() const { return lastWriter_; }

    [[nodiscard]] bool isReadable(const std::string& momentId) const;

    void setLinkUp(bool up);
    [[nodiscard]] bool isLinkUp() const;
    void setFaultPlan(FaultPlan plan);
    void setEventFaultPlan(EventFaultPlan plan);
    void faultNext(CloudOperation operation, Fault fault);
    void setUnreadable(std::vector<std::string> momentIds);
    [[nodiscard]] std::size_t numberOfCallsUnderWay() const;

    void signIn(const std::string& userId);
    void signOut();
    [[nodiscard]] std::optional<SignIn> signIn() const;

    void send(const std::shared_ptr<PendingCall>& call);

    /// For the effect of a fetch: this client has now been told everything up to this change of the session.
    void didFetch(PendingCall& call, const std::string& sessionId, std::uint64_t sequence);

    [[nodiscard]] std::shared_ptr<CloudSubscription>
    subscribe(const std::string& sessionId, const std::string& timelineId,
              RemoteCoding::GraphQLTaggingSessionProtocol::ChangeHandler changeHandler,
              RemoteCoding::GraphQLTaggingSessionProtocol::ErrorHandler errorHandler);
    void subscriptionWasCancelled(std::uint64_t number);
    void dropSubscriptions();
    [[nodiscard]] std::size_t numberOfUncancelledSubscriptions() const;
    [[nodiscard]] std::size_t numberOfOpeningSubscriptions() const;
    [[nodiscard]] std::size_t numberOfEventsUnderWay() const;

private:
    // Events that have left the service and have not arrived, and what else the way to one subscription consists of.
    struct Route {
        std::shared_ptr<CloudSubscription> subscription;
        std::string sessionId;
        std::string timelineId;
        std::uint64_t epoch = 0;
        bool waitsForFetch = false;  // to begin where that has ended
        bool failsToOpen = false;
        bool isBroken = false;                    // carries nothing any more
        bool hasFailed = false;                   // and the host is told of it
        std::optional<std::uint64_t> subscriber;  // at the service
        std::deque<ChangePointer> onTheWay;
        Base::Seconds lastArrival{0};
    };

    [[nodiscard]] Base::Seconds now() const;
    [[nodiscard]] Base::Seconds drawLatency();  // with the lock held
    [[nodiscard]] Fault faultFor(const CloudCall& call);
    void postToMain(Base::Job job);
    void linkWasLost(std::uint64_t epoch);

    void dispatch(const std::shared_ptr<PendingCall>& call);
    void arrive(const std::shared_ptr<PendingCall>& call, std::uint64_t attempt);
    void recordEffect(const PendingCall& call);
    void bringAnswer(const std::shared_ptr<PendingCall>& call, std::uint64_t attempt);
    void attemptWasLost(const std::shared_ptr<PendingCall>& call, std::uint64_t attempt);
    void repeat(const std::shared_ptr<PendingCall>& call, std::uint64_t attempt);
    void forgetFetches(PendingCall& call);  // with the lock held
    void complete(const std::shared_ptr<PendingCall>& call);

    void open(std::uint64_t number);
    void openAfterFetch();
    void carry(std::uint64_t number, const ChangePointer& change);
    void arriveEvent(std::uint64_t number);
    void breakRoute(std::uint64_t number, const std::exception_ptr& error);
    using Listening = std::pair<std::string, std::string>;  // session, timeline
    void deliver(CloudSubscription& subscription, std::uint64_t number, const Listening& listening,
                 const ChangePointer& change);
    [[nodiscard]] std::uint64_t lastKnown(const Listening& listening) const;  // with the lock held

    CloudService& service_;
    Base::ExecutionProtocol& execution_;
    Trace& trace_;
    const std::string host_;
    const CloudClientSettings settings_;
    const std::uint64_t client_;

    // Held by the jobs that use the service, the execution or the trace, so that `close` waits for them. Recursive:
    // a stopped execution destroys a posted job at once, and what that held may come back here.
    mutable std::recursive_mutex gate_;
    bool isClosed_ = false;  // guarded by the gate

    std::atomic<std::uint64_t> lastWriter_{0};

    Base::ObjectLock lock_;  // of everything below
    bool takesCalls_ = true;
    bool isLinkUp_ = true;
    std::uint64_t epoch_ = 0;
    SeededRandom callRandom_;
    SeededRandom eventRandom_;
    FaultPlan faultPlan_;
    EventFaultPlan eventFaultPlan_;
    std::multimap<CloudOperation, Fault> nextFaults_;  // equal keys keep their order
    std::set<std::string> unreadable_;
    std::optional<SignIn> signIn_;
    std::uint64_t lastCall_ = 0;
    std::map<std::uint64_t, std::shared_ptr<PendingCall>> calls_;  // under way
    std::map<std::string, std::uint64_t> lastFetches_;             // by session
    std::map<std::string, std::uint64_t> latestFetchCalls_;        // by session: the one that has set that
    std::map<Listening, std::uint64_t> lastDeliveries_;
    std::map<std::string, std::uint64_t>
        answeredWrites_;  // by session: the last change that an answered write has made
    std::uint64_t lastRoute_ = 0;
    std::map<std::uint64_t, Route> routes_;  // until cancelled
};

}  // namespace ReferenceHost
