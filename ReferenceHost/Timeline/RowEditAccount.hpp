#pragma once

#include "Base/Synchronized.hpp"
#include "ReferenceHost/Timeline/UserEdits.hpp"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace ReferenceHost {

class TimelineRow;

/// What the user of one timeline has done to its list of rows, and which sessions it was saved in. An earlier one may still be saving
/// its last list while the next one begins, or the same one again: each time that the timeline is in a session it has a writer of its
/// own, and these are numbered from 1 in the order in which they were made. Any thread.
class RowEditAccount {
public:
    using MomentCondition = std::function<bool(const std::string& momentId)>;

    /// `above`: the row above it afterwards; null: it is the first.
    void add(RowEdit edit, std::shared_ptr<const TimelineRow> row, std::shared_ptr<const TimelineRow> above);

    /// Somebody else has given the row another name: what is not saved yet is saved with that one. But whoever has renamed the row
    /// brings it into the list: added later, too, it would be back after they have removed it.
    void follow(const TimelineRow& row, const std::string& oldName, const std::string& newName);

    /// Those that are not saved in this session, in order, and which of them wait. A row's new name, and what was done to the row
    /// afterwards, can be saved when the moments of the row's clips have been written with it: whoever gets the list before them takes
    /// the row for a new one. Another row that has got its former name waits with it: in the list that name is still the first row's.
    /// Nobody has the clip of a moment that is removed.
    [[nodiscard]] RowEdits unsaved(const std::string& sessionId, std::uint64_t writer,
                                   const MomentCondition& isRemoved = {});
    void areSaved(const std::string& sessionId, const RowEdits& edits);  ///< but for those that wait

    /// What is done between two sessions, after the edit of this number, is not saved in the second: its list comes first. Nor is
    /// what was done before, when the second is another one. `lastWriter`: the writer that was made last by then.
    void leaveSession(std::uint64_t lastEdit) { lastInSession_ = lastEdit; }
    void enterSession(std::uint64_t lastWriter);

    /// A new session begins with the list as it is after the edit of this number.
    void publish(std::uint64_t lastWriter, std::uint64_t lastEdit);

private:
    struct Entry {
        RowEdit edit;
        std::shared_ptr<const TimelineRow> row;
        std::shared_ptr<const TimelineRow> above;
        std::set<std::string> savedIn;
    };
    [[nodiscard]] static bool mustWait(const Entry& entry, const MomentCondition& isRemoved);

    std::uint64_t lastInSession_ = 0;  // main thread

    Base::ObjectLock lock_;  // of the rest
    std::deque<Entry> entries_;
    std::map<std::string, std::uint64_t> beginnings_;  // by session: its list began after this edit
    std::map<std::uint64_t, std::uint64_t>
        beginningsAfter_;  // the same for sessions of writers after this one
};

}  // namespace ReferenceHost
