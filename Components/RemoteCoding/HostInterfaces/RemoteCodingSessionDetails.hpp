#pragma once

#include "Components/RemoteCoding/HostInterfaces/SharedVideo.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// The state of a session.
enum class RemoteCodingSessionStatus : std::uint8_t {
    starting =
        0,  ///< just created, or the host's own stream is starting; also a joined session until its stream is over
    live = 1,         ///< the host's own stream is live
    interrupted = 2,  ///< the host's own stream is in any other state
    unused = 3,       ///< never set
    streamEnded =
        4,      ///< the live stream is over; the timeline stays open and, when it is synchronised, shared
    ended = 5,  ///< the session is over
};

/// What a host sees of a session: its state at the moment it asked or was told.
struct RemoteCodingSessionDetails {
    RemoteCodingSessionDetails(std::string name_, RemoteCodingSessionStatus status_,
                               std::vector<LiveStreamingVideoStream> streams_, bool isHost_,
                               std::string timelineId_, std::string tevuVideoId_)
        : name(std::move(name_)),
          status(status_),
          streams(std::move(streams_)),
          isHost(isHost_),
          timelineId(std::move(timelineId_)),
          tevuVideoId(std::move(tevuVideoId_)) {}

    std::string name;
    RemoteCodingSessionStatus status;
    std::vector<LiveStreamingVideoStream> streams;
    bool isHost;  ///< true when this user publishes the capture, false for a collaborator
    std::string timelineId;
    std::string tevuVideoId;                 ///< the live video's id in the cloud
    std::optional<std::string> manifestURL;  ///< always absent; `getManifestURL` fetches it
};

}  // namespace RemoteCoding
