#include "Benchmarks/Support/Desk.hpp"

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
    service_ = RemoteCoding::TimelineUploadService::make(
        *environment_, timeline_->uniqueId(), "9b1c7d52-1f4e-4a39-8d0b-6f0d1e2a3b4c",
        "c2a1e0d4-5b6f-4c7a-9e8d-1a2b3c4d5e6f", "0d9c8b7a-6f5e-4d3c-8b2a-1f0e9d8c7b6a", sessionId,
        library_.makeTaggingSessionService(), client_);
    execution_.runAll();
}

void Desk::pull(RemoteCoding::TaggingSessionItem session) {
    client_->setSession(std::move(session));
    bool succeeded = false;
    service_->syncRemoteTaggingSessionToLocalTimeline([&](bool pulled) { succeeded = pulled; });
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

void Desk::dropService() {
    execution_.stop();
    service_.reset();
}

void Desk::appendDirectly(const Moments& moments) {
    for (const auto& moment : moments) {
        const auto instance = moment->appendToTimeline(timeline_);
        table_.try_emplace(moment->identifier(), instance->uniqueId());
    }
}

}  // namespace Benchmarks
