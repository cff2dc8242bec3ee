#pragma once

#include "Components/RemoteCoding/HostInterfaces/TaggingSessionServiceProtocol.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class CloudConnection;
class CreatedMoments;

/// Writes instances as moments and rows as a presentation view. Everything is read from them before the call returns, so
/// that what the service gets is the state at the time of the call. A moment's code is the name that the instance's row
/// has then; an instance that has lost its row makes a moment with an empty code, and its update leaves the code as
/// it is. Instances of another timeline model cannot be read, and fail the whole call. For the creations of a timeline that is
/// published as a new one by the time of the answer, that gives no identifiers: they would name moments of the session before.
class CloudTaggingSessionService final : public RemoteCoding::TaggingSessionServiceProtocol {
public:
    explicit CloudTaggingSessionService(std::shared_ptr<CloudConnection> connection);

    void createTaggingSession(const std::string& teamId, const std::string& videoId,
                              const std::string& userId, Base::Completion<std::string> completion) override;
    void savePresentationView(const std::string& teamId, const std::string& videoId,
                              const std::string& taggingSessionId, const std::string& timelineId,
                              const std::string& name, RemoteCoding::RowList rows,
                              Base::Completion<std::string> completion) override;
    void createMoments(const std::string& teamId, const std::string& videoId,
                       const std::string& taggingSessionId, const std::string& timelineId,
                       RemoteCoding::InstanceList instances,
                       Base::Completion<std::vector<std::string>> completion) override;
    void updateMoments(const std::string& teamId, const std::string& videoId,
                       const std::string& taggingSessionId, const std::string& timelineId,
                       RemoteCoding::InstanceList instances, Base::Completion<bool> completion) override;
    void removeMoments(const std::string& teamId, const std::string& videoId,
                       const std::string& taggingSessionId, const std::string& timelineId,
                       std::vector<std::string> momentIds, Base::Completion<bool> completion) override;

private:
    std::shared_ptr<CloudConnection> connection_;
    const std::uint64_t writer_;
    const std::shared_ptr<CreatedMoments> created_;
};

}  // namespace ReferenceHost
