#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include <algorithm>

namespace RemoteCoding {

void TimelineUploadService::timelineDidAnyChange(const Notification& notification) {
    checkIsMainThread("timelineDidAnyChange(_:)");
    const auto* const changed = dynamic_cast<const TimelineProtocol*>(notification.object.get());
    if (changed == nullptr || changed->uniqueId() != timelineId_) {
        return;
    }
    unsentEdits_.changeWasAnnounced();
    updateTevuTaggingSessionThrottler_.throttle();
}

TimelineUploadService::NewAndUpdatedInstances
TimelineUploadService::newAndUpdatedInstancesFromTimelineRows(const RowList& timelineRows,
                                                              const RowList& fullTimelineRows) {
    checkIsMainThread("newAndUpdatedInstancesFromTimelineRows(timelineRows:fullTimelineRows:)");
    NewAndUpdatedInstances result;
    for (const auto& row : *timelineRows) {
        const InstanceList changedInstances = row->allInstances();
        const std::string& rowId = row->uniqueId();
        const auto uploadedRow = momentCache_.uploadedRow(rowId);
        const bool isRenamed = uploadedRow && uploadedRow->name != row->name();
        if (isRenamed) {
            // The row's name is the code of all its moments.
            const auto fullRow = std::ranges::find_if(
                *fullTimelineRows, [&](const auto& candidate) { return candidate->uniqueId() == rowId; });
            if (fullRow != fullTimelineRows->end()) {
                const InstanceList allInstances = (*fullRow)->allInstances();
                std::ranges::copy_if(*allInstances, std::back_inserter(result.updatedInstances),
                                     [](const auto& instance) { return instance->externalId().has_value(); });
            }
        }
        for (const auto& instance : *changedInstances) {
            const std::string& instanceId = instance->uniqueId();
            if (momentCache_.hasDeletedMoment(instanceId) && !momentCache_.momentId(instanceId)) {
                // Its moment is gone for good: the instance gets a new one.
                instance->setExternalId(std::nullopt);
                result.newInstances.push_back(instance);
            } else if (!instance->externalId()) {
                result.newInstances.push_back(instance);
            } else if (!isRenamed) {
                result.updatedInstances.push_back(instance);
            }
        }
    }
    return result;
}

std::vector<std::string>
TimelineUploadService::deletedMomentIdsFromTimeline(const TimelineProtocol& timeline) {
    checkIsMainThread("deletedMomentIdsFromTimeline(_:)");
    std::vector<std::string> momentIds;
    for (const std::string& instanceId : timeline.deletedInstanceIds()) {
        if (auto momentId = momentCache_.momentId(instanceId)) {
            momentIds.push_back(*std::move(momentId));
        }
    }
    return momentIds;
}

std::vector<std::string> TimelineUploadService::deletedRowIdsFromTimeline(const TimelineProtocol& timeline) {
    checkIsMainThread("deletedRowIdsFromTimeline(_:)");
    std::vector<std::string> rowIds;
    for (const std::string& rowId : timeline.deletedRowIds()) {
        if (auto uploadedRow = momentCache_.uploadedRow(rowId)) {
            rowIds.push_back(std::move(uploadedRow->rowId));
        }
    }
    return rowIds;
}

bool TimelineUploadService::rowIsNewOrUpdated(const TimelineRowProtocol& row) {
    checkIsNotMainThread("rowIsNewOrUpdated(row:)");
    const auto uploadedRow = momentCache_.uploadedRow(row.uniqueId());
    return !uploadedRow || uploadedRow->name != row.name() || uploadedRow->color != row.color() ||
           uploadedRow->rowNum != row.rowNum();
}

}  // namespace RemoteCoding
