#pragma once

#include "Components/RemoteCoding/HostInterfaces/CaptureComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/RemoteCodingComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineComponentProtocol.hpp"

#include <memory>

namespace RemoteCoding {

/// Where the host's components find each other. Main thread only. A component that the host does not have (yet, or any
/// more) is null; the remote coding component then goes on as if that component had answered "absent" or "refused".
class REMOTE_CODING_EXPORT ComponentLocatorProtocol {
public:
    virtual ~ComponentLocatorProtocol() = default;

    [[nodiscard]] virtual std::shared_ptr<TimelineComponentProtocol> timelineComponent() = 0;
    [[nodiscard]] virtual std::shared_ptr<CaptureComponentProtocol> captureComponent() = 0;

    /// What the host registered as the remote coding component: usually `RemoteCodingComponent::shared()`.
    [[nodiscard]] virtual std::shared_ptr<RemoteCodingComponentProtocol> remoteCodingComponent() = 0;
};

}  // namespace RemoteCoding
