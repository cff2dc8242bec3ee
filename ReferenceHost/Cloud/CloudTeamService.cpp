#include "ReferenceHost/Cloud/CloudTeamService.hpp"

#include "ReferenceHost/Cloud/CloudConnection.hpp"
#include "ReferenceHost/Cloud/CloudService.hpp"

namespace ReferenceHost {

using RemoteCoding::TeamSummary;

void CloudTeamService::fetchTeams(const std::vector<RemoteCoding::TevuFeaturePrivilege>& with,
                                  Base::Completion<std::vector<TeamSummary>> completion) {
    CloudCall call;
    call.operation = CloudOperation::fetchTeams;
    connection_->send(std::make_shared<PendingCallOf<std::vector<TeamSummary>>>(
        std::move(call),
        [signIn = connection_->signIn(), with](CloudService& service, const Fault&) {
            return service.teams().fetch(signIn, with);
        },
        std::move(completion)));
}

}  // namespace ReferenceHost
