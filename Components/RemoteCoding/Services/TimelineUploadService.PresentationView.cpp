#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include <unordered_map>
#include <utility>

namespace RemoteCoding {

/// The rows as they were read last, with those of their names that were asked for, which are copies. They are kept from the second
/// search on: after a change another change mostly follows.
class TimelineUploadService::NamedRows {
public:
    /// Where the first row of that name stands now; absent when there is none.
    [[nodiscard]] std::optional<std::size_t> find(const TimelineProtocol& timeline, std::string_view name) {
        RowList rows = timeline.allRows();
        const std::int64_t modifyCount = timeline.modifyCount();
        const bool haveChanged = rows != rows_ || modifyCount != modifyCount_;
        if (haveChanged) {
            names_.clear();
            rows_ = std::move(rows);
            modifyCount_ = modifyCount;
        }
        for (std::size_t position = 0; position < names_.size(); ++position) {
            if (names_[position] == name) {
                return position;
            }
        }
        for (std::size_t position = names_.size(); position < rows_->size(); ++position) {
            std::string next = (*rows_)[position]->name();
            const bool isFound = next == name;
            if (!haveChanged) {
                names_.push_back(std::move(next));
            }
            if (isFound) {
                return position;
            }
        }
        return std::nullopt;
    }

    /// That `find` has given.
    [[nodiscard]] const std::shared_ptr<TimelineRowProtocol>& at(std::size_t position) const {
        return (*rows_)[position];
    }

private:
    RowList rows_;
    std::int64_t modifyCount_ = 0;
    std::vector<std::string> names_;
};

void TimelineUploadService::updatePresentationView(
    const std::shared_ptr<TimelineProtocol>& timeline,
    const std::optional<PresentationViewItem>& presentationView) {
    constexpr std::string_view function = "updatePresentationView(timeline:presentationView:)";
    checkIsMainThread(function);
    if (!presentationView) {
        return;
    }
    NamedRows namedRows;
    std::unordered_map<std::string_view, bool>
        isToBeMet;  // a name of the view: its row is yet to be recorded
    isToBeMet.reserve(presentationView->subViews.size());
    std::int64_t viewIndex = 0;
    for (const PresentationViewItem& view : presentationView->subViews) {
        bool& isToMeet = isToBeMet[view.name];
        if (attempt(function,
                    [&] { handlePresentationSubViewUpdate(viewIndex, view, timeline, namedRows); })) {
            isToMeet = true;
        }
        ++viewIndex;
    }
    const bool rowsFollow = timeline->codingTarget() != nullptr;
    const RowList rows = timeline->allRows();
    for (const auto& row : *rows) {
        attempt(function, [&] {
            const std::string name = row->name();
            const auto named = isToBeMet.find(name);
            if (named == isToBeMet.end()) {
                if (row->numberOfInstances() == 0) {
                    removeRow(timeline, row->uniqueId());
                }
            } else if (std::exchange(named->second, false) && rowsFollow) {
                // The row is now as the view has it, also where it was only shifted. Compared with what was sent or received
                // earlier, a user who puts it back to just that would not be seen to have changed anything.
                momentCache_.cacheRows(row);
            }
        });
    }
}

void TimelineUploadService::removeRow(const std::shared_ptr<TimelineProtocol>& timeline,
                                      const std::string& rowId) {
    if (const auto codingTarget = timeline->codingTarget()) {
        environment_.logManager.logInfo("Removing empty row not found in presentation view update");
        codingTarget->removeRowWithRowId(rowId);
    }
    momentCache_.removeUploadedRow(rowId);
}

void TimelineUploadService::handlePresentationSubViewUpdate(std::int64_t viewIndex,
                                                            const PresentationViewItem& view,
                                                            const std::shared_ptr<TimelineProtocol>& timeline,
                                                            NamedRows& namedRows) {
    checkIsMainThread("handlePresentationSubViewUpdate(viewIndex:view:timeline:)");
    const auto found = namedRows.find(*timeline, view.name);
    const auto codingTarget = timeline->codingTarget();
    if (!found) {
        if (codingTarget) {
            environment_.logManager.logInfo("Adding a new row from presentation view update");
            // The callback may come after this synchroniser is gone.
            codingTarget->insertRowWithName(
                view.name, view.color(), viewIndex,
                [weakSelf = weak_from_this()](const std::shared_ptr<TimelineRowProtocol>& added) {
                    const auto self = weakSelf.lock();
                    if (self && added) {
                        self->momentCache_.cacheRows(added);
                    }
                });
        }
        return;
    }
    if (!codingTarget) {
        return;
    }
    const std::shared_ptr<TimelineRowProtocol> row = namedRows.at(*found);
    const auto position = static_cast<std::int64_t>(*found);
    if (position != viewIndex) {
        environment_.logManager.logInfo("Moving row from position " + std::to_string(position) + " to " +
                                        std::to_string(viewIndex) + " from presentation view update");
        codingTarget->rearrangeRowsFrom({position}, viewIndex);
    }
    if (Base::compare(view.color(), row->color()) == Base::ColorComparison::different) {
        environment_.logManager.logInfo("Updated row color from presentation view update");
        codingTarget->setRowColorWithRowId(row->uniqueId(), view.color());
    }
}

}  // namespace RemoteCoding
