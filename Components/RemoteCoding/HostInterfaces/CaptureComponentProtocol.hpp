#pragma once

#include "Base/Result.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"

#include <cstdint>
#include <memory>
#include <string>

namespace RemoteCoding {

/// The state of the user's own published stream. Values from 2 on are all treated alike.
enum class StreamingStatus : std::uint8_t { starting = 0, live = 1, interrupted = 2, stopped = 3 };

/// One capture feed.
class REMOTE_CODING_EXPORT CaptureDeviceProtocol : public HostObject {
public:
    /// Main thread. The feed's name for people.
    [[nodiscard]] virtual std::string localizedName() const = 0;
};

/// An opened publish session of the cloud service.
class REMOTE_CODING_EXPORT PublishSessionProtocol : public HostObject {
public:
    /// Any thread. The cloud id of the video that is published into this session. Never changes.
    [[nodiscard]] virtual const std::string& videoId() const = 0;
};

/// The host's capture. Main thread only.
class REMOTE_CODING_EXPORT CaptureComponentProtocol : public HostObject {
public:
    [[nodiscard]] virtual bool isCapturing() = 0;

    /// Starts publishing the capture of one device into the session, for the team. Has started when it returns a success.
    virtual Base::Result<void>
    captureToTevuLibraryWithPublishSession(std::shared_ptr<PublishSessionProtocol> publishSession,
                                           const std::string& teamId,
                                           std::shared_ptr<CaptureDeviceProtocol> device) = 0;
};

}  // namespace RemoteCoding
