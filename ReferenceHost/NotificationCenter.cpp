#include "ReferenceHost/NotificationCenter.hpp"

#include "Base/Error.hpp"
#include "Components/RemoteCoding/HostInterfaces/CaptureComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/RemoteCodingSessionDetails.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowProtocol.hpp"

#include <any>
#include <exception>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::HostObject;
using RemoteCoding::Notification;

namespace {

/// What a reader of the trace wants to know of a notification: its name, and which timeline or state it tells of. A timeline
/// comes with its modify count, so that the trace tells how it grows.
TraceFields fieldsOf(const Notification& notification) {
    TraceFields fields{{"name", notification.name}};
    if (const auto* timeline =
            dynamic_cast<const RemoteCoding::TimelineProtocol*>(notification.object.get())) {
        fields.emplace_back("timelineId", timeline->uniqueId());
        fields.emplace_back("modifyCount", std::to_string(timeline->modifyCount()));
    }
    if (const auto* window = dynamic_cast<const RemoteCoding::WindowProtocol*>(notification.object.get())) {
        fields.emplace_back("window", window->title());
    }
    for (const auto& [key, value] : notification.userInfo) {
        if (const auto* text = std::any_cast<std::string>(&value)) {
            fields.emplace_back(key, *text);
        } else if (const auto* status = std::any_cast<RemoteCoding::StreamingStatus>(&value)) {
            fields.emplace_back(key, std::to_string(static_cast<int>(*status)));
        } else if (const auto* session = std::any_cast<RemoteCoding::RemoteCodingSessionDetails>(&value)) {
            fields.emplace_back("timelineId", session->timelineId);
            fields.emplace_back("status", std::to_string(static_cast<int>(session->status)));
        }
    }
    return fields;
}

}  // namespace

struct NotificationCenter::Registration {
    Registration(std::string name_, const std::shared_ptr<HostObject>& object_, Observer observer_)
        : name(std::move(name_)),
          object(object_),
          isAboutAnything(object_ == nullptr),
          observer(std::move(observer_)) {}

    [[nodiscard]] bool wants(const Notification& notification) const {
        return name == notification.name &&
               (isAboutAnything || (notification.object != nullptr && object.lock() == notification.object));
    }

    std::string name;
    std::weak_ptr<HostObject> object;
    bool isAboutAnything;
    Observer observer;
};

NotificationCenter::NotificationCenter(std::string host, Trace* trace)
    : host_(std::move(host)), trace_(trace) {}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter::ObserverId NotificationCenter::addObserver(const std::string& name,
                                                               std::shared_ptr<HostObject> object,
                                                               Observer observer) {
    auto registration = std::make_shared<Registration>(name, object, std::move(observer));
    const std::lock_guard lock(mutex_);
    const ObserverId id = ++lastId_;
    registrations_.emplace(id, std::move(registration));
    return id;
}

void NotificationCenter::removeObserver(ObserverId observer) {
    std::shared_ptr<Registration> destroyedAfterTheLock;
    const std::lock_guard lock(mutex_);
    if (const auto found = registrations_.find(observer); found != registrations_.end()) {
        destroyedAfterTheLock = std::move(found->second);
        registrations_.erase(found);
    }
}

void NotificationCenter::post(const Notification& notification) {
    if (trace_ != nullptr && trace_->isRecording()) {
        trace_->record(host_, TraceKind::notification, fieldsOf(notification));
    }
    ObserverId last = 0;
    {
        const std::lock_guard lock(mutex_);
        last = lastId_;
    }
    // One after the other, each as it is then: who is told may add and remove observers. Those added meanwhile are not told.
    for (ObserverId told = 0; const auto registration = nextWanting(notification, told, last);) {
        tell(*registration, notification);
    }
}

std::shared_ptr<const NotificationCenter::Registration>
NotificationCenter::nextWanting(const Notification& notification, ObserverId& told, ObserverId last) const {
    const std::lock_guard lock(mutex_);
    for (auto next = registrations_.upper_bound(told); next != registrations_.end() && next->first <= last;
         ++next) {
        if (next->second->wants(notification)) {
            told = next->first;
            return next->second;
        }
    }
    return nullptr;
}

void NotificationCenter::tell(const Registration& registration, const Notification& notification) noexcept {
    try {
        registration.observer(notification);
    } catch (...) {
        if (trace_ != nullptr) {
            trace_->record(
                host_, TraceKind::observerFailed,
                {{"name", notification.name}, {"error", Base::describe(std::current_exception())}});
        }
    }
}

}  // namespace ReferenceHost
