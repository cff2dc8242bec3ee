#include "ReferenceHost/Windowing/LoginCoordinator.hpp"

#include "ReferenceHost/Account.hpp"
#include "ReferenceHost/Windowing/HeadlessWindow.hpp"

#include <utility>

namespace ReferenceHost {

void LoginCoordinator::start(const std::shared_ptr<RemoteCoding::ViewProtocol>& inView,
                             const std::map<std::string, bool>& configuration,
                             Base::Completion<User> completion) {
    const auto option =
        configuration.find(RemoteCoding::TevuLoginConstants::Configuration::closeParentOnCancelKey);
    closesParentOnCancel_ = option != configuration.end() && option->second;
    completion_ = std::move(completion);
    const auto content = std::dynamic_pointer_cast<HeadlessContentView>(inView);
    const auto window = content ? content->window() : nullptr;
    if (!window || !window->isVisible()) {
        end(User());
        return;
    }
    window_ = window;
    window->addSignIn(shared_from_this());
}

void LoginCoordinator::end(Base::Result<User> result) {
    const auto account = account_.lock();
    const auto completion = std::exchange(completion_, nullptr);
    if (completion && account) {
        execution_.postToBackground([completion, result = std::move(result)] { completion(result); });
    }
}

void LoginCoordinator::signIn(const std::string& userId) {
    if (const auto account = account_.lock()) {
        account->signIn(userId);
    }
}

void LoginCoordinator::cancel() {
    const auto window = window_.lock();
    if (closesParentOnCancel_ && window) {
        window->performClose(nullptr);
    }
    end(User());
}

}  // namespace ReferenceHost
