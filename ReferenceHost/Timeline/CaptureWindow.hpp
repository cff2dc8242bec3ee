#pragma once

#include "Components/RemoteCoding/HostInterfaces/CaptureComponentProtocol.hpp"
#include "Components/RemoteCoding/HostInterfaces/WindowingProtocol.hpp"

#include <memory>
#include <string>
#include <vector>

namespace ReferenceHost {

/// The window "Capture" with its table "Feeds", in which the user ticks what is to be captured. Main thread only. Made as a
/// `std::shared_ptr`. The choice lasts when the window closes.
class CaptureWindow final : public RemoteCoding::WindowOwnerProtocol,
                            public std::enable_shared_from_this<CaptureWindow> {
public:
    using Device = std::shared_ptr<RemoteCoding::CaptureDeviceProtocol>;

    /// The feeds that are there now, all of them ticked.
    void setDevices(const std::vector<Device>& devices);

    [[nodiscard]] std::vector<Device> chosenDevices() const;

    void show(RemoteCoding::WindowingProtocol& windowing);

    // WindowOwnerProtocol
    void perform(const std::string& action,
                 const std::shared_ptr<RemoteCoding::ViewProtocol>& sender) override;
    void controlTextDidChange(const std::shared_ptr<RemoteCoding::ViewProtocol>&) override {}
    [[nodiscard]] std::size_t
    numberOfRowsInTableView(const std::shared_ptr<RemoteCoding::TableViewProtocol>& tableView) override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::ViewProtocol>
    tableView(const std::shared_ptr<RemoteCoding::TableViewProtocol>& tableView,
              const std::string& viewForTableColumn, std::size_t row) override;
    void tableViewSelectionDidChange(const std::shared_ptr<RemoteCoding::TableViewProtocol>&) override {}

private:
    struct Feed {
        explicit Feed(Device device_) : device(std::move(device_)) {}
        Device device;
        bool isChosen = true;
    };
    std::vector<Feed> feeds_;
    std::shared_ptr<RemoteCoding::WindowProtocol> window_;  // null until it is first shown
};

}  // namespace ReferenceHost
