#pragma once

#include "Base/Result.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace RemoteCoding {

/// The state of the user's own published stream. Values from 2 on are all treated alike.
enum class StreamingStatus : std::uint8_t { starting = 0, live = 1, interrupted = 2, stopped = 3 };

/// One capture feed.
class REMOTE_CODING_EXPORT CaptureDeviceProtocol : public HostObject {
public:
    /// Main thread. The feed's name for people.
    [[nodiscard]] virtual std::string localizedName() const = 0;

    /// Main thread. Tells one feed from another; never changes.
    [[nodiscard]] virtual const std::string& uniqueID() const = 0;

    /// Main thread. An RTP stream that is not described by SDP, which only the enhanced capture can publish.
    [[nodiscard]] virtual bool isRTPWithoutSDP() const = 0;
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

    /// Starts publishing the capture of one device into the session, for the team. Has started when it returns a success, or
    /// will start: what fails later is told by `Notifications::streamStatusChanged`. `publishSession`: from the component's
    /// own window a `PublishSession`, which has the credentials; otherwise what was passed to
    /// `createNewRemoteCodingSession`, as it was passed.
    virtual Base::Result<void>
    captureToTevuLibraryWithPublishSession(std::shared_ptr<PublishSessionProtocol> publishSession,
                                           const std::string& teamId,
                                           std::shared_ptr<CaptureDeviceProtocol> device) = 0;

    /// Ends the capture, and what is published of it.
    virtual void endCapturing() = 0;

    /// Shows the window in which the user starts a capture.
    virtual void openOrFocusCaptureWindow() = 0;

    /// The feeds that are chosen in the capture window, in its order.
    [[nodiscard]] virtual std::vector<std::shared_ptr<CaptureDeviceProtocol>> selectedCaptureDevices() = 0;
};

}  // namespace RemoteCoding
