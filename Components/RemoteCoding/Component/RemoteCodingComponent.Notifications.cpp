#include "Components/RemoteCoding/Component/RemoteCodingComponent.hpp"

#include "Components/RemoteCoding/Models/HostCalls.hpp"
#include "Components/RemoteCoding/Models/RemoteCodingSession.hpp"

#include <any>

namespace RemoteCoding {

namespace {

/// The value under the key; null when there is none or it has another type.
template <typename Value>
const Value* userInfoValue(const Notification& notification, const char* key) {
    const auto found = notification.userInfo.find(key);
    return found != notification.userInfo.end() ? std::any_cast<Value>(&found->second) : nullptr;
}

RemoteCodingSessionStatus sessionStatus(StreamingStatus status) {
    switch (status) {
    case StreamingStatus::starting:
        return RemoteCodingSessionStatus::starting;
    case StreamingStatus::live:
        return RemoteCodingSessionStatus::live;
    case StreamingStatus::interrupted:
    case StreamingStatus::stopped:
        break;
    }
    return RemoteCodingSessionStatus::interrupted;
}

}  // namespace

void RemoteCodingComponent::observe(const char* name,
                                    void (RemoteCodingComponent::*handler)(const Notification&)) {
    auto observer = [weakSelf = weak_from_this(), handler](const Notification& notification) {
        if (const auto self = weakSelf.lock()) {
            ((*self).*handler)(notification);
        }
    };
    observers_.push_back(environment_.notificationCenter.addObserver(name, nullptr, std::move(observer)));
}

void RemoteCodingComponent::timelineDidClose(const Notification& notification) {
    constexpr const char* function = "timelineDidClose(_:)";
    checkIsMainThread(environment_, function);
    const auto timeline = std::dynamic_pointer_cast<TimelineProtocol>(notification.object);
    if (!timeline) {
        return;
    }
    guarded(environment_, function, [&] {
        const std::string timelineId = timeline->uniqueId();
        const auto session = this->session(timelineId);
        if (!session) {
            return;
        }
        // A hosted session whose stream is live goes on without its timeline's window.
        if (!session->isHost || session->status == RemoteCodingSessionStatus::streamEnded) {
            sessionEnded(timelineId);
        }
    });
}

void RemoteCodingComponent::liveShareDidComplete(const Notification& notification) {
    checkIsMainThread(environment_, "liveShareDidComplete(_:)");
    const auto* timelineId = userInfoValue<std::string>(notification, "timelineId");
    if (timelineId == nullptr) {
        return;
    }
    const auto session = this->session(*timelineId);
    if (session && !session->isHost) {
        streamEnded(*timelineId);
    }
}

void RemoteCodingComponent::streamStatusChanged(const Notification& notification) {
    checkIsMainThread(environment_, "streamStatusChanged(_:)");
    const auto* status = userInfoValue<StreamingStatus>(notification, "status");
    const auto timelineId = hostSessionTimelineId();
    if (status == nullptr || !timelineId) {
        return;
    }
    session(*timelineId)->status = sessionStatus(*status);
    postSessionUpdate(*timelineId);
}

}  // namespace RemoteCoding
