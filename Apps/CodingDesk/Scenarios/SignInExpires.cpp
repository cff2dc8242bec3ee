#include "Apps/CodingDesk/Scenarios/Play.hpp"

namespace CodingDesk::Scenarios {

namespace {

void cancelSignIn(Stage& stage, VirtualSeat& seat, const std::string& window) {
    seat.at([&](Workplace& workplace) {
        workplace.person().looksAt(window);
        workplace.person().cancelsSignIn(window);
    });
    const auto isClosed = [&] { return !seat.workplace().person().sees(window); };
    stage.expect(isClosed(), "a cancelled sign-in closes the window");
    stage.tell(seat.name() + "'s window closes.");
    stage.pass(std::chrono::seconds(5));
    stage.expect(isClosed(), "the window stays closed");
}

void signIn(VirtualSeat& seat, const std::string& window) {
    seat.at([&](Workplace& workplace) {
        workplace.person().looksAt(window);
        workplace.person().signsIn(window, workplace.userId());
    });
    SessionWindows::waitForTeams(seat, window);
}

}  // namespace

void signInExpires(Stage& stage) {
    VirtualSeat& ana = stage.enter();
    VirtualSeat& bjorn = stage.enter(false);
    const std::string session = host(stage, ana);

    const std::string window = bjorn.titles().joinSession;
    stage.tell("Nobody is signed in on Björn's computer.");
    SessionWindows::openJoinSession(bjorn);
    SessionWindows::waitForSignIn(bjorn, window);
    cancelSignIn(stage, bjorn, window);

    SessionWindows::openJoinSession(bjorn);
    SessionWindows::waitForSignIn(bjorn, window);
    signIn(bjorn, window);
    bjorn.at([&](Workplace& workplace) { workplace.person().looksAt(window); });

    stage.tell("Björn takes a break.");
    stage.pass(std::chrono::hours(1));
    stage.tell("Meanwhile his sign-in has expired.");
    stage.world().cloud.teams().expireSignIn(bjorn.workplace().userId());
    SessionWindows::openJoinSession(bjorn);
    SessionWindows::waitForSignIn(bjorn, window);
    signIn(bjorn, window);
    SessionWindows::chooseSession(bjorn, Scenery::team, Scenery::session);
    SessionWindows::waitForSharing(bjorn);

    tag(stage, bjorn, 12);
    stage.expectEqualTimelines({&ana, &bjorn}, session);
    stage.tell("Björn is in the session, and Ana has his shot.");
    SessionWindows::leaveSession(bjorn);

    stage.tell("His sign-in expires once more.");
    stage.world().cloud.teams().expireSignIn(bjorn.workplace().userId());
    SessionWindows::openJoinSession(bjorn);
    SessionWindows::waitForSignIn(bjorn, window);
    cancelSignIn(stage, bjorn, window);
    SessionWindows::endSession(ana);
}

}  // namespace CodingDesk::Scenarios
