// What a user has in front of them, as plain text.

#include "ReferenceHost/Windowing/Person.hpp"
#include "Tests/Component/ComponentTest.hpp"

namespace RemoteCoding {
namespace {

class ScreenTest : public ComponentTest {};

TEST_F(ScreenTest, ShowsAlertsSheetsAndWindowsFrontToBack) {
    auto& ann = host_.person();
    const auto date = host_.windowing().mediumDateShortTime(service_.time());
    service_.teams().add({.id = "reds", .name = "Reds", .members = {"ann"}});
    service_.teams().add({.id = "blues", .name = "Blues", .members = {"ann"}});
    service_.videos().add(ReferenceHost::liveVideo("cup", "reds", "Coupé"));
    host_.capture().setDevices({std::make_shared<ReferenceHost::CaptureDevice>("Main camera"),
                                std::make_shared<ReferenceHost::CaptureDevice>("Goal camera")});
    const auto timeline = host_.startCapture("Derby");
    component_->openCreateSharingSessionWindow();
    component_->openJoinSharingSessionWindow();
    settle();
    ann.window("New Video Sharing Session").clickCheckBox("Feed to Share", 0);
    ann.window("New Video Sharing Session").type("Video Name", "");
    ann.window("Join Video Sharing Session").selectRow("Active Sessions", 0);
    ASSERT_TRUE(create().succeeded());
    component_->promptEndRemoteCodingSession(host_.timelines().windowOf(timeline->uniqueId()),
                                             timeline->uniqueId());
    runFor(1);
    std::string screen;
    ann.onAlert([&](const Alert&) {
        screen = ann.screen();
        ann.answer("OK");
    });
    (void)host_.windowing().runModal(Alert("No disk", "", {}, AlertStyle::informational));
    EXPECT_EQ(screen, R"(.- Alert (informational) ---------------------------------------------------
| No disk
| [ OK ]
'---------------------------------------------------------------------------
.- Join Video Sharing Session ----------------------------------------------
| Team:            < Reds >  Blues
| Active Sessions:   Video  Date
|                  > Coupé  )" +
                          date + R"(
|                  [ Cancel ]  [ Join Session ]
'---------------------------------------------------------------------------
.- New Video Sharing Session -----------------------------------------------
| Feed to Share:   Share  Feed
|                  [x]    Main camera
|                  [ ]    Goal camera
| Video Name:
| Team:          < Reds >  Blues
|                [ Cancel ]  ( Create Session )
'---------------------------------------------------------------------------
.- Sheet on Derby (critical) -----------------------------------------------
| Are you sure you want to end the session?
| Collaborators will no longer have access to the capture or new shared
| data. You can continue to use the timeline after ending the session.
| [ Cancel ]  [ End Session ! ]
'---------------------------------------------------------------------------
.- Derby -------------------------------------------------------------------
'---------------------------------------------------------------------------
)");
    ann.window("Derby").answerSheet("Cancel");
    settle();
}

}  // namespace
}  // namespace RemoteCoding
