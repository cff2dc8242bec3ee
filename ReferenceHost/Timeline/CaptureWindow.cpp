#include "ReferenceHost/Timeline/CaptureWindow.hpp"

#include <utility>

namespace ReferenceHost {

namespace {

RemoteCoding::WindowLayout layout() {
    using Column = RemoteCoding::WindowLayoutColumn;
    Column tick;
    tick.identifier = tick.cellIdentifier = "tick";
    tick.cell = Column::Cell::checkBox;
    tick.action = "tick";
    Column name;
    name.identifier = name.cellIdentifier = "name";
    RemoteCoding::WindowLayoutControl table;
    table.kind = RemoteCoding::WindowLayoutControl::Kind::tableView;
    table.outlet = "feeds";
    table.title = "Feeds";
    table.columns = {tick, name};
    RemoteCoding::WindowLayout window;
    window.name = "CaptureWindow";
    window.title = "Capture";
    window.controls = {table};
    return window;
}

}  // namespace

void CaptureWindow::setDevices(const std::vector<Device>& devices) {
    feeds_.clear();
    for (const Device& device : devices) {
        feeds_.emplace_back(device);
    }
    if (window_) {
        std::dynamic_pointer_cast<RemoteCoding::TableViewProtocol>(window_->outlet("feeds"))->reloadData();
    }
}

std::vector<CaptureWindow::Device> CaptureWindow::chosenDevices() const {
    std::vector<Device> devices;
    for (const Feed& feed : feeds_) {
        if (feed.isChosen) {
            devices.push_back(feed.device);
        }
    }
    return devices;
}

void CaptureWindow::show(RemoteCoding::WindowingProtocol& windowing) {
    if (!window_) {
        window_ = windowing.makeWindow(layout(), weak_from_this());
    }
    if (window_) {
        window_->show();
    }
}

void CaptureWindow::perform(const std::string& /*action*/,
                            const std::shared_ptr<RemoteCoding::ViewProtocol>& sender) {
    const auto box = std::dynamic_pointer_cast<RemoteCoding::CheckBoxProtocol>(sender);
    Feed& feed = feeds_.at(static_cast<std::size_t>(box->tag()));
    feed.isChosen = !feed.isChosen;
}

std::size_t CaptureWindow::numberOfRowsInTableView(
    const std::shared_ptr<RemoteCoding::TableViewProtocol>& /*tableView*/) {
    return feeds_.size();
}

std::shared_ptr<RemoteCoding::ViewProtocol>
CaptureWindow::tableView(const std::shared_ptr<RemoteCoding::TableViewProtocol>& tableView,
                         const std::string& viewForTableColumn, std::size_t row) {
    auto cell = tableView->makeView(viewForTableColumn);
    if (const auto box = std::dynamic_pointer_cast<RemoteCoding::CheckBoxProtocol>(cell)) {
        box->setTag(static_cast<std::int64_t>(row));
        box->setOn(feeds_[row].isChosen);
    } else if (const auto text = std::dynamic_pointer_cast<RemoteCoding::TableCellViewProtocol>(cell);
               text && text->textField()) {
        text->textField()->setText(feeds_[row].device->localizedName());
    }
    return cell;
}

}  // namespace ReferenceHost
