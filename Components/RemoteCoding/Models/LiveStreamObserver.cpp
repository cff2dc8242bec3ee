#include "Components/RemoteCoding/Models/LiveStreamObserver.hpp"

#include "Base/Error.hpp"
#include "Base/MainThreadDeleter.hpp"
#include "Components/RemoteCoding/Models/ErrorLog.hpp"
#include "Components/RemoteCoding/Models/Limits.hpp"
#include "Components/RemoteCoding/Models/MainThreadTask.hpp"
#include "Components/RemoteCoding/Services/VideoRequest.hpp"

#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view startFunction = "startFragmentTimer(timeInterval:)";
constexpr std::string_view checkFunction = "checkSessionStatus()";

}  // namespace

std::shared_ptr<LiveStreamObserver>
LiveStreamObserver::make(HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service,
                         std::string tevuVideoId, std::string timelineId,
                         std::weak_ptr<LiveStreamObserverProtocol> delegate) {
    const std::shared_ptr<LiveStreamObserver> observer(
        new LiveStreamObserver(environment, std::move(service), std::move(tevuVideoId), std::move(timelineId),
                               std::move(delegate)),
        Base::MainThreadDeleter(environment.execution));
    observer->startFragmentTimerSoon(Limits::fragmentDownloadedTimeInterval);
    return observer;
}

LiveStreamObserver::LiveStreamObserver(HostEnvironment& environment,
                                       std::shared_ptr<TevuRemoteCodingService> service,
                                       std::string tevuVideoId, std::string timelineId,
                                       std::weak_ptr<LiveStreamObserverProtocol> delegate)
    : environment_(environment),
      service_(std::move(service)),
      tevuVideoId_(std::move(tevuVideoId)),
      timelineId_(std::move(timelineId)),
      delegate_(std::move(delegate)) {}

LiveStreamObserver::~LiveStreamObserver() { invalidateFragmentTimer(); }

void LiveStreamObserver::fragmentDownloaded() {
    hasReceivedFragment_ = true;
    startFragmentTimerSoon(Limits::fragmentDownloadedTimeInterval);
}

void LiveStreamObserver::fragmentDownloadPaused(const std::exception_ptr& with) {
    if (with) {
        logError(environment_.logManager, "Fragment Download Paused with Error", Base::describe(with),
                 "fragmentDownloadPaused(with:)");
        reportFailure();
        return;
    }
    hasReceivedFragment_ = true;
    startFragmentTimerSoon(Limits::fragmentsPausedTimeInterval);
}

void LiveStreamObserver::fragmentDownloadDidError(const std::exception_ptr& error) {
    logError(environment_.logManager, "Fragment Download Error", Base::describe(error),
             "fragmentDownloadDidError(_:)");
    reportFailure();
}

void LiveStreamObserver::fragmentDownloadComplete() {
    ++completions_;
    invalidateFragmentTimer();
}

// The job holds the observer weakly: a session that ends before it runs needs no timer any more.
void LiveStreamObserver::startFragmentTimerSoon(Base::Seconds timeInterval) {
    bool isPosted = false;
    guarded(environment_, startFunction, [&] {
        environment_.execution.postToMain(
            [weakSelf = weak_from_this(), timeInterval, completions = completions_] {
                const auto self = weakSelf.lock();
                if (self && self->completions_ == completions) {
                    self->startFragmentTimer(timeInterval);
                }
            });
        isPosted = true;
    });
    if (!isPosted) {
        startFragmentTimer(timeInterval);
    }
}

void LiveStreamObserver::startFragmentTimer(Base::Seconds timeInterval) {
    guarded(environment_, startFunction, [&] {
        // The old timer goes after the new one has begun: when the host refuses that, the old deadline still stands.
        auto timer =
            environment_.execution.startTimer(timeInterval, Limits::fragmentTimerTolerance,
                                              [self = shared_from_this()] { self->fragmentTimerFired(); });
        invalidateFragmentTimer();
        fragmentDownloadTimer_ = std::move(timer);
    });
}

void LiveStreamObserver::invalidateFragmentTimer() {
    if (const auto timer = std::exchange(fragmentDownloadTimer_, nullptr)) {
        guarded(environment_, startFunction, [&] { timer->invalidate(); });
    }
}

void LiveStreamObserver::fragmentTimerFired() {
    fragmentDownloadTimer_ = nullptr;
    hasReceivedFragment_ = false;
    if (!startOnMainThread(environment_, checkFunction, checkSessionStatus(shared_from_this()))) {
        // A check that could not begin must not be the last one.
        startFragmentTimer(Limits::fragmentDownloadedTimeInterval);
    }
}

Base::Task<void> LiveStreamObserver::checkSessionStatus(std::shared_ptr<LiveStreamObserver> self) {
    VideoRequest request(self->environment_.execution, self->service_, self->tevuVideoId_);
    const Base::Result<VideoItem> video = co_await request;
    self->judge(video);
}

void LiveStreamObserver::judge(const Base::Result<VideoItem>& video) {
    if (!video.succeeded()) {
        environment_.logManager.logWarn("Failed to fetch video status. Error=" +
                                        Base::describe(video.error()));
        return;
    }
    if (!hasReceivedFragment_ && video.value().status == "Error") {
        logError(environment_.logManager, "The video has an error status", "", checkFunction);
        reportFailure();
    }
}

void LiveStreamObserver::reportFailure() {
    if (const auto delegate = delegate_.lock()) {
        guarded(environment_, "liveStreamDidFail(timelineId:)",
                [&] { delegate->liveStreamDidFail(timelineId_); });
    }
}

}  // namespace RemoteCoding
