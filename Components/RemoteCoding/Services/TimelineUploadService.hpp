#pragma once

#include "Base/Task.hpp"
#include "Base/Throttler.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostEnvironment.hpp"
#include "Components/RemoteCoding/HostInterfaces/SynchronisationStatus.hpp"
#include "Components/RemoteCoding/Models/MomentCache.hpp"
#include "Components/RemoteCoding/Services/SerialBlockQueue.hpp"
#include "Components/RemoteCoding/Services/TaggingSessionSubscription.hpp"
#include "Components/RemoteCoding/Services/UnsentEdits.hpp"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <source_location>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// Keeps one local timeline and one remote tagging session equal, in both directions.
///
/// All its work is done in blocks that never overlap: uploads of local changes, the pull of the whole remote session, single
/// remote changes, attempts to reconnect. The one exception is the upload that is started, and not waited for, when
/// remote changes arrive while local ones have not been sent.
///
/// Threads: main, unless an operation says otherwise; operations check their thread and report to the host. The
/// network calls of an upload, the creation of a tagging session and the opening of the subscription run in the
/// background. Objects are made by `make` and destroyed on the main thread.
///
/// Ownership: blocks, uploads and the handlers of an open subscription hold the synchroniser; the throttler, the block that it
/// queues and the notification centre do not. `cancelSyncing` lets go of the subscription.
///
/// Its subjects stand in files of their own: TimelineUploadService.ChangeDetection.cpp, .Upload.cpp, .RemoteChanges.cpp,
/// .PresentationView.cpp, .Subscription.cpp, .Pull.cpp; its lifecycle and its queue in TimelineUploadService.cpp.
class TimelineUploadService : public std::enable_shared_from_this<TimelineUploadService> {
public:
    /// True: everything was sent or applied, or there was nothing to do. Called once, on the main thread; may be empty.
    using SuccessCompletion = std::function<void(bool)>;
    using Instances = std::vector<std::shared_ptr<TimelineInstanceProtocol>>;
    using Rows = std::vector<std::shared_ptr<TimelineRowProtocol>>;
    using Moments = std::vector<std::shared_ptr<const MomentItem>>;

    /// Main thread. Makes the synchroniser and starts it: it pulls the given tagging session, or creates one when none is
    /// given, and subscribes to its changes. `environment` must outlive it.
    [[nodiscard]] static std::shared_ptr<TimelineUploadService>
    make(HostEnvironment& environment, std::string timelineId, std::string teamId, std::string userId,
         std::string videoId, std::optional<std::string> taggingSessionId,
         std::shared_ptr<TaggingSessionServiceProtocol> taggingSessionService,
         std::shared_ptr<GraphQLTaggingSessionProtocol> graphQLClient);

    ~TimelineUploadService();
    TimelineUploadService(const TimelineUploadService&) = delete;
    TimelineUploadService& operator=(const TimelineUploadService&) = delete;

    /// Receives nothing more and reconnects no more. What the user changed up to now is still uploaded, and blocks that
    /// wait still run and end.
    void cancelSyncing();

    [[nodiscard]] SynchronisationStatus status() const;

    /// Holds the status as it was at the end, once this synchroniser is gone.
    [[nodiscard]] std::shared_ptr<const SynchronisationStatus> finalStatus() const { return finalStatus_; }

    /// Any thread.
    [[nodiscard]] std::optional<std::string> taggingSessionId() const;
    [[nodiscard]] bool isSyncingCancelled() const { return isSyncingCancelled_; }

    /// The timeline's `modifyCount` up to which the remote side has, or sent, the timeline's changes.
    [[nodiscard]] std::int64_t lastModifyCount() const { return lastModifyCount_; }
    [[nodiscard]] MomentCache& momentCache() { return momentCache_; }
    [[nodiscard]] const TaggingSessionSubscription& taggingSessionSubscription() const {
        return taggingSessionSubscription_;
    }

    // The queue

    /// Runs the block at once when nothing runs, else when its turn has come. It must call `runNextBlock()` once, on the
    /// main thread, when all its work has ended.
    void runBlockSerially(SerialBlockQueue::Block block, SynchronisationBlock kind);
    void runNextBlock();

    /// Any thread. Calls the completion on the main thread, no earlier than after that time; finite and not negative.
    void waitForTime(double timeInSeconds, std::function<void()> completion);

    // Local change detection

    void timelineDidAnyChange(const Notification& notification);

    struct NewAndUpdatedInstances {
        Instances newInstances;
        Instances updatedInstances;
    };
    [[nodiscard]] NewAndUpdatedInstances
    newAndUpdatedInstancesFromTimelineRows(const RowList& timelineRows, const RowList& fullTimelineRows);
    [[nodiscard]] std::vector<std::string> deletedMomentIdsFromTimeline(const TimelineProtocol& timeline);
    [[nodiscard]] std::vector<std::string> deletedRowIdsFromTimeline(const TimelineProtocol& timeline);

    /// Background. True when the row must be sent in the presentation view.
    [[nodiscard]] bool rowIsNewOrUpdated(const TimelineRowProtocol& row);

    // Upload of local changes

    /// Sends what has changed since `lastModifyCount`.
    void updateTaggingSession(SuccessCompletion completion);

    /// Looks the instance up in the live timeline and writes the moment id there and into the cache.
    void setExternalIdAndCacheInstance(const std::shared_ptr<TimelineInstanceProtocol>& instance,
                                       const std::string& externalId);

    // Remote changes

    /// The subscription's change handler.
    void handleTaggingSessionUpdate(TaggingSessionChangeType changeType,
                                    const ChangedTaggingSession& taggingSession);
    void updateTimelineForChangeType(const std::shared_ptr<TimelineProtocol>& timeline,
                                     TaggingSessionChangeType changeType, const Moments& moments,
                                     const std::optional<PresentationViewItem>& presentationViewItem);
    void updateTimelineWithChanges(const std::shared_ptr<TimelineProtocol>& timeline,
                                   const Moments& newMoments, const Moments& updatedMoments,
                                   const std::vector<std::string>& deletedMomentIds,
                                   const std::optional<PresentationViewItem>& presentationView);
    void updatePresentationView(const std::shared_ptr<TimelineProtocol>& timeline,
                                const std::optional<PresentationViewItem>& presentationView);

    // Subscription and reconnection

    /// Background. Opens the subscription in place of the one that is held.
    void subscribeToTaggingSessionUpdates(const std::string& timelineId);
    void attemptReconnection(std::int64_t attempt, std::function<void()> completion);

    // Pull

    /// Fetches the whole remote session and applies it.
    void syncRemoteTaggingSessionToLocalTimeline(SuccessCompletion completion);

private:
    struct ChangeSet;
    class LiveInstanceIndex;
    class NamedRows;
    using Location = std::source_location;

    TimelineUploadService(HostEnvironment& environment, std::string timelineId, std::string teamId,
                          std::string userId, std::string videoId,
                          std::optional<std::string> taggingSessionId,
                          std::shared_ptr<TaggingSessionServiceProtocol> taggingSessionService,
                          std::shared_ptr<GraphQLTaggingSessionProtocol> graphQLClient);

    // Lifecycle
    void start();
    void queueUpload();
    static Base::Task<void> createTaggingSessionAndStart(std::shared_ptr<TimelineUploadService> self);
    void startTask(Base::Home home, Base::Task<void> task, std::string_view function);
    /// For a task that counts `backgroundStarts_` down when it ends; logs what the execution throws.
    void startInBackground(Base::Task<void> task, std::string_view function);
    [[nodiscard]] std::shared_ptr<TimelineProtocol> timeline() const;
    void checkIsMainThread(std::string_view function, const Location& location = Location::current()) const {
        // Asked for each clip: the source's name is worked out only for a report.
        if (!environment_.execution.isMainThread()) {
            reportWrongThread(function, location);
        }
    }
    void reportWrongThread(std::string_view function, const Location& location) const;
    void checkIsNotMainThread(std::string_view function,
                              const Location& location = Location::current()) const;
    void logUnexpectedFailure(const std::exception_ptr& error, std::string_view function,
                              const Location& location = Location::current()) const noexcept;
    /// Does a piece of work that nothing else may depend on: what it throws is logged. False when it threw.
    template <typename Work>
    bool attempt(std::string_view function, const Work& work,
                 const Location& location = Location::current()) const {
        try {
            work();
            return true;
        } catch (...) {
            logUnexpectedFailure(std::current_exception(), function, location);
            return false;
        }
    }
    static Base::Task<void> waitAndComplete(std::shared_ptr<TimelineUploadService> self, double timeInSeconds,
                                            std::function<void()> completion);

    [[nodiscard]] bool hasTaggingSession() const;

    /// The timeline and its session have not met: nothing of either has gone to the other.
    [[nodiscard]] bool hasNotMetItsSession() const { return firstPullIsPending_ && lastModifyCount_ == 0; }

    // Upload
    [[nodiscard]] std::shared_ptr<const ChangeSet> findLocalChanges();
    static Base::Task<void> upload(std::shared_ptr<TimelineUploadService> self,
                                   std::shared_ptr<const ChangeSet> changes, SuccessCompletion completion);
    Base::Task<Base::Result<void>> uploadChanges(std::shared_ptr<const ChangeSet> changes);
    void finishUpload(const ChangeSet& changes, bool uploaded, const SuccessCompletion& completion);
    Base::Task<Base::Result<void>> uploadUpdatedInstances(InstanceList instances,
                                                          std::string taggingSessionId);
    Base::Task<Base::Result<void>> uploadNewInstances(InstanceList instances, std::string taggingSessionId);
    Base::Task<Base::Result<void>> uploadDeletedMomentIds(std::vector<std::string> momentIds,
                                                          std::string taggingSessionId);
    Base::Task<Base::Result<void>> uploadPresentationView(std::shared_ptr<const ChangeSet> changes);
    Base::Task<void> createNewTaggingSession();
    std::size_t writeBackSlice(const Instances& instances, std::vector<std::string>& momentIds,
                               std::size_t first, LiveInstanceIndex& index);
    void setExternalIdAndCacheInstance(const std::shared_ptr<TimelineInstanceProtocol>& instance,
                                       std::string externalId, LiveInstanceIndex& index);

    // Remote changes
    void applyEvent(TaggingSessionChangeType changeType, const ChangedTaggingSession& taggingSession);
    void addNewMomentsToTimeline(const std::shared_ptr<TimelineProtocol>& timeline, const Moments& moments);
    void addMoment(const std::shared_ptr<TimelineProtocol>& timeline, const MomentItem& moment);
    void updateMomentsOnTimeline(const std::shared_ptr<TimelineProtocol>& timeline, const Moments& moments);
    /// `place`: room for texts, which the next moment may use again.
    void updateMoment(const std::shared_ptr<TimelineProtocol>& timeline, const MomentItem& moment,
                      ClipPlace& place);
    void followCode(const std::shared_ptr<TimelineProtocol>& timeline, const MomentItem& moment,
                    const std::string& rowId);
    void deleteMomentsOnTimeline(const std::shared_ptr<TimelineProtocol>& timeline,
                                 const std::vector<std::string>& momentIds);
    void deleteMoment(const std::shared_ptr<TimelineProtocol>& timeline, const std::string& momentId,
                      ClipPlace& place);
    void handlePresentationSubViewUpdate(std::int64_t viewIndex, const PresentationViewItem& view,
                                         const std::shared_ptr<TimelineProtocol>& timeline,
                                         NamedRows& namedRows);
    void removeRow(const std::shared_ptr<TimelineProtocol>& timeline, const std::string& rowId);
    void setLastModifyCount(std::int64_t count, ModifyCountReason reason);

    // Subscription and reconnection
    void startSubscribing();
    static Base::Task<void> subscribe(std::shared_ptr<TimelineUploadService> self);
    void subscriptionDidFail();
    void retryReconnection(std::int64_t number, std::function<void()> completion);

    // Pull
    static Base::Task<void> pull(std::shared_ptr<TimelineUploadService> self,
                                 std::shared_ptr<TimelineProtocol> timeline, SuccessCompletion completion);
    [[nodiscard]] bool applyFetchedSessions(const std::shared_ptr<TimelineProtocol>& timeline,
                                            const Base::Result<std::vector<TaggingSessionItem>>& sessions);
    void applyPrimarySession(const std::shared_ptr<TimelineProtocol>& timeline,
                             const TaggingSessionItem& session);

    HostEnvironment& environment_;
    const std::string timelineId_;
    const std::string teamId_;
    const std::string videoId_;
    const std::string userId_;
    const std::shared_ptr<TaggingSessionServiceProtocol> taggingSessionService_;

    mutable std::mutex taggingSessionIdMutex_;  ///< written in the background, read on the main thread
    std::optional<std::string> taggingSessionId_;

    Base::Throttler updateTevuTaggingSessionThrottler_;
    std::atomic<bool> isSyncingCancelled_ = false;
    MomentCache momentCache_;
    ClipPlace place_;  ///< between two changes: room for the texts of the next one; says nothing
    std::int64_t lastModifyCount_ = 0;
    TaggingSessionSubscription taggingSessionSubscription_;
    const std::shared_ptr<GraphQLTaggingSessionProtocol> graphQLClient_;
    SerialBlockQueue queue_;
    std::optional<NotificationCenterProtocol::ObserverId> timelineObserver_;

    /// A session was given at the start, and has not been applied yet.
    bool firstPullIsPending_;

    // For the status only.
    UnsentEdits unsentEdits_;
    const std::shared_ptr<SynchronisationStatus> finalStatus_ = std::make_shared<SynchronisationStatus>();
    std::int64_t modifyCountAtStart_ = 0;
    std::atomic<int> backgroundStarts_ =
        0;  ///< tagging sessions being created and subscriptions being opened
    std::int64_t reconnectionAttempt_ = 0;
    std::uint64_t uploads_ = 0;  ///< that have started; for the observer only
};

}  // namespace RemoteCoding
