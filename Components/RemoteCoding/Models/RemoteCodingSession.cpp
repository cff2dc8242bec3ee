#include "Components/RemoteCoding/Models/RemoteCodingSession.hpp"

#include <utility>

namespace RemoteCoding {

RemoteCodingSession::RemoteCodingSession(std::string name_, std::vector<LiveStreamingVideoStream> streams_,
                                         std::string timelineId_, std::string tevuVideoId_,
                                         std::string teamId_, bool isHost_)
    : name(std::move(name_)),
      streams(std::move(streams_)),
      timelineId(std::move(timelineId_)),
      tevuVideoId(std::move(tevuVideoId_)),
      teamId(std::move(teamId_)),
      isHost(isHost_) {}

RemoteCodingSession::~RemoteCodingSession() = default;

RemoteCodingSessionDetails RemoteCodingSession::details() const {
    return RemoteCodingSessionDetails(name, status, streams, isHost, timelineId, tevuVideoId);
}

}  // namespace RemoteCoding
