#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include "Components/RemoteCoding/Models/ErrorLog.hpp"

#include <algorithm>
#include <utility>

namespace RemoteCoding {

namespace {

constexpr std::string_view eventFunction = "handleTaggingSessionUpdate(changeType:taggingSession:)";
constexpr std::string_view addFunction = "addNewMomentsToTimeline(timeline:moments:)";
constexpr std::string_view updateFunction = "updateMomentsOnTimeline(timeline:moments:)";
constexpr std::string_view deleteFunction = "deleteMomentsOnTimeline(timeline:momentIds:)";

/// Said once for each event: for the types that there are, the lines are ready.
void logReceived(LogManagerProtocol& log, TaggingSessionChangeType changeType) {
    switch (changeType) {
    case TaggingSessionChangeType::unknown:
        return log.logInfo("Received timeline update. ChangeType=unknown");
    case TaggingSessionChangeType::momentsAdded:
        return log.logInfo("Received timeline update. ChangeType=momentsAdded");
    case TaggingSessionChangeType::momentsUpdated:
        return log.logInfo("Received timeline update. ChangeType=momentsUpdated");
    case TaggingSessionChangeType::momentsDeleted:
        return log.logInfo("Received timeline update. ChangeType=momentsDeleted");
    case TaggingSessionChangeType::presentationViewUpdated:
        return log.logInfo("Received timeline update. ChangeType=presentationViewUpdated");
    }
    // A value that a newer client brings along.
    log.logInfo("Received timeline update. ChangeType=" + std::to_string(static_cast<int>(changeType)));
}

bool isAboutMoments(TaggingSessionChangeType changeType) {
    return changeType == TaggingSessionChangeType::momentsAdded ||
           changeType == TaggingSessionChangeType::momentsUpdated ||
           changeType == TaggingSessionChangeType::momentsDeleted;
}

}  // namespace

void TimelineUploadService::handleTaggingSessionUpdate(TaggingSessionChangeType changeType,
                                                       const ChangedTaggingSession& taggingSession) {
    checkIsMainThread(eventFunction);
    runBlockSerially(
        // Captured by a name of its own: a copy of what is constant could not be moved into the block.
        [self = shared_from_this(), changeType, event = taggingSession] {
            self->attempt(eventFunction, [&] { self->applyEvent(changeType, event); });
            self->runNextBlock();
        },
        SynchronisationBlock::event);
}

void TimelineUploadService::applyEvent(TaggingSessionChangeType changeType,
                                       const ChangedTaggingSession& taggingSession) {
    auto& log = environment_.logManager;
    logReceived(log, changeType);
    if (isSyncingCancelled_) {
        return;
    }
    const auto current = timeline();
    if (!current) {
        logError(log, "Unable to find the timeline", "", eventFunction);
        return;
    }
    const Moments none;
    const Moments& moments = taggingSession.moments ? *taggingSession.moments : none;
    if (moments.empty() && isAboutMoments(changeType)) {
        log.logWarn("No moments found for update to tagging session moments.");
        return;
    }
    if (!taggingSession.presentationView && changeType == TaggingSessionChangeType::presentationViewUpdated) {
        log.logWarn("No presentation view found for update to tagging session presentation view.");
        return;
    }
    if (lastModifyCount_ < current->modifyCount()) {
        log.logInfo("Uploading local timeline updates before applying timeline update from subscription");
        updateTaggingSession({});
    }
    updateTimelineForChangeType(current, changeType, moments, taggingSession.presentationView);
}

void TimelineUploadService::updateTimelineForChangeType(
    const std::shared_ptr<TimelineProtocol>& timeline, TaggingSessionChangeType changeType,
    const Moments& moments, const std::optional<PresentationViewItem>& presentationViewItem) {
    switch (changeType) {
    case TaggingSessionChangeType::momentsAdded:
        updateTimelineWithChanges(timeline, moments, {}, {}, std::nullopt);
        return;
    case TaggingSessionChangeType::momentsUpdated:
        updateTimelineWithChanges(timeline, {}, moments, {}, std::nullopt);
        return;
    case TaggingSessionChangeType::momentsDeleted: {
        std::vector<std::string> momentIds;
        for (const auto& moment : moments) {
            if (moment) {
                momentIds.push_back(moment->identifier());
            }
        }
        updateTimelineWithChanges(timeline, {}, {}, momentIds, std::nullopt);
        return;
    }
    case TaggingSessionChangeType::presentationViewUpdated:
        updateTimelineWithChanges(timeline, {}, {}, {}, presentationViewItem);
        return;
    case TaggingSessionChangeType::unknown:
        break;
    }
    logError(environment_.logManager, "Unknown change type for tagging session update", "",
             "updateTimelineForChangeType(_:changeType:moments:presentationViewItem:)");
    updateTimelineWithChanges(timeline, {}, {}, {}, std::nullopt);
}

void TimelineUploadService::updateTimelineWithChanges(
    const std::shared_ptr<TimelineProtocol>& timeline, const Moments& newMoments,
    const Moments& updatedMoments, const std::vector<std::string>& deletedMomentIds,
    const std::optional<PresentationViewItem>& presentationView) {
    constexpr std::string_view function =
        "updateTimelineWithChanges(_:newMoments:updatedMoments:deletedMomentIds:presentationView:)";
    checkIsMainThread(function);
    if (!newMoments.empty()) {
        addNewMomentsToTimeline(timeline, newMoments);
    }
    if (!updatedMoments.empty()) {
        updateMomentsOnTimeline(timeline, updatedMoments);
    }
    if (!deletedMomentIds.empty()) {
        deleteMomentsOnTimeline(timeline, deletedMomentIds);
    }
    attempt(function, [&] { updatePresentationView(timeline, presentationView); });
    setLastModifyCount(timeline->modifyCount(), ModifyCountReason::applied);
}

void TimelineUploadService::addNewMomentsToTimeline(const std::shared_ptr<TimelineProtocol>& timeline,
                                                    const Moments& moments) {
    checkIsMainThread(addFunction);
    Moments unknownMoments;
    for (const auto& moment : moments) {
        attempt(addFunction, [&] {
            if (moment && !momentCache_.knowsMoment(moment->identifier())) {
                unknownMoments.push_back(moment);
            }
        });
    }
    for (const auto& moment : unknownMoments) {
        attempt(addFunction, [&] { addMoment(timeline, *moment); });
    }
}

void TimelineUploadService::addMoment(const std::shared_ptr<TimelineProtocol>& timeline,
                                      const MomentItem& moment) {
    const auto instance = moment.appendToTimeline(timeline);
    const auto row = instance ? instance->row() : nullptr;
    if (!row) {
        logError(environment_.logManager, "No row found", "", addFunction);
        return;
    }
    momentCache_.cacheInstances(instance);
    if (!momentCache_.hasUploadedRow(row->uniqueId())) {
        momentCache_.cacheRows(row);
    }
}

void TimelineUploadService::updateMomentsOnTimeline(const std::shared_ptr<TimelineProtocol>& timeline,
                                                    const Moments& moments) {
    checkIsMainThread(updateFunction);
    ClipPlace place = std::move(place_);
    for (const auto& moment : moments) {
        if (moment) {
            attempt(updateFunction, [&] { updateMoment(timeline, *moment, place); });
        }
    }
    place_ = std::move(place);
}

void TimelineUploadService::updateMoment(const std::shared_ptr<TimelineProtocol>& timeline,
                                         const MomentItem& moment, ClipPlace& place) {
    if (!momentCache_.findPlace(moment.identifier(), place)) {
        return;
    }
    if (const auto instance = moment.updateOnTimeline(timeline, place.instanceId, place.rowId)) {
        instance->setExternalId(moment.identifier());
        // Nearly always, and found without a search through the rows.
        const auto row = instance->row();
        if (row && row->uniqueId() == place.rowId && row->name() == moment.code()) {
            return;
        }
    }
    followCode(timeline, moment, place.rowId);
}

/// Renames the moment's row when its code was changed to one that no row has.
void TimelineUploadService::followCode(const std::shared_ptr<TimelineProtocol>& timeline,
                                       const MomentItem& moment, const std::string& rowId) {
    const RowList rows = timeline->allRows();
    const auto found = std::ranges::find_if(*rows, [&](const auto& row) { return row->uniqueId() == rowId; });
    if (found == rows->end() || (*found)->name() == moment.code()) {
        return;
    }
    if (std::ranges::any_of(*rows, [&](const auto& row) { return row->name() == moment.code(); })) {
        logError(environment_.logManager, "Instance for moment is on the wrong row", "", updateFunction);
        return;
    }
    if (const auto codingTarget = timeline->codingTarget()) {
        environment_.logManager.logInfo("Moment has a different code, renaming row");
        codingTarget->setRowNameWithRowNum((*found)->rowNum(), moment.code());
        // Else the row would count as renamed by the user, and all its moments would be sent again. A host that keeps its user's
        // newer name has received nothing: that name still has to be sent.
        if ((*found)->name() == moment.code()) {
            momentCache_.cacheRows(*found);
        }
    }
}

void TimelineUploadService::deleteMomentsOnTimeline(const std::shared_ptr<TimelineProtocol>& timeline,
                                                    const std::vector<std::string>& momentIds) {
    checkIsMainThread(deleteFunction);
    ClipPlace place = std::move(place_);
    for (const std::string& momentId : momentIds) {
        attempt(deleteFunction, [&] { deleteMoment(timeline, momentId, place); });
    }
    place_ = std::move(place);
}

void TimelineUploadService::deleteMoment(const std::shared_ptr<TimelineProtocol>& timeline,
                                         const std::string& momentId, ClipPlace& place) {
    if (!momentCache_.findPlace(momentId, place)) {
        return;
    }
    if (const auto codingTarget = timeline->codingTarget()) {
        codingTarget->removeInstanceWithRowId(place.rowId, place.instanceId);
    }
    momentCache_.deleteMoments(momentId);
}

void TimelineUploadService::setLastModifyCount(std::int64_t count, ModifyCountReason reason) {
    const std::int64_t old = std::exchange(lastModifyCount_, count);
    unsentEdits_.accountFor(count);
    if (environment_.synchronisationObserver != nullptr) {
        environment_.synchronisationObserver->lastModifyCountDidChange(timelineId_, old, count, reason);
    }
}

}  // namespace RemoteCoding
