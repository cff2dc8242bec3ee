#include "Apps/CodingDesk/Workplace.hpp"

#include "Apps/CodingDesk/Cast.hpp"
#include "Apps/CodingDesk/Scenery.hpp"
#include "Apps/CodingDesk/SessionWords.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <any>
#include <utility>

namespace CodingDesk {

namespace {

constexpr Base::Seconds fragmentLength{2};  // of what the player loads at a time

ReferenceHost::HostOptions hostOptions(AnalystIndex analyst, std::uint64_t seed, bool isSignedIn) {
    ReferenceHost::HostOptions options;
    if (isSignedIn) {
        options.userId = castUser(analyst);
    }
    options.seed = seed;
    options.languages = castLanguages(analyst);
    return options;
}

}  // namespace

Workplace::Workplace(AnalystIndex analyst, ReferenceHost::ReportingExecution& execution,
                     const Surroundings& surroundings, bool isSignedIn)
    : analyst_(analyst),
      userId_(castUser(analyst)),
      surroundings_(surroundings),
      host_(std::string(castName(analyst)), execution, surroundings.world.cloud, surroundings.world.trace,
            hostOptions(analyst, surroundings.seed, isSignedIn)),
      person_(host_.name(), execution, host_.windowing(), surroundings.transcript),
      component_(RemoteCoding::RemoteCodingComponent::make(host_.environment())) {
    host_.setRemoteCodingComponent(component_);
    if (castLanguages(analyst).front() == "fr") {
        surroundings_.transcript.tell(host_.name() + "'s computer speaks French.");
    }
    host_.capture().setDevices({std::make_shared<ReferenceHost::CaptureDevice>(Scenery::mainStand),
                                std::make_shared<ReferenceHost::CaptureDevice>(Scenery::behindTheGoal)});
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
    player_.reset();
    host_.stop();
    component_.reset();
}

void Workplace::startCapture(const std::string& title, const std::vector<PlannedRow>& rows) {
    const auto timeline = host_.startCapture(title);
    for (const PlannedRow& row : rows) {
        timeline->addRow(row.name, row.color);
    }
    surroundings_.transcript.tell(host_.name() + " captures the match onto " + quoted(title) + '.');
}

void Workplace::sessionDidChange(const RemoteCoding::RemoteCodingSessionDetails& details) {
    if (details.timelineId != timelineId()) {
        openTimeline(details);
    }
    // Updates may repeat what they told.
    std::string told = news(host_.name(), details);
    if (told != lastTold_) {
        surroundings_.transcript.tell(told);
        lastTold_ = std::move(told);
    }
}

void Workplace::openTimeline(const RemoteCoding::RemoteCodingSessionDetails& details) {
    timeline_ = host_.timelines().findTimeline(details.timelineId);
    if (!timeline_) {
        return;
    }
    watcher_ = std::make_unique<TimelineWatcher>(analyst_, timeline_, host_.notificationCenter(),
                                                 surroundings_.arrivals, surroundings_.world);
    coder_ = std::make_unique<Coder>(analyst_, timeline_, surroundings_.arrivals, surroundings_.world);
    if (!details.isHost) {
        ReferenceHost::PlayerSettings settings;
        settings.fragmentLength = fragmentLength;
        player_ =
            ReferenceHost::Player::make(host_, details.timelineId, details.tevuVideoId, std::move(settings));
        player_->start();
    }
}

std::string Workplace::timelineWindow() {
    const auto window = timeline_ ? host_.timelines().windowOf(timeline_->uniqueId()) : nullptr;
    return window ? window->title() : std::string();
}

std::optional<RemoteCoding::RemoteCodingSessionDetails> Workplace::session() const {
    return timeline_ ? component_->sessionDetails(timeline_->uniqueId()) : std::nullopt;
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
    if (!session()) {
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
