#pragma once

#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace RemoteCoding {

/// What is told to whoever observes its name.
struct Notification {
    Notification() = default;
    explicit Notification(std::string name_, std::shared_ptr<HostObject> object_ = nullptr,
                          std::map<std::string, std::any> userInfo_ = {})
        : name(std::move(name_)), object(std::move(object_)), userInfo(std::move(userInfo_)) {}

    std::string name;
    std::shared_ptr<HostObject> object;  ///< the sender or subject; may be null
    std::map<std::string, std::any>
        userInfo;  ///< values by key, each of the type that the notification documents
};

/// The host's notification centre.
///
/// Threads: main thread only, except that `removeObserver` may be called from any thread. Observers are called on the
/// main thread, inside `post`, in the order in which they were added.
///
/// Ownership: the centre holds the callback until it is removed.
class REMOTE_CODING_EXPORT NotificationCenterProtocol {
public:
    using Observer = std::function<void(const Notification&)>;
    using ObserverId = std::uint64_t;

    virtual ~NotificationCenterProtocol() = default;

    /// Calls the observer for each notification of that name: those about `object` only, or all when it is null. An
    /// observer added while a notification is posted does not get that one.
    [[nodiscard]] virtual ObserverId addObserver(const std::string& name, std::shared_ptr<HostObject> object,
                                                 Observer observer) = 0;

    /// The observer is not called any more; an unknown id is ignored. May be called inside an observer.
    virtual void removeObserver(ObserverId observer) = 0;

    /// Tells the observers before it returns. What an observer throws must not keep the others from being told.
    virtual void post(const Notification& notification) = 0;
};

/// Notifications about timelines, all posted by the host on the main thread.
namespace TimelineNotifications {

/// A timeline changed. Object: the `TimelineProtocol`. Follows each change, the component's own included.
inline constexpr const char* timelineDidAnyChange = "TimelineNotifications.timelineDidAnyChange";

/// A timeline is being closed. Object: the `TimelineProtocol`. Posted while `timelineWith` still gives it, so that its last
/// edits can be sent if nothing else of it is under way; the host forgets the timeline right after. It ends a joined session,
/// and a hosted one whose stream is over; a hosted session with a live stream goes on until it is ended.
inline constexpr const char* timelineDidRemove = "TimelineNotifications.timelineDidRemove";

/// A live share has come to its end. User info: "timelineId", a `std::string`.
inline constexpr const char* liveShareDidComplete = "TimelineNotifications.liveShareDidComplete";

}  // namespace TimelineNotifications

/// Posted by the host's toolkit on the main thread.
namespace WindowNotifications {

/// A window is about to close. Object: the `WindowProtocol`; for a window that `makeWindow` made, the very object that it gave.
inline constexpr const char* windowWillClose = "WindowNotifications.windowWillClose";

}  // namespace WindowNotifications

namespace Notifications {

/// Posted by the host: the user's own stream changed its state. User info: "status", a `StreamingStatus`.
inline constexpr const char* streamStatusChanged = "Notifications.streamStatusChanged";

/// Posted by the component, without an object: a session was created, changed or ended. Updates may repeat a state or skip
/// one that was short. User info: "sessionDetails", a
/// `RemoteCodingSessionDetails` with the session's state at the time of the post.
inline constexpr const char* remoteCodingSessionUpdatedNotification =
    "Notifications.remoteCodingSessionUpdatedNotification";

}  // namespace Notifications

}  // namespace RemoteCoding
