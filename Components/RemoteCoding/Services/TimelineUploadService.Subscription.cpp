#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include "Base/Error.hpp"
#include "Components/RemoteCoding/Models/ErrorLog.hpp"
#include "Components/RemoteCoding/Models/Limits.hpp"

namespace RemoteCoding {

namespace {

constexpr std::string_view subscribeFunction = "subscribeToTaggingSessionUpdates(timelineId:)";
constexpr std::string_view reconnectFunction = "attemptReconnection(attempt:completion:)";

}  // namespace

void TimelineUploadService::startSubscribing() {
    startInBackground(subscribe(shared_from_this()), subscribeFunction);
}

Base::Task<void> TimelineUploadService::subscribe(std::shared_ptr<TimelineUploadService> self) {
    self->attempt(subscribeFunction, [&] { self->subscribeToTaggingSessionUpdates(self->timelineId_); });
    --self->backgroundStarts_;
    co_return;
}

void TimelineUploadService::subscribeToTaggingSessionUpdates(const std::string& timelineId) {
    checkIsNotMainThread(subscribeFunction);
    if (isSyncingCancelled_) {
        return;
    }
    auto& log = environment_.logManager;
    const auto sessionId = taggingSessionId();
    if (!sessionId) {
        logError(log, "No TaggingSessionId found, cannot subscribe to updates", "", subscribeFunction);
        return;
    }
    log.logInfo("Subscribing to tagging session updates. TeamId=" + teamId_ + ", VideoId=" + videoId_ +
                ", TaggingSessionId=" + *sessionId + ", TimelineId=" + timelineId);
    const auto self = shared_from_this();
    try {
        taggingSessionSubscription_.subscribe(
            *sessionId, timelineId,
            [self](TaggingSessionChangeType changeType, const ChangedTaggingSession& taggingSession) {
                self->handleTaggingSessionUpdate(changeType, taggingSession);
            },
            [self](const std::exception_ptr&) { self->subscriptionDidFail(); });
    } catch (...) {
        // A client that throws instead of calling the error handler is treated as if it had called it.
        log.logWarn("Error while listening for tagging session changes. Error=" +
                    Base::describe(std::current_exception()));
        environment_.execution.postToMain([self] { self->subscriptionDidFail(); });
    }
}

void TimelineUploadService::subscriptionDidFail() {
    checkIsMainThread(subscribeFunction);
    // Unsubscribing lets go of the handlers, and so perhaps of the last reference.
    const auto self = shared_from_this();
    attempt(subscribeFunction, [this] { taggingSessionSubscription_.unsubscribe(); });
    if (isSyncingCancelled_) {
        return;
    }
    environment_.logManager.logWarn("Disconnected from tagging session updates. Attempting to reconnect.");
    attemptReconnection(1, [weakSelf = weak_from_this()] {
        if (const auto strongSelf = weakSelf.lock()) {
            strongSelf->reconnectionAttempt_ = 0;
            strongSelf->startSubscribing();
        }
    });
}

void TimelineUploadService::attemptReconnection(std::int64_t attempt, std::function<void()> completion) {
    checkIsMainThread(reconnectFunction);
    if (isSyncingCancelled_) {
        return;
    }
    if (attempt > Limits::maximumReconnectionAttempts) {
        logError(environment_.logManager, "Hit maximum reconnection attempts", "", reconnectFunction);
        if (completion) {
            completion();
        }
        return;
    }
    reconnectionAttempt_ = attempt;
    environment_.logManager.logInfo("Attempting to reconnect to the remote tagging session. Attempt=" +
                                    std::to_string(attempt));
    runBlockSerially(
        [self = shared_from_this(), attempt, completion = std::move(completion)] {
            if (self->isSyncingCancelled_) {
                self->runNextBlock();
                return;
            }
            self->updateTaggingSession([self, attempt, completion](bool uploaded) {
                if (self->isSyncingCancelled_) {
                    self->runNextBlock();
                    return;
                }
                if (!uploaded) {
                    self->retryReconnection(attempt, completion);
                    return;
                }
                self->syncRemoteTaggingSessionToLocalTimeline([self, attempt, completion](bool pulled) {
                    if (!pulled) {
                        self->retryReconnection(attempt, completion);
                        return;
                    }
                    if (completion) {
                        completion();
                    }
                    self->runNextBlock();
                });
            });
        },
        SynchronisationBlock::reconnection);
}

// The next attempt is queued while this one still holds the queue, so that it runs after everything that waits already.
void TimelineUploadService::retryReconnection(std::int64_t number, std::function<void()> completion) {
    auto nextAttempt = [self = shared_from_this(), number, completion = std::move(completion)] {
        self->attemptReconnection(number + 1, completion);
        self->runNextBlock();
    };
    if (isSyncingCancelled_ || !attempt(reconnectFunction, [&] {
            waitForTime(Limits::reconnectionDelay, std::move(nextAttempt));
        })) {
        runNextBlock();
    }
}

}  // namespace RemoteCoding
