#include "Components/RemoteCoding/ViewModel/VideoSharingNewSessionViewModel.hpp"

#include "Base/Await.hpp"
#include "Components/RemoteCoding/Models/HostCalls.hpp"
#include "Components/RemoteCoding/ViewModel/VideoName.hpp"

#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view createFunction = "createNewPublishSession(streamName:videoName:teamId:)";
constexpr std::string_view nameFunction = "defaultVideoName()";
constexpr std::string_view feedsFunction = "availableFeeds()";

std::optional<PublishSessionCredentials> complete(const Credentials& given) {
    if (!given.accessKey || !given.secretKey || !given.sessionToken || !given.endpoint || !given.streamKey ||
        !given.expiresIn) {
        return std::nullopt;
    }
    return PublishSessionCredentials(*given.accessKey, *given.secretKey, *given.sessionToken, *given.endpoint,
                                     *given.streamKey, *given.expiresIn);
}

/// Null, and logged, when something is missing.
std::shared_ptr<PublishSession> publishSession(const PublishSessionSummary& summary,
                                               const std::string& videoName, LogManagerProtocol& log) {
    if (!summary.mediaStreamIds || summary.mediaStreamIds->empty() || !summary.credentials ||
        !summary.region || !summary.videoId) {
        logError(log, "Not all needed information returned in publish session call.", "", createFunction);
        return nullptr;
    }
    const auto credentials = complete(*summary.credentials);
    if (!credentials) {
        logError(log, "Not all credentials needed are provided.", "", createFunction);
        return nullptr;
    }
    return std::make_shared<PublishSession>(summary.id, summary.mediaStreamIds->front(), *credentials,
                                            *summary.region, *summary.videoId, videoName);
}

// Without the view model: its window may be closed before the service answers.
Base::Task<std::shared_ptr<PublishSession>>
openPublishSession(std::shared_ptr<TevuGraphQLClientProtocol> client, LogManagerProtocol* log,
                   std::string streamName, std::string videoName, std::string teamId) {
    Base::CompletionCall<PublishSessionSummary> opening(
        [client, streamName, videoName, teamId](Base::Completion<PublishSessionSummary> done) {
            client->openPublishSession(teamId, videoName, {StreamAngle(streamName)}, std::move(done));
        });
    const Base::Result<PublishSessionSummary> summary = co_await opening;
    co_return publishSession(summary.value(), videoName, *log);
}

}  // namespace

VideoSharingNewSessionViewModel::VideoSharingNewSessionViewModel(HostEnvironment& environment)
    : environment_(environment), tevuGraphQLClient_(environment.graphQLClient) {}

Base::Task<std::shared_ptr<PublishSession>>
VideoSharingNewSessionViewModel::createNewPublishSession(std::string streamName, std::string videoName,
                                                         std::string teamId) const {
    return openPublishSession(tevuGraphQLClient_, &environment_.logManager, std::move(streamName),
                              std::move(videoName), std::move(teamId));
}

std::optional<std::string> VideoSharingNewSessionViewModel::defaultVideoName() const {
    checkIsMainThread(environment_, nameFunction);
    std::optional<std::string> name;
    guarded(environment_, nameFunction, [&] {
        const auto timelines = environment_.componentLocator.timelineComponent();
        if (!timelines) {
            return;
        }
        for (const auto& window : environment_.windowing.applicationWindows()) {
            // A window that cannot say what it is must not hide those behind it.
            guarded(environment_, nameFunction, [&] {
                if (window && timelines->isTimelineWindow(window)) {
                    name = std::string(videoNameFromTitle(window->title()));
                }
            });
            if (name) {
                return;
            }
        }
    });
    return name;
}

std::vector<std::shared_ptr<CaptureDeviceProtocol>> VideoSharingNewSessionViewModel::availableFeeds() const {
    checkIsMainThread(environment_, feedsFunction);
    std::vector<std::shared_ptr<CaptureDeviceProtocol>> available;
    guarded(environment_, feedsFunction, [&] {
        const auto capture = environment_.componentLocator.captureComponent();
        if (!capture) {
            return;
        }
        const auto feeds = capture->selectedCaptureDevices();
        bool isEnhancedCaptureDisabled = false;
        guarded(environment_, feedsFunction, [&] {
            isEnhancedCaptureDisabled =
                environment_.userDefaults.boolForKey(UserDefaultsKeys::disableEnhancedCapture)
                    .value_or(false);
        });
        for (const auto& feed : feeds) {
            // A feed that cannot say what it is must not hide the others.
            guarded(environment_, feedsFunction, [&] {
                if (feed && !(isEnhancedCaptureDisabled && feed->isRTPWithoutSDP())) {
                    available.push_back(feed);
                }
            });
        }
    });
    return available;
}

}  // namespace RemoteCoding
