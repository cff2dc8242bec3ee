// Videos and publish sessions of the GraphQL client.

#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudGraphQLClient.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"

namespace ReferenceHost {

using RemoteCoding::LiveStreamingVideoItem;
using RemoteCoding::PublishSessionSummary;
using RemoteCoding::VideoItem;

void CloudGraphQLClient::getVideo(const std::string& videoId, Base::Completion<VideoItem> completion) {
    CloudCall call;
    call.operation = CloudOperation::getVideo;
    call.videoId = videoId;
    connection_->send(std::make_shared<PendingCallOf<VideoItem>>(
        std::move(call), [videoId](CloudService& service, const Fault&) { return service.getVideo(videoId); },
        std::move(completion)));
}

void CloudGraphQLClient::getVideosForTeamId(
    const std::string& teamId, std::chrono::sys_time<std::chrono::microseconds> updatedAfter,
    Base::Completion<std::vector<LiveStreamingVideoItem>> completion) {
    CloudCall call;
    call.operation = CloudOperation::getVideosForTeamId;
    call.teamId = teamId;
    connection_->send(std::make_shared<PendingCallOf<std::vector<LiveStreamingVideoItem>>>(
        std::move(call),
        [teamId, updatedAfter](CloudService& service, const Fault&) {
            return service.getVideosForTeamId(teamId, updatedAfter);
        },
        std::move(completion)));
}

void CloudGraphQLClient::openPublishSession(const std::string& forTeamId, const std::string& withTitle,
                                            const std::vector<RemoteCoding::StreamAngle>& withAngles,
                                            Base::Completion<PublishSessionSummary> completion) {
    CloudCall call;
    call.operation = CloudOperation::openPublishSession;
    call.teamId = forTeamId;
    call.count = withAngles.size();
    connection_->send(std::make_shared<PendingCallOf<PublishSessionSummary>>(
        std::move(call),
        [forTeamId, withTitle, withAngles](CloudService& service, const Fault&) {
            return Base::Result<PublishSessionSummary>(
                service.videos().publish(forTeamId, withTitle, withAngles));
        },
        std::move(completion)));
}

}  // namespace ReferenceHost
