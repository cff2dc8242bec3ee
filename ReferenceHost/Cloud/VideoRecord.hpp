#pragma once

#include "Base/RFC3339.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ReferenceHost {

/// What the service says of a video. Other words are possible; nobody gives them a meaning.
namespace VideoStatus {
inline constexpr const char* live = "LiveVideoReady";
inline constexpr const char* uploading = "Uploading";
inline constexpr const char* ended = "Ended";
inline constexpr const char* error = "Error";
}  // namespace VideoStatus

/// How a published stream comes in at the service.
enum class StreamState : std::uint8_t { waiting, flowing, interrupted, over };

struct VideoStreamRecord {
    std::string id{};
    std::optional<std::string> name{};
    std::optional<std::string> playbackURL{};
};

/// One video as the cloud holds it. Anything that a client may have to do without can be missing.
struct VideoRecord {
    std::string id{};
    std::string teamId{};
    std::string title{};
    std::optional<std::string> status{};
    std::optional<std::string> playbackURL{};
    std::optional<std::vector<VideoStreamRecord>> streams{};
    std::optional<std::string>
        createdAt{};  ///< as it is listed, well-formed or not; absent: when it was added
    std::optional<Base::RFC3339::Time> updatedAt{};  ///< its last change; absent: when it was added
    bool isDeleted = false;
    bool listsTaggingSessions = true;
    StreamState stream = StreamState::waiting;
};

/// A complete live video with one stream for each name, whose stream waits to be published.
[[nodiscard]] VideoRecord liveVideo(const std::string& id, const std::string& teamId,
                                    const std::string& title,
                                    const std::vector<std::string>& streamNames = {"Stream"});

}  // namespace ReferenceHost
