#pragma once

#include "Base/Completion.hpp"
#include "Base/URL.hpp"
#include "Components/RemoteCoding/HostInterfaces/CaptureComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/RemoteCodingSessionDetails.hpp"
#include "Components/RemoteCoding/HostInterfaces/SharedVideo.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowProtocol.hpp"

#include <exception>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

/// Everything that a host calls. Main thread only, all of it; completions are called on the main thread, never inside
/// the call.
class REMOTE_CODING_EXPORT RemoteCodingComponentProtocol : public HostObject {
public:
    /// Shows the window in which a session is started from a capture feed, or brings it to the front, and fills it anew.
    /// Without a running capture an alert says so instead and offers the capture window; it blocks the main thread until it
    /// is answered. Nothing happens while this user hosts a session. A window that the toolkit cannot make is logged, and
    /// the next call tries again.
    ///
    /// The windows of this and the next operation close with the component.
    virtual void openCreateSharingSessionWindow() = 0;

    /// Shows the window in which a live session of a team is joined, or brings it to the front, and fills it anew.
    virtual void openJoinSharingSessionWindow() = 0;

    /// Whether the timeline has a session in which edits are shared or a stream is live.
    [[nodiscard]] virtual bool hasActiveSession(const std::string& timelineId) const = 0;

    /// Whether the timeline has a session that somebody else hosts.
    [[nodiscard]] virtual bool isActiveSessionCollaborator(const std::string& timelineId) const = 0;

    [[nodiscard]] virtual std::optional<RemoteCodingSessionDetails>
    sessionDetails(const std::string& timelineId) const = 0;

    /// Publishes the running capture as a session. Without a running capture or a signed-in user nothing is created and
    /// nothing fails: `sessionDetails` of the capturing timeline tells. The failure is the capture component's own error, or
    /// that there is no capture component, publish session or device; nothing has been created then. Its text is shown to the
    /// user.
    virtual Base::Result<void> createNewRemoteCodingSession(
        const std::string& name, std::shared_ptr<PublishSessionProtocol> publishSession,
        const std::string& teamId, std::shared_ptr<CaptureDeviceProtocol> device) = 0;

    /// Opens the live share and joins its session once its timeline is there, about three seconds after the host has
    /// opened it. A host learns of it by the session's first update notification.
    ///
    /// A join that fails is told to nobody: a failed `openLiveShareWithShareFiles` is logged; a completion without an id, a user
    /// who is signed out by then and a timeline that is not found end it in silence. A host that shows progress has a time
    /// limit of its own.
    virtual void joinRemoteCodingSession(const ShareFile& shareFile, const std::string& streamName,
                                         const std::string& tevuVideoId, const std::string& teamId,
                                         const std::optional<std::string>& taggingSessionId) = 0;

    /// The live stream of the timeline's session is over for good. The session goes on while its timeline is open; without one
    /// (`timelineWith` gives null) it ends. For a hosted session call it after the last `streamStatusChanged`: a later status
    /// takes its place.
    virtual void streamEnded(const std::string& timelineId) = 0;

    /// Ends the session that this user hosts, without asking. The capture goes on: stop it yourself, only the prompt does that.
    virtual void endRemoteCodingSession(const std::string& timelineId) = 0;

    /// Leaves the session that this user has joined, without asking. The live share goes on showing: stop it yourself, as the
    /// prompt and the alert about a failed session do.
    virtual void exitRemoteCodingSession(const std::string& timelineId) = 0;

    /// Asks, in a sheet on the window, whether to end the hosted session. Returns at once. When the user confirms, the session
    /// that the timeline has by then is ended, and with it the capture, if it is still the timeline's. Any other end of the
    /// sheet, and a null window, which is logged, leave the session as it is.
    ///
    /// A session that is not active any more is ended without asking.
    virtual void promptEndRemoteCodingSession(std::shared_ptr<WindowProtocol> on,
                                              const std::string& timelineId) = 0;

    /// The same for a session that this user has joined: asks whether to leave it, and with it the live share of the
    /// timeline that is in front when the user confirms.
    virtual void promptExitRemoteCodingSession(std::shared_ptr<WindowProtocol> on,
                                               const std::string& timelineId) = 0;

    /// The manifest URL of the video: the playback URL of its first stream. Absent when it has none. Without a session on
    /// the timeline it is absent too, and the service is not asked. When one was found an update notification follows; the URL
    /// itself is only in this answer.
    ///
    /// Fails with a `TevuAPIError::Video` of the case `noStreams`, or with the client's own error. The component's errors are
    /// for the host's player and its log: their texts are English and suggest nothing to the user. The completion is called
    /// once, also when the session, or the component, goes meanwhile; never, once the environment's unfinished tasks have been
    /// dropped or the execution takes no more jobs.
    virtual void getManifestURL(const std::string& timelineId, const std::string& videoId,
                                Base::Completion<std::optional<std::string>> completion) = 0;

    // The player of a joined session tells how the fragments of the live stream come in, with the five operations below.
    // When none has come for 15 seconds the service is asked for the video, and if that is in error the user is told that
    // the session has failed. Timelines without a session, and those of hosted sessions, are ignored.

    /// A fragment has arrived.
    virtual void fragmentDownloaded(const std::string& timelineId) = 0;

    /// The player waits for fragments. With an error something is wrong, and the user is told that the session has failed;
    /// with none the stream merely pauses, and the service is asked when nothing has come for 5 seconds.
    virtual void fragmentDownloadPaused(std::exception_ptr with, const std::string& timelineId) = 0;

    /// A fragment has arrived after a pause.
    virtual void fragmentDownloadResumed(const std::string& timelineId) = 0;

    /// A fragment could not be downloaded: the user is told that the session has failed.
    virtual void fragmentDownloadDidError(std::exception_ptr error, const std::string& timelineId) = 0;

    /// No fragment is expected any more; nothing is watched until the player tells of one again.
    virtual void fragmentDownloadComplete(const std::string& timelineId) = 0;

    /// The playback URL of each of these streams of the video, by stream id. One that is no URL (RFC 3986) is logged and left
    /// out. No session is needed.
    ///
    /// Fails with a `TevuAPIError::Video` of the case `noStreams`, `unknownStream` or `noPlaybackURL`; with a `TevuAPIError`
    /// of the case `video` and the value of `Video::Case::inError`, once all URLs have been found, when the service's word
    /// for the video is "Error"; or with the client's own error. Texts and completion are as those of `getManifestURL`.
    virtual void streamURLs(const std::string& videoId, const std::vector<std::string>& streamIds,
                            Base::Completion<std::map<std::string, Base::URL>> completion) = 0;
};

}  // namespace RemoteCoding
