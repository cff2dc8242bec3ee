#pragma once

#include "Base/Result.hpp"
#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/TevuTeamServiceProtocol.hpp"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ReferenceHost {

/// What a client shows to be taken for its user.
struct SignIn {
    std::string userId;
    std::uint64_t number = 0;  ///< tells it from the user's earlier ones
};

struct TeamRecord {
    std::string id{};
    std::optional<std::string> name{};
    std::set<std::string> members{};  ///< user ids
    std::set<RemoteCoding::TevuFeaturePrivilege> privileges{RemoteCoding::TevuFeaturePrivilege::videoSharing,
                                                            RemoteCoding::TevuFeaturePrivilege::remoteCoding};
};

/// The teams of the cloud, in the order in which they were added, and its users' sign-ins. Every sign-in succeeds. The other
/// operations of the service ask for none.
///
/// Threads: any. Every operation has taken effect when it returns.
class CloudTeams {
public:
    /// Takes the place of the team of that id, if there is one.
    void add(TeamRecord team);

    [[nodiscard]] SignIn signIn(const std::string& userId);

    /// The user's sign-ins so far, on all clients, are not accepted any more.
    void expireSignIn(const std::string& userId);

    /// The user's teams that have all these privileges. Fails with a `TevuAPIError` of the case `notSignedIn` without a
    /// sign-in, or with one that is not accepted.
    [[nodiscard]] Base::Result<std::vector<RemoteCoding::TeamSummary>>
    fetch(const std::optional<SignIn>& signIn,
          const std::vector<RemoteCoding::TevuFeaturePrivilege>& with) const;

private:
    Base::ObjectLock lock_;  // of everything below; no other lock is taken under it
    std::vector<TeamRecord> teams_;
    std::uint64_t lastSignIn_ = 0;
    std::map<std::string, std::uint64_t> lastExpired_;  // by user: this sign-in and those before it
};

}  // namespace ReferenceHost
