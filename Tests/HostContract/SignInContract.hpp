#pragma once

#include "Base/Error.hpp"
#include "Tests/HostContract/WindowingFixture.hpp"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// The contract of `RemoteCoding::AccountProtocol` and its sign-in flows as tests, for any host. Include this header in one
/// source file of a test program, derive a `WindowingFixture`, and instantiate `SignInContract` with it.
namespace HostContract {

class SignInContract : public WindowsTest {
protected:
    using Flow = std::shared_ptr<TevuLoginCoordinatorProtocol>;

    SignInContract() {
        (void)fixture->notificationCenter().addObserver(
            WindowNotifications::windowWillClose, nullptr,
            [this](const Notification&) { events.emplace_back("the window closes"); });
    }
    /// Starts a flow in the window; the caller holds it.
    Flow start(bool closesParentOnCancel) {
        auto flow = fixture->account().makeLoginCoordinator();
        flow->start(window->contentView(),
                    {{TevuLoginConstants::Configuration::closeParentOnCancelKey, closesParentOnCancel}},
                    [this](const auto& user) {  // on any thread
                        fixture->execution().postToMain([this, user] { flowEnded(user); });
                    });
        return flow;
    }
    void flowEnded(const Base::Result<std::optional<TevuUser>>& result) {
        const auto present = fixture->account().user();
        if (!result.succeeded()) {
            events.push_back(Base::describe(result.error()));
        } else if (const auto& user = result.value()) {
            events.push_back(user->id + (present && present->id == user->id ? "" : ", but not yet"));
        } else {
            events.emplace_back("nobody");
        }
    }
    /// What happens from a deed of the user to the end of the flow.
    Strings after(const std::function<void()>& deed, std::size_t number) {
        deed();
        runUntil([&] { return events.size() >= number; });
        runMainJobs();
        return std::exchange(events, {});
    }

    Strings events;
};

TEST_P(SignInContract, EndsWithTheUserWhoIsSignedInByThen) {
    EXPECT_FALSE(fixture->account().user());
    for (const char* user : {"ann", "ben"}) {
        const auto flow = start(true);
        EXPECT_EQ(after([&] { fixture->signIn("Window", user); }, 1), Strings{user});
        EXPECT_TRUE(window->isVisible());
        EXPECT_ANY_THROW(fixture->signIn("Window", "cleo")) << "The flow is over.";
    }
    (void)start(true);
    EXPECT_ANY_THROW(fixture->signIn("Window", "cleo")) << "Nobody holds the flow any more.";
    fixture->type("Window", "field", "typed");
}

TEST_P(SignInContract, EndsWithNobodyWhenItIsCancelledOrItsWindowClosesAndFailsWhenItBreaksDown) {
    auto flow = start(false);
    EXPECT_EQ(after([&] { fixture->failSignIn("Window", "No network"); }, 1), Strings{"No network"});
    flow = start(false);
    EXPECT_EQ(after([&] { fixture->cancelSignIn("Window"); }, 1), Strings{"nobody"});
    EXPECT_TRUE(window->isVisible());
    flow = start(true);
    EXPECT_EQ(after([&] { fixture->cancelSignIn("Window"); }, 2), (Strings{"the window closes", "nobody"}));
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(after([&] { flow = start(true); }, 1), Strings{"nobody"}) << "In a closed window.";

    window->show();
    flow = start(true);
    EXPECT_EQ(after([&] { fixture->close("Window"); }, 2), (Strings{"the window closes", "nobody"}));
    EXPECT_FALSE(fixture->account().user());
}

TEST_P(SignInContract, EndsTwoFlowsOfOneWindowTogether) {
    auto flows = std::pair(start(true), start(true));
    EXPECT_EQ(after([&] { fixture->signIn("Window", "ann"); }, 2), (Strings{"ann", "ann"}));
    flows = {start(true), start(true)};
    EXPECT_EQ(after([&] { fixture->close("Window"); }, 3),
              (Strings{"the window closes", "nobody", "nobody"}));
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SignInContract);

}  // namespace HostContract
