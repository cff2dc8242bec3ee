// The windows in which a user starts or joins a session, one of each kind at a time.

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Components/RemoteCoding/Models/HostCalls.hpp"
#include "Components/RemoteCoding/ViewControllers/VideoSharingJoinSessionWindowController.hpp"
#include "Components/RemoteCoding/ViewControllers/VideoSharingNewSessionWindowController.hpp"

#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view createFunction = "openCreateSharingSessionWindow()";
constexpr std::string_view joinFunction = "openJoinSharingSessionWindow()";

}  // namespace

void RemoteCodingComponent::openCreateSharingSessionWindow() {
    checkIsMainThread(environment_, createFunction);
    const auto self = shared_from_this();  // the host may let go of it while the alert is shown
    guarded(environment_, createFunction, [&] {
        const auto capture = environment_.componentLocator.captureComponent();
        if (!capture || !capture->isCapturing()) {
            showCaptureNotStartedAlert();
            return;
        }
        if (hasHostSession()) {
            return;
        }
        if (!newSharingSessionWindowController_.controller) {
            newSharingSessionWindowController_ =
                keptWhileOpen(VideoSharingNewSessionWindowController::make(environment_),
                              &RemoteCodingComponent::createSharingSessionWindowWillClose);
        }
        showAndLoad(newSharingSessionWindowController_);
    });
}

void RemoteCodingComponent::openJoinSharingSessionWindow() {
    checkIsMainThread(environment_, joinFunction);
    const auto self = shared_from_this();
    guarded(environment_, joinFunction, [&] {
        if (!joinSharingSessionWindowController_.controller) {
            joinSharingSessionWindowController_ = keptWhileOpen(
                VideoSharingJoinSessionWindowController::make(environment_, remoteCodingService_),
                &RemoteCodingComponent::joinSharingSessionWindowWillClose);
        }
        showAndLoad(joinSharingSessionWindowController_);
    });
}

void RemoteCodingComponent::createSharingSessionWindowWillClose(const Notification& /*notification*/) {
    checkIsMainThread(environment_, "createSharingSessionWindowWillClose(_:)");
    letGo(newSharingSessionWindowController_);
}

void RemoteCodingComponent::joinSharingSessionWindowWillClose(const Notification& /*notification*/) {
    checkIsMainThread(environment_, "joinSharingSessionWindowWillClose(_:)");
    letGo(joinSharingSessionWindowController_);
}

/// Keeps no controller whose window the toolkit could not make: nothing would ever tell that it can go, and the next try
/// would find it instead of making a window.
RemoteCodingComponent::WindowOwner
RemoteCodingComponent::keptWhileOpen(std::shared_ptr<SessionWindowController> controller,
                                     void (RemoteCodingComponent::*willClose)(const Notification&)) {
    const auto window = controller->window();
    if (!window) {
        return {};
    }
    auto observer = [weakSelf = weak_from_this(), willClose](const Notification& notification) {
        if (const auto self = weakSelf.lock()) {
            ((*self).*willClose)(notification);
        }
    };
    const auto willCloseObserver = environment_.notificationCenter.addObserver(
        WindowNotifications::windowWillClose, window, std::move(observer));
    return {std::move(controller), willCloseObserver};
}

void RemoteCodingComponent::showAndLoad(const WindowOwner& owner) {
    if (const auto controller = owner.controller) {
        controller->showWindow(nullptr);
        controller->loadContent();
    }
}

/// The controller goes when the toolkit is done with closing its window, which it may be doing inside a call of the
/// controller.
void RemoteCodingComponent::letGo(WindowOwner& owner) {
    const auto closing = std::exchange(owner, {});
    stopObserving(closing);
    guarded(environment_, "windowWillClose(_:)",
            [&] { environment_.execution.postToMain([controller = closing.controller] {}); });
}

/// For a component that goes: its windows would stay open, and nobody would answer for them.
void RemoteCodingComponent::closeWindows() {
    for (auto* owner : {&newSharingSessionWindowController_, &joinSharingSessionWindowController_}) {
        const auto closing = std::exchange(*owner, {});
        if (closing.controller) {
            stopObserving(closing);
            closing.controller->close(nullptr);
        }
    }
}

void RemoteCodingComponent::stopObserving(const WindowOwner& owner) {
    guarded(environment_, "removeObserver(_:)",
            [&] { environment_.notificationCenter.removeObserver(owner.willCloseObserver); });
}

}  // namespace RemoteCoding
