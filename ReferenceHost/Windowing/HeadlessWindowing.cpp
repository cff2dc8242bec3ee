#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"

#include "Base/Error.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::Alert;
using RemoteCoding::AlertResponse;

HeadlessWindowing::HeadlessWindowing(ReportingExecution& execution,
                                     RemoteCoding::NotificationCenterProtocol& notifications,
                                     std::string host, Trace* trace,
                                     const std::vector<std::string>& languages)
    : execution_(execution),
      notifications_(notifications),
      host_(std::move(host)),
      trace_(trace),
      dateLanguage_(dateLanguageOf(languages)),
      alerts_(execution, host_, trace) {}

std::shared_ptr<RemoteCoding::WindowProtocol>
HeadlessWindowing::makeWindow(const RemoteCoding::WindowLayout& layout,
                              std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner) {
    expectMainThread("makeWindow");
    return faults.makesNoWindow ? nullptr : HeadlessWindow::make(weak_from_this(), layout, std::move(owner));
}

std::vector<std::shared_ptr<RemoteCoding::WindowProtocol>> HeadlessWindowing::applicationWindows() {
    expectMainThread("applicationWindows");
    return {windows_.begin(), windows_.end()};
}

AlertResponse HeadlessWindowing::runModal(const Alert& alert) {
    expectMainThread("runModal");
    if (faults.noAlerts) {
        std::rethrow_exception(faults.noAlerts);
    }
    return alerts_.run(alert);
}

void HeadlessWindowing::beginSheet(const Alert& alert,
                                   const std::shared_ptr<RemoteCoding::WindowProtocol>& window,
                                   Base::Completion<AlertResponse> completion) {
    expectMainThread("beginSheet");
    const auto own = std::ranges::find(windows_, window);
    if (own != windows_.end() && !faults.noSheets) {
        (*own)->beginSheet(alert, std::move(completion));
        return;
    }
    auto failure = faults.noSheets
                       ? Base::Result<AlertResponse>::failure(faults.noSheets)
                       : Base::failure<AlertResponse>(Base::DescribedError("The window is closed"));
    postToMain([completion = std::move(completion), failure = std::move(failure)] { completion(failure); });
}

void HeadlessWindowing::beep() {
    expectMainThread("beep");
    if (faults.noBeeps) {
        std::rethrow_exception(faults.noBeeps);
    }
    ++numberOfBeeps_;
    record(TraceKind::beep, {});
}

std::string
HeadlessWindowing::mediumDateShortTime(std::chrono::sys_time<std::chrono::microseconds> time) const {
    expectMainThread("mediumDateShortTime");
    return mediumDateText(time, dateLanguage_);
}

HeadlessWindowing::Window HeadlessWindowing::makePlainWindow(const std::string& title) {
    RemoteCoding::WindowLayout layout;
    layout.title = title;
    return HeadlessWindow::make(weak_from_this(), layout, {});
}

void HeadlessWindowing::bringToFront(const Window& window) {
    std::erase(windows_, window);
    windows_.insert(windows_.begin(), window);
}

void HeadlessWindowing::hide(const HeadlessWindow& window) {
    std::erase_if(windows_, [&](const Window& visible) { return visible.get() == &window; });
}

bool HeadlessWindowing::isVisible(const HeadlessWindow& window) const {
    return std::ranges::any_of(windows_, [&](const Window& visible) { return visible.get() == &window; });
}

void HeadlessWindowing::tellWillClose(const Window& window) {
    notifications_.post(
        RemoteCoding::Notification(RemoteCoding::WindowNotifications::windowWillClose, window));
}

void HeadlessWindowing::expectMainThread(const char* function) const {
    if (!execution_.isMainThread()) {
        execution_.didCallOnWrongThread({"ReferenceHost/Windowing", function, 0, true});
    }
}

void HeadlessWindowing::record(const char* kind, TraceFields fields) const {
    if (trace_ != nullptr) {
        trace_->record(host_, kind, std::move(fields));
    }
}

}  // namespace ReferenceHost
