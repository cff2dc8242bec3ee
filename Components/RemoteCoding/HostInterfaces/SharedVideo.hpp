#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// One stream of a live video.
struct LiveStreamingVideoStream {
    LiveStreamingVideoStream() = default;
    explicit LiveStreamingVideoStream(std::optional<std::string> name_) : name(std::move(name_)) {}

    std::optional<std::string> name;

    friend bool operator==(const LiveStreamingVideoStream&, const LiveStreamingVideoStream&) = default;
};

/// A live video as the cloud service lists it.
struct LiveStreamingVideoItem {
    LiveStreamingVideoItem() = default;
    LiveStreamingVideoItem(std::string videoId_, std::string title_, std::optional<std::string> playbackURL_,
                           std::optional<std::string> status_, std::string createdAt_, bool isDeleted_,
                           std::optional<std::vector<LiveStreamingVideoStream>> streams_,
                           std::optional<std::vector<std::string>> taggingSessionIds_)
        : videoId(std::move(videoId_)),
          title(std::move(title_)),
          playbackURL(std::move(playbackURL_)),
          status(std::move(status_)),
          createdAt(std::move(createdAt_)),
          isDeleted(isDeleted_),
          streams(std::move(streams_)),
          taggingSessionIds(std::move(taggingSessionIds_)) {}

    std::string videoId;
    std::string title;
    std::optional<std::string> playbackURL;
    std::optional<std::string> status;
    std::string createdAt;  ///< RFC 3339
    bool isDeleted = false;
    std::optional<std::vector<LiveStreamingVideoStream>> streams;
    std::optional<std::vector<std::string>> taggingSessionIds;
};

/// One playable stream of a shared video.
struct SharedMediaStream {
    SharedMediaStream() = default;
    SharedMediaStream(std::string identifier_, std::string title_, std::string playbackURL_,
                      std::string path_)
        : identifier(std::move(identifier_)),
          title(std::move(title_)),
          playbackURL(std::move(playbackURL_)),
          path(std::move(path_)) {}

    std::string identifier;
    std::string title;
    std::string playbackURL;
    std::string path;  ///< empty for a stream that is played from its URL
};

/// A video that is shared as a whole: its streams and the timelines that come with it.
struct SharedVideo {
    SharedVideo() = default;
    SharedVideo(std::string identifier_, std::string name_, std::optional<std::string> directory_,
                bool isDownloaded_, std::vector<SharedMediaStream> streams_,
                std::vector<std::string> timelines_)
        : identifier(std::move(identifier_)),
          name(std::move(name_)),
          directory(std::move(directory_)),
          isDownloaded(isDownloaded_),
          streams(std::move(streams_)),
          timelines(std::move(timelines_)) {}

    std::string identifier;
    std::string name;
    std::optional<std::string> directory;
    bool isDownloaded = false;
    std::vector<SharedMediaStream> streams;
    std::vector<std::string> timelines;
};

/// What the host opens to show somebody else's live video.
///
/// The component's own window fills it in so: `identifier` is a new UUID for each join, not the video's id in the cloud, which
/// comes with the session (`RemoteCodingSessionDetails::tevuVideoId`). There is one stream, with that same identifier and the
/// playback URL that was listed; no directory, no timelines. The id that `openLiveShareWithShareFiles` completes with may be
/// that identifier.
struct ShareFile {
    ShareFile() = default;
    ShareFile(SharedVideo video_, std::int64_t source_) : video(std::move(video_)), source(source_) {}

    SharedVideo video;
    std::int64_t source = 0;  ///< 0: the cloud service
};

}  // namespace RemoteCoding
