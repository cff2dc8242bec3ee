#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/AccountProtocol.hpp"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace ReferenceHost {

class Account;
class HeadlessWindow;

/// One sign-in flow: while it runs it covers the controls of its window. Main thread only; it completes in a background job.
class LoginCoordinator final : public RemoteCoding::TevuLoginCoordinatorProtocol,
                               public std::enable_shared_from_this<LoginCoordinator> {
public:
    using User = std::optional<RemoteCoding::TevuUser>;

    /// `execution` lives as long as the account.
    LoginCoordinator(std::weak_ptr<Account> account, Base::ExecutionProtocol& execution)
        : account_(std::move(account)), execution_(execution) {}

    /// In a closed window, or in no window of this toolkit, the flow ends at once, with no user.
    void start(const std::shared_ptr<RemoteCoding::ViewProtocol>& inView,
               const std::map<std::string, bool>& configuration, Base::Completion<User> completion) override;

    [[nodiscard]] bool isRunning() const { return completion_ != nullptr; }

    /// Does nothing unless the flow runs.
    void end(Base::Result<User> result);

    // What the person at the window does.
    void signIn(const std::string& userId);
    void cancel();

private:
    std::weak_ptr<Account> account_;
    Base::ExecutionProtocol& execution_;
    std::weak_ptr<HeadlessWindow> window_;
    bool closesParentOnCancel_ = false;
    Base::Completion<User> completion_;  // only while the flow runs
};

}  // namespace ReferenceHost
