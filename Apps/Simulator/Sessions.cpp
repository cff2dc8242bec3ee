#include "Apps/Simulator/Sessions.hpp"

#include "Apps/Simulator/SessionFailures.hpp"

#include <array>
#include <utility>

namespace Simulator {

namespace {

constexpr std::chrono::seconds answeringTime{2};  // of a question

void addRows(ReferenceHost::Timeline& timeline, std::uint32_t choice) {
    static constexpr std::array<std::pair<const char*, Base::Color>, 6> rows{
        {{"Attack", {196, 60, 54}},
         {"Shot", {52, 120, 190}},
         {"Save", {70, 150, 90}},
         {"Turnover", {230, 170, 40}},
         {"Foul", {130, 90, 170}},
         {"Substitution", {90, 90, 90}}}};
    const std::size_t number = 3 + choice % 4;
    for (std::size_t index = 0; index < number; ++index) {
        timeline.addRow(rows[index].first, rows[index].second);
    }
}

Deed prepareClosing(Seat& seat) {
    const auto timeline = seat.timeline();
    if (!timeline) {
        return nothingToDo("no timeline is open");
    }
    return doing([&seat, id = timeline->uniqueId()] { seat.host().closeTimeline(id); });
}

Deed prepareLeaving(Seat& seat, const Step& step) {
    return seat.stay() != nullptr ? doing([&seat, step] { seat.leave(step.object % 2 == 1); })
                                  : nothingToDo("in no session");
}

Deed prepareLeavingByPrompt(Seat& seat, const Step& step) {
    const Stay* stay = seat.stay();
    const auto window = stay != nullptr ? seat.host().timelines().windowOf(stay->timelineId) : nullptr;
    if (!window || window->sheet() != nullptr) {
        return nothingToDo("there is no window to ask on");
    }
    const bool isHost = stay->isHost;
    return doing([&seat, step, window, isHost, timelineId = stay->timelineId] {
        const bool saysNo = step.object % 2 == 1;
        const auto on = saysNo && step.other % 2 == 1 ? nullptr : window;
        if (isHost) {
            seat.component().promptEndRemoteCodingSession(on, timelineId);
        } else {
            seat.component().promptExitRemoteCodingSession(on, timelineId);
        }
        seat.execution().postToMainAfter(answeringTime, [&seat, window, saysNo, isHost] {
            if (const auto* sheet = window->sheet()) {
                const auto buttons = ReferenceHost::buttonTitles(*sheet);
                ReferenceHost::WindowOnScreen(window).answerSheet(saysNo ? buttons.front() : buttons.back());
            }
            if (isHost && !saysNo) {
                seat.world().offer.reset();
            }
        });
    });
}

Deed prepareStreamsEnd(Seat& seat) {
    if (!seat.isHosting() || !seat.host().capture().publication()) {
        return nothingToDo("publishes nothing");
    }
    return doing([&seat] {
        seat.host().capture().stopPublishing();
        seat.component().streamEnded(seat.stay()->timelineId);
        seat.world().offer.reset();
    });
}

}  // namespace

void publish(Seat& seat, const Step& step) {
    auto& host = seat.host();
    const bool goesOn =
        step.object % 2 == 1 && host.timelines().capturingTimeline() && host.capture().isCapturing();
    if (!goesOn) {
        host.stopCapture();
        const auto timeline = host.startCapture("Capture of " + seat.name());
        addRows(*timeline, step.other);
        seat.code(timeline);
    }
    askToPublish(seat);
}

void askToPublish(Seat& seat) {
    World& world = seat.world();
    const Offer video = world.addVideo();
    seat.expectStay();
    const auto devices = seat.host().capture().selectedCaptureDevices();
    const auto created = seat.component().createNewRemoteCodingSession(
        video.title, ReferenceHost::makePublishSession(video.videoId), World::teamId, devices.front());
    seat.look();
    if (created.succeeded() && seat.isHosting()) {
        world.offer = video;
    }
}

void join(Seat& seat, const std::optional<std::string>& taggingSessionId) {
    const Offer& offer = *seat.world().offer;
    seat.joins(taggingSessionId);
    RemoteCoding::ShareFile file;
    file.video.identifier = offer.videoId;
    file.video.name = offer.title;
    seat.component().joinRemoteCodingSession(file, "Camera", offer.videoId, World::teamId, taggingSessionId);
}

Deed prepareHosting(Seat& seat, const Step& step) {
    if (seat.stay() != nullptr || seat.isJoining() || seat.world().offer) {
        return nothingToDo("a session is live");
    }
    return doing([&seat, step] { publish(seat, step); });
}

Deed prepareJoining(Seat& seat, const Step& step) {
    World& world = seat.world();
    const Stay* stay = seat.stay();
    if (!world.offer || seat.isJoining()) {
        return nothingToDo("no session is live");
    }
    if (stay != nullptr && (stay->isHost || stay->videoId == world.offer->videoId)) {
        return nothingToDo("in a session already");
    }
    return doing([&seat, &world, step] {
        seat.leave();
        // A timeline shows one video for good.
        const bool again =
            step.object % 2 == 1 && seat.timeline() && seat.shownVideo() == world.offer->videoId;
        auto& liveShares = seat.host().timelines().liveShares;
        liveShares.onTimeline = again ? std::optional(seat.timeline()->uniqueId()) : std::nullopt;
        join(seat, world.cloud.primarySessionOf(world.offer->videoId));
        liveShares.onTimeline.reset();
    });
}

Deed prepareSession(Seat& seat, const Step& step) {
    switch (step.action) {
    case Action::closeTimeline:
        return prepareClosing(seat);
    case Action::leave:
        return prepareLeaving(seat, step);
    case Action::leaveByPrompt:
        return prepareLeavingByPrompt(seat, step);
    case Action::streamEnds:
        return prepareStreamsEnd(seat);
    case Action::join:
        return prepareJoining(seat, step);
    case Action::host:
        return prepareHosting(seat, step);
    default:
        return prepareFailingSession(seat, step);
    }
}

}  // namespace Simulator
