#include "ReferenceHost/Windowing/TableView.hpp"

#include "ReferenceHost/Windowing/HeadlessWindowing.hpp"

#include <algorithm>
#include <utility>

namespace ReferenceHost {

using RemoteCoding::WindowLayoutColumn;

void TableView::reloadData() {
    site().expectMainThread("reloadData");
    for (std::vector<Cell>& row : std::exchange(rows_, {})) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (row[column]) {
                usedCells_.emplace(layout().columns[column].cellIdentifier, std::move(row[column]));
            }
        }
    }
    rowsAreAsked_ = isDrawn_ = false;
    if (std::exchange(selectedRow_, -1) >= 0) {
        tellSelectionLater();
    }
    if (isShown()) {
        askForRows();
        drawLater();
    }
}

void TableView::askForRows() {
    rowsAreAsked_ = true;
    const auto owner = site().owner.lock();
    numberOfRows_ = owner ? owner->numberOfRowsInTableView(shared_from_this()) : 0;
}

void TableView::drawLater() {
    if (const auto toolkit = site().toolkit.lock()) {
        toolkit->postToMain([weakSelf = weak_from_this()] {
            const auto self = weakSelf.lock();
            if (self && self->isShown()) {
                (void)self->drawnRows();
            }
        });
    }
}

const std::vector<std::vector<TableView::Cell>>& TableView::drawnRows() {
    if (!rowsAreAsked_) {
        askForRows();
    }
    const auto owner = site().owner.lock();
    if (!isDrawn_ && owner) {
        isDrawn_ = true;  // first, as the owner may reload again
        std::vector<std::vector<Cell>> rows(numberOfRows_);
        for (std::size_t row = 0; row < rows.size(); ++row) {
            for (const WindowLayoutColumn& column : layout().columns) {
                rows[row].push_back(owner->tableView(shared_from_this(), column.identifier, row));
            }
        }
        rows_ = std::move(rows);
    }
    return rows_;
}

std::shared_ptr<RemoteCoding::ViewProtocol> TableView::makeView(const std::string& cellIdentifier) {
    site().expectMainThread("makeView");
    const auto column =
        std::ranges::find(layout().columns, cellIdentifier, &WindowLayoutColumn::cellIdentifier);
    if (column == layout().columns.end()) {
        return nullptr;
    }
    if (auto used = usedCells_.extract(cellIdentifier)) {
        return used.mapped();
    }
    return makeCell(*column);
}

TableView::Cell TableView::makeCell(const WindowLayoutColumn& column) const {
    const auto toolkit = site().toolkit.lock();
    const WindowingFaults faults = toolkit ? toolkit->faults : WindowingFaults();
    if (faults.makesNoCells) {
        return nullptr;
    }
    if ((column.cell == WindowLayoutColumn::Cell::checkBox) != faults.mixesUpCells) {
        return std::make_shared<CheckBox>(std::make_shared<ControlSite>(site()), column.action);
    }
    return std::make_shared<TableCellView>(
        faults.cellsHaveNoTextField ? nullptr
                                    : std::make_shared<TextField>(std::make_shared<ControlSite>(site()),
                                                                  RemoteCoding::WindowLayoutControl()));
}

void TableView::select(std::int64_t row) {
    if (selectedRow_ != row) {
        selectedRow_ = row;
        tellSelection();
    }
}

void TableView::tellSelection() {
    if (const auto owner = site().owner.lock()) {
        owner->tableViewSelectionDidChange(shared_from_this());
    }
}

void TableView::tellSelectionLater() {
    if (const auto toolkit = site().toolkit.lock()) {
        toolkit->postToMain([weakSelf = weak_from_this()] {
            if (const auto self = weakSelf.lock()) {
                self->tellSelection();
            }
        });
    }
}

bool TableView::isShown() const {
    const auto window = site().window.lock();
    return window && window->isVisible();
}

}  // namespace ReferenceHost
