#include "Apps/CodingDesk/Scenarios/Play.hpp"

#include <functional>
#include <string>

namespace CodingDesk::Scenarios {

namespace {

using namespace std::chrono_literals;

void switchLink(Stage& stage, VirtualSeat& seat, bool up) {
    stage.tell(seat.name() + "'s network " + (up ? "is back." : "goes down."));
    seat.workplace().setLinkUp(up);
}

void willAnswer(VirtualSeat& seat, const char* message, const std::string& button,
                const std::function<void()>& meanwhile = {}) {
    seat.at([&](Workplace& workplace) { workplace.person().willAnswer(message, button, meanwhile); });
}

void noTeams(Stage& stage, VirtualSeat& ana) {
    const WindowTitles& titles = ana.titles();
    switchLink(stage, ana, false);
    willAnswer(ana, AlertMessages::noTeams, titles.retry);
    willAnswer(ana, AlertMessages::noTeams, titles.cancel);
    SessionWindows::openNewSession(ana);
    waitForAlerts(ana);
    ana.at([&](Workplace& workplace) {
        workplace.person().looksAt(titles.newSession);
        stage.expect(!workplace.person().window(titles.newSession).isEnabled(titles.createSession),
                     "no session can be created without a team");
        workplace.person().presses(titles.newSession, titles.cancel);
    });
    switchLink(stage, ana, true);
}

/// Fills in the window while the network goes down, and presses the create button.
void createWithoutNetwork(Stage& stage, VirtualSeat& ana) {
    SessionWindows::openNewSession(ana);
    SessionWindows::waitForTeams(ana, ana.titles().newSession);
    switchLink(stage, ana, false);
    SessionWindows::fillInNewSession(ana, Scenery::mainStand, Scenery::session, Scenery::team);
}

void notCreated(Stage& stage, VirtualSeat& ana) {
    willAnswer(ana, AlertMessages::notCreated, ana.titles().retry);
    willAnswer(ana, AlertMessages::notCreated, ana.titles().cancel);
    createWithoutNetwork(stage, ana);
    waitForAlerts(ana);
    stage.expect(!ana.workplace().session(), "no session after “Cancel”");
    stage.tell("There is no session.");
    switchLink(stage, ana, true);
}

/// The network is back for the one moment in which the session is created.
void hostWithoutSynchronisation(Stage& stage, VirtualSeat& ana) {
    willAnswer(ana, AlertMessages::notCreated, ana.titles().retry, [&] { switchLink(stage, ana, true); });
    createWithoutNetwork(stage, ana);
    ana.waitUntil("there was a session",
                  [](Workplace& workplace) { return workplace.session().has_value(); });
    const std::size_t from = stage.world().trace.size();
    switchLink(stage, ana, false);
    tag(stage, ana, 12);
    stage.expectErrorLine(ana, "Unable to create tagging session");
    stage.expectErrorLine(ana, "No TaggingSessionId found, cannot subscribe to updates");
    stage.pass(20s);
    switchLink(stage, ana, true);
    stage.pass(10s);

    stage.tell("The network was away for too long; the cloud has made no session for the timeline:");
    tellLog(stage, ana, from);
    tellSynchronisation(stage, ana);
    const auto status = ana.workplace().status();
    stage.expect(status && status->hasUnsentEdits && !status->receivesChanges,
                 "Ana's session runs without synchronisation, and says so");
    stage.expect(!stage.world().cloud.primarySessionOf(ana.workplace().session()->tevuVideoId),
                 "the cloud has no tagging session");
    stage.tell("Ana sees that her shot was not sent, and starts anew.");
    SessionWindows::endSession(ana);
}

void guestReconnects(Stage& stage, VirtualSeat& ana, VirtualSeat& bjorn, const std::string& session) {
    const std::size_t from = stage.world().trace.size();
    SessionWindows::joinSession(bjorn);
    switchLink(stage, bjorn, false);
    tag(stage, ana, 12);
    stage.pass(12s);
    tellLog(stage, bjorn, from);
    tellSynchronisation(stage, bjorn);
    const auto status = bjorn.workplace().status();
    stage.expect(status && status->reconnectionAttempt > 0 && !status->receivesChanges,
                 "Björn's synchronisation tries to reconnect, and says so");
    stage.expectEqual("shots at Björn's", std::to_string(shots(bjorn)), "0");

    switchLink(stage, bjorn, true);
    SessionWindows::waitForSharing(bjorn);
    stage.expectEqualTimelines({&ana, &bjorn}, session);
    tellSynchronisation(stage, bjorn);
    stage.tell("Björn has Ana's shot.");
}

}  // namespace

void networkDown(Stage& stage) {
    VirtualSeat& ana = stage.enter();
    VirtualSeat& bjorn = stage.enter();
    startCapture(ana);
    noTeams(stage, ana);
    notCreated(stage, ana);
    hostWithoutSynchronisation(stage, ana);
    const std::string session = host(stage, ana);
    guestReconnects(stage, ana, bjorn, session);
    SessionWindows::leaveSession(bjorn);
    SessionWindows::endSession(ana);
}

}  // namespace CodingDesk::Scenarios
