#pragma once

#include "Base/RFC3339.hpp"
#include "Components/RemoteCoding/HostInterfaces/SharedVideo.hpp"
#include "Components/RemoteCoding/HostInterfaces/UUIDSourceProtocol.hpp"

#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

/// One live video that the cloud service offers for joining. A value: what was read from the listing does not change.
class TevuRemoteCodingSession {
public:
    using Streams = std::optional<std::vector<LiveStreamingVideoStream>>;

    /// Absent for an entry that cannot be joined: one without playback URL, status or list of streams, or with a
    /// creation time that is not RFC 3339.
    [[nodiscard]] static std::optional<TevuRemoteCodingSession> make(std::string teamId,
                                                                     const LiveStreamingVideoItem& videoItem);

    /// What the host opens to join this video. Its identifier is new with each call.
    [[nodiscard]] ShareFile makeShareFile(UUIDSourceProtocol& uuids) const;

    [[nodiscard]] const std::string& teamId() const { return teamId_; }
    [[nodiscard]] const std::string& videoId() const { return videoId_; }
    [[nodiscard]] const std::string& title() const { return title_; }
    [[nodiscard]] const std::string& playbackURL() const { return playbackURL_; }  ///< of the manifest
    [[nodiscard]] const std::string& status() const { return status_; }            ///< the service's word
    [[nodiscard]] Base::RFC3339::Time uploadedDate() const { return uploadedDate_; }
    [[nodiscard]] bool isDeleted() const { return isDeleted_; }
    [[nodiscard]] const Streams& streams() const { return streams_; }

    /// The tagging session attached to the video; the first when there are several.
    [[nodiscard]] const std::optional<std::string>& taggingSessionId() const { return taggingSessionId_; }

private:
    TevuRemoteCodingSession() = default;

    std::string teamId_;
    std::string videoId_;
    std::string title_;
    std::string playbackURL_;
    std::string status_;
    Base::RFC3339::Time uploadedDate_;
    bool isDeleted_ = false;
    Streams streams_;
    std::optional<std::string> taggingSessionId_;
};

}  // namespace RemoteCoding
