#include "Apps/CodingDesk/Scenarios/Play.hpp"

namespace CodingDesk::Scenarios {

void noCapture(Stage& stage) {
    VirtualSeat& ana = stage.enter();
    const WindowTitles& titles = ana.titles();
    const auto expectAlert = [&](const std::string& answer) {
        ana.at([&](Workplace& workplace) {
            workplace.person().willAnswer(AlertMessages::captureNotStarted, answer);
        });
        SessionWindows::openNewSession(ana);
        expectLastMessage(stage, ana, AlertMessages::captureNotStarted);
        stage.expect(!ana.workplace().person().sees(titles.newSession), "no window for a session");
    };

    expectAlert(titles.cancel);
    stage.expect(!ana.workplace().person().sees("Capture"), "no capture window after “Cancel”");
    expectAlert(titles.openCapture);
    ana.at([](Workplace& workplace) {
        workplace.person().looksAt("Capture");
        workplace.person().closes("Capture");
    });

    startCapture(ana);
    SessionWindows::openNewSession(ana);
    SessionWindows::waitForTeams(ana, titles.newSession);
    SessionWindows::fillInNewSession(ana, Scenery::mainStand, "Cup: semi-final, live", Scenery::team);
    SessionWindows::waitForSharing(ana);
    stage.expectEqual("the session's name", ana.workplace().session()->name, Scenery::session);

    SessionWindows::openNewSession(ana);
    stage.pass(std::chrono::seconds(2));
    stage.expect(!ana.workplace().person().sees(titles.newSession), "no second session beside the first");
    stage.tell("Nothing happens: one session at a time.");
    SessionWindows::endSession(ana);
    expectLastMessage(stage, ana, AlertMessages::endPrompt);
    stage.expect(!ana.workplace().host().capture().isCapturing(), "the capture ends with the session");
}

}  // namespace CodingDesk::Scenarios
