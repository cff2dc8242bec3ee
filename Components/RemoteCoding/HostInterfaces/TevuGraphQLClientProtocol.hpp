#pragma once

#include "Base/Completion.hpp"
#include "Components/RemoteCoding/HostInterfaces/GraphQLTaggingSessionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/PublishSession.hpp"
#include "Components/RemoteCoding/HostInterfaces/SharedVideo.hpp"
#include "Components/RemoteCoding/HostInterfaces/VideoItem.hpp"

#include <chrono>
#include <string>
#include <vector>

namespace RemoteCoding {

/// The host's client of the cloud service's GraphQL interface. The operations below may be called from any thread, the main
/// thread included, and each must not wait before it returns; it gives one answer, from any thread, and is not repeated by the
/// client.
class REMOTE_CODING_EXPORT TevuGraphQLClientProtocol : public GraphQLTaggingSessionProtocol {
public:
    /// What the service knows of the video now.
    virtual void getVideo(const std::string& videoId, Base::Completion<VideoItem> completion) = 0;

    /// The team's videos that have changed since then, live or not, in the service's order.
    virtual void getVideosForTeamId(const std::string& teamId,
                                    std::chrono::sys_time<std::chrono::microseconds> updatedAfter,
                                    Base::Completion<std::vector<LiveStreamingVideoItem>> completion) = 0;

    /// Opens a session into which a capture can be published: a new live video of the team.
    virtual void openPublishSession(const std::string& forTeamId, const std::string& withTitle,
                                    const std::vector<StreamAngle>& withAngles,
                                    Base::Completion<PublishSessionSummary> completion) = 0;
};

}  // namespace RemoteCoding
