#include "Components/RemoteCoding/Models/TevuRemoteCodingSession.hpp"

#include <cstdint>
#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::int64_t cloudService = 0;  // a `ShareFile`'s source

}  // namespace

std::optional<TevuRemoteCodingSession>
TevuRemoteCodingSession::make(std::string teamId, const LiveStreamingVideoItem& videoItem) {
    if (!videoItem.playbackURL || !videoItem.status || !videoItem.streams) {
        return std::nullopt;
    }
    const auto uploadedDate = Base::RFC3339::parse(videoItem.createdAt);
    if (!uploadedDate) {
        return std::nullopt;
    }
    TevuRemoteCodingSession session;
    session.teamId_ = std::move(teamId);
    session.videoId_ = videoItem.videoId;
    session.title_ = videoItem.title;
    session.playbackURL_ = *videoItem.playbackURL;
    session.status_ = *videoItem.status;
    session.uploadedDate_ = *uploadedDate;
    session.isDeleted_ = videoItem.isDeleted;
    session.streams_ = videoItem.streams;
    if (videoItem.taggingSessionIds && !videoItem.taggingSessionIds->empty()) {
        session.taggingSessionId_ = videoItem.taggingSessionIds->front();
    }
    return session;
}

ShareFile TevuRemoteCodingSession::makeShareFile(UUIDSourceProtocol& uuids) const {
    const std::string identifier = uuids.makeUUID();
    SharedMediaStream stream(identifier, title_, playbackURL_, "");
    SharedVideo video(identifier, title_, std::nullopt, false, {std::move(stream)}, {});
    return ShareFile(std::move(video), cloudService);
}

}  // namespace RemoteCoding
