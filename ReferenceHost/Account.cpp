#include "ReferenceHost/Account.hpp"

#include "ReferenceHost/Windowing/LoginCoordinator.hpp"

namespace ReferenceHost {

std::optional<RemoteCoding::TevuUser> Account::user() const {
    if (recordCall_) {
        recordCall_("user", {});
    }
    return user_;
}

std::shared_ptr<RemoteCoding::TevuLoginCoordinatorProtocol> Account::makeLoginCoordinator() {
    if (recordCall_) {
        recordCall_("makeLoginCoordinator", {});
    }
    if (noLoginCoordinator) {
        std::rethrow_exception(noLoginCoordinator);
    }
    if (hasNoLoginCoordinator) {
        return nullptr;
    }
    auto coordinator = std::make_shared<LoginCoordinator>(weak_from_this(), execution_);
    std::erase_if(coordinators_, [](const auto& made) { return made.expired(); });
    coordinators_.push_back(coordinator);
    return coordinator;
}

void Account::signIn(const std::string& userId) {
    user_.emplace(userId);
    if (didSignIn) {
        didSignIn(userId);
    }
    for (const auto& made : std::vector(coordinators_)) {
        if (const auto coordinator = made.lock()) {
            coordinator->end(user_);
        }
    }
}

void Account::signOut() {
    user_.reset();
    if (didSignOut) {
        didSignOut();
    }
}

}  // namespace ReferenceHost
