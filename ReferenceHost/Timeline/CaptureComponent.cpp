#include "ReferenceHost/Timeline/CaptureComponent.hpp"

#include "Base/Error.hpp"

#include <utility>

namespace ReferenceHost {

using RemoteCoding::Notification;
using RemoteCoding::StreamingStatus;

std::shared_ptr<RemoteCoding::PublishSession> makePublishSession(const std::string& videoId) {
    return std::make_shared<RemoteCoding::PublishSession>(
        "publish session of " + videoId, "stream of " + videoId,
        RemoteCoding::PublishSessionCredentials("access key", "secret key", "token", "publish.example",
                                                "stream key", 3600),
        "region", videoId, "Video " + videoId);
}

CaptureComponent::CaptureComponent(Base::ExecutionProtocol& execution,
                                   RemoteCoding::NotificationCenterProtocol& notifications,
                                   RemoteCoding::WindowingProtocol& windowing, CallRecorder recordCall)
    : execution_(execution),
      notifications_(notifications),
      windowing_(windowing),
      recordCall_(std::move(recordCall)) {}

Base::Result<void> CaptureComponent::captureToTevuLibraryWithPublishSession(
    std::shared_ptr<RemoteCoding::PublishSessionProtocol> publishSession, const std::string& teamId,
    std::shared_ptr<RemoteCoding::CaptureDeviceProtocol> device) {
    if (recordCall_) {
        recordCall_("captureToTevuLibraryWithPublishSession",
                    {{"videoId", publishSession ? publishSession->videoId() : std::string()},
                     {"teamId", teamId},
                     {"device", device ? device->localizedName() : std::string()}});
    }
    if (refusal) {
        return Base::Result<void>::failure(refusal);
    }
    if (!isCapturing_) {
        return Base::failure<void>(Base::DescribedError("Nothing is captured", "Start the capture first."));
    }
    if (publication_) {
        tell(*publication_, StreamingStatus::stopped);  // nothing comes into its video any more
    }
    if (willPublish) {
        willPublish();
    }
    publication_ = Publication{std::move(publishSession), teamId, std::move(device), std::nullopt};
    ++publicationNumber_;
    postLater(Base::Seconds(0), StreamingStatus::starting);
    postLater(connectingTime, StreamingStatus::live);
    return {};
}

void CaptureComponent::endCapturing() {
    if (recordCall_) {
        recordCall_("endCapturing", {});
    }
    stopCapturing();
}

void CaptureComponent::openOrFocusCaptureWindow() {
    if (recordCall_) {
        recordCall_("openOrFocusCaptureWindow", {});
    }
    window_->show(windowing_);
}

std::vector<std::shared_ptr<RemoteCoding::CaptureDeviceProtocol>> CaptureComponent::selectedCaptureDevices() {
    return window_->chosenDevices();
}

void CaptureComponent::stopCapturing() {
    if (!isCapturing_) {
        return;
    }
    isCapturing_ = false;
    stopPublishing();
    if (didEndCapturing) {
        didEndCapturing();
    }
}

void CaptureComponent::stopPublishing() {
    if (!publication_) {
        return;
    }
    tell(*std::exchange(publication_, std::nullopt), StreamingStatus::stopped);
    post(StreamingStatus::stopped);
}

void CaptureComponent::interruptStream() {
    if (publication_) {
        post(StreamingStatus::interrupted);
    }
}

void CaptureComponent::resumeStream() {
    if (publication_) {
        post(StreamingStatus::live);
    }
}

void CaptureComponent::tell(const Publication& publication, StreamingStatus status) const {
    if (didChangeStream && publication.session) {
        didChangeStream(publication.session->videoId(), status);
    }
}

void CaptureComponent::post(StreamingStatus status) {
    if (publication_) {
        publication_->status = status;
        tell(*publication_, status);
    }
    notifications_.post(Notification(RemoteCoding::Notifications::streamStatusChanged, shared_from_this(),
                                     {{"status", status}}));
}

void CaptureComponent::postLater(Base::Seconds delay, StreamingStatus status) {
    execution_.postToMainAfter(delay, [weakSelf = weak_from_this(), number = publicationNumber_, status] {
        const auto self = weakSelf.lock();
        if (self && self->publication_ && self->publicationNumber_ == number) {
            self->post(status);
        }
    });
}

}  // namespace ReferenceHost
