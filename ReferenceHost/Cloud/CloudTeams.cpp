#include "ReferenceHost/Cloud/CloudTeams.hpp"

#include "ReferenceHost/Cloud/ConnectionErrors.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::TeamSummary;
using RemoteCoding::TevuFeaturePrivilege;

void CloudTeams::add(TeamRecord team) {
    Base::synchronized(lock_, [&] {
        const auto known = std::ranges::find(teams_, team.id, &TeamRecord::id);
        if (known == teams_.end()) {
            teams_.push_back(std::move(team));
        } else {
            *known = std::move(team);
        }
    });
}

SignIn CloudTeams::signIn(const std::string& userId) {
    return Base::synchronized(lock_, [&] { return SignIn{userId, ++lastSignIn_}; });
}

void CloudTeams::expireSignIn(const std::string& userId) {
    Base::synchronized(lock_, [&] { lastExpired_[userId] = lastSignIn_; });
}

Base::Result<std::vector<TeamSummary>>
CloudTeams::fetch(const std::optional<SignIn>& signIn, const std::vector<TevuFeaturePrivilege>& with) const {
    return Base::synchronized(lock_, [&]() -> Base::Result<std::vector<TeamSummary>> {
        const auto expired = signIn ? lastExpired_.find(signIn->userId) : lastExpired_.end();
        if (!signIn || (expired != lastExpired_.end() && signIn->number <= expired->second)) {
            return Base::Result<std::vector<TeamSummary>>::failure(notSignedIn());
        }
        std::vector<TeamSummary> teams;
        for (const TeamRecord& team : teams_) {
            const bool hasAll = std::ranges::all_of(
                with, [&](TevuFeaturePrivilege privilege) { return team.privileges.contains(privilege); });
            if (hasAll && team.members.contains(signIn->userId)) {
                teams.emplace_back(team.id, team.name);
            }
        }
        return teams;
    });
}

}  // namespace ReferenceHost
