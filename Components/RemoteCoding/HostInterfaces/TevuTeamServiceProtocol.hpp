#pragma once

#include "Base/Completion.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// What a team may have paid for. The order is fixed.
enum class TevuFeaturePrivilege : std::uint8_t { videoSharing = 0, remoteCoding = 1 };

/// A team of the signed-in user.
struct TeamSummary {
    TeamSummary() = default;
    explicit TeamSummary(std::string id_, std::optional<std::string> name_ = std::nullopt)
        : id(std::move(id_)), name(std::move(name_)) {}

    std::string id;
    std::optional<std::string> name;  ///< a team without one is not offered
};

/// The sync library's look-up of teams.
class REMOTE_CODING_EXPORT TevuTeamServiceProtocol : public HostObject {
public:
    /// Main thread; must not wait before it returns. The signed-in user's teams that have all these privileges. One answer,
    /// from any thread; a `TevuAPIError` of the case `notSignedIn` when the user must sign in (again).
    virtual void fetchTeams(const std::vector<TevuFeaturePrivilege>& with,
                            Base::Completion<std::vector<TeamSummary>> completion) = 0;
};

}  // namespace RemoteCoding
