#pragma once

#include "Base/Color.hpp"
#include "Components/RemoteCoding/HostInterfaces/HostObject.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The host's timeline model: a timeline holds ordered rows (named, coloured codes), a row holds instances (tagged
/// clips).
///
/// Threads: the component edits on the main thread only. It reads rows and instances from the main thread and, while
/// an upload runs, from the background too: every reading operation below must be safe from any thread, also against
/// an edit that runs at the same time, and also on an object that has been deleted from its timeline meanwhile (it then
/// gives its last values). No reading operation waits for the main thread.
///
/// Ownership: the component holds these objects for the length of one operation (an upload holds its change set until
/// it has ended) and looks its timeline up anew each time.
///
/// Failure: none is foreseen. What an implementation throws ends the operation at hand, is logged, and loses nothing
/// else.
namespace RemoteCoding {

class TimelineInstanceProtocol;
class TimelineRowProtocol;
class TimelineProtocol;

/// An immutable list: it may be held over edits and across threads. Never a null pointer, also when empty. While it has not
/// changed, the same object should be given again: what was made of it is then kept. Hold it in a
/// variable while going through it: `for (const auto& row : *timeline->allRows())` lets go of it before the first turn.
using RowList = std::shared_ptr<const std::vector<std::shared_ptr<TimelineRowProtocol>>>;
using InstanceList = std::shared_ptr<const std::vector<std::shared_ptr<TimelineInstanceProtocol>>>;

/// One tagged clip.
class REMOTE_CODING_EXPORT TimelineInstanceProtocol : public HostObject {
public:
    /// Any thread. Never changes; unique within its timeline, never used again for another instance.
    [[nodiscard]] virtual const std::string& uniqueId() const = 0;

    /// Any thread. The identifier of the remote moment this clip stands for; absent when it was never uploaded.
    [[nodiscard]] virtual std::optional<std::string> externalId() const = 0;

    /// Main thread. Bookkeeping, not an edit: it raises no `modifyCount` and posts no notification.
    virtual void setExternalId(std::optional<std::string> externalId) = 0;

    /// Any thread. The row the clip is on, or was on when it was deleted; null when there is none.
    [[nodiscard]] virtual std::shared_ptr<TimelineRowProtocol> row() const = 0;
};

/// One code: a named, coloured category with its clips.
class REMOTE_CODING_EXPORT TimelineRowProtocol : public HostObject {
public:
    /// Any thread. Never changes; unique within its timeline, never used again for another row.
    [[nodiscard]] virtual const std::string& uniqueId() const = 0;

    /// Any thread. On a timeline once; should two rows have the same name, the first one in `allRows` order stands for both.
    [[nodiscard]] virtual std::string name() const = 0;

    /// Any thread.
    [[nodiscard]] virtual Base::Color color() const = 0;

    /// Any thread. The number that `CodingTarget::setRowNameWithRowNum` takes.
    [[nodiscard]] virtual std::int64_t rowNum() const = 0;

    /// Any thread.
    [[nodiscard]] virtual std::int64_t numberOfInstances() const = 0;

    /// Any thread. The clips in the row's order.
    [[nodiscard]] virtual InstanceList allInstances() const = 0;
};

/// The editing interface of one timeline. Main thread only; each operation has taken effect when it returns, except
/// that the callback of an insertion may come later. An id, number or index that does not exist (any more) is
/// ignored. What the operations may give back to other callers is none of the component's business.
class REMOTE_CODING_EXPORT CodingTarget : public HostObject {
public:
    /// Renames the row with that number.
    virtual void setRowNameWithRowNum(std::int64_t rowNum, const std::string& name) = 0;

    virtual void setRowColorWithRowId(const std::string& rowId, Base::Color color) = 0;

    /// Inserts a row at the index (0 is the top; an index past the end appends) and then calls `added` with it, once, on
    /// the main thread. `added` may be empty.
    virtual void insertRowWithName(const std::string& name, Base::Color color, std::int64_t at,
                                   std::function<void(std::shared_ptr<TimelineRowProtocol>)> added) = 0;

    /// Moves the rows at these indexes so that the first of them stands at index `to` of the resulting list.
    virtual void rearrangeRowsFrom(const std::vector<std::int64_t>& from, std::int64_t to) = 0;

    /// Deletes the row with all its instances.
    virtual void removeRowWithRowId(const std::string& rowId) = 0;

    virtual void removeInstanceWithRowId(const std::string& rowId, const std::string& instanceId) = 0;
};

/// A timeline, or a partial timeline that holds only what changed from a certain count on.
class REMOTE_CODING_EXPORT TimelineProtocol : public HostObject {
public:
    /// Any thread. Never changes.
    [[nodiscard]] virtual const std::string& uniqueId() const = 0;

    /// Any thread. The rows from top to bottom; the index in this list is the row's position.
    [[nodiscard]] virtual RowList allRows() const = 0;

    /// Any thread. Rises by every change of rows and instances and by nothing else; an edit that changes nothing is
    /// no change. What a change touched is stamped with the count after it: with a count of 7, the next change makes it 8 and
    /// stamps 8. The component asks for partial timelines from the last count it knows plus one. Of a partial timeline: the count up to which it holds the changes.
    [[nodiscard]] virtual std::int64_t modifyCount() const = 0;

    /// Main thread. A partial timeline of everything that was stamped with `modifyCount` or a higher count: the rows that
    /// changed or hold changed instances, each with its changed instances only, and what was deleted. Its rows and
    /// instances are detached copies: later edits do not show in them. Never null. With `excludeSharedInstances`, which
    /// the component never sets, clips shared into the timeline from elsewhere are left out.
    [[nodiscard]] virtual std::shared_ptr<TimelineProtocol>
    timelineFromModifyCount(std::int64_t modifyCount, bool excludeSharedInstances) const = 0;

    /// Main thread. Of a partial timeline: the rows deleted in its range of counts and still deleted.
    [[nodiscard]] virtual std::vector<std::string> deletedRowIds() const = 0;

    /// Main thread. As above for instances, those of deleted rows included; a deletion that was undone is not listed.
    [[nodiscard]] virtual std::vector<std::string> deletedInstanceIds() const = 0;

    /// Main thread. The way to edit this timeline; null when it cannot be edited (now), always null for a partial timeline.
    [[nodiscard]] virtual std::shared_ptr<CodingTarget> codingTarget() = 0;
};

}  // namespace RemoteCoding
