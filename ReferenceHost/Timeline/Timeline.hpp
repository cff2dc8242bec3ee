#pragma once

#include "Base/ExecutionProtocol.hpp"
#include "Base/Synchronized.hpp"
#include "Components/RemoteCoding/HostInterfaces/TimelineProtocol.hpp"
#include "ReferenceHost/Timeline/CallRecorder.hpp"
#include "ReferenceHost/Timeline/ChangeLog.hpp"
#include "ReferenceHost/Timeline/ClipsByMoment.hpp"
#include "ReferenceHost/Timeline/RowEditAccount.hpp"
#include "ReferenceHost/Timeline/SnapshotList.hpp"
#include "ReferenceHost/Timeline/TimelineInstance.hpp"
#include "ReferenceHost/Timeline/TimelineRow.hpp"
#include "ReferenceHost/Timeline/TimelineRules.hpp"
#include "ReferenceHost/Timeline/UserEdits.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ReferenceHost {

class PartialTimeline;

/// One timeline with the editing that a user does, that the component does through `codingTarget`, and that
/// the sync library does. Main thread only, except for what `TimelineProtocol` allows from any thread.
///
/// Changes. Each edit is one change: it raises `modifyCount` by one, stamps with the new count whatever is
/// different afterwards, and is announced by one call of `didChange` when everything is in place. An edit
/// that leaves everything as it was is none of this, nor is writing an `externalId`. What is stamped:
/// - adding, renaming, recolouring a row: that row; adding, retiming, noting, restoring a clip: that clip;
/// - a row that is added, moved, removed or restored: also each row whose `rowNum` shifts. Its number is part
///   of what the row says; unstamped, it would look moved whenever it changes next;
/// - a row that is restored: also the clips that come back with it.
///
/// The model takes notes and times as they come, and all names but those that another row has.
class Timeline final : public RemoteCoding::TimelineProtocol, public std::enable_shared_from_this<Timeline> {
public:
    struct Options {
        std::string uniqueId;
        std::string title;
        std::optional<std::string> videoId;  ///< of the video that the timeline shows

        /// Makes the ids of rows and clips; never gives one twice.
        std::function<std::string()> makeId;

        /// Called on the main thread after each change, inside the edit that made it; may edit in turn.
        std::function<void(const std::shared_ptr<Timeline>&)> didChange;

        std::shared_ptr<const TimelineRules> rules;  ///< null: all are kept
        CallRecorder recordCall;  ///< told of the coding target's calls, and of the sync library's edits

        /// Runs a job on the main thread, later.
        std::function<void(Base::Job)> runLater;

        /// Runs the callbacks of the coding target's row insertions on the main thread. Empty: at once.
        std::function<void(Base::Job)> runInsertionCallback;
    };

    [[nodiscard]] static std::shared_ptr<Timeline> make(Options options);

    // TimelineProtocol
    [[nodiscard]] const std::string& uniqueId() const override { return options_.uniqueId; }
    [[nodiscard]] RemoteCoding::RowList allRows() const override;
    [[nodiscard]] std::int64_t modifyCount() const override;
    [[nodiscard]] std::shared_ptr<RemoteCoding::TimelineProtocol>
    timelineFromModifyCount(std::int64_t modifyCount, bool excludeSharedInstances) const override;

    // Of a whole timeline: all that were ever deleted and still are.
    [[nodiscard]] std::vector<std::string> deletedRowIds() const override;
    [[nodiscard]] std::vector<std::string> deletedInstanceIds() const override;

    [[nodiscard]] std::shared_ptr<RemoteCoding::CodingTarget> codingTarget() override;

    [[nodiscard]] const std::string& title() const { return options_.title; }
    [[nodiscard]] const std::optional<std::string>& videoId() const { return options_.videoId; }

    /// Without it `codingTarget` is null, and targets that were given out before do nothing. The user's own
    /// edits and the sync library's are not affected.
    void setCodingTargetAvailable(bool available) { codingTargetAvailable_ = available; }
    [[nodiscard]] bool isCodingTargetAvailable() const { return codingTargetAvailable_; }

    // What is there; null when it never was or was removed. Constant time, but for the search by name.
    [[nodiscard]] std::shared_ptr<TimelineRow> findRow(const std::string& rowId) const;
    [[nodiscard]] std::shared_ptr<TimelineRow> findRowNamed(const std::string& name) const;
    [[nodiscard]] std::shared_ptr<TimelineRow> rowAt(std::int64_t index) const;
    [[nodiscard]] std::shared_ptr<TimelineInstance> findInstance(const std::string& instanceId) const;
    [[nodiscard]] std::size_t numberOfRows() const;

    // The user's edits. They give true, or what was made, when they were a change.

    /// At the end without an index; an index past the end appends, one below 0 inserts at the top.
    std::shared_ptr<TimelineRow> addRow(const std::string& name, Base::Color color,
                                        std::optional<std::int64_t> index = std::nullopt);
    bool renameRow(const std::string& rowId, const std::string& name);
    bool recolorRow(const std::string& rowId, Base::Color color);

    /// So that the row stands at that index of the resulting list.
    bool moveRow(const std::string& rowId, std::int64_t to);

    /// As `CodingTarget::rearrangeRowsFrom`: the indexes are a set, the rows keep their order among each
    /// other.
    bool rearrangeRows(const std::vector<std::int64_t>& from, std::int64_t to);

    /// With all its clips.
    bool removeRow(const std::string& rowId);

    /// Undo of `removeRow`: the row comes back where it was, with the clips that went with it.
    bool restoreRow(const std::string& rowId);

    std::shared_ptr<TimelineInstance> addInstance(const std::string& rowId, double startTime, double endTime,
                                                  const std::string& notes = {});
    bool retimeInstance(const std::string& instanceId, double startTime, double endTime);
    bool setInstanceNotes(const std::string& instanceId, const std::string& notes);
    bool removeInstance(const std::string& instanceId);

    /// Undo of `removeInstance`: the same clip with the same id comes back, if its row is there.
    bool restoreInstance(const std::string& instanceId);

    // What the sync library needs.

    /// The clip that stands for that remote moment by its `externalId`, of several the one that got it first; null when there
    /// is none. Constant time.
    [[nodiscard]] std::shared_ptr<TimelineInstance> findInstanceOf(const std::string& externalId) const;

    /// Adds a clip that stands for that remote moment to the first row of that name, or to a new row at the
    /// end. One change.
    std::shared_ptr<TimelineInstance> appendRemoteInstance(const std::string& code,
                                                           const std::string& externalId, double startTime,
                                                           double endTime, const std::string& notes,
                                                           Base::Color colorForNewRow);

    /// Null when there is no such clip on that row. Does not touch the `externalId`. Constant time.
    /// `taken`: up to which edits of its user these values go. What the user has set later stays, a name for the row too.
    std::shared_ptr<TimelineInstance> updateRemoteInstance(const std::string& instanceId,
                                                           const std::string& rowId, ClipValues values,
                                                           const EditNumbers& taken);

    /// As if the user had not edited the clip after these.
    void forgetEdits(const std::string& instanceId, const EditNumbers& taken);

    /// A clip that the user has deleted. Null when there is none of that id, it is there, or somebody else has taken it away.
    [[nodiscard]] std::shared_ptr<TimelineInstance> findDeletedInstance(const std::string& instanceId) const;

    /// Counts the deletion of the clip once more, in a main-thread job of its own, if it is not undone by then.
    void deleteAgainLater(const std::string& instanceId);

    /// What the user has done to the list of rows.
    [[nodiscard]] RowEditAccount& rowEdits() { return rowEdits_; }

    // The timeline leaves a session, joins one, is published as a new one. `lastWriter`: see `RowEditAccount`.
    void leaveSession();
    void enterSession(std::uint64_t lastWriter) { rowEdits_.enterSession(lastWriter); }
    void beginPublishing(std::uint64_t lastWriter);

    /// Any thread. How often it was published as a new one.
    [[nodiscard]] std::uint64_t timesPublished() const {
        return timesPublished_.load(std::memory_order_acquire);
    }

    /// Takes away a clip that the sync library puts elsewhere.
    void removeRemoteInstance(const std::string& instanceId);

    /// Tells the recorder what the sync library has done here.
    void recordCall(const char* call, CallArguments arguments) const;

private:
    friend class TimelineCodingTarget;
    friend class TimelineComponentEdit;
    friend class TimelineInstance;

    using RowEntry = ChangeLog<TimelineRow>::Entry;
    using InstanceEntry = ChangeLog<TimelineInstance>::Entry;
    using Rows = SnapshotList<RemoteCoding::TimelineRowProtocol>::Elements;
    enum class ChangeKind : std::uint8_t { existence, alteration };

    explicit Timeline(Options options);

    [[nodiscard]] std::shared_ptr<PartialTimeline> changesSince(std::int64_t modifyCount,
                                                                bool excludeSharedInstances) const;
    void recordChangesSince(std::int64_t modifyCount, const PartialTimeline& changes) const;

    /// The count that the change under way is stamped with.
    [[nodiscard]] std::int64_t nextCount(ChangeKind kind) const;
    void finishChange(std::int64_t count);

    [[nodiscard]] std::shared_ptr<TimelineRow> makeRow(const std::string& name, Base::Color color,
                                                       std::int64_t index, std::int64_t count);
    /// `part`: what the user has set.
    void didRemove(InstanceEntry& entry, std::int64_t count);
    void didRestore(InstanceEntry& entry, std::int64_t count);
    bool setValues(InstanceEntry& entry, ClipValues values, std::uint64_t EditNumbers::* part);

    /// Takes the `externalId` of each clip away, deleted ones included: those of an earlier session's moments mean nothing in another.
    void forgetMoments();

    /// Of the user's edit under way; 0 when it is not the user's.
    [[nodiscard]] std::uint64_t nextEditNumber();
    [[nodiscard]] bool isNameRefused(const std::string& name) const;
    /// The edit that gave the row its present name, if all its clips have that in the cloud, and nothing is to be written.
    [[nodiscard]] static std::optional<std::uint64_t> editOfToldName(const TimelineRow& row);
    void rememberEdit(RowEdit::Kind kind, const TimelineRow& row, const std::string& oldName = {});
    [[nodiscard]] bool wentWithItsRow(const InstanceEntry& entry) const;
    void insertIntoRows(std::shared_ptr<TimelineRow> row, std::int64_t index, std::int64_t count);

    /// Puts the rows in this order, numbers them and stamps those that shifted.
    void setRows(Rows rows, std::int64_t count);
    void setExternalId(TimelineInstance& instance, std::optional<std::string> externalId);

    const Options options_;
    const std::shared_ptr<const TimelineRules> rules_;
    std::shared_ptr<RemoteCoding::CodingTarget> codingTarget_;
    bool codingTargetAvailable_ = true;
    bool componentEdits_ = false;  // while an edit of the component or the sync library runs
    std::int64_t lastOrder_ = 0;
    std::uint64_t lastEditNumber_ = 0;
    RowEditAccount rowEdits_;
    /// Of a row whose name the user has set since what the sync library brought last: it does not follow that. Else empty.
    std::string keepsItsName_;

    std::atomic<std::int64_t> modifyCount_{0};
    std::atomic<std::uint64_t> timesPublished_{0};
    ChangeLog<TimelineRow> rowLog_;
    ChangeLog<TimelineInstance> instanceLog_;
    ClipsByMoment clipsByMoment_{instanceLog_};

    Base::ObjectLock rowsLock_;                             // guards the rest
    SnapshotList<RemoteCoding::TimelineRowProtocol> rows_;  // only the main thread writes it
};

}  // namespace ReferenceHost
