#include "Apps/CodingDesk/Scenarios/Play.hpp"

#include "Apps/CodingDesk/SessionWords.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <utility>
#include <vector>

namespace CodingDesk::Scenarios {

namespace TraceKind = ReferenceHost::TraceKind;

void startCapture(Seat& seat) {
    seat.at([](Workplace& workplace) {
        workplace.startCapture(Scenery::timeline,
                               {{"Attack", {196, 60, 54}}, {shot, {52, 120, 190}}, {"Save", {70, 150, 90}}});
    });
}

void waitForAlerts(VirtualSeat& seat) {
    seat.waitUntil("the alerts had come",
                   [](Workplace& workplace) { return workplace.person().alertsToCome().empty(); });
    seat.lookAround();
}

std::string host(Stage& stage, VirtualSeat& seat) {
    startCapture(seat);
    SessionWindows::createSession(seat);
    SessionWindows::waitForSharing(seat);
    seat.waitUntil("the session was live", [](Workplace& workplace) {
        return workplace.session() &&
               workplace.session()->status == RemoteCoding::RemoteCodingSessionStatus::live;
    });
    return stage.world().cloud.primarySessionOf(seat.workplace().session()->tevuVideoId).value();
}

void join(VirtualSeat& seat) {
    SessionWindows::joinSession(seat);
    SessionWindows::waitForSharing(seat);
}

void tag(Stage& stage, VirtualSeat& seat, double start) {
    constexpr double length = 4;
    stage.tell(seat.name() + " tags a shot, " + matchTime(start) + "–" + matchTime(start + length) + '.');
    seat.at([&](Workplace& workplace) {
        const auto& timeline = workplace.timeline();
        timeline->addInstance(timeline->findRowNamed(shot)->uniqueId(), start, start + length);
    });
}

std::size_t shots(VirtualSeat& seat) {
    const MatchState state = seat.workplace().state();
    return static_cast<std::size_t>(std::ranges::count(state.clips, shot, &ClipState::row));
}

void tellSynchronisation(Stage& stage, VirtualSeat& seat) {
    stage.tell(seat.name() + "'s synchronisation " + inWords(seat.workplace().status()) + '.');
}

void tellLog(Stage& stage, const VirtualSeat& seat, std::size_t from) {
    std::vector<std::pair<std::string, std::size_t>> lines;  // and how often
    for (const auto& entry : stage.world().trace.entries(from)) {
        const bool isError = entry.kind == TraceKind::logError;
        if (entry.host != seat.name() || (!isError && entry.kind != TraceKind::logWarn)) {
            continue;
        }
        const std::string line = (isError ? "error " : "warning ") + quoted(entry.field("message"));
        const auto known = std::ranges::find(lines, line, &std::pair<std::string, std::size_t>::first);
        if (known == lines.end()) {
            lines.emplace_back(line, 1);
        } else {
            ++known->second;
        }
    }
    for (const auto& [line, number] : lines) {
        stage.tell(seat.name() + "'s log: " + line +
                   (number > 1 ? ", " + std::to_string(number) + " times" : ""));
    }
}

std::size_t questionsAboutVideo(Stage& stage, const VirtualSeat& seat) {
    const auto calls = stage.world().trace.entries(seat.name(), TraceKind::call);
    return static_cast<std::size_t>(
        std::ranges::count_if(calls, [](const auto& entry) { return entry.field("name") == "getVideo"; }));
}

void expectLastMessage(Stage& stage, VirtualSeat& seat, const std::string& message) {
    const auto& seen = seat.workplace().person().messagesSeen();
    stage.expectEqual("what " + seat.name() + " was told or asked", seen.empty() ? "" : seen.back(), message);
}

void expectSessionGoesOn(Stage& stage, VirtualSeat& seat) {
    using Status = RemoteCoding::RemoteCodingSessionStatus;
    const auto session = seat.workplace().session();
    stage.expect(session && session->status == (session->isHost ? Status::live : Status::starting),
                 "the session goes on for " + seat.name());
}

}  // namespace CodingDesk::Scenarios
