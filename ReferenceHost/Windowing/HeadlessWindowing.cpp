#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace ReferenceHost {

HeadlessWindowing::HeadlessWindowing(ReportingExecution& execution,
                                     RemoteCoding::NotificationCenterProtocol& notifications,
                                     std::string host, Trace* trace)
    : execution_(execution), notifications_(notifications), host_(std::move(host)), trace_(trace) {}

std::shared_ptr<RemoteCoding::WindowProtocol>
HeadlessWindowing::makeWindow(const RemoteCoding::WindowLayout& layout,
                              std::weak_ptr<RemoteCoding::WindowOwnerProtocol> owner) {
    return std::make_shared<HeadlessWindow>(weak_from_this(), layout, std::move(owner));
}

std::vector<std::shared_ptr<RemoteCoding::WindowProtocol>> HeadlessWindowing::applicationWindows() {
    return {windows_.begin(), windows_.end()};
}

RemoteCoding::AlertResponse HeadlessWindowing::runModal(const RemoteCoding::Alert& /*alert*/) {
    throw std::logic_error("Alerts are not there yet");
}

void HeadlessWindowing::beginSheet(const RemoteCoding::Alert& /*alert*/,
                                   const std::shared_ptr<RemoteCoding::WindowProtocol>& /*window*/,
                                   Base::Completion<RemoteCoding::AlertResponse> /*completion*/) {
    throw std::logic_error("Sheets are not there yet");
}

void HeadlessWindowing::beep() { ++numberOfBeeps_; }

std::string
HeadlessWindowing::mediumDateShortTime(std::chrono::sys_time<std::chrono::microseconds> time) const {
    static constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
    std::tm local{};
    tzset();  // localtime_r need not look at a zone that has changed
    if (localtime_r(&seconds, &local) == nullptr) {
        return {};
    }
    const int hour = local.tm_hour % 12 == 0 ? 12 : local.tm_hour % 12;
    const std::string minute = std::to_string(local.tm_min);
    return std::string(months[local.tm_mon]) + ' ' + std::to_string(local.tm_mday) + ", " +
           std::to_string(1900 + local.tm_year) + " at " + std::to_string(hour) + ':' +
           (minute.size() < 2 ? "0" : "") + minute + (local.tm_hour < 12 ? " AM" : " PM");
}

HeadlessWindowing::Window HeadlessWindowing::makePlainWindow(const std::string& title) {
    RemoteCoding::WindowLayout layout;
    layout.title = title;
    return std::make_shared<HeadlessWindow>(weak_from_this(), layout,
                                            std::weak_ptr<RemoteCoding::WindowOwnerProtocol>());
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

}  // namespace ReferenceHost
