// The operations that are declared for hosts but do nothing yet, besides saying so.

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Components/RemoteCoding/Models/HostCalls.hpp"

#include <stdexcept>
#include <utility>

namespace RemoteCoding {

namespace {

std::string notAvailable(std::string_view function) {
    return std::string(function) + " is not available yet";
}

template <typename Value>
void failOnMainThread(HostEnvironment& environment, std::string_view function,
                      Base::Completion<Value> completion) {
    if (!completion) {
        return;
    }
    auto fail = [&environment, function, completion = std::move(completion)] {
        guarded(environment, function,
                [&] { completion(Base::failure<Value>(std::runtime_error(notAvailable(function)))); });
    };
    guarded(environment, function, [&] { environment.execution.postToMain(std::move(fail)); });
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

void RemoteCodingComponent::getManifestURL(const std::string& /*timelineId*/, const std::string& /*videoId*/,
                                           Base::Completion<std::optional<std::string>> completion) {
    constexpr std::string_view function = "getManifestURL(timelineId:videoId:)";
    logNotAvailable(function);
    failOnMainThread(environment_, function, std::move(completion));
}

void RemoteCodingComponent::fragmentDownloaded(const std::string& /*timelineId*/) {
    logNotAvailable("fragmentDownloaded(timelineId:)");
}

void RemoteCodingComponent::fragmentDownloadPaused(std::exception_ptr /*with*/,
                                                   const std::string& /*timelineId*/) {
    logNotAvailable("fragmentDownloadPaused(with:timelineId:)");
}

void RemoteCodingComponent::fragmentDownloadResumed(const std::string& /*timelineId*/) {
    logNotAvailable("fragmentDownloadResumed(timelineId:)");
}

void RemoteCodingComponent::fragmentDownloadDidError(std::exception_ptr /*error*/,
                                                     const std::string& /*timelineId*/) {
    logNotAvailable("fragmentDownloadDidError(_:timelineId:)");
}

void RemoteCodingComponent::fragmentDownloadComplete(const std::string& /*timelineId*/) {
    logNotAvailable("fragmentDownloadComplete(timelineId:)");
}

void RemoteCodingComponent::streamURLs(const std::string& /*videoId*/,
                                       const std::vector<std::string>& /*streamIds*/,
                                       Base::Completion<std::map<std::string, Base::URL>> completion) {
    constexpr std::string_view function = "streamURLs(videoId:streamIds:)";
    logNotAvailable(function);
    failOnMainThread(environment_, function, std::move(completion));
}

}  // namespace RemoteCoding
