#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Components/RemoteCoding/Component/EnvironmentGate.hpp"
#include "Components/RemoteCoding/Models/HostCalls.hpp"
#include "Components/RemoteCoding/Models/Limits.hpp"
#include "Components/RemoteCoding/Models/RemoteCodingSession.hpp"
#include "Components/RemoteCoding/Resources/LocalizedText.hpp"
#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include <atomic>
#include <stdexcept>
#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view createFunction =
    "createNewRemoteCodingSession(name:publishSession:teamId:device:)";
constexpr std::string_view joinFunction =
    "joinRemoteCodingSession(shareFile:streamName:tevuVideoId:teamId:taggingSessionId:)";

}  // namespace

/// What a join was asked for, kept until its timeline is there.
struct RemoteCodingComponent::Join {
    Join(std::string name_, std::string streamName_, std::string tevuVideoId_, std::string teamId_,
         std::optional<std::string> taggingSessionId_)
        : name(std::move(name_)),
          streamName(std::move(streamName_)),
          tevuVideoId(std::move(tevuVideoId_)),
          teamId(std::move(teamId_)),
          taggingSessionId(std::move(taggingSessionId_)) {}

    std::string name;
    std::string streamName;
    std::string tevuVideoId;
    std::string teamId;
    std::optional<std::string> taggingSessionId;
    mutable std::atomic<bool> isAnswered{false};  // the host's completion counts once
    mutable bool hasFailed = false;               // main thread; the host may have completed before it failed
};

Base::Result<void> RemoteCodingComponent::createNewRemoteCodingSession(
    const std::string& name, std::shared_ptr<PublishSessionProtocol> publishSession,
    const std::string& teamId, std::shared_ptr<CaptureDeviceProtocol> device) {
    checkIsMainThread(environment_, createFunction);
    const auto self = shared_from_this();
    try {
        const auto timelines = environment_.componentLocator.timelineComponent();
        const auto timeline = timelines ? timelines->capturingTimeline() : nullptr;
        if (!timeline) {
            return {};
        }
        const auto user = environment_.account.user();
        if (!user) {
            return {};
        }
        const auto capture = environment_.componentLocator.captureComponent();
        if (!capture) {
            return Base::failure<void>(std::runtime_error(
                localized(environment_, "The capture is not available.",
                          "Error text when a session cannot start because capturing is impossible")));
        }
        if (!publishSession || !device) {
            return Base::failure<void>(std::invalid_argument(
                localized(environment_, "The session has no video or no feed.",
                          "Error text when a session cannot start because its video or feed is missing")));
        }
        // Made before the capture starts: a failure afterwards would leave a stream that no session stands for.
        std::vector<LiveStreamingVideoStream> streams{LiveStreamingVideoStream(device->localizedName())};
        const auto session = std::make_shared<RemoteCodingSession>(
            name, std::move(streams), timeline->uniqueId(), publishSession->videoId(), teamId, true);
        auto started = capture->captureToTevuLibraryWithPublishSession(publishSession, teamId, device);
        if (!started.succeeded()) {
            return started;
        }
        attachSynchroniser(*session, user->id, std::nullopt);
        registerSession(session);
        return {};
    } catch (...) {
        return Base::Result<void>::failure(std::current_exception());
    }
}

void RemoteCodingComponent::joinRemoteCodingSession(const ShareFile& shareFile, const std::string& streamName,
                                                    const std::string& tevuVideoId, const std::string& teamId,
                                                    const std::optional<std::string>& taggingSessionId) {
    checkIsMainThread(environment_, joinFunction);
    const auto self = shared_from_this();
    const auto join =
        std::make_shared<const Join>(shareFile.video.name, streamName, tevuVideoId, teamId, taggingSessionId);
    std::exception_ptr error;
    try {
        error = openLiveShare(shareFile, join).error();
    } catch (...) {
        error = std::current_exception();
    }
    if (error) {
        join->isAnswered = true;
        join->hasFailed = true;
        logError(environment_.logManager, "Failed to open a remote coding session.", Base::describe(error),
                 joinFunction);
    }
}

Base::Result<void> RemoteCodingComponent::openLiveShare(const ShareFile& shareFile,
                                                        const std::shared_ptr<const Join>& join) {
    const auto timelines = environment_.componentLocator.timelineComponent();
    if (!timelines) {
        return Base::failure<void>(std::runtime_error("The host has no timeline component"));
    }
    // Only weak references to the component: on another thread it must not even be held for a moment.
    auto completion = [gate = gate_, weakSelf = weak_from_this(), join](std::optional<std::string> videoId) {
        if (join->isAnswered.exchange(true) || !videoId) {
            return;
        }
        auto goOn = [weakSelf, join, videoId = std::move(*videoId)] {
            if (const auto self = weakSelf.lock()) {
                self->liveShareDidOpen(join, videoId);
            }
        };
        gate->whileOpen([&](HostEnvironment& environment) {
            guarded(environment, joinFunction, [&] { environment.execution.postToMain(std::move(goOn)); });
        });
    };
    return timelines->openLiveShareWithShareFiles({shareFile}, nullptr, std::nullopt, std::move(completion));
}

void RemoteCodingComponent::liveShareDidOpen(const std::shared_ptr<const Join>& join,
                                             const std::string& timelineVideoId) {
    guarded(environment_, joinFunction, [&] {
        const auto user = environment_.account.user();
        if (!user) {
            return;
        }
        auto goOn = [weakSelf = weak_from_this(), join, timelineVideoId, userId = user->id] {
            if (const auto self = weakSelf.lock()) {
                self->setUpJoinedSession(*join, timelineVideoId, userId);
            }
        };
        environment_.execution.postToMainAfter(Limits::joinDelay, std::move(goOn));
    });
}

void RemoteCodingComponent::setUpJoinedSession(const Join& join, const std::string& timelineVideoId,
                                               const std::string& userId) {
    if (join.hasFailed) {
        return;
    }
    guarded(environment_, joinFunction, [&] {
        const auto timelines = environment_.componentLocator.timelineComponent();
        const auto timeline = timelines ? timelines->getTimelineWithVideoId(timelineVideoId) : nullptr;
        if (!timeline) {
            return;
        }
        std::vector<LiveStreamingVideoStream> streams{LiveStreamingVideoStream(join.streamName)};
        const auto session = std::make_shared<RemoteCodingSession>(
            join.name, std::move(streams), timeline->uniqueId(), join.tevuVideoId, join.teamId, false);
        attachSynchroniser(*session, userId, join.taggingSessionId);
        attachLiveStreamObserver(*session);
        registerSession(session);
    });
}

void RemoteCodingComponent::attachSynchroniser(RemoteCodingSession& session, const std::string& userId,
                                               const std::optional<std::string>& taggingSessionId) {
    constexpr std::string_view function =
        "init(timelineId:teamId:userId:videoId:taggingSessionId:taggingSessionService:graphQLClient:)";
    // Two synchronisers must not serve one timeline.
    if (const auto replaced = this->session(session.timelineId)) {
        cancelSyncing(*replaced);
    }
    // A session that cannot be synchronised is registered all the same: its stream is live, and the user must be able
    // to end it.
    guarded(environment_, function, [&] {
        if (!environment_.userDefaults.boolForKey(UserDefaultsKeys::enableSharedTimelines).value_or(false)) {
            return;
        }
        session.timelineUploadService = TimelineUploadService::make(
            environment_, session.timelineId, session.teamId, userId, session.tevuVideoId, taggingSessionId,
            environment_.syncLibrary.makeTaggingSessionService(), environment_.graphQLClient);
    });
}

void RemoteCodingComponent::registerSession(const std::shared_ptr<RemoteCodingSession>& session) {
    remoteCodingSessionsByTimelineId_.insert_or_assign(session->timelineId, session);
    postSessionUpdate(session->timelineId);
}

void RemoteCodingComponent::postSessionUpdate(const std::string& timelineId) {
    constexpr std::string_view function = "postSessionUpdate(timelineId:)";
    const auto session = this->session(timelineId);
    if (!session) {
        return;
    }
    auto post = [&environment = environment_, session, function] {
        guarded(environment, function, [&] {
            environment.notificationCenter.post(
                Notification(Notifications::remoteCodingSessionUpdatedNotification, nullptr,
                             {{"sessionDetails", session->details()}}));
        });
    };
    guarded(environment_, function, [&] { environment_.execution.postToMain(std::move(post)); });
}

void RemoteCodingComponent::streamEnded(const std::string& timelineId) {
    constexpr std::string_view function = "streamEnded(timelineId:)";
    checkIsMainThread(environment_, function);
    const auto self = shared_from_this();
    guarded(environment_, function, [&] {
        const auto timelines = environment_.componentLocator.timelineComponent();
        const auto timeline = timelines ? timelines->timelineWith(timelineId) : nullptr;
        if (!timeline) {
            sessionEnded(timelineId);
            return;
        }
        if (const auto session = this->session(timelineId)) {
            session->status = RemoteCodingSessionStatus::streamEnded;
            postSessionUpdate(timelineId);
        }
    });
}

void RemoteCodingComponent::endRemoteCodingSession(const std::string& timelineId) {
    checkIsMainThread(environment_, "endRemoteCodingSession(timelineId:)");
    sessionEnded(timelineId);
}

void RemoteCodingComponent::exitRemoteCodingSession(const std::string& timelineId) {
    checkIsMainThread(environment_, "exitRemoteCodingSession(timelineId:)");
    sessionEnded(timelineId);
}

void RemoteCodingComponent::sessionEnded(std::string timelineId) {
    constexpr std::string_view function = "sessionEnded(timelineId:)";
    const auto self = shared_from_this();
    const auto session = this->session(timelineId);
    if (!session) {
        logError(environment_.logManager, "Tried to end live streaming session when session does not exist",
                 "", function);
        return;
    }
    session->status = RemoteCodingSessionStatus::ended;
    postSessionUpdate(timelineId);
    cancelSyncing(*session);
    guarded(environment_, function, [&] {
        environment_.logManager.logUsage(
            "SessionEnded", LogOpName::remoteCoding,
            {{"TeamId", session->teamId},
             {"VideoId", session->tevuVideoId},
             {"TimelineId", timelineId},
             {"TaggingSessionId", session->taggingSessionId.value_or(std::string())},
             {"isHost", session->isHost}});
    });
    if (const auto& synchroniser = session->timelineUploadService) {
        endedSynchronisersByTimelineId_.insert_or_assign(
            timelineId, EndedSynchroniser{synchroniser, synchroniser->finalStatus()});
    }
    remoteCodingSessionsByTimelineId_.erase(timelineId);
}

void RemoteCodingComponent::cancelSyncing(RemoteCodingSession& session) {
    if (session.timelineUploadService) {
        guarded(environment_, "cancelSyncing()", [&] { session.timelineUploadService->cancelSyncing(); });
    }
}

}  // namespace RemoteCoding
