#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// One stream of a video in the cloud.
struct VideoStream {
    VideoStream() = default;
    VideoStream(std::string id_, std::optional<std::string> playbackURL_)
        : id(std::move(id_)), playbackURL(std::move(playbackURL_)) {}

    std::string id;
    std::optional<std::string> playbackURL;
};

/// A video in the cloud.
struct VideoItem {
    VideoItem() = default;
    VideoItem(std::optional<std::string> status_, std::optional<std::vector<VideoStream>> streams_)
        : status(std::move(status_)), streams(std::move(streams_)) {}

    std::optional<std::string> status;                ///< the service's word; "Error" for a video in error
    std::optional<std::vector<VideoStream>> streams;  ///< in the service's order
};

}  // namespace RemoteCoding
