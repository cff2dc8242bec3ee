#include "Components/RemoteCoding/Component/RemoteCodingComponent.StreamAddresses.hpp"

#include "Components/RemoteCoding/HostInterfaces/TevuAPIError.hpp"
#include "Components/RemoteCoding/Models/ErrorLog.hpp"

#include <cstdint>
#include <set>
#include <utility>

namespace RemoteCoding::StreamAddresses {

namespace {

using VideoError = TevuAPIError::Video;

const std::vector<VideoStream>& streamsOf(const VideoItem& video) {
    if (!video.streams) {
        throw VideoError(VideoError::Case::noStreams, "The video has no streams.");
    }
    return *video.streams;
}

void checkAreStreams(const std::vector<std::string>& streamIds, const std::vector<VideoStream>& streams) {
    std::set<std::string_view> known;
    for (const auto& stream : streams) {
        known.insert(stream.id);
    }
    for (const auto& streamId : streamIds) {
        if (!known.contains(streamId)) {
            throw VideoError(VideoError::Case::unknownStream,
                             "The video has no stream with the id \"" + streamId + "\".");
        }
    }
}

}  // namespace

ManifestURL manifestURLOf(const VideoItem& video) {
    const auto& streams = streamsOf(video);
    return streams.empty() ? std::nullopt : streams.front().playbackURL;
}

StreamURLs streamURLsOf(const VideoItem& video, const std::vector<std::string>& streamIds,
                        LogManagerProtocol& log) {
    const auto& streams = streamsOf(video);
    checkAreStreams(streamIds, streams);
    const std::set<std::string_view> requested(streamIds.begin(), streamIds.end());
    StreamURLs urls;
    for (const auto& stream : streams) {
        if (!requested.contains(stream.id)) {
            continue;
        }
        if (!stream.playbackURL) {
            throw VideoError(VideoError::Case::noPlaybackURL,
                             "The stream with the id \"" + stream.id + "\" cannot be played.");
        }
        if (auto url = Base::URL::parse(*stream.playbackURL)) {
            urls.insert_or_assign(stream.id, *std::move(url));
        } else {
            logError(log, "Unable to cast playbackURL String to URL", "", streamsFunction);
        }
    }
    if (video.status == "Error") {
        throw TevuAPIError(TevuAPIError::Case::video, "The video is in error.",
                           static_cast<std::int64_t>(VideoError::Case::inError));
    }
    return urls;
}

}  // namespace RemoteCoding::StreamAddresses
