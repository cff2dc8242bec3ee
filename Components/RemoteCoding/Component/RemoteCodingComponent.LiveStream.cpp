// What the player tells of the live streams of joined sessions.

#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Components/RemoteCoding/Component/EnvironmentGate.hpp"
#include "Components/RemoteCoding/Models/HostCalls.hpp"
#include "Components/RemoteCoding/Models/LiveStreamObserver.hpp"
#include "Components/RemoteCoding/Models/RemoteCodingSession.hpp"

#include <utility>

namespace RemoteCoding {

/// Takes failures to the main thread, from whichever thread they come: there the component must not even be held for a
/// moment.
class RemoteCodingComponent::LiveStreamDelegate final : public LiveStreamObserverProtocol {
public:
    LiveStreamDelegate(std::shared_ptr<EnvironmentGate> gate, std::weak_ptr<RemoteCodingComponent> component)
        : gate_(std::move(gate)), component_(std::move(component)) {}

    void liveStreamDidFail(const std::string& timelineId) override {
        auto show = [component = component_, timelineId] {
            if (const auto self = component.lock()) {
                self->showFailedSessionAlert(timelineId);
            }
        };
        gate_->whileOpen([&](HostEnvironment& environment) {
            guarded(environment, "liveStreamDidFail(timelineId:)",
                    [&] { environment.execution.postToMain(std::move(show)); });
        });
    }

private:
    std::shared_ptr<EnvironmentGate> gate_;
    std::weak_ptr<RemoteCodingComponent> component_;
};

void RemoteCodingComponent::attachLiveStreamObserver(RemoteCodingSession& session) {
    guarded(environment_, "init(tevuVideoId:timelineId:delegate:)", [&] {
        if (!liveStreamDelegate_) {
            liveStreamDelegate_ = std::make_shared<LiveStreamDelegate>(gate_, weak_from_this());
        }
        session.liveStreamObserver = LiveStreamObserver::make(
            environment_, remoteCodingService_, session.tevuVideoId, session.timelineId, liveStreamDelegate_);
    });
}

/// Null for a timeline without a session, and for a session that this user hosts.
std::shared_ptr<LiveStreamObserver>
RemoteCodingComponent::liveStreamObserver(const std::string& timelineId) const {
    const auto session = this->session(timelineId);
    return session ? session->liveStreamObserver : nullptr;
}

void RemoteCodingComponent::fragmentDownloaded(const std::string& timelineId) {
    checkIsMainThread(environment_, "fragmentDownloaded(timelineId:)");
    if (const auto observer = liveStreamObserver(timelineId)) {
        observer->fragmentDownloaded();
    }
}

void RemoteCodingComponent::fragmentDownloadPaused(std::exception_ptr with, const std::string& timelineId) {
    checkIsMainThread(environment_, "fragmentDownloadPaused(with:timelineId:)");
    if (const auto observer = liveStreamObserver(timelineId)) {
        observer->fragmentDownloadPaused(with);
    }
}

void RemoteCodingComponent::fragmentDownloadResumed(const std::string& timelineId) {
    checkIsMainThread(environment_, "fragmentDownloadResumed(timelineId:)");
    if (const auto observer = liveStreamObserver(timelineId)) {
        observer->fragmentDownloaded();
    }
}

void RemoteCodingComponent::fragmentDownloadDidError(std::exception_ptr error,
                                                     const std::string& timelineId) {
    checkIsMainThread(environment_, "fragmentDownloadDidError(_:timelineId:)");
    if (const auto observer = liveStreamObserver(timelineId)) {
        observer->fragmentDownloadDidError(error);
    }
}

void RemoteCodingComponent::fragmentDownloadComplete(const std::string& timelineId) {
    checkIsMainThread(environment_, "fragmentDownloadComplete(timelineId:)");
    if (const auto observer = liveStreamObserver(timelineId)) {
        observer->fragmentDownloadComplete();
    }
}

}  // namespace RemoteCoding
