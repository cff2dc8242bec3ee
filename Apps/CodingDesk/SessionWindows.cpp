#include "Apps/CodingDesk/SessionWindows.hpp"

#include "Apps/CodingDesk/Scenery.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <functional>

namespace CodingDesk::SessionWindows {

namespace {

/// One thing after another, as a person does them.
void act(Seat& seat, const std::function<void(Person&)>& deed) {
    seat.lookAround();
    seat.at([&](Workplace& workplace) { deed(workplace.person()); });
}

void answer(Seat& seat, const std::string& button) {
    seat.waitUntil("the question appeared", [](Workplace& workplace) {
        return workplace.person().window(workplace.timelineWindow()).sheet().has_value();
    });
    seat.at([](Workplace& workplace) { workplace.person().looksAtSheet(workplace.timelineWindow()); });
    seat.lookAround();
    seat.at(
        [&](Workplace& workplace) { workplace.person().answersSheet(workplace.timelineWindow(), button); });
    seat.lookAround();
}

void waitForEnd(Seat& seat) {
    seat.waitUntil("the session was over",
                   [](Workplace& workplace) { return !workplace.session().has_value(); });
    seat.lookAround();
}

}  // namespace

void openNewSession(Seat& seat) {
    seat.at([](Workplace& workplace) {
        workplace.person().wants("to start a session");
        workplace.component().openCreateSharingSessionWindow();
    });
}

void openJoinSession(Seat& seat) {
    seat.at([](Workplace& workplace) {
        workplace.person().wants("to join a session");
        workplace.component().openJoinSharingSessionWindow();
    });
}

void waitForSignIn(Seat& seat, const std::string& window) {
    seat.waitUntil("the window " + quoted(window) + " asked to sign in", [&](Workplace& workplace) {
        return workplace.person().sees(window) && workplace.person().window(window).asksToSignIn();
    });
}

// A list of sessions that comes late would replace that of the team chosen next: so until nothing is under way.
void waitForTeams(Seat& seat, const std::string& window) {
    seat.waitUntil("the window " + quoted(window) + " offered teams", [&](Workplace& workplace) {
        const Person& person = workplace.person();
        return person.sees(window) && !person.window(window).asksToSignIn() &&
               !person.window(window).items(seat.titles().team).empty();
    });
    seat.lookAround();
    seat.waitUntil("the window " + quoted(window) + " had everything", [](Workplace& workplace) {
        return workplace.host().cloudClient().numberOfCallsUnderWay() == 0;
    });
}

void fillInNewSession(Seat& seat, const std::string& feed, const std::string& name, const std::string& team) {
    const WindowTitles& titles = seat.titles();
    act(seat, [&](Person& person) { person.ticks(titles.newSession, titles.feeds, feed); });
    act(seat, [&](Person& person) { person.types(titles.newSession, titles.videoName, name); });
    act(seat, [&](Person& person) { person.chooses(titles.newSession, titles.team, team); });
    act(seat, [&](Person& person) { person.looksAt(titles.newSession); });
    act(seat, [&](Person& person) { person.presses(titles.newSession, titles.createSession); });
}

void chooseSession(Seat& seat, const std::string& team, const std::string& session) {
    const WindowTitles& titles = seat.titles();
    act(seat, [&](Person& person) { person.chooses(titles.joinSession, titles.team, team); });
    seat.waitUntil("the session was listed", [&](Workplace& workplace) {
        const auto rows = workplace.person().window(titles.joinSession).rows(titles.sessions);
        return std::ranges::any_of(
            rows, [&](const auto& cells) { return std::ranges::find(cells, session) != cells.end(); });
    });
    act(seat, [&](Person& person) { person.selects(titles.joinSession, titles.sessions, session); });
    act(seat, [&](Person& person) { person.looksAt(titles.joinSession); });
    act(seat, [&](Person& person) { person.presses(titles.joinSession, titles.join); });
}

void waitForSharing(Seat& seat) {
    seat.waitUntil("the timeline was shared", [](Workplace& workplace) {
        const auto status = workplace.status();
        return status && status->isSettled() && status->receivesChanges;
    });
}

void createSession(Seat& seat) {
    openNewSession(seat);
    waitForTeams(seat, seat.titles().newSession);
    fillInNewSession(seat, Scenery::mainStand, Scenery::session, Scenery::team);
}

void joinSession(Seat& seat) {
    openJoinSession(seat);
    waitForTeams(seat, seat.titles().joinSession);
    chooseSession(seat, Scenery::team, Scenery::session);
}

void askToEnd(Seat& seat, const std::string& button) {
    seat.at([](Workplace& workplace) {
        workplace.person().wants("to end the session");
        workplace.component().promptEndRemoteCodingSession(
            workplace.host().timelines().windowOf(workplace.timelineId()), workplace.timelineId());
    });
    answer(seat, button);
}

void askToLeave(Seat& seat, const std::string& button) {
    seat.at([](Workplace& workplace) {
        workplace.person().wants("to leave the session");
        workplace.component().promptExitRemoteCodingSession(
            workplace.host().timelines().windowOf(workplace.timelineId()), workplace.timelineId());
    });
    answer(seat, button);
}

void endSession(Seat& seat) {
    askToEnd(seat, seat.titles().endSession);
    waitForEnd(seat);
}

void leaveSession(Seat& seat) {
    askToLeave(seat, seat.titles().exitSession);
    waitForEnd(seat);
}

}  // namespace CodingDesk::SessionWindows
