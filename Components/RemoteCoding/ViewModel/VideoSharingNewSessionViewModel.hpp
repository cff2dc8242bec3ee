#pragma once

#include "Base/Task.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/HostInterfaces/PublishSession.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace RemoteCoding {

/// What the window in which a session is started needs to know and to do, besides what it shows.
///
/// Main thread. The environment outlives it; tasks it has given away may outlive it.
class VideoSharingNewSessionViewModel {
public:
    explicit VideoSharingNewSessionViewModel(HostEnvironment& environment);

    /// Opens a publish session with one angle, the stream. Null when the service answered with less than a capture
    /// needs, which is logged. The task throws the service's own error. Its home is the main thread.
    [[nodiscard]] Base::Task<std::shared_ptr<PublishSession>>
    createNewPublishSession(std::string streamName, std::string videoName, std::string teamId) const;

    /// After the title of the front timeline window; absent when there is none.
    [[nodiscard]] std::optional<std::string> defaultVideoName() const;

    /// The chosen feeds that the host can publish, in the host's order.
    [[nodiscard]] std::vector<std::shared_ptr<CaptureDeviceProtocol>> availableFeeds() const;

private:
    HostEnvironment& environment_;
    std::shared_ptr<TevuGraphQLClientProtocol> tevuGraphQLClient_;
};

}  // namespace RemoteCoding
