#pragma once

#include "Base/URL.hpp"
#include "Components/RemoteCoding/HostInterfaces/LogManagerProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/VideoItem.hpp"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a player is answered, by the cloud's record of the video alone. Any thread.
namespace RemoteCoding::StreamAddresses {

using ManifestURL = std::optional<std::string>;
using StreamURLs = std::map<std::string, Base::URL>;

inline constexpr std::string_view streamsFunction = "streamURLs(videoId:streamIds:)";

/// The address of the first stream, as the service spells it; absent when there is none. Throws a `TevuAPIError::Video` for a
/// video without a list of streams.
[[nodiscard]] ManifestURL manifestURLOf(const VideoItem& video);

/// The addresses of these streams, of equal ids the later one's. One that is no URL is logged and left out. Throws a
/// `TevuAPIError::Video` for a stream that the video does not have or that cannot be played, and a `TevuAPIError` for a
/// video in error.
[[nodiscard]] StreamURLs streamURLsOf(const VideoItem& video, const std::vector<std::string>& streamIds,
                                      LogManagerProtocol& log);

}  // namespace RemoteCoding::StreamAddresses
