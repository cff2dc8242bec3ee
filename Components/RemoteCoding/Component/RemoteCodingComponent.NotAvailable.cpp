// The operations that do nothing yet, besides saying so.

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Components/RemoteCoding/Models/HostCalls.hpp"

namespace RemoteCoding {

namespace {

std::string notAvailable(std::string_view function) {
    return std::string(function) + " is not available yet";
}

}  // namespace

void RemoteCodingComponent::logNotAvailable(std::string_view function,
                                            const std::source_location& location) const {
    checkIsMainThread(environment_, function, location);
    logError(environment_.logManager, notAvailable(function), "", function, location);
}

void RemoteCodingComponent::openCreateSharingSessionWindow() {
    logNotAvailable("openCreateSharingSessionWindow()");
}

void RemoteCodingComponent::openJoinSharingSessionWindow() {
    logNotAvailable("openJoinSharingSessionWindow()");
}

void RemoteCodingComponent::promptEndRemoteCodingSession(std::shared_ptr<WindowProtocol> /*on*/,
                                                         const std::string& /*timelineId*/) {
    logNotAvailable("promptEndRemoteCodingSession(on:timelineId:)");
}

void RemoteCodingComponent::promptExitRemoteCodingSession(std::shared_ptr<WindowProtocol> /*on*/,
                                                          const std::string& /*timelineId*/) {
    logNotAvailable("promptExitRemoteCodingSession(on:timelineId:)");
}

void RemoteCodingComponent::showFailedSessionAlert(const std::string& /*timelineId*/) {
    logNotAvailable("showFailedSessionAlert(timelineId:)");
}

}  // namespace RemoteCoding
