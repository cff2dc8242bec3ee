#include "ReferenceHost/Windowing/HeadlessWindow.hpp"

#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"
#include "ReferenceHost/Windowing/LoginCoordinator.hpp"

#include <optional>
#include <utility>

namespace ReferenceHost {

HeadlessWindow::HeadlessWindow(std::weak_ptr<HeadlessWindowing> toolkit,
                               const RemoteCoding::WindowLayout& layout,
                               std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner)
    : toolkit_(std::move(toolkit)), owner_(std::move(owner)), title_(layout.title) {}

HeadlessWindow::~HeadlessWindow() = default;

void HeadlessWindow::show() {
    if (const auto toolkit = toolkit_.lock()) {
        toolkit->bringToFront(shared_from_this());
    }
}

bool HeadlessWindow::isVisible() const {
    const auto toolkit = toolkit_.lock();
    return toolkit && toolkit->isVisible(*this);
}

void HeadlessWindow::performClose(const std::shared_ptr<RemoteCoding::HostObject>& /*sender*/) {
    const auto toolkit = toolkit_.lock();
    if (!toolkit || isClosing_ || !toolkit->isVisible(*this)) {
        return;
    }
    const auto heldHere = shared_from_this();
    isClosing_ = true;
    toolkit->tellWillClose(heldHere);
    toolkit->hide(*this);
    isClosing_ = false;
    for (const auto& held : std::exchange(signIns_, {})) {
        if (const auto signIn = held.lock()) {
            signIn->end(LoginCoordinator::User());
        }
    }
    if (didClose) {
        didClose();
    }
}

std::shared_ptr<RemoteCoding::ViewProtocol> HeadlessWindow::contentView() const {
    if (!contentView_) {
        contentView_ = std::make_shared<HeadlessContentView>(
            std::const_pointer_cast<HeadlessWindow>(shared_from_this()));
    }
    return contentView_;
}

std::shared_ptr<RemoteCoding::ViewProtocol> HeadlessWindow::outlet(const std::string& /*name*/) const {
    return nullptr;
}

void HeadlessWindow::addSignIn(const std::shared_ptr<LoginCoordinator>& signIn) {
    signIns_.push_back(signIn);
}

std::shared_ptr<LoginCoordinator> HeadlessWindow::signIn() const {
    for (auto held = signIns_.rbegin(); held != signIns_.rend(); ++held) {
        const auto signIn = held->lock();
        if (signIn && signIn->isRunning()) {
            return signIn;
        }
    }
    return nullptr;
}

}  // namespace ReferenceHost
