#pragma once

#include "Base/Completion.hpp"
#include "Base/Export.hpp"
#include "Components/RemoteCoding/HostInterfaces/Alert.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowLayout.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowProtocol.hpp"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace RemoteCoding {

/// The host's windowing toolkit. Main thread only.
class REMOTE_CODING_EXPORT WindowingProtocol {
public:
    virtual ~WindowingProtocol() = default;

    /// A window made after the layout, not shown yet; null when the toolkit cannot make it. The toolkit holds the owner
    /// weakly and the window for as long as it is visible; whoever asked for the window holds it too.
    [[nodiscard]] virtual std::shared_ptr<WindowProtocol>
    makeWindow(const WindowLayout& layout, std::weak_ptr<WindowOwnerProtocol> owner) = 0;

    /// All visible windows of the application, the front one first.
    [[nodiscard]] virtual std::vector<std::shared_ptr<WindowProtocol>> applicationWindows() = 0;

    /// Shows the alert in front of the whole application and returns when it is answered. The main thread is blocked
    /// meanwhile: none of its posted jobs and timers runs, nothing is notified, and no other window can be used; a loop of the
    /// toolkit's own may turn to draw the alert. Time, and all other threads, go on. Dismissed without a button: any number
    /// that is no button's.
    [[nodiscard]] virtual AlertResponse runModal(const Alert& alert) = 0;

    /// Shows the alert as a sheet on the window and returns at once. The completion is called on the main thread, never
    /// inside this call, once the user has answered; with a failure when the window closes before that, or is closed already. A window shows one
    /// sheet at a time; another waits until the first is answered.
    virtual void beginSheet(const Alert& alert, const std::shared_ptr<WindowProtocol>& window,
                            Base::Completion<AlertResponse> completion) = 0;

    /// The system's warning sound.
    virtual void beep() = 0;

    /// The time in the user's locale and time zone, the date in medium, the time of day in short style: in English
    /// "Nov 22, 2026 at 9:15 PM".
    [[nodiscard]] virtual std::string
    mediumDateShortTime(std::chrono::sys_time<std::chrono::microseconds> time) const = 0;
};

}  // namespace RemoteCoding
