#pragma once

#include "Components/RemoteCoding/HostInterfaces/NotificationCenterProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowingProtocol.hpp"
#include "ReferenceHost/Execution/ReportingExecution.hpp"
#include "ReferenceHost/Windowing/DateText.hpp"
#include "ReferenceHost/Windowing/HeadlessWindow.hpp"
#include "ReferenceHost/Windowing/ModalAlerts.hpp"

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace ReferenceHost {

/// What the toolkit fails at, on demand. Read at each call.
struct WindowingFaults {
    bool makesNoWindow = false;
    bool makesNoCells = false;
    bool mixesUpCells = false;          ///< text cells where check boxes belong, and the other way round
    bool cellsHaveNoTextField = false;  ///< text cells
    std::exception_ptr noAlerts;        ///< set: `runModal` throws it
    std::exception_ptr noSheets;        ///< set: sheets fail with it
    std::exception_ptr noBeeps;         ///< set: `beep` throws it
};

/// A windowing toolkit without a screen: it realises layouts, keeps the order of the windows, and shows alerts. What a user
/// would see and do at it a `Person` sees and does.
///
/// Threads: main thread only; other callers are reported to the execution.
/// Ownership: made as a `std::shared_ptr`; its windows hold it weakly. It holds visible windows, not closed ones.
class HeadlessWindowing final : public RemoteCoding::WindowingProtocol,
                                public std::enable_shared_from_this<HeadlessWindowing> {
public:
    using Window = std::shared_ptr<HeadlessWindow>;

    /// `trace` may be null. All must outlive the toolkit. `languages`: the user's, as `HostEnvironment::languages`.
    HeadlessWindowing(ReportingExecution& execution, RemoteCoding::NotificationCenterProtocol& notifications,
                      std::string host = {}, Trace* trace = nullptr,
                      const std::vector<std::string>& languages = {});

    // WindowingProtocol
    [[nodiscard]] std::shared_ptr<RemoteCoding::WindowProtocol>
    makeWindow(const RemoteCoding::WindowLayout& layout,
               std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner) override;
    [[nodiscard]] std::vector<std::shared_ptr<RemoteCoding::WindowProtocol>> applicationWindows() override;

    /// Throws `std::logic_error` when nobody answers; see `ModalAlerts`.
    [[nodiscard]] RemoteCoding::AlertResponse runModal(const RemoteCoding::Alert& alert) override;

    /// On a window that is closed, or of another toolkit, the sheet fails.
    void beginSheet(const RemoteCoding::Alert& alert,
                    const std::shared_ptr<RemoteCoding::WindowProtocol>& window,
                    Base::Completion<RemoteCoding::AlertResponse> completion) override;
    void beep() override;

    /// In the first of the user's languages that is English or French, else in English; in the time zone of the process.
    [[nodiscard]] std::string
    mediumDateShortTime(std::chrono::sys_time<std::chrono::microseconds> time) const override;

    /// A window of the host's own, without controls, not shown yet: a document's, or any other.
    [[nodiscard]] Window makePlainWindow(const std::string& title);

    [[nodiscard]] const std::vector<Window>& visibleWindows() const { return windows_; }  ///< front one first
    [[nodiscard]] ModalAlerts& alerts() { return alerts_; }
    [[nodiscard]] std::size_t numberOfBeeps() const { return numberOfBeeps_; }
    [[nodiscard]] bool isOnMainThread() const { return execution_.isMainThread(); }

    WindowingFaults faults;

private:
    friend struct ControlSite;
    friend class HeadlessWindow;
    friend class TableView;

    void bringToFront(const Window& window);
    void hide(const HeadlessWindow& window);
    [[nodiscard]] bool isVisible(const HeadlessWindow& window) const;
    void tellWillClose(const Window& window);
    void postToMain(Base::Job job) { execution_.postToMain(std::move(job)); }
    void expectMainThread(const char* function) const;
    void record(const char* kind, TraceFields fields) const;

    ReportingExecution& execution_;
    RemoteCoding::NotificationCenterProtocol& notifications_;
    const std::string host_;
    Trace* const trace_;
    const DateLanguage dateLanguage_;
    std::vector<Window> windows_;  // the visible ones, front to back
    ModalAlerts alerts_;
    std::size_t numberOfBeeps_ = 0;
};

}  // namespace ReferenceHost
