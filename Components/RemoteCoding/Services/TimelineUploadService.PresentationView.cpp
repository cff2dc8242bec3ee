#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include <algorithm>
#include <unordered_set>

namespace RemoteCoding {

void TimelineUploadService::updatePresentationView(
    const std::shared_ptr<TimelineProtocol>& timeline,
    const std::optional<PresentationViewItem>& presentationView) {
    constexpr std::string_view function = "updatePresentationView(timeline:presentationView:)";
    checkIsMainThread(function);
    if (!presentationView) {
        return;
    }
    std::unordered_set<std::string_view> names;
    std::unordered_set<std::string_view> namesToMeet;
    std::int64_t viewIndex = 0;
    for (const PresentationViewItem& view : presentationView->subViews) {
        names.insert(view.name);
        if (attempt(function, [&] { handlePresentationSubViewUpdate(viewIndex, view, timeline); })) {
            namesToMeet.insert(view.name);
        }
        ++viewIndex;
    }
    const bool rowsFollow = timeline->codingTarget() != nullptr;
    const RowList rows = timeline->allRows();
    for (const auto& row : *rows) {
        attempt(function, [&] {
            const std::string name = row->name();
            if (!names.contains(name)) {
                if (row->numberOfInstances() == 0) {
                    removeRow(timeline, row->uniqueId());
                }
            } else if (namesToMeet.erase(name) > 0 && rowsFollow) {
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

void TimelineUploadService::handlePresentationSubViewUpdate(
    std::int64_t viewIndex, const PresentationViewItem& view,
    const std::shared_ptr<TimelineProtocol>& timeline) {
    checkIsMainThread("handlePresentationSubViewUpdate(viewIndex:view:timeline:)");
    // Read anew for each sub-view: the rows that earlier ones moved and inserted have to be seen.
    const RowList rows = timeline->allRows();
    const auto found = std::ranges::find_if(*rows, [&](const auto& row) { return row->name() == view.name; });
    const auto codingTarget = timeline->codingTarget();
    if (found == rows->end()) {
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
    const auto& row = *found;
    const std::int64_t position = found - rows->begin();
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
