#include "ReferenceHost/Cloud/CloudVideos.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::PublishSessionSummary;

namespace {

const std::string liveHost = "https://live.cloud.example/";
const std::string manifestName = "/video.live.m3u8";

}  // namespace

VideoRecord liveVideo(const std::string& id, const std::string& teamId, const std::string& title,
                      const std::vector<std::string>& streamNames) {
    VideoRecord video;
    video.id = id;
    video.teamId = teamId;
    video.title = title;
    video.status = VideoStatus::live;
    video.playbackURL = liveHost + id + manifestName;
    video.streams.emplace();
    for (const std::string& name : streamNames) {
        const std::string streamId = id + "." + std::to_string(video.streams->size() + 1);
        std::string playbackURL = liveHost + id;
        playbackURL += '/' + streamId + manifestName;
        video.streams->push_back({.id = streamId, .name = name, .playbackURL = std::move(playbackURL)});
    }
    return video;
}

CloudVideos::CloudVideos(Clock clock, std::uint64_t seed) : clock_(std::move(clock)), ids_(seed) {}

void CloudVideos::add(VideoRecord video) {
    const Base::RFC3339::Time now = clock_();
    video.createdAt = std::move(video.createdAt).value_or(Base::RFC3339::format(now));
    video.updatedAt = video.updatedAt.value_or(now);
    Base::synchronized(lock_, [&] {
        const auto known = std::ranges::find(videos_, video.id, &VideoRecord::id);
        if (known == videos_.end()) {
            videos_.push_back(std::move(video));
        } else {
            *known = std::move(video);
        }
    });
}

template <typename Change>
void CloudVideos::change(const std::string& videoId, Change change) {
    const Base::RFC3339::Time now = clock_();
    Base::synchronized(lock_, [&] {
        const auto video = std::ranges::find(videos_, videoId, &VideoRecord::id);
        if (video != videos_.end()) {
            change(*video);
            video->updatedAt = now;
        }
    });
}

void CloudVideos::setStatus(const std::string& videoId, std::optional<std::string> status) {
    change(videoId, [&](VideoRecord& video) { video.status = std::move(status); });
}

void CloudVideos::markDeleted(const std::string& videoId) {
    change(videoId, [](VideoRecord& video) { video.isDeleted = true; });
}

void CloudVideos::touch(const std::string& videoId) {
    change(videoId, [](VideoRecord&) {});
}

void CloudVideos::setStream(const std::string& videoId, StreamState stream) {
    change(videoId, [&](VideoRecord& video) {
        video.stream = stream;
        if (stream == StreamState::over && video.status != VideoStatus::error) {
            video.status = VideoStatus::ended;
        }
    });
}

StreamState CloudVideos::stream(const std::string& videoId) const {
    const auto video = find(videoId);
    return video ? video->stream : StreamState::waiting;
}

std::optional<VideoRecord> CloudVideos::find(const std::string& videoId) const {
    return Base::synchronized(lock_, [&] {
        const auto video = std::ranges::find(videos_, videoId, &VideoRecord::id);
        return video == videos_.end() ? std::nullopt : std::optional(*video);
    });
}

std::vector<VideoRecord> CloudVideos::ofTeam(const std::string& teamId,
                                             Base::RFC3339::Time updatedAfter) const {
    std::vector<VideoRecord> videos;
    Base::synchronized(lock_, [&] {
        std::ranges::copy_if(videos_, std::back_inserter(videos), [&](const VideoRecord& video) {
            return video.teamId == teamId && video.updatedAt > updatedAfter;
        });
    });
    return videos;
}

PublishSessionSummary CloudVideos::publish(const std::string& teamId, const std::string& title,
                                           const std::vector<RemoteCoding::StreamAngle>& angles) {
    std::vector<std::string> names;
    std::ranges::transform(angles, std::back_inserter(names), &RemoteCoding::StreamAngle::name);
    VideoRecord video = liveVideo(ids_.makeUUID(), teamId, title, names);

    PublishSessionSummary reply;
    reply.id = ids_.makeUUID();
    reply.region = "north";
    reply.videoId = video.id;
    std::ranges::transform(*video.streams, std::back_inserter(reply.mediaStreamIds.emplace()),
                           &VideoStreamRecord::id);
    reply.credentials.emplace();
    reply.credentials->accessKey = ids_.makeUUID();
    reply.credentials->secretKey = ids_.makeUUID();
    reply.credentials->sessionToken = ids_.makeUUID();
    reply.credentials->endpoint = "publish.cloud.example";
    reply.credentials->streamKey = ids_.makeUUID();
    reply.credentials->expiresIn = 3600;
    add(std::move(video));

    const ReplyChange change = Base::synchronized(lock_, [&] {
        ReplyChange next;
        if (!replyChanges_.empty()) {
            next = std::move(replyChanges_.front());
            replyChanges_.erase(replyChanges_.begin());
        }
        return next;
    });
    if (change) {
        change(reply);
    }
    return reply;
}

void CloudVideos::changeNextPublishReply(ReplyChange change) {
    Base::synchronized(lock_, [&] { replyChanges_.push_back(std::move(change)); });
}

}  // namespace ReferenceHost
