#pragma once

#include "Base/Export.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/RemoteCodingComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/SynchronisationStatus.hpp"

#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

class EnvironmentGate;
class LiveStreamObserver;
class LiveStreamObserverProtocol;
class RemoteCodingSession;
class SessionWindowController;
class TevuRemoteCodingService;
class TimelineUploadService;

/// Live collaboration on a host's timelines: the entry point, and the registry of active sessions.
///
/// Threads: main thread only, the destructor included, except for `installHost`.
///
/// Ownership: the host's environment must outlive the component. The component owns its sessions and what serves them. A host
/// may let go of it inside any of its own operations: one of the component's that is under way holds it until it returns.
///
/// Failure: what a host's object throws where no failure is foreseen ends the operation at hand, is logged, and leaves the
/// component usable.
///
/// Shutdown: a component that goes away stops observing, stops the synchronisation of its sessions and drops them, without
/// ending them: no update is posted and no usage is logged.
class REMOTE_CODING_EXPORT RemoteCodingComponent final
    : public RemoteCodingComponentProtocol,
      public std::enable_shared_from_this<RemoteCodingComponent> {
public:
    /// The environment on which `shared` builds the process-wide component. Any thread. Replaces an environment installed
    /// before; throws `std::logic_error` when something shared has been built on that one already.
    static void installHost(HostEnvironment& environment);

    /// Lets go of the shared component and of its environment, for a host that shuts down in an orderly way.
    static void uninstallHost();

    /// The process-wide component, built on first use. Throws `std::logic_error` before a host is installed.
    ///
    /// A host must not call this, `installHost` or `uninstallHost` from inside its `isMainThread` or `addObserver`, which
    /// are called while it is built: whoever asks meanwhile waits for the component, and these would wait for themselves.
    [[nodiscard]] static std::shared_ptr<RemoteCodingComponent> shared();

    /// A component of its own, for processes in which several hosts live.
    [[nodiscard]] static std::shared_ptr<RemoteCodingComponent> make(HostEnvironment& environment);

    ~RemoteCodingComponent() override;
    RemoteCodingComponent(const RemoteCodingComponent&) = delete;
    RemoteCodingComponent& operator=(const RemoteCodingComponent&) = delete;

    /// How far the synchronisation of the timeline has come; absent when it never had a session that was synchronised. Of
    /// a session that has ended it still shows whether the last edits have gone out.
    [[nodiscard]] std::optional<SynchronisationStatus>
    synchronisationStatus(const std::string& timelineId) const;

    void openCreateSharingSessionWindow() override;
    void openJoinSharingSessionWindow() override;
    [[nodiscard]] bool hasActiveSession(const std::string& timelineId) const override;
    [[nodiscard]] bool isActiveSessionCollaborator(const std::string& timelineId) const override;
    [[nodiscard]] std::optional<RemoteCodingSessionDetails>
    sessionDetails(const std::string& timelineId) const override;
    Base::Result<void> createNewRemoteCodingSession(const std::string& name,
                                                    std::shared_ptr<PublishSessionProtocol> publishSession,
                                                    const std::string& teamId,
                                                    std::shared_ptr<CaptureDeviceProtocol> device) override;
    void joinRemoteCodingSession(const ShareFile& shareFile, const std::string& streamName,
                                 const std::string& tevuVideoId, const std::string& teamId,
                                 const std::optional<std::string>& taggingSessionId) override;
    void streamEnded(const std::string& timelineId) override;
    void endRemoteCodingSession(const std::string& timelineId) override;
    void exitRemoteCodingSession(const std::string& timelineId) override;
    void promptEndRemoteCodingSession(std::shared_ptr<WindowProtocol> on,
                                      const std::string& timelineId) override;
    void promptExitRemoteCodingSession(std::shared_ptr<WindowProtocol> on,
                                       const std::string& timelineId) override;
    void getManifestURL(const std::string& timelineId, const std::string& videoId,
                        Base::Completion<std::optional<std::string>> completion) override;
    void fragmentDownloaded(const std::string& timelineId) override;
    void fragmentDownloadPaused(std::exception_ptr with, const std::string& timelineId) override;
    void fragmentDownloadResumed(const std::string& timelineId) override;
    void fragmentDownloadDidError(std::exception_ptr error, const std::string& timelineId) override;
    void fragmentDownloadComplete(const std::string& timelineId) override;
    void streamURLs(const std::string& videoId, const std::vector<std::string>& streamIds,
                    Base::Completion<std::map<std::string, Base::URL>> completion) override;

private:
    class LiveStreamDelegate;
    struct Join;
    struct Prompt;
    /// The controller of an open window; null when none is open.
    struct WindowOwner {
        std::shared_ptr<SessionWindowController> controller;
        NotificationCenterProtocol::ObserverId willCloseObserver = 0;
    };
    struct EndedSynchroniser {
        std::weak_ptr<TimelineUploadService> synchroniser;
        std::shared_ptr<const SynchronisationStatus> finalStatus;
    };

    [[nodiscard]] static std::shared_ptr<RemoteCodingComponent>
    make(HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service);
    RemoteCodingComponent(HostEnvironment& environment, std::shared_ptr<TevuRemoteCodingService> service);

    void observe(const char* name, void (RemoteCodingComponent::*handler)(const Notification&));
    void timelineDidClose(const Notification& notification);
    void liveShareDidComplete(const Notification& notification);
    void streamStatusChanged(const Notification& notification);

    [[nodiscard]] std::shared_ptr<RemoteCodingSession> session(const std::string& timelineId) const;
    [[nodiscard]] std::optional<std::string> hostSessionTimelineId() const;
    [[nodiscard]] bool hasHostSession() const;

    Base::Result<void> openLiveShare(const ShareFile& shareFile, const std::shared_ptr<const Join>& join);
    void liveShareDidOpen(const std::shared_ptr<const Join>& join, const std::string& timelineVideoId);
    void setUpJoinedSession(const Join& join, const std::string& timelineVideoId, const std::string& userId);
    void attachSynchroniser(RemoteCodingSession& session, const std::string& userId,
                            const std::optional<std::string>& taggingSessionId);
    void attachLiveStreamObserver(RemoteCodingSession& session);
    [[nodiscard]] std::shared_ptr<LiveStreamObserver> liveStreamObserver(const std::string& timelineId) const;
    void registerSession(const std::shared_ptr<RemoteCodingSession>& session);
    void postSessionUpdate(const std::string& timelineId);
    void sessionEnded(std::string timelineId);
    void cancelSyncing(RemoteCodingSession& session);

    void showFailedSessionAlert(const std::string& timelineId);
    void showCaptureNotStartedAlert();

    [[nodiscard]] WindowOwner keptWhileOpen(std::shared_ptr<SessionWindowController> controller,
                                            void (RemoteCodingComponent::*willClose)(const Notification&));
    static void showAndLoad(const WindowOwner& owner);
    void createSharingSessionWindowWillClose(const Notification& notification);
    void joinSharingSessionWindowWillClose(const Notification& notification);
    void letGo(WindowOwner& owner);
    void stopObserving(const WindowOwner& owner);
    void closeWindows();

    HostEnvironment& environment_;
    std::shared_ptr<EnvironmentGate> gate_;  // shared with the host's completions, which may come late
    std::shared_ptr<TevuRemoteCodingService> remoteCodingService_;
    std::shared_ptr<LiveStreamObserverProtocol> liveStreamDelegate_;  // from the first joined session on
    std::vector<NotificationCenterProtocol::ObserverId> observers_;
    WindowOwner newSharingSessionWindowController_;
    WindowOwner joinSharingSessionWindowController_;
    std::map<std::string, std::shared_ptr<RemoteCodingSession>> remoteCodingSessionsByTimelineId_;
    std::map<std::string, EndedSynchroniser> endedSynchronisersByTimelineId_;
};

}  // namespace RemoteCoding
