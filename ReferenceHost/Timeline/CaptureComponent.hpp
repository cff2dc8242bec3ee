#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/CaptureComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "ReferenceHost/Timeline/CallRecorder.hpp"

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace ReferenceHost {

class CaptureDevice final : public RemoteCoding::CaptureDeviceProtocol {
public:
    explicit CaptureDevice(std::string localizedName) : localizedName_(std::move(localizedName)) {}
    [[nodiscard]] std::string localizedName() const override { return localizedName_; }

private:
    std::string localizedName_;
};

class PublishSession final : public RemoteCoding::PublishSessionProtocol {
public:
    explicit PublishSession(std::string videoId) : videoId_(std::move(videoId)) {}
    [[nodiscard]] const std::string& videoId() const override { return videoId_; }

private:
    std::string videoId_;
};

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
                     RemoteCoding::NotificationCenterProtocol& notifications, CallRecorder recordCall = {});

    // CaptureComponentProtocol
    [[nodiscard]] bool isCapturing() override { return isCapturing_; }

    /// Fails when nothing is captured. The statuses `starting` and, `connectingTime` later, `live` are posted
    /// by jobs of their own, after the call has returned.
    Base::Result<void> captureToTevuLibraryWithPublishSession(
        std::shared_ptr<RemoteCoding::PublishSessionProtocol> publishSession, const std::string& teamId,
        std::shared_ptr<RemoteCoding::CaptureDeviceProtocol> device) override;

    // The user's side, and the world's.
    void startCapturing() { isCapturing_ = true; }

    /// Ends the publication too, if there is one.
    void stopCapturing();

    /// Ends the publication: posts `stopped`. The capture goes on.
    void stopPublishing();

    /// The stream breaks off and comes back: posts `interrupted`, `live`. Nothing without a publication.
    void interruptStream();
    void resumeStream();

    [[nodiscard]] const std::optional<Publication>& publication() const { return publication_; }

    std::exception_ptr refusal;          ///< set: publishing fails with it
    Base::Seconds connectingTime{0.25};  ///< from `starting` to `live`

private:
    void post(RemoteCoding::StreamingStatus status);
    void postLater(Base::Seconds delay, RemoteCoding::StreamingStatus status);

    Base::ExecutionProtocol& execution_;
    RemoteCoding::NotificationCenterProtocol& notifications_;
    CallRecorder recordCall_;
    bool isCapturing_ = false;
    std::optional<Publication> publication_;
    std::uint64_t publicationNumber_ = 0;  // tells late jobs that their publication is over
};

}  // namespace ReferenceHost
