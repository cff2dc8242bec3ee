#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/CaptureComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/PublishSession.hpp"
#include "ReferenceHost/Timeline/CallRecorder.hpp"
#include "ReferenceHost/Timeline/CaptureWindow.hpp"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ReferenceHost {

class CaptureDevice final : public RemoteCoding::CaptureDeviceProtocol {
public:
    /// Without an id of its own its name tells it from the others.
    explicit CaptureDevice(std::string localizedName, std::string uniqueID = {}, bool isRTPWithoutSDP = false)
        : localizedName_(std::move(localizedName)),
          uniqueID_(uniqueID.empty() ? localizedName_ : std::move(uniqueID)),
          isRTPWithoutSDP_(isRTPWithoutSDP) {}

    [[nodiscard]] std::string localizedName() const override { return localizedName_; }
    [[nodiscard]] const std::string& uniqueID() const override { return uniqueID_; }
    [[nodiscard]] bool isRTPWithoutSDP() const override { return isRTPWithoutSDP_; }

private:
    std::string localizedName_;
    std::string uniqueID_;
    bool isRTPWithoutSDP_;
};

/// A publish session that no service has opened, for that video.
[[nodiscard]] std::shared_ptr<RemoteCoding::PublishSession> makePublishSession(const std::string& videoId);

/// The host's capture and the stream that it publishes. Main thread only. Made as a `std::shared_ptr`; jobs
/// that it has posted hold it weakly.
class CaptureComponent final : public RemoteCoding::CaptureComponentProtocol,
                               public std::enable_shared_from_this<CaptureComponent> {
public:
    /// What is published at present.
    struct Publication {
        std::shared_ptr<RemoteCoding::PublishSessionProtocol> session;
        std::string teamId;
        std::shared_ptr<RemoteCoding::CaptureDeviceProtocol> device;
        std::optional<RemoteCoding::StreamingStatus> status;  ///< the last one posted
    };

    CaptureComponent(Base::ExecutionProtocol& execution,
                     RemoteCoding::NotificationCenterProtocol& notifications,
                     RemoteCoding::WindowingProtocol& windowing, CallRecorder recordCall = {});

    // CaptureComponentProtocol
    [[nodiscard]] bool isCapturing() override { return isCapturing_; }

    /// Fails when nothing is captured. The statuses `starting` and, `connectingTime` later, `live` are posted
    /// by jobs of their own, after the call has returned.
    Base::Result<void> captureToTevuLibraryWithPublishSession(
        std::shared_ptr<RemoteCoding::PublishSessionProtocol> publishSession, const std::string& teamId,
        std::shared_ptr<RemoteCoding::CaptureDeviceProtocol> device) override;
    void endCapturing() override;
    void openOrFocusCaptureWindow() override;
    [[nodiscard]] std::vector<std::shared_ptr<RemoteCoding::CaptureDeviceProtocol>>
    selectedCaptureDevices() override;

    // The user's side, and the world's.
    void startCapturing() { isCapturing_ = true; }

    /// Ends the publication too, if there is one.
    void stopCapturing();

    /// Called inside the call that publishes, when nothing refuses it.
    std::function<void()> willPublish;

    /// The feeds that are there, all of them chosen; the user may untick some in the window "Capture".
    void setDevices(const std::vector<std::shared_ptr<CaptureDevice>>& devices) {
        window_->setDevices({devices.begin(), devices.end()});
    }

    /// Ends the publication: posts `stopped`. The capture goes on.
    void stopPublishing();

    /// The stream breaks off and comes back: posts `interrupted`, `live`. Nothing without a publication.
    void interruptStream();
    void resumeStream();

    [[nodiscard]] const std::optional<Publication>& publication() const { return publication_; }

    /// Called for each status of a publication, before it is posted.
    std::function<void(const std::string& videoId, RemoteCoding::StreamingStatus status)> didChangeStream;

    std::function<void()> didEndCapturing;  ///< called after a running capture has ended

    std::exception_ptr refusal;          ///< set: publishing fails with it
    Base::Seconds connectingTime{0.25};  ///< from `starting` to `live`

private:
    void tell(const Publication& publication, RemoteCoding::StreamingStatus status) const;
    void post(RemoteCoding::StreamingStatus status);
    void postLater(Base::Seconds delay, RemoteCoding::StreamingStatus status);

    Base::ExecutionProtocol& execution_;
    RemoteCoding::NotificationCenterProtocol& notifications_;
    RemoteCoding::WindowingProtocol& windowing_;
    CallRecorder recordCall_;
    std::shared_ptr<CaptureWindow> window_ = std::make_shared<CaptureWindow>();
    bool isCapturing_ = false;
    std::optional<Publication> publication_;
    std::uint64_t publicationNumber_ = 0;  // tells late jobs that their publication is over
};

}  // namespace ReferenceHost
