#pragma once

#include "Components/RemoteCoding/HostInterfaces/TevuGraphQLClientProtocol.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class CloudConnection;

/// Fetches, subscribes and publishes over one host's connection. Of the options of a fetch it honours `createdByUserId`;
/// everything comes in one answer, so that there is no next token.
class CloudGraphQLClient final : public RemoteCoding::TevuGraphQLClientProtocol {
public:
    explicit CloudGraphQLClient(std::shared_ptr<CloudConnection> connection)
        : connection_(std::move(connection)) {}

    void
    fetchTaggingSessions(const std::string& teamId, const std::string& videoId,
                         const std::optional<RemoteCoding::FetchTaggingSessionsOptions>& options,
                         Base::Completion<std::vector<RemoteCoding::TaggingSessionItem>> completion) override;

    [[nodiscard]] std::shared_ptr<RemoteCoding::SubscriptionHandle>
    subscribeToTaggingSessionChanges(const std::string& taggingSessionId, const std::string& timelineId,
                                     ChangeHandler changeHandler, ErrorHandler errorHandler) override;

    void getVideo(const std::string& videoId, Base::Completion<RemoteCoding::VideoItem> completion) override;
    void getVideosForTeamId(
        const std::string& teamId, std::chrono::sys_time<std::chrono::microseconds> updatedAfter,
        Base::Completion<std::vector<RemoteCoding::LiveStreamingVideoItem>> completion) override;
    void openPublishSession(const std::string& forTeamId, const std::string& withTitle,
                            const std::vector<RemoteCoding::StreamAngle>& withAngles,
                            Base::Completion<RemoteCoding::PublishSessionSummary> completion) override;

private:
    std::shared_ptr<CloudConnection> connection_;
};

}  // namespace ReferenceHost
