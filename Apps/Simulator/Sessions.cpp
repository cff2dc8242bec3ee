#include "Apps/Simulator/Sessions.hpp"

#include "Apps/Simulator/Seat.hpp"
#include "ReferenceHost/Timeline/CaptureComponent.hpp"

#include <array>
#include <utility>

namespace Simulator {

namespace {

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

void publish(Seat& seat) {
    World& world = seat.world();
    const Offer video = world.addVideo();
    const auto devices = seat.host().capture().selectedCaptureDevices();
    const auto created = seat.component().createNewRemoteCodingSession(
        video.title, ReferenceHost::makePublishSession(video.videoId), World::teamId, devices.front());
    seat.look();
    if (created.succeeded() && seat.isHosting()) {
        world.offer = video;
    }
}

Deed prepareLeaving(Seat& seat) {
    return seat.stay() != nullptr ? doing([&seat] { seat.leave(); }) : nothingToDo("in no session");
}

Deed prepareClosing(Seat& seat) {
    const auto timeline = seat.timeline();
    if (!timeline) {
        return nothingToDo("no timeline is open");
    }
    return doing([&seat, id = timeline->uniqueId()] { seat.host().closeTimeline(id); });
}

}  // namespace

Deed prepareHosting(Seat& seat, const Step& step) {
    if (seat.stay() != nullptr || seat.isJoining() || seat.world().offer) {
        return nothingToDo("a session is live");
    }
    return doing([&seat, step] {
        auto& host = seat.host();
        const bool goesOn =
            step.object % 2 == 1 && host.timelines().capturingTimeline() && host.capture().isCapturing();
        if (!goesOn) {
            host.stopCapture();
            const auto timeline = host.startCapture("Capture of " + seat.name());
            addRows(*timeline, step.other);
            seat.code(timeline);
        }
        publish(seat);
    });
}

Deed prepareJoining(Seat& seat, const Step& step) {
    World& world = seat.world();
    if (seat.stay() != nullptr || seat.isJoining()) {
        return nothingToDo("in a session already");
    }
    if (!world.offer) {
        return nothingToDo("no session is live");
    }
    return doing([&seat, &world, step] {
        const auto sessionId = world.cloud.primarySessionOf(world.offer->videoId);
        seat.joins(sessionId);
        RemoteCoding::ShareFile file;
        file.video.identifier = world.offer->videoId;
        file.video.name = world.offer->title;
        seat.component().joinRemoteCodingSession(file, "Camera", world.offer->videoId, World::teamId,
                                                 sessionId);
    });
}

Deed prepareSession(Seat& seat, const Step& step) {
    switch (step.action) {
    case Action::closeTimeline:
        return prepareClosing(seat);
    case Action::leave:
        return prepareLeaving(seat);
    case Action::join:
        return prepareJoining(seat, step);
    case Action::host:
        return prepareHosting(seat, step);
    default:
        return nothingToDo("nobody knows how");
    }
}

}  // namespace Simulator
