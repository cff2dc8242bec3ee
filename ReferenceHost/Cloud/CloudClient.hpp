#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/SyncLibraryProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuGraphQLClientProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuTeamServiceProtocol.hpp"
#include "ReferenceHost/Cloud/CloudFaults.hpp"
#include "ReferenceHost/Cloud/StreamUplink.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace ReferenceHost {

class CloudConnection;
class CloudService;
class Trace;

/// How one client's network behaves. All times are on the service's scheduler.
struct CloudClientSettings {
    /// One way takes this long, drawn anew for each way of each call and for each event.
    Base::Seconds leastLatency{0.02};
    Base::Seconds mostLatency{0.08};
    std::uint64_t seed = 1;  ///< of what is drawn
    /// How long after the link went down what is under way and the open subscriptions notice it.
    Base::Seconds detectionDelay{0.5};
    Base::Seconds retryInterval{0.5};
    /// For how long after it was first lost a write is repeated before it fails.
    Base::Seconds shortDropLimit{12};
};

/// One host's client of the cloud: its link, its GraphQL client, its sync library and its team service.
///
/// Threads: every operation may be called from any thread, except where the interfaces it gives say otherwise. Their
/// completions are called in background jobs of the host's execution, their handlers in its main thread's jobs.
///
/// The link: while it is down, fetches fail and writes are repeated until it is back or the limit for short drops has
/// passed. When it goes down, what is under way on it is lost, even if it is back at once: a fetch fails, a write
/// (which may have taken effect already) is repeated, a subscription fails. Calls made at the same time may overtake one
/// another, the events of one subscription never do.
///
/// Lifetime: destroy it on the main thread, after the component is gone and before the execution, the trace and the service.
/// What is under way then is dropped, and what the host publishes breaks off; the interfaces given away answer with errors from then on.
class CloudClient {
public:
    CloudClient(CloudService& service, Base::ExecutionProtocol& execution, Trace& trace, std::string host,
                CloudClientSettings settings = {});
    ~CloudClient();
    CloudClient(const CloudClient&) = delete;
    CloudClient& operator=(const CloudClient&) = delete;

    [[nodiscard]] std::shared_ptr<RemoteCoding::TevuGraphQLClientProtocol> graphQLClient() const;
    [[nodiscard]] RemoteCoding::SyncLibraryProtocol& syncLibrary() const;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TevuTeamServiceProtocol> teamService() const;

    /// Who works here; nobody at first. Says so to the service at once, whatever the link: signing in is the account's affair.
    void signIn(const std::string& userId);
    void signOut();

    /// The number under which the service knows this client (`AcceptedCall::client`, `RemoteChange::client`).
    [[nodiscard]] std::uint64_t id() const;

    /// The number of the tagging session service that was made last, from 1; 0: none was.
    [[nodiscard]] std::uint64_t lastWriter() const;

    /// What this host publishes into the video now. Interrupted while the link is down.
    void publish(const std::string& videoId, StreamState stream);

    /// How the video's stream comes in here: interrupted while the link is down.
    [[nodiscard]] StreamState stream(const std::string& videoId) const;

    void setLinkUp(bool up);
    [[nodiscard]] bool isLinkUp() const;

    /// Replaces the plan; an empty one lets everything pass.
    void setFaultPlan(FaultPlan plan);
    void setEventFaultPlan(EventFaultPlan plan);

    /// The next call of this operation that has no fault of its own yet meets this one. May be said several times ahead.
    void faultNext(CloudOperation operation, Fault fault);

    /// Every open subscription fails now, with the link up.
    void dropSubscriptions();

    /// Moments of these ids cannot be read by this client's library: they are left out of what it fetches.
    void setUnreadable(std::vector<std::string> momentIds);

    /// The subscriptions whose handlers this client still holds: those that failed, too, until they are cancelled.
    [[nodiscard]] std::size_t numberOfUncancelledSubscriptions() const;
    /// Those that were asked for and have neither opened nor failed.
    [[nodiscard]] std::size_t numberOfOpeningSubscriptions() const;
    [[nodiscard]] std::size_t numberOfCallsUnderWay() const;
    [[nodiscard]] std::size_t numberOfEventsUnderWay() const;  ///< to subscriptions that have not failed

private:
    CloudService& service_;
    StreamUplink uplink_;
    std::shared_ptr<CloudConnection> connection_;
    std::shared_ptr<RemoteCoding::TevuGraphQLClientProtocol> graphQLClient_;
    std::unique_ptr<RemoteCoding::SyncLibraryProtocol> syncLibrary_;
    std::shared_ptr<RemoteCoding::TevuTeamServiceProtocol> teamService_;
};

}  // namespace ReferenceHost
