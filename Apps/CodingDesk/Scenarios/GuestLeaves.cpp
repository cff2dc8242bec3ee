#include "Apps/CodingDesk/Scenarios/Play.hpp"

namespace CodingDesk::Scenarios {

void guestLeaves(Stage& stage) {
    VirtualSeat& ana = stage.enter();
    VirtualSeat& bjorn = stage.enter();
    VirtualSeat& chloe = stage.enter();
    const std::string session = host(stage, ana);
    join(bjorn);
    join(chloe);
    tag(stage, ana, 12);
    tag(stage, chloe, 31);
    stage.expectEqualTimelines({&ana, &bjorn, &chloe}, session);
    stage.tell("Everybody has both shots.");

    SessionWindows::askToLeave(chloe, chloe.titles().cancel);
    stage.pass(std::chrono::seconds(1));
    expectSessionGoesOn(stage, chloe);
    tag(stage, bjorn, 47);
    stage.expectEqualTimelines({&ana, &bjorn, &chloe}, session);
    stage.tell("Chloé is still in the session: she has Björn's shot, too.");

    const std::string timeline = chloe.workplace().timelineId();
    stage.expect(chloe.workplace().host().timelines().showsLiveShare(timeline), "Chloé sees the stream");
    SessionWindows::leaveSession(chloe);
    stage.expect(!chloe.workplace().host().timelines().showsLiveShare(timeline),
                 "the stream stops at Chloé's");
    stage.tell("Chloé's stream has stopped. Her timeline stays open, with " + std::to_string(shots(chloe)) +
               " shots.");

    tag(stage, bjorn, 65);
    tag(stage, chloe, 88);
    stage.expectEqualTimelines({&ana, &bjorn}, session);
    stage.expectEqual("shots at Ana's and at Chloé's",
                      std::to_string(shots(ana)) + " and " + std::to_string(shots(chloe)), "4 and 4");
    stage.tell("Ana has Björn's new shot and not Chloé's; Chloé has her own and not Björn's.");

    SessionWindows::askToEnd(ana, ana.titles().cancel);
    stage.pass(std::chrono::seconds(1));
    expectSessionGoesOn(stage, ana);
    SessionWindows::endSession(ana);
    bjorn.waitUntil("the stream was over", [](Workplace& workplace) {
        return workplace.session()->status == RemoteCoding::RemoteCodingSessionStatus::streamEnded;
    });
    SessionWindows::leaveSession(bjorn);
    expectLastMessage(stage, bjorn, AlertMessages::exitPrompt);
}

}  // namespace CodingDesk::Scenarios
