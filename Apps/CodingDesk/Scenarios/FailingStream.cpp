#include "Apps/CodingDesk/Scenarios/Play.hpp"
#include "ReferenceHost/Cloud/VideoRecord.hpp"

namespace CodingDesk::Scenarios {

namespace {

using namespace std::chrono_literals;

void expectQuestions(Stage& stage, VirtualSeat& seat, std::size_t expected, const std::string& when) {
    stage.expectEqual("how often the cloud was asked for the video " + when,
                      std::to_string(questionsAboutVideo(stage, seat)), std::to_string(expected));
}

void expectNothingTold(Stage& stage, VirtualSeat& seat) {
    expectSessionGoesOn(stage, seat);
    stage.expect(seat.workplace().person().messagesSeen().empty(), "no alert");
}

/// Gives how many fragments the player loads in that time.
std::size_t fragmentsWithin(Stage& stage, VirtualSeat& seat, Base::Seconds time) {
    const std::size_t before = seat.workplace().player()->fragments();
    stage.pass(time);
    return seat.workplace().player()->fragments() - before;
}

}  // namespace

void failingStream(Stage& stage) {
    VirtualSeat& ana = stage.enter();
    VirtualSeat& bjorn = stage.enter();
    const std::string session = host(stage, ana);
    join(bjorn);
    const std::string videoId = ana.workplace().session()->tevuVideoId;
    const auto setHangs = [&](bool hangs) {
        bjorn.at([&](Workplace& workplace) { workplace.player()->setHangs(hangs); });
    };

    stage.pass(5s);
    const std::size_t asked = questionsAboutVideo(stage, bjorn);  // by the player, for the manifest
    const std::size_t loaded = fragmentsWithin(stage, bjorn, 60s);
    stage.expect(loaded >= 29, "a fragment every two seconds");
    expectQuestions(stage, bjorn, asked, "while fragments came");
    stage.tell("In the last minute Björn's player has loaded " + std::to_string(loaded) +
               " fragments. Nobody has asked about the video.");

    stage.tell("The stream is slow: nothing reaches Björn's player.");
    setHangs(true);
    stage.expect(fragmentsWithin(stage, bjorn, 20s) == 0, "no fragment");
    expectQuestions(stage, bjorn, asked + 1, "after 15 seconds without a fragment");
    expectNothingTold(stage, bjorn);
    stage.tell("After 15 seconds Björn's application has asked the cloud for the video: all is well with it, "
               "so Björn is told nothing.");
    setHangs(false);
    stage.expect(fragmentsWithin(stage, bjorn, 20s) > 0, "fragments come again");
    expectQuestions(stage, bjorn, asked + 1, "while fragments came again");
    stage.tell("The fragments come again.");

    stage.tell("Ana's stream is interrupted.");
    ana.at([](Workplace& workplace) { workplace.host().capture().interruptStream(); });
    stage.pass(10s);
    expectQuestions(stage, bjorn, asked + 2, "5 seconds after the stream paused");
    ana.at([](Workplace& workplace) { workplace.host().capture().resumeStream(); });
    stage.expect(fragmentsWithin(stage, bjorn, 10s) > 0, "fragments come again");
    expectQuestions(stage, bjorn, asked + 2, "after the stream had come back");
    expectNothingTold(stage, bjorn);
    stage.tell("Björn's player has waited, and his application has asked again. The stream is back; Björn "
               "was told nothing.");

    stage.tell("The cloud gives the video up, and no fragment comes any more.");
    stage.world().cloud.videos().setStatus(videoId, ReferenceHost::VideoStatus::error);
    setHangs(true);
    bjorn.at([&](Workplace& workplace) {
        workplace.person().willAnswer(AlertMessages::failedSession, bjorn.titles().quitSession);
    });
    stage.expectErrorLine(bjorn, "The video has an error status");
    bjorn.waitUntil("the session was over",
                    [](Workplace& workplace) { return !workplace.session().has_value(); });
    expectLastMessage(stage, bjorn, AlertMessages::failedSession);
    stage.pass(1s);
    stage.expect(!bjorn.workplace().host().timelines().showsLiveShare(bjorn.workplace().timelineId()),
                 "the stream is stopped at Björn's");

    tag(stage, ana, 12);
    stage.expectEqualTimelines({&ana}, session);
    stage.expectEqual("shots at Björn's", std::to_string(shots(bjorn)), "0");
    stage.tell("Björn's timeline stays open and is not shared any more. Ana's session goes on.");
    SessionWindows::endSession(ana);
}

}  // namespace CodingDesk::Scenarios
