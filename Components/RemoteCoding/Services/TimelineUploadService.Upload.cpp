#include "Components/RemoteCoding/Services/TimelineUploadService.hpp"

#include "Base/Await.hpp"
#include "Base/Error.hpp"
#include "Components/RemoteCoding/Models/ErrorLog.hpp"
#include "Components/RemoteCoding/Models/Limits.hpp"
#include "Components/RemoteCoding/Services/LiveInstanceIndex.hpp"

#include <algorithm>

namespace RemoteCoding {

namespace {

constexpr std::string_view updateFunction = "updateTaggingSession(_:)";

/// `["a", "b"]`, as the log shows a list of ids.
std::string listOfIds(const std::vector<std::string>& ids) {
    std::string text = "[";
    for (const std::string& id : ids) {
        if (text.size() > 1) {
            text += ", ";
        }
        text += '"';
        text += id;
        text += '"';
    }
    return text + "]";
}

std::vector<std::string> externalIds(const InstanceList& instances) {
    std::vector<std::string> ids;
    for (const auto& instance : *instances) {
        if (auto externalId = instance->externalId()) {
            ids.push_back(*std::move(externalId));
        }
    }
    return ids;
}

InstanceList share(std::vector<std::shared_ptr<TimelineInstanceProtocol>> instances) {
    return std::make_shared<const std::vector<std::shared_ptr<TimelineInstanceProtocol>>>(
        std::move(instances));
}

}  // namespace

/// What one upload sends, as found on the main thread before anything is sent.
struct TimelineUploadService::ChangeSet {
    std::string taggingSessionId;
    std::shared_ptr<TimelineProtocol> partialTimeline;
    RowList partialRows;
    RowList fullRows;
    InstanceList newInstances;
    InstanceList updatedInstances;
    std::vector<std::string> deletedMomentIds;
    std::vector<std::string> deletedRowIds;
    std::int64_t firstModifyCount = 0;
    std::int64_t lastModifyCount = 0;
    std::uint64_t number = 0;  ///< of the upload, from 1 on
};

void TimelineUploadService::updateTaggingSession(SuccessCompletion completion) {
    checkIsMainThread(updateFunction);
    bool succeeded = true;
    try {
        if (const auto changes = findLocalChanges()) {
            environment_.logManager.logInfo("Uploading all local timeline updates");
            startTask(Base::Home::background, upload(shared_from_this(), changes, completion),
                      updateFunction);
            unsentEdits_.uploadStarts({changes->firstModifyCount, changes->lastModifyCount});
            if (auto* const observer = environment_.synchronisationObserver) {
                observer->uploadDidStart(timelineId_, changes->number, changes->firstModifyCount,
                                         changes->lastModifyCount);
            }
            return;
        }
    } catch (...) {
        logUnexpectedFailure(std::current_exception(), updateFunction);
        // A caller that goes on to apply remote changes passes over these edits.
        unsentEdits_.areLost({lastModifyCount_ + 1, lastModifyCount_ + 1});
        succeeded = false;
    }
    if (completion) {
        completion(succeeded);
    }
}

/// Null when there is nothing to send, or nowhere to send it.
std::shared_ptr<const TimelineUploadService::ChangeSet> TimelineUploadService::findLocalChanges() {
    if (!hasTaggingSession()) {
        return nullptr;
    }
    const auto current = timeline();
    if (!current) {
        return nullptr;
    }
    if (lastModifyCount_ >= current->modifyCount()) {
        unsentEdits_.timelineWasRead();
        return nullptr;
    }
    // Sent while the session was never received, the timeline's own rows would replace everybody's list of codes.
    if (isSyncingCancelled_ && hasNotMetItsSession()) {
        environment_.logManager.logWarn(
            "Local timeline updates are not uploaded: the session ended before it was received.");
        return nullptr;
    }
    unsentEdits_.timelineWasRead();
    auto changes = std::make_shared<ChangeSet>();
    changes->taggingSessionId = taggingSessionId().value();  // never taken back
    changes->firstModifyCount = lastModifyCount_ + 1;
    changes->partialTimeline = current->timelineFromModifyCount(changes->firstModifyCount, false);
    changes->partialRows = changes->partialTimeline->allRows();
    changes->fullRows = current->allRows();
    auto instances = newAndUpdatedInstancesFromTimelineRows(changes->partialRows, changes->fullRows);
    changes->newInstances = share(std::move(instances.newInstances));
    changes->updatedInstances = share(std::move(instances.updatedInstances));
    changes->deletedMomentIds = deletedMomentIdsFromTimeline(*changes->partialTimeline);
    changes->deletedRowIds = deletedRowIdsFromTimeline(*changes->partialTimeline);
    changes->lastModifyCount = changes->partialTimeline->modifyCount();
    changes->number = ++uploads_;
    return changes;
}

Base::Task<void> TimelineUploadService::upload(std::shared_ptr<TimelineUploadService> self,
                                               std::shared_ptr<const ChangeSet> changes,
                                               SuccessCompletion completion) {
    bool uploaded = false;
    try {
        const Base::Result<void> result = co_await self->uploadChanges(changes);
        uploaded = result.succeeded();
    } catch (...) {
        self->logUnexpectedFailure(std::current_exception(), updateFunction);
    }
    if (!uploaded) {
        self->environment_.logManager.logWarn("Some upload operations are unsuccessful");
    }
    Base::MainThreadCall finishing(self->environment_.execution, [self, changes, uploaded, completion] {
        self->finishUpload(*changes, uploaded, completion);
    });
    const Base::Result<void> finished = co_await finishing;
    finished.value();
}

// The four steps in their fixed order; the first that fails is the last.
Base::Task<Base::Result<void>>
TimelineUploadService::uploadChanges(std::shared_ptr<const ChangeSet> changes) {
    Base::Result<void> step =
        co_await uploadUpdatedInstances(changes->updatedInstances, changes->taggingSessionId);
    if (step.succeeded()) {
        step = co_await uploadNewInstances(changes->newInstances, changes->taggingSessionId);
    }
    if (step.succeeded()) {
        step = co_await uploadDeletedMomentIds(changes->deletedMomentIds, changes->taggingSessionId);
    }
    if (step.succeeded()) {
        step = co_await uploadPresentationView(changes);
    }
    co_return step;
}

void TimelineUploadService::finishUpload(const ChangeSet& changes, bool uploaded,
                                         const SuccessCompletion& completion) {
    unsentEdits_.uploadEnds({changes.firstModifyCount, changes.lastModifyCount}, uploaded);
    if (auto* const observer = environment_.synchronisationObserver) {
        observer->uploadDidEnd(timelineId_, changes.number, uploaded);
    }
    if (uploaded) {
        setLastModifyCount(changes.lastModifyCount, ModifyCountReason::uploaded);
    }
    if (completion) {
        completion(uploaded);
    }
}

Base::Task<Base::Result<void>> TimelineUploadService::uploadUpdatedInstances(InstanceList instances,
                                                                             std::string taggingSessionId) {
    checkIsNotMainThread("uploadUpdatedInstances(_:taggingSessionId:)");
    if (instances->empty()) {
        co_return Base::Result<void>();
    }
    environment_.logManager.logInfo("Updating Tevu moments. MomentIds=" + listOfIds(externalIds(instances)));
    Base::CompletionCall<bool> updating([service = taggingSessionService_, teamId = teamId_,
                                         videoId = videoId_, taggingSessionId, timelineId = timelineId_,
                                         instances](Base::Completion<bool> done) {
        service->updateMoments(teamId, videoId, taggingSessionId, timelineId, instances, std::move(done));
    });
    const Base::Result<bool> updated = co_await updating;
    if (!updated.succeeded()) {
        environment_.logManager.logWarn("Unable to update moments. Error=" + Base::describe(updated.error()));
        co_return Base::Result<void>::failure(updated.error());
    }
    if (!updated.value()) {
        environment_.logManager.logWarn("Updating moments was unsuccessful.");
    }
    momentCache_.cacheInstances(instances);
    co_return Base::Result<void>();
}

Base::Task<Base::Result<void>> TimelineUploadService::uploadNewInstances(InstanceList instances,
                                                                         std::string taggingSessionId) {
    checkIsNotMainThread("uploadNewInstances(_:taggingSessionId:)");
    if (instances->empty()) {
        co_return Base::Result<void>();
    }
    using MomentIds = std::vector<std::string>;
    Base::CompletionCall<MomentIds> creating([service = taggingSessionService_, teamId = teamId_,
                                              videoId = videoId_, taggingSessionId, timelineId = timelineId_,
                                              instances](Base::Completion<MomentIds> done) {
        service->createMoments(teamId, videoId, taggingSessionId, timelineId, instances, std::move(done));
    });
    Base::Result<MomentIds> created = co_await creating;
    if (!created.succeeded()) {
        environment_.logManager.logWarn(
            "Unable to upload new moments. Error=" + Base::describe(created.error()) + ".");
        co_return Base::Result<void>::failure(created.error());
    }
    const auto momentIds = std::make_shared<MomentIds>(std::move(created).value());
    const auto index = std::make_shared<LiveInstanceIndex>();
    const auto next = std::make_shared<std::size_t>(0);
    const std::size_t pairs = std::min(instances->size(), momentIds->size());
    while (*next < pairs) {
        Base::MainThreadCall writing(environment_.execution, [this, instances, momentIds, index, next] {
            *next = writeBackSlice(*instances, *momentIds, *next, *index);
        });
        const Base::Result<void> written = co_await writing;
        if (!written.succeeded()) {
            logUnexpectedFailure(written.error(), "uploadNewInstances(_:taggingSessionId:)");
            co_return written;
        }
    }
    co_return Base::Result<void>();
}

/// Handles pairs from `first` on, one at a time and in order, and gives the first one left for the next slice. Takes away the
/// moment ids that it has handled.
std::size_t TimelineUploadService::writeBackSlice(const Instances& instances,
                                                  std::vector<std::string>& momentIds, std::size_t first,
                                                  LiveInstanceIndex& index) {
    const std::size_t end = std::min({instances.size(), momentIds.size(), first + Limits::writeBackSlice});
    index.refresh(timeline());
    for (std::size_t position = first; position < end; ++position) {
        attempt("setExternalIdAndCacheInstance(instance:externalId:)", [&] {
            setExternalIdAndCacheInstance(instances[position], std::move(momentIds[position]), index);
        });
    }
    return end;
}

void TimelineUploadService::setExternalIdAndCacheInstance(
    const std::shared_ptr<TimelineInstanceProtocol>& instance, const std::string& externalId) {
    LiveInstanceIndex index;
    index.refresh(timeline());
    setExternalIdAndCacheInstance(instance, externalId, index);
}

void TimelineUploadService::setExternalIdAndCacheInstance(
    const std::shared_ptr<TimelineInstanceProtocol>& instance, std::string externalId,
    LiveInstanceIndex& index) {
    constexpr std::string_view function = "setExternalIdAndCacheInstance(instance:externalId:)";
    checkIsMainThread(function);
    const auto row = instance->row();
    if (!row) {
        logError(environment_.logManager, "Trying to cache an instance without a row.", "", function);
        return;
    }
    if (const auto liveInstance = index.find(row->uniqueId(), instance->uniqueId())) {
        liveInstance->setExternalId(std::move(externalId));
        momentCache_.cacheInstances(liveInstance);
    }
}

Base::Task<Base::Result<void>>
TimelineUploadService::uploadDeletedMomentIds(std::vector<std::string> momentIds,
                                              std::string taggingSessionId) {
    checkIsNotMainThread("uploadDeletedMomentIds(_:taggingSessionId:)");
    if (momentIds.empty()) {
        co_return Base::Result<void>();
    }
    environment_.logManager.logInfo("Deleting Tevu moments. MomentIds=" + listOfIds(momentIds));
    Base::CompletionCall<bool> removing([service = taggingSessionService_, teamId = teamId_,
                                         videoId = videoId_, taggingSessionId, timelineId = timelineId_,
                                         momentIds](Base::Completion<bool> done) {
        service->removeMoments(teamId, videoId, taggingSessionId, timelineId, momentIds, std::move(done));
    });
    const Base::Result<bool> removed = co_await removing;
    if (!removed.succeeded()) {
        environment_.logManager.logWarn("Unable to delete moments. Error=" + Base::describe(removed.error()) +
                                        ".");
        co_return Base::Result<void>::failure(removed.error());
    }
    if (removed.value()) {
        momentCache_.deleteMoments(momentIds);
    } else {
        environment_.logManager.logWarn("Deleting moments was unsuccessful.");
    }
    co_return Base::Result<void>();
}

Base::Task<Base::Result<void>>
TimelineUploadService::uploadPresentationView(std::shared_ptr<const ChangeSet> changes) {
    checkIsNotMainThread("uploadPresentationView(partialTimelineRows:fullTimelineRows:deletedMomentIds:"
                         "deletedRowIds:taggingSessionId:)");
    Rows changedRows;
    for (const auto& row : *changes->partialRows) {
        if (rowIsNewOrUpdated(*row)) {
            changedRows.push_back(row);
        }
    }
    if (changedRows.empty() && changes->deletedMomentIds.empty() && changes->deletedRowIds.empty()) {
        co_return Base::Result<void>();
    }
    environment_.logManager.logInfo("Updating Tevu presentation view.");
    Base::CompletionCall<std::string> saving([service = taggingSessionService_, teamId = teamId_,
                                              videoId = videoId_, timelineId = timelineId_,
                                              changes](Base::Completion<std::string> done) {
        service->savePresentationView(teamId, videoId, changes->taggingSessionId, timelineId, "",
                                      changes->fullRows, std::move(done));
    });
    const Base::Result<std::string> saved = co_await saving;
    if (!saved.succeeded()) {
        environment_.logManager.logWarn("Unable to upload presentation view. Error=" +
                                        Base::describe(saved.error()));
        co_return Base::Result<void>::failure(saved.error());
    }
    momentCache_.cacheRows(changedRows);
    for (const std::string& rowId : changes->deletedRowIds) {
        momentCache_.removeUploadedRow(rowId);
    }
    co_return Base::Result<void>();
}

Base::Task<void> TimelineUploadService::createNewTaggingSession() {
    constexpr std::string_view function = "createNewTaggingSession()";
    checkIsNotMainThread(function);
    Base::CompletionCall<std::string> creating([service = taggingSessionService_, teamId = teamId_,
                                                videoId = videoId_,
                                                userId = userId_](Base::Completion<std::string> done) {
        service->createTaggingSession(teamId, videoId, userId, std::move(done));
    });
    const Base::Result<std::string> created = co_await creating;
    if (created.succeeded()) {
        const std::lock_guard lock(taggingSessionIdMutex_);
        taggingSessionId_ = created.value();
    } else {
        logError(environment_.logManager, "Unable to create tagging session",
                 "Error=" + Base::describe(created.error()), function);
    }
}

}  // namespace RemoteCoding
