#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include "Base/Await.hpp"
#include "Base/Error.hpp"
#include "Base/MainThreadDeleter.hpp"
#include "Base/TaskScope.hpp"
#include "Base/Threading.hpp"
#include "Components/RemoteCoding/Models/ErrorLog.hpp"
#include "Components/RemoteCoding/Models/Limits.hpp"

#include <algorithm>
#include <cmath>

namespace RemoteCoding {

namespace {

constexpr std::string_view initFunction =
    "init(timelineId:teamId:userId:videoId:taggingSessionId:taggingSessionService:graphQLClient:)";
constexpr std::string_view waitFunction = "waitForTime(timeInSeconds:completion:)";

}  // namespace

std::shared_ptr<TimelineUploadService>
TimelineUploadService::make(HostEnvironment& environment, std::string timelineId, std::string teamId,
                            std::string userId, std::string videoId,
                            std::optional<std::string> taggingSessionId,
                            std::shared_ptr<TaggingSessionServiceProtocol> taggingSessionService,
                            std::shared_ptr<GraphQLTaggingSessionProtocol> graphQLClient) {
    const std::shared_ptr<TimelineUploadService> service(
        new TimelineUploadService(environment, std::move(timelineId), std::move(teamId), std::move(userId),
                                  std::move(videoId), std::move(taggingSessionId),
                                  std::move(taggingSessionService), std::move(graphQLClient)),
        Base::MainThreadDeleter(environment.execution));
    service->checkIsMainThread(initFunction);
    service->start();
    return service;
}

TimelineUploadService::TimelineUploadService(
    HostEnvironment& environment, std::string timelineId, std::string teamId, std::string userId,
    std::string videoId, std::optional<std::string> taggingSessionId,
    std::shared_ptr<TaggingSessionServiceProtocol> taggingSessionService,
    std::shared_ptr<GraphQLTaggingSessionProtocol> graphQLClient)
    : environment_(environment),
      timelineId_(std::move(timelineId)),
      teamId_(std::move(teamId)),
      videoId_(std::move(videoId)),
      userId_(std::move(userId)),
      taggingSessionService_(std::move(taggingSessionService)),
      taggingSessionId_(std::move(taggingSessionId)),
      updateTevuTaggingSessionThrottler_(environment.execution, Limits::changeCoalescing,
                                         [this] {
                                             // The throttler is a member and does not call after it is gone.
                                             if (const auto self = weak_from_this().lock()) {
                                                 self->queueUpload();
                                             }
                                         }),
      momentCache_(environment.logManager),
      taggingSessionSubscription_(graphQLClient, environment.logManager),
      graphQLClient_(std::move(graphQLClient)),
      queue_(timelineId_, environment.synchronisationObserver,
             [this](const std::exception_ptr& error) { logUnexpectedFailure(error, "runNextBlock()"); }),
      firstPullIsPending_(taggingSessionId_.has_value()) {}

TimelineUploadService::~TimelineUploadService() {
    attempt("deinit", [this] { *finalStatus_ = status(); });
    if (timelineObserver_) {
        attempt("deinit", [this] { environment_.notificationCenter.removeObserver(*timelineObserver_); });
    }
}

void TimelineUploadService::start() {
    const std::weak_ptr<TimelineUploadService> weakSelf = weak_from_this();
    // A call that never came back would otherwise keep the waiting blocks, and these the synchroniser, for good.
    environment_.tasks.scope().whenDropped(weakSelf, [weakSelf] {
        if (const auto self = weakSelf.lock()) {
            self->taggingSessionSubscription_.close();
            self->queue_.dropWaitingBlocks();
        }
    });
    const auto observer = [weakSelf](const Notification& notification) {
        if (const auto self = weakSelf.lock()) {
            self->attempt("timelineDidAnyChange(_:)", [&] { self->timelineDidAnyChange(notification); });
        }
    };
    attempt(initFunction, [&] {
        const auto current = timeline();
        modifyCountAtStart_ = current ? current->modifyCount() : 0;
    });
    attempt(initFunction, [&] {
        timelineObserver_ = environment_.notificationCenter.addObserver(
            TimelineNotifications::timelineDidAnyChange, nullptr, observer);
    });
    const auto self = shared_from_this();
    if (taggingSessionId()) {
        runBlockSerially(
            [self] {
                self->syncRemoteTaggingSessionToLocalTimeline([self](bool) { self->runNextBlock(); });
                self->startSubscribing();
            },
            SynchronisationBlock::pull);
    } else {
        startInBackground(createTaggingSessionAndStart(self), initFunction);
    }
}

// The three steps follow each other whether or not the creation succeeds.
Base::Task<void>
TimelineUploadService::createTaggingSessionAndStart(std::shared_ptr<TimelineUploadService> self) {
    co_await self->createNewTaggingSession();
    self->attempt(initFunction, [&] { self->subscribeToTaggingSessionUpdates(self->timelineId_); });
    Base::MainThreadCall submission(self->environment_.execution, [self] {
        self->runBlockSerially([self] { self->updateTaggingSession([self](bool) { self->runNextBlock(); }); },
                               SynchronisationBlock::upload);
        --self->backgroundStarts_;
    });
    const Base::Result<void> submitted = co_await submission;
    if (!submitted.succeeded()) {
        --self->backgroundStarts_;
        self->logUnexpectedFailure(submitted.error(), initFunction);
    }
}

// The block holds the synchroniser weakly: a change that nobody is left to upload is not worth keeping it. An upload that has
// started holds it.
void TimelineUploadService::queueUpload() {
    checkIsMainThread("runBlockSerially(_:)");
    queue_.runBlockSerially(
        weak_from_this(), [this] { updateTaggingSession([this](bool) { runNextBlock(); }); },
        SynchronisationBlock::upload);
}

void TimelineUploadService::cancelSyncing() {
    checkIsMainThread("cancelSyncing()");
    isSyncingCancelled_ = true;
    reconnectionAttempt_ = 0;
    attempt("cancelSyncing()", [this] { taggingSessionSubscription_.close(); });
    // What the user changed last must not wait for a throttler that may not live long enough to fire, and what could not be sent
    // before not for the next edit or attempt to reconnect, which do not come any more.
    const bool changedLast = updateTevuTaggingSessionThrottler_.isWaiting();
    updateTevuTaggingSessionThrottler_.fireNow();
    if (!changedLast && !hasNotMetItsSession()) {
        attempt("cancelSyncing()", [this] {
            const auto current = timeline();
            if (current && lastModifyCount_ < current->modifyCount()) {
                queueUpload();
            }
        });
    }
}

SynchronisationStatus TimelineUploadService::status() const {
    using Activity = SynchronisationStatus::Activity;
    SynchronisationStatus status;
    std::optional<std::int64_t> modifyCount;
    attempt("status", [&] {
        if (const auto current = timeline()) {
            modifyCount = current->modifyCount();
        }
    });
    status.hasUnsentEdits = unsentEdits_.exist(modifyCount);
    status.receivesChanges = taggingSessionSubscription_.isSubscribed();
    const bool isWorking = queue_.isRunningSerialBlockOperation() || unsentEdits_.isUploading() ||
                           backgroundStarts_ > 0 || updateTevuTaggingSessionThrottler_.isWaiting();
    if (isSyncingCancelled_) {
        status.activity = Activity::cancelled;
    } else if (reconnectionAttempt_ > 0) {
        status.activity = Activity::waitingToReconnect;
        status.reconnectionAttempt = reconnectionAttempt_;
    } else if (isWorking) {
        status.activity = Activity::working;
    }
    return status;
}

bool TimelineUploadService::hasTaggingSession() const {
    const std::lock_guard lock(taggingSessionIdMutex_);
    return taggingSessionId_.has_value();
}

std::optional<std::string> TimelineUploadService::taggingSessionId() const {
    const std::lock_guard lock(taggingSessionIdMutex_);
    return taggingSessionId_;
}

void TimelineUploadService::runBlockSerially(SerialBlockQueue::Block block, SynchronisationBlock kind) {
    const auto self = shared_from_this();  // the block may let go of the last other reference
    checkIsMainThread("runBlockSerially(_:)");
    queue_.runBlockSerially(std::move(block), kind);
}

void TimelineUploadService::runNextBlock() {
    const auto self = shared_from_this();
    checkIsMainThread("runNextBlock()");
    queue_.runNextBlock();
}

void TimelineUploadService::waitForTime(double timeInSeconds, std::function<void()> completion) {
    startTask(Base::Home::mainThread,
              waitAndComplete(shared_from_this(), timeInSeconds, std::move(completion)), waitFunction);
}

Base::Task<void> TimelineUploadService::waitAndComplete(std::shared_ptr<TimelineUploadService> self,
                                                        double timeInSeconds,
                                                        std::function<void()> completion) {
    const double nanoseconds = std::max(0.0, std::trunc(timeInSeconds * 1'000'000'000.0));
    const std::chrono::duration<std::uint64_t, std::nano> duration(static_cast<std::uint64_t>(nanoseconds));
    Base::SleepCall sleeping(self->environment_.execution, duration);
    const Base::Result<void> slept = co_await sleeping;
    if (!slept.succeeded()) {
        logError(self->environment_.logManager, "Unable to wait between tagging session sync attempts", "",
                 waitFunction);
    }
    completion();
}

void TimelineUploadService::startTask(Base::Home home, Base::Task<void> task, std::string_view function) {
    environment_.tasks.scope().start(environment_.execution, home, std::move(task),
                                     [self = shared_from_this(), function](const std::exception_ptr& error) {
                                         self->logUnexpectedFailure(error, function);
                                     });
}

void TimelineUploadService::startInBackground(Base::Task<void> task, std::string_view function) {
    ++backgroundStarts_;
    if (!attempt(function, [&] { startTask(Base::Home::background, std::move(task), function); })) {
        --backgroundStarts_;
    }
}

std::shared_ptr<TimelineProtocol> TimelineUploadService::timeline() const {
    const auto component = environment_.componentLocator.timelineComponent();
    return component ? component->timelineWith(timelineId_) : nullptr;
}

void TimelineUploadService::reportWrongThread(std::string_view function, const Location& location) const {
    Base::Threading::checkIsMainThread(environment_.execution, sourceName(location.file_name()), function,
                                       location.line());
}

void TimelineUploadService::checkIsNotMainThread(std::string_view function, const Location& location) const {
    Base::Threading::checkIsNotMainThread(environment_.execution, sourceName(location.file_name()), function,
                                          location.line());
}

void TimelineUploadService::logUnexpectedFailure(const std::exception_ptr& error, std::string_view function,
                                                 const Location& location) const noexcept {
    logError(environment_.logManager, "The host failed unexpectedly", Base::describe(error), function,
             location);
}

}  // namespace RemoteCoding
