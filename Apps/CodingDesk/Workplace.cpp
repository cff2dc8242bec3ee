#include "Apps/CodingDesk/Workplace.hpp"

#include "Apps/CodingDesk/Cast.hpp"

#include <any>
#include <utility>

namespace CodingDesk {

namespace {

const char* const cameraName = "Camera 1, main stand";

ReferenceHost::HostOptions hostOptions(AnalystIndex analyst, std::uint64_t seed) {
    ReferenceHost::HostOptions options;
    options.userId = "user " + std::to_string(analyst + 1);
    options.seed = seed;
    return options;
}

}  // namespace

Workplace::Workplace(AnalystIndex analyst, ReferenceHost::RunLoop& loop, World& world, Arrivals& arrivals,
                     std::uint64_t seed, SessionListener listener)
    : analyst_(analyst),
      world_(world),
      arrivals_(arrivals),
      listener_(std::move(listener)),
      execution_(loop, world.pool, world.scheduler, std::string(castName(analyst)), &world.trace),
      host_(std::string(castName(analyst)), execution_, world.cloud, world.trace, hostOptions(analyst, seed)),
      component_(RemoteCoding::RemoteCodingComponent::make(host_.environment())) {
    host_.setRemoteCodingComponent(component_);
    observer_ = host_.notificationCenter().addObserver(
        RemoteCoding::Notifications::remoteCodingSessionUpdatedNotification, nullptr,
        [this](const RemoteCoding::Notification& notification) {
            const auto details = notification.userInfo.find("sessionDetails");
            if (details != notification.userInfo.end()) {
                sessionDidChange(
                    std::any_cast<const RemoteCoding::RemoteCodingSessionDetails&>(details->second));
            }
        });
}

Workplace::~Workplace() {
    host_.notificationCenter().removeObserver(observer_);
    watcher_.reset();
    coder_.reset();
    host_.stop();
    component_.reset();
}

void Workplace::publish(const SessionAddress& address, const std::vector<PlannedRow>& rows) {
    const auto timeline = host_.startCapture(address.name);
    for (const PlannedRow& row : rows) {
        timeline->addRow(row.name, row.color);
    }
    component_
        ->createNewRemoteCodingSession(address.name, ReferenceHost::makePublishSession(address.videoId),
                                       address.teamId,
                                       std::make_shared<ReferenceHost::CaptureDevice>(cameraName))
        .value();
}

void Workplace::join(const SessionAddress& address) {
    const RemoteCoding::SharedVideo video(
        address.videoId, address.name, std::nullopt, false,
        {RemoteCoding::SharedMediaStream("stream 1", cameraName, "https://live.example/" + address.videoId,
                                         "")},
        {});
    component_->joinRemoteCodingSession(RemoteCoding::ShareFile(video, 0), cameraName, address.videoId,
                                        address.teamId, address.taggingSessionId);
}

void Workplace::sessionDidChange(const RemoteCoding::RemoteCodingSessionDetails& details) {
    if (!timeline_) {
        timeline_ = host_.timelines().findTimeline(details.timelineId);
        watcher_ = std::make_unique<TimelineWatcher>(analyst_, timeline_, host_.notificationCenter(),
                                                     arrivals_, world_);
        coder_ = std::make_unique<Coder>(analyst_, timeline_, arrivals_, world_);
    }
    listener_(details);
}

std::optional<RemoteCoding::SynchronisationStatus> Workplace::status() const {
    return timeline_ ? component_->synchronisationStatus(timeline_->uniqueId()) : std::nullopt;
}

std::int64_t Workplace::modifyCount() const { return timeline_ ? timeline_->modifyCount() : 0; }

std::string Workplace::timelineId() const { return timeline_ ? timeline_->uniqueId() : std::string{}; }

MatchState Workplace::state() const {
    MatchState state;
    if (!timeline_) {
        return state;
    }
    const auto rows = timeline_->allRows();
    for (const auto& row : *rows) {
        state.rows.push_back({row->name(), row->color()});
        const auto instances = row->allInstances();
        for (const auto& instance : *instances) {
            const auto values = dynamic_cast<const ReferenceHost::TimelineInstance&>(*instance).values();
            state.clips.push_back({instance->externalId(), row->name(), values.startTime, values.endTime});
        }
    }
    return state;
}

void Workplace::endSession() {
    if (!timeline_ || !component_->sessionDetails(timeline_->uniqueId())) {
        return;
    }
    if (component_->isActiveSessionCollaborator(timeline_->uniqueId())) {
        component_->exitRemoteCodingSession(timeline_->uniqueId());
    } else {
        component_->endRemoteCodingSession(timeline_->uniqueId());
        host_.stopCapture();
    }
}

}  // namespace CodingDesk
