#pragma once

#include "Components/RemoteCoding/HostInterfaces/RemoteCodingSessionDetails.hpp"
#include "Components/RemoteCoding/HostInterfaces/SharedVideo.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

class LiveStreamObserver;
class TimelineUploadService;

/// The component's own record of one active session on one of the host's timelines. Main thread only. The registry owns
/// it; an update notification that is still to be posted keeps it a little longer.
class RemoteCodingSession {
public:
    RemoteCodingSession(std::string name, std::vector<LiveStreamingVideoStream> streams,
                        std::string timelineId, std::string tevuVideoId, std::string teamId, bool isHost);
    ~RemoteCodingSession();
    RemoteCodingSession(const RemoteCodingSession&) = delete;
    RemoteCodingSession& operator=(const RemoteCodingSession&) = delete;

    /// What a host sees of the session now.
    [[nodiscard]] RemoteCodingSessionDetails details() const;

    const std::string name;  ///< hosted: as the user typed it; joined: the name of the shared video
    const std::vector<LiveStreamingVideoStream> streams;
    const std::string timelineId;
    const std::string tevuVideoId;  ///< the live video's id in the cloud
    const std::string teamId;       ///< the team that owns the video
    const bool isHost;              ///< true when this user publishes the capture

    /// Assigned by nothing: the tagging session of a joined session is known to its synchroniser only.
    std::optional<std::string> taggingSessionId;
    RemoteCodingSessionStatus status = RemoteCodingSessionStatus::starting;
    std::optional<std::string> manifestURL;                        ///< the live video's, once it was fetched
    std::shared_ptr<TimelineUploadService> timelineUploadService;  ///< only where timelines are shared
    std::shared_ptr<LiveStreamObserver> liveStreamObserver;        ///< joined sessions only
};

}  // namespace RemoteCoding
