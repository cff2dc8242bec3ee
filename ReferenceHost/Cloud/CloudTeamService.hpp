#pragma once

#include "Components/RemoteCoding/HostInterfaces/TevuTeamServiceProtocol.hpp"

#include <memory>
#include <utility>
#include <vector>

namespace ReferenceHost {

class CloudConnection;

/// Looks teams up over one host's connection, as the user who is signed in on it.
class CloudTeamService final : public RemoteCoding::TevuTeamServiceProtocol {
public:
    explicit CloudTeamService(std::shared_ptr<CloudConnection> connection)
        : connection_(std::move(connection)) {}

    void fetchTeams(const std::vector<RemoteCoding::TevuFeaturePrivilege>& with,
                    Base::Completion<std::vector<RemoteCoding::TeamSummary>> completion) override;

private:
    std::shared_ptr<CloudConnection> connection_;
};

}  // namespace ReferenceHost
