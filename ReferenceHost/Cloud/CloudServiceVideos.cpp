// What the service says of its videos.

#include "ReferenceHost/Cloud/CloudService.hpp"
#include "ReferenceHost/Cloud/ConnectionErrors.hpp"
#include "ReferenceHost/Cloud/StoredSession.hpp"
#include "ReferenceHost/Execution/Scheduler.hpp"

#include <utility>

namespace ReferenceHost {

using RemoteCoding::LiveStreamingVideoItem;
using RemoteCoding::VideoItem;

Base::RFC3339::Time CloudService::time() const {
    return epoch + std::chrono::duration_cast<std::chrono::microseconds>(scheduler_.now());
}

Base::Result<VideoItem> CloudService::getVideo(const std::string& videoId) const {
    const auto video = videos_.find(videoId);
    if (!video || video->isDeleted) {
        return Base::Result<VideoItem>::failure(noSuchVideo());
    }
    VideoItem item(video->status, std::nullopt);
    if (video->streams) {
        item.streams.emplace();
        for (const VideoStreamRecord& stream : *video->streams) {
            item.streams->emplace_back(stream.id, stream.playbackURL);
        }
    }
    return item;
}

std::vector<LiveStreamingVideoItem> CloudService::getVideosForTeamId(const std::string& teamId,
                                                                     Base::RFC3339::Time updatedAfter) const {
    std::vector<LiveStreamingVideoItem> items;
    for (VideoRecord& video : videos_.ofTeam(teamId, updatedAfter)) {
        LiveStreamingVideoItem item;
        if (video.streams) {
            item.streams.emplace();
            for (const VideoStreamRecord& stream : *video.streams) {
                item.streams->emplace_back(stream.name);
            }
        }
        if (video.listsTaggingSessions) {
            item.taggingSessionIds = sessionsOf(video.id);
        }
        item.videoId = std::move(video.id);
        item.title = std::move(video.title);
        item.playbackURL = std::move(video.playbackURL);
        item.status = std::move(video.status);
        item.createdAt = *std::move(video.createdAt);
        item.isDeleted = video.isDeleted;
        items.push_back(std::move(item));
    }
    return items;
}

std::vector<std::string> CloudService::sessionsOf(const std::string& videoId) const {
    return Base::synchronized(lock_, [&] {
        std::vector<std::string> ids;
        const auto video = sessionsByVideo_.find(videoId);
        if (video != sessionsByVideo_.end()) {
            for (const auto& session : video->second) {
                ids.push_back(session->id());
            }
        }
        return ids;
    });
}

}  // namespace ReferenceHost
