#pragma once

#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowingProtocol.hpp"
#include "ReferenceHost/Execution/ReportingExecution.hpp"
#include "ReferenceHost/Windowing/HeadlessWindow.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace ReferenceHost {

/// A windowing toolkit without a screen. Main thread only. Made as a `std::shared_ptr`; its windows hold it weakly.
class HeadlessWindowing final : public RemoteCoding::WindowingProtocol,
                                public std::enable_shared_from_this<HeadlessWindowing> {
public:
    using Window = std::shared_ptr<HeadlessWindow>;

    /// `trace` may be null. All must outlive the toolkit.
    HeadlessWindowing(ReportingExecution& execution, RemoteCoding::NotificationCenterProtocol& notifications,
                      std::string host = {}, Trace* trace = nullptr);

    // WindowingProtocol
    [[nodiscard]] std::shared_ptr<RemoteCoding::WindowProtocol>
    makeWindow(const RemoteCoding::WindowLayout& layout,
               std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner) override;
    [[nodiscard]] std::vector<std::shared_ptr<RemoteCoding::WindowProtocol>> applicationWindows() override;
    [[nodiscard]] RemoteCoding::AlertResponse runModal(const RemoteCoding::Alert& alert) override;
    void beginSheet(const RemoteCoding::Alert& alert,
                    const std::shared_ptr<RemoteCoding::WindowProtocol>& window,
                    Base::Completion<RemoteCoding::AlertResponse> completion) override;
    void beep() override;

    /// In English, whatever the user's language; in the time zone of the process.
    [[nodiscard]] std::string
    mediumDateShortTime(std::chrono::sys_time<std::chrono::microseconds> time) const override;

    /// A window of the host's own, without controls, not shown yet: a document's, or any other.
    [[nodiscard]] Window makePlainWindow(const std::string& title);

    [[nodiscard]] const std::vector<Window>& visibleWindows() const { return windows_; }  ///< front one first
    [[nodiscard]] std::size_t numberOfBeeps() const { return numberOfBeeps_; }

private:
    friend class HeadlessWindow;

    void bringToFront(const Window& window);
    void hide(const HeadlessWindow& window);
    [[nodiscard]] bool isVisible(const HeadlessWindow& window) const;
    void tellWillClose(const Window& window);

    ReportingExecution& execution_;
    RemoteCoding::NotificationCenterProtocol& notifications_;
    std::string host_;
    Trace* trace_;
    std::vector<Window> windows_;  // the visible ones, front to back
    std::size_t numberOfBeeps_ = 0;
};

}  // namespace ReferenceHost
