#include "Apps/Simulator/Seat.hpp"

#include "Apps/Simulator/AnalystNames.hpp"
#include "Apps/Simulator/Pictures.hpp"
#include "Apps/Simulator/Sessions.hpp"

#include <any>
#include <chrono>

namespace Simulator {

namespace {

constexpr std::chrono::seconds readingTime{3};   // of an alert
constexpr std::chrono::seconds longestJoin{15};  // opening, the component's own wait, an alert in between
constexpr Base::Seconds fragmentLength{8};

ReferenceHost::HostOptions optionsOf(const std::string& name, std::uint64_t seed,
                                     ReferenceHost::LogManager::Sink sink) {
    ReferenceHost::HostOptions options;
    options.userId = name;
    options.seed = seed;
    options.logSink = std::move(sink);
    return options;
}

}  // namespace

Seat::Seat(World& world, std::size_t index)
    : world_(world),
      name_(analystName(index)),
      execution_(world.time, name_, &world.trace),
      host_(name_, execution_, world.cloud, world.trace,
            optionsOf(name_, world.plan.seed,
                      [this](ReferenceHost::LogLevel level, std::string_view line) { didLog(level, line); })),
      component_(RemoteCoding::RemoteCodingComponent::make(host_.environment())) {
    host_.setRemoteCodingComponent(component_);
    host_.capture().setDevices({std::make_shared<ReferenceHost::CaptureDevice>("Camera")});
    host_.timelines().liveShares.openingTime = Base::Seconds(0.4);
    observer_ = host_.notificationCenter().addObserver(
        RemoteCoding::Notifications::remoteCodingSessionUpdatedNotification, nullptr,
        [this](const RemoteCoding::Notification&) { look(); });
    answerAlerts();
}

Seat::~Seat() { shutDown(); }

bool Seat::shutDown() {
    if (!component_) {
        return true;
    }
    host_.notificationCenter().removeObserver(observer_);
    host_.person().onAlert({});
    player_.reset();
    host_.stop();
    const std::weak_ptr<RemoteCoding::RemoteCodingComponent> watched = component_;
    component_.reset();
    return watched.expired();
}

// The alert blocks the main thread until then.
void Seat::answerAlerts() {
    host_.person().onAlert([this](const RemoteCoding::Alert& alert) {
        world_.scheduler.postAfter(readingTime, [this, button = ReferenceHost::buttonTitles(alert).front()] {
            if (host_.person().alert()) {
                host_.person().answer(button);
            }
        });
    });
}

std::shared_ptr<ReferenceHost::Timeline> Seat::timeline() {
    return timeline_ && host_.timelines().findTimeline(timeline_->uniqueId()) ? timeline_ : nullptr;
}

void Seat::joins(std::optional<std::string> taggingSessionId) {
    joiningUntil_ = world_.time.now() + longestJoin;
    joinedSessionId_ = std::move(taggingSessionId).value_or(std::string());
    expectStay();
}

// ---- stays ----

void Seat::look() {
    if (isEnding_) {
        endStay();
    }
    if (!stay_ && component_) {
        for (const auto& timeline : host_.timelines().openTimelines()) {
            if (const auto session = component_->sessionDetails(timeline->uniqueId())) {
                code(timeline);
                beginStay(*session);
                break;
            }
        }
    }
    lastLook_ = world_.trace.size();
}

void Seat::beginStay(const RemoteCoding::RemoteCodingSessionDetails& session) {
    Stay stay;
    stay.analyst = name_;
    stay.client = host_.cloudClient().id();
    stay.timelineId = session.timelineId;
    stay.videoId = session.tevuVideoId;
    stay.sessionId = session.isHost ? std::string() : joinedSessionId_;
    stay.isHost = session.isHost;
    stay.from = lastLook_;
    stay_ = world_.stays.size();
    stayTimeline_ = timeline_;
    world_.stays.push_back(std::move(stay));
    joiningUntil_ = Base::Seconds(0);
    recordStay("begins");
    if (!session.isHost) {
        shownVideo_ = session.tevuVideoId;
        ReferenceHost::PlayerSettings settings;
        settings.fragmentLength = fragmentLength;
        settings.asksForManifest = false;
        player_ = ReferenceHost::Player::make(host_, session.timelineId, session.tevuVideoId, settings);
        player_->start();
    }
}

// Inside the component's own end of the session. The component itself is asked later: a log must not call it.
void Seat::didLog(ReferenceHost::LogLevel level, std::string_view line) {
    if (level == ReferenceHost::LogLevel::usage && line.starts_with("SessionEnded") && stay_) {
        if (!stay()->lasts) {
            lookAtTimeline();
        }
        isEnding_ = true;
    }
}

void Seat::lookAtStay() {
    if (stay_) {
        lookAtTimeline();
        lookAtStatus();
    }
}

void Seat::lookAtTimeline() {
    Stay& stay = world_.stays[*stay_];
    stay.picture = pictureOf(*stayTimeline_);
    stay.isClosed = !host_.timelines().findTimeline(stay.timelineId);
}

void Seat::lookAtStatus() {
    Stay& stay = world_.stays[*stay_];
    stay.status = component_->synchronisationStatus(stay.timelineId).value_or(stay.status);
}

void Seat::endStay() {
    isEnding_ = false;
    if (!stay()->lasts) {
        lookAtStatus();
    }
    recordStay("ends");
    world_.stays[*stay_].to = world_.trace.size();
    stay_.reset();
    stayTimeline_.reset();
}

void Seat::recordStay(const char* state) {
    const Stay& stay = world_.stays[*stay_];
    world_.record(name_, SimulatedKind::stay,
                  {{"state", state},
                   {"timelineId", stay.timelineId},
                   {"sessionId", stay.sessionId},
                   {"role", stay.isHost ? "host" : "guest"}});
}

// ---- what is asked of it ----

Deed Seat::prepare(const Step& step, std::size_t number) {
    if (auto edit = edits_.prepare(step, number)) {
        return *std::move(edit);
    }
    if (auto fault = faults_.prepare(step)) {
        return *std::move(fault);
    }
    return prepareSession(*this, step);
}

std::vector<std::string> Seat::underWay() {
    std::vector<std::string> found;
    const auto add = [&](std::size_t number, const char* what) {
        if (number > 0) {
            found.push_back(name_ + ": " + std::to_string(number) + ' ' + what);
        }
    };
    add(isJoining() ? 1 : 0, "join");
    add(host_.unfinishedTasks(), "unfinished tasks");
    add(host_.cloudClient().numberOfCallsUnderWay(), "calls under way");
    add(host_.cloudClient().numberOfEventsUnderWay(), "events under way");
    add(host_.cloudClient().numberOfOpeningSubscriptions(), "subscriptions being opened");
    if (stay_) {
        using Activity = RemoteCoding::SynchronisationStatus::Activity;
        const auto status = component_->synchronisationStatus(stay()->timelineId);
        if (status && status->activity == Activity::working) {
            found.push_back(name_ + ": the synchronisation works");
        }
        if (status && status->activity == Activity::waitingToReconnect) {
            found.push_back(name_ + ": reconnection attempt " + std::to_string(status->reconnectionAttempt));
        }
    }
    return found;
}

void Seat::leave(bool captureGoesOn) {
    if (!stay_) {
        return;
    }
    const std::string timelineId = stay()->timelineId;
    if (stay()->isHost) {
        component_->endRemoteCodingSession(timelineId);
        if (!captureGoesOn) {
            host_.stopCapture();
        }
        world_.offer.reset();
    } else {
        component_->exitRemoteCodingSession(timelineId);
        host_.timelines().stopLiveShareWithTimelineId(timelineId);
    }
}

}  // namespace Simulator
