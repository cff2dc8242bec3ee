#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Base/Task.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/Services/TevuRemoteCodingService.hpp"

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

namespace RemoteCoding {

/// Who is told of live streams that have failed.
class LiveStreamObserverProtocol {
public:
    virtual ~LiveStreamObserverProtocol() = default;

    /// Any thread. The live stream of the session on that timeline has failed, as far as its observer can tell.
    virtual void liveStreamDidFail(const std::string& timelineId) = 0;
};

/// Decides when the live stream of a joined session has failed.
///
/// Each fragment that the player downloads pushes a deadline out. When it passes, the cloud service is asked for the video's
/// status, and only a video in error is a failure: any other is merely slow, and the observer then waits for the player's next
/// word. What the player itself reports as an error is a failure at once.
///
/// Threads: main. Made by `make`; destroyed on the main thread.
///
/// Ownership: a pending timer and a status request that is under way hold the observer, also after its session has ended;
/// the delegate is held weakly.
class LiveStreamObserver : public std::enable_shared_from_this<LiveStreamObserver> {
public:
    /// Watches from now on, as if a fragment had just arrived. `environment` must outlive the observer.
    [[nodiscard]] static std::shared_ptr<LiveStreamObserver>
    make(HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service,
         std::string tevuVideoId, std::string timelineId, std::weak_ptr<LiveStreamObserverProtocol> delegate);

    ~LiveStreamObserver();
    LiveStreamObserver(const LiveStreamObserver&) = delete;
    LiveStreamObserver& operator=(const LiveStreamObserver&) = delete;

    /// A fragment has arrived, or arrives again after a pause.
    void fragmentDownloaded();

    /// Without an error the player merely pauses.
    void fragmentDownloadPaused(const std::exception_ptr& with);
    void fragmentDownloadDidError(const std::exception_ptr& error);

    /// Nothing more is expected: no deadline stands, nor one that was asked for and has not begun, until the player
    /// reports again.
    void fragmentDownloadComplete();

private:
    LiveStreamObserver(HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service,
                       std::string tevuVideoId, std::string timelineId,
                       std::weak_ptr<LiveStreamObserverProtocol> delegate);

    void startFragmentTimerSoon(Base::Seconds timeInterval);
    void startFragmentTimer(Base::Seconds timeInterval);
    void invalidateFragmentTimer();
    void fragmentTimerFired();
    static Base::Task<void> checkSessionStatus(std::shared_ptr<LiveStreamObserver> self);
    void judge(const Base::Result<VideoItem>& video);
    void reportFailure();

    HostEnvironment& environment_;
    const std::shared_ptr<TevuRemoteCodingService> service_;
    const std::string tevuVideoId_;
    const std::string timelineId_;
    const std::weak_ptr<LiveStreamObserverProtocol> delegate_;

    bool hasReceivedFragment_ = true;  ///< since the timer last fired
    std::shared_ptr<Base::TimerProtocol> fragmentDownloadTimer_;
    std::uint64_t completions_ = 0;  ///< a start of the timer that was asked for before the last one is void
};

}  // namespace RemoteCoding
