#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/AccountProtocol.hpp"
#include "ReferenceHost/Timeline/CallRecorder.hpp"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class LoginCoordinator;

/// Who is signed in. Main thread only. Made as a `std::shared_ptr`; its sign-in flows hold it weakly.
class Account final : public RemoteCoding::AccountProtocol, public std::enable_shared_from_this<Account> {
public:
    /// `execution` outlives the account.
    explicit Account(Base::ExecutionProtocol& execution, CallRecorder recordCall = {})
        : execution_(execution), recordCall_(std::move(recordCall)) {}

    // AccountProtocol
    [[nodiscard]] std::optional<RemoteCoding::TevuUser> user() const override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TevuLoginCoordinatorProtocol> makeLoginCoordinator() override;

    /// Also ends all sign-in flows that run, with this user.
    void signIn(const std::string& userId);
    void signOut();

    /// Called by `signIn` before any flow ends, for whoever keeps the user's tokens.
    std::function<void(const std::string& userId)> didSignIn;

    std::function<void()> didSignOut;

    // Faults on demand.
    bool hasNoLoginCoordinator = false;     ///< there is no sign-in flow
    std::exception_ptr noLoginCoordinator;  ///< set: asking for one throws it

private:
    Base::ExecutionProtocol& execution_;
    CallRecorder recordCall_;
    std::optional<RemoteCoding::TevuUser> user_;
    std::vector<std::weak_ptr<LoginCoordinator>> coordinators_;
};

}  // namespace ReferenceHost
