#include "Benchmarks/Support/Desk.hpp"

#include "Benchmarks/Support/Allocations.hpp"

#include <stdexcept>
#include <utility>

namespace Benchmarks {

Desk::Desk() {
    ReferenceHost::Timeline::Options options;
    options.uniqueId = ids_.makeUUID();
    options.makeId = [this] { return ids_.makeUUID(); };
    options.didChange = [this](const std::shared_ptr<ReferenceHost::Timeline>& timeline) {
        notifications_.post(
            RemoteCoding::Notification(RemoteCoding::TimelineNotifications::timelineDidAnyChange, timeline));
    };
    timeline_ = ReferenceHost::Timeline::make(std::move(options));
    locator_.setTimelineComponent(std::make_shared<OneTimeline>(timeline_));
    environment_.reset(new RemoteCoding::HostEnvironment{.execution = execution_,
                                                         .componentLocator = locator_,
                                                         .notificationCenter = notifications_,
                                                         .userDefaults = userDefaults_,
                                                         .logManager = log_,
                                                         .account = account_,
                                                         .graphQLClient = client_,
                                                         .syncLibrary = library_,
                                                         .teamService = std::make_shared<NoTeams>(),
                                                         .windowing = windowing_,
                                                         .uuids = ids_});
}

Desk::~Desk() {
    execution_.stop();
    environment_->tasks.drop();
}

void Desk::join(RemoteCoding::TaggingSessionItem session) {
    client_->setSession(std::move(session));
    const SynchroniserIds ids{timeline_->uniqueId(), "9b1c7d52-1f4e-4a39-8d0b-6f0d1e2a3b4c",
                              "c2a1e0d4-5b6f-4c7a-9e8d-1a2b3c4d5e6f", "0d9c8b7a-6f5e-4d3c-8b2a-1f0e9d8c7b6a",
                              sessionId};
    synchroniser_ = makeSynchroniser(*environment_, ids, library_.makeTaggingSessionService(), client_);
    execution_.runAll();
}

void Desk::pull(RemoteCoding::TaggingSessionItem session) {
    client_->setSession(std::move(session));
    bool succeeded = false;
    synchroniser_->pull([&](bool pulled) { succeeded = pulled; });
    execution_.runAll();
    if (!succeeded) {
        throw std::runtime_error("The pull failed");
    }
}

void Desk::addRows(std::int64_t rows) {
    for (std::int64_t row = 0; row < rows; ++row) {
        timeline_->addRow(rowName(row), rowColor(row));
    }
}

void Desk::addClips(std::int64_t count, std::int64_t rows) {
    for (std::int64_t clip = 0; clip < count; ++clip) {
        const auto start = static_cast<double>(clip);
        timeline_->addInstance(timeline_->rowAt(clip % rows)->uniqueId(), start, start + 5,
                               "left wing, second half");
    }
}

void Desk::retimeRow(std::int64_t row) {
    const auto clips = timeline_->rowAt(row)->allInstances();
    for (const auto& clip : *clips) {
        const auto& ours = static_cast<const ReferenceHost::TimelineInstance&>(*clip);
        timeline_->retimeInstance(ours.uniqueId(), ours.startTime() + 1, ours.endTime() + 1);
    }
}

void Desk::dropSynchroniser() {
    execution_.stop();
    synchroniser_.reset();
}

std::shared_ptr<RemoteCoding::TimelineInstanceProtocol> Desk::append(const RemoteCoding::MomentItem& moment) {
    return moment.appendToTimeline(timeline_);
}

void Desk::update(const RemoteCoding::MomentItem& moment, const Place& place) {
    const auto instance = moment.updateOnTimeline(timeline_, place.instanceId, place.rowId);
    instance->setExternalId(moment.identifier());
}

void Desk::remove(const Place& place) {
    timeline_->codingTarget()->removeInstanceWithRowId(place.rowId, place.instanceId);
}

void Desk::appendAll(const Moments& moments) {
    for (const auto& moment : moments) {
        (void)append(*moment);
    }
}

std::vector<Place> Desk::placesOf(const Moments& moments) const {
    std::vector<Place> places;
    places.reserve(moments.size());
    for (const auto& moment : moments) {
        const auto instance = timeline_->findInstanceOf(moment->identifier());
        places.push_back({instance->uniqueId(), instance->row()->uniqueId()});
    }
    return places;
}

void Desk::remember(const std::string& momentId, const std::string& instanceId) {
    withoutCountingAllocations([&] { table_.try_emplace(momentId, instanceId); });
}

std::shared_ptr<Desk> joinedDesk(const Moments& moments) {
    auto desk = std::make_shared<Desk>();
    desk->join(makeSession(moments));
    desk->upload();
    return desk;
}

}  // namespace Benchmarks
