#pragma once

#include "Base/Task.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/Models/TevuRemoteCodingSession.hpp"
#include "Components/RemoteCoding/Services/TevuRemoteCodingService.hpp"

#include <memory>
#include <vector>

namespace RemoteCoding {

/// What the window in which a session is joined needs to know, besides what it shows.
///
/// Main thread. The environment outlives it; tasks it has given away may outlive it.
class VideoSharingJoinSessionViewModel {
public:
    VideoSharingJoinSessionViewModel(HostEnvironment& environment,
                                     std::shared_ptr<TevuRemoteCodingService> service);

    /// The team's live sessions that can be joined: what has changed since this time yesterday, is live or becomes so, and
    /// is not deleted. In the service's order. The task throws the service's own error. Its home is the main thread.
    [[nodiscard]] Base::Task<std::vector<TevuRemoteCodingSession>> fetchLiveSessions(TeamSummary team) const;

private:
    HostEnvironment& environment_;
    std::shared_ptr<TevuRemoteCodingService> service_;
};

}  // namespace RemoteCoding
