// A host that lets go of the component inside one of its own operations, which the component has called.

#include "Tests/Component/PersonTest.hpp"

namespace RemoteCoding {
namespace {

struct LetGoTest : PersonTest {
    /// True: the operation still had its component after the host had let go of it, and then the component went.
    bool outlives(const std::function<void(RemoteCodingComponent&)>& operation) {
        watched_ = component_ = RemoteCodingComponent::make(host_.environment());
        wasHeld_ = false;
        operation(*component_);
        return wasHeld_ && watched_.expired();
    }
    void letGo() {
        component_.reset();
        wasHeld_ = !watched_.expired();
    }
    std::weak_ptr<RemoteCodingComponent> watched_;
    bool wasHeld_ = false;
};

TEST_F(LetGoTest, AnOperationHoldsTheComponentUntilItsLastCallOfTheHost) {
    ann_.onAlert([&](const Alert&) {
        letGo();
        ann_.answer("Open Capture Window");
    });
    EXPECT_TRUE(outlives([](auto& component) { component.openCreateSharingSessionWindow(); }));
    EXPECT_THAT(ann_.windowTitles(), ElementsAre("Capture"));

    useFaultyTimelineComponent()->before = [&] { letGo(); };
    EXPECT_TRUE(outlives([](auto& component) { component.streamEnded("timeline"); }));
    EXPECT_TRUE(outlives([&](auto& /*component*/) { join(); }));
    (void)host_.startCapture("Derby");
    EXPECT_TRUE(outlives([&](auto& /*component*/) { EXPECT_TRUE(create().succeeded()); }));
    expectedErrors_ = {"Tried to end live streaming session when session does not exist"};
}

}  // namespace
}  // namespace RemoteCoding
