#include "Apps/CodingDesk/Scenarios/Play.hpp"

namespace CodingDesk::Scenarios {

void hostEnds(Stage& stage) {
    VirtualSeat& ana = stage.enter();
    VirtualSeat& bjorn = stage.enter();
    VirtualSeat& chloe = stage.enter();
    const std::string session = host(stage, ana);
    join(bjorn);
    join(chloe);

    stage.tell("Ana's stream comes to its end; her capture goes on.");
    ana.at([](Workplace& workplace) {
        workplace.host().capture().stopPublishing();
        workplace.component().streamEnded(workplace.timelineId());
    });
    for (VirtualSeat* seat : {&ana, &bjorn, &chloe}) {
        seat->waitUntil("the stream was over", [](Workplace& workplace) {
            return workplace.session()->status == RemoteCoding::RemoteCodingSessionStatus::streamEnded;
        });
    }
    tag(stage, ana, 12);
    tag(stage, bjorn, 31);
    stage.expectEqualTimelines({&ana, &bjorn, &chloe}, session);
    stage.tell("The timelines are still shared: everybody has both shots.");

    SessionWindows::endSession(ana);
    stage.expect(!ana.workplace().host().capture().isCapturing(), "the capture ends with the session");
    tag(stage, chloe, 47);
    stage.expectEqualTimelines({&bjorn, &chloe}, session);
    stage.expectEqual("shots at Ana's", std::to_string(shots(ana)), "2");
    stage.tell("Björn has Chloé's shot, Ana has not: for her the session is over.");

    SessionWindows::leaveSession(bjorn);
    chloe.at([](Workplace& workplace) { workplace.person().closes(workplace.timelineWindow()); });
    chloe.waitUntil("the session was over",
                    [](Workplace& workplace) { return !workplace.session().has_value(); });
    stage.pass(std::chrono::seconds(1));
}

}  // namespace CodingDesk::Scenarios
