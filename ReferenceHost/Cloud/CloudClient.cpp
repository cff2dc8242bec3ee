#include "ReferenceHost/Cloud/CloudClient.hpp"

#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudGraphQLClient.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/CloudSyncLibrary.hpp"
#include "ReferenceHost/Cloud/CloudTeamService.hpp"

#include <utility>

namespace ReferenceHost {

CloudClient::CloudClient(CloudService& service, Base::ExecutionProtocol& execution, Trace& trace,
                         std::string host, CloudClientSettings settings)
    : service_(service),
      uplink_(service.videos()),
      connection_(std::make_shared<CloudConnection>(service, execution, trace, std::move(host), settings)),
      graphQLClient_(std::make_shared<CloudGraphQLClient>(connection_)),
      syncLibrary_(std::make_unique<CloudSyncLibrary>(connection_)),
      teamService_(std::make_shared<CloudTeamService>(connection_)) {}

CloudClient::~CloudClient() {
    uplink_.setLinkUp(false);
    connection_->close();
}

std::shared_ptr<RemoteCoding::TevuGraphQLClientProtocol> CloudClient::graphQLClient() const {
    return graphQLClient_;
}

RemoteCoding::SyncLibraryProtocol& CloudClient::syncLibrary() const { return *syncLibrary_; }

std::shared_ptr<RemoteCoding::TevuTeamServiceProtocol> CloudClient::teamService() const {
    return teamService_;
}

void CloudClient::signIn(const std::string& userId) { connection_->signIn(userId); }

void CloudClient::signOut() { connection_->signOut(); }

std::uint64_t CloudClient::id() const { return connection_->client(); }

std::uint64_t CloudClient::lastWriter() const { return connection_->lastWriter(); }

void CloudClient::publish(const std::string& videoId, StreamState stream) {
    uplink_.publish(videoId, stream);
}

StreamState CloudClient::stream(const std::string& videoId) const {
    return isLinkUp() ? service_.videos().stream(videoId) : StreamState::interrupted;
}

void CloudClient::setLinkUp(bool up) {
    connection_->setLinkUp(up);
    uplink_.setLinkUp(up);
}

bool CloudClient::isLinkUp() const { return connection_->isLinkUp(); }

void CloudClient::setFaultPlan(FaultPlan plan) { connection_->setFaultPlan(std::move(plan)); }

void CloudClient::setEventFaultPlan(EventFaultPlan plan) { connection_->setEventFaultPlan(std::move(plan)); }

void CloudClient::faultNext(CloudOperation operation, Fault fault) {
    connection_->faultNext(operation, fault);
}

void CloudClient::dropSubscriptions() { connection_->dropSubscriptions(); }

void CloudClient::setUnreadable(std::vector<std::string> momentIds) {
    connection_->setUnreadable(std::move(momentIds));
}

std::size_t CloudClient::numberOfUncancelledSubscriptions() const {
    return connection_->numberOfUncancelledSubscriptions();
}

std::size_t CloudClient::numberOfOpeningSubscriptions() const {
    return connection_->numberOfOpeningSubscriptions();
}

std::size_t CloudClient::numberOfCallsUnderWay() const { return connection_->numberOfCallsUnderWay(); }

std::size_t CloudClient::numberOfEventsUnderWay() const { return connection_->numberOfEventsUnderWay(); }

}  // namespace ReferenceHost
