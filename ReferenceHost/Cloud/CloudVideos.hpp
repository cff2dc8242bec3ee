#pragma once

#include "Base/Result.hpp"
#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/PublishSession.hpp"
#include "ReferenceHost/Cloud/VideoRecord.hpp"
#include "ReferenceHost/UUIDSource.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace ReferenceHost {

/// The videos of the cloud, in the order in which they were added, whatever their dates say.
///
/// A video is published into by one host: opening the publish session makes the video, with the status "LiveVideoReady". Its
/// stream flows while that host's capture publishes it with its link up. When the capture ends, the video's status becomes
/// "Ended", unless it is "Error".
///
/// Threads: any. Every operation has taken effect when it returns. What is said about a video that is not there is ignored.
class CloudVideos {
public:
    using Clock = std::function<Base::RFC3339::Time()>;
    using ReplyChange = std::function<void(RemoteCoding::PublishSessionSummary&)>;

    /// `seed`: of the identifiers and keys that the service makes up.
    CloudVideos(Clock clock, std::uint64_t seed);

    /// Takes the place of the video of that id, if there is one.
    void add(VideoRecord video);

    void setStatus(const std::string& videoId, std::optional<std::string> status);

    /// It stays in its team's list, marked as deleted, and cannot be got by itself any more.
    void markDeleted(const std::string& videoId);

    /// Something about it has changed that is kept elsewhere.
    void touch(const std::string& videoId);

    void setStream(const std::string& videoId, StreamState stream);
    [[nodiscard]] StreamState stream(const std::string& videoId) const;  ///< waiting for no video

    [[nodiscard]] std::optional<VideoRecord> find(const std::string& videoId) const;

    /// Those that have changed after that time.
    [[nodiscard]] std::vector<VideoRecord> ofTeam(const std::string& teamId,
                                                  Base::RFC3339::Time updatedAfter) const;

    /// Makes the video, with one stream for each angle.
    [[nodiscard]] RemoteCoding::PublishSessionSummary
    publish(const std::string& teamId, const std::string& title,
            const std::vector<RemoteCoding::StreamAngle>& angles);

    /// A fault on demand: the reply to the next opening is changed so before it is sent; the video is made all the same. May
    /// be said several times ahead.
    void changeNextPublishReply(ReplyChange change);

private:
    template <typename Change>
    void change(const std::string& videoId, Change change);

    const Clock clock_;
    UUIDSource ids_;
    Base::ObjectLock lock_;  // of everything below; no other lock is taken under it
    std::vector<VideoRecord> videos_;
    std::vector<ReplyChange> replyChanges_;
};

}  // namespace ReferenceHost
