#pragma once

#include "Apps/Simulator/Record.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Simulator {

/// The index of something that is not there.
inline constexpr std::size_t never = static_cast<std::size_t>(-1);

enum class EditKind : std::uint8_t {
    tag,
    retime,
    note,
    removeClip,
    restoreClip,
    addRow,
    renameRow,
    recolorRow,
    moveRow,
    removeRow,
    restoreRow
};

/// What a user did to a timeline. All texts of this header lie in the record.
struct UserEdit {
    std::size_t at = never;    ///< its entry
    std::size_t stay = never;  ///< in which it was done; never: outside of all sessions
    EditKind kind = EditKind::tag;
    std::string_view analyst;
    std::string_view timelineId;
    std::int64_t count = 0;
    std::string_view row;
    std::string_view name;
    std::string_view oldName;
    std::string_view color;
    std::string_view above;  ///< of a moved row: the name of the one above it
    bool isFirst = false;    ///< of a moved row: there is none
    double start = 0;
    double end = 0;
    std::string_view notes;
    std::vector<std::string_view> clips;    ///< the one, or those of the row
    std::vector<std::string_view> moments;  ///< as many; empty where none was known
};

/// Takes the deletion of a clip, or of a row with its clips, back.
[[nodiscard]] inline bool bringsBack(const UserEdit& edit) {
    return edit.kind == EditKind::restoreClip || edit.kind == EditKind::restoreRow;
}

/// Deletes a clip, or a row with its clips.
[[nodiscard]] inline bool takesAway(const UserEdit& edit) {
    return edit.kind == EditKind::removeClip || edit.kind == EditKind::removeRow;
}

/// One upload of a synchroniser: what the user changed with these counts.
struct Upload {
    std::size_t start = never;
    std::size_t end = never;
    std::string_view number;
    std::int64_t first = 0;
    std::int64_t last = 0;
    bool succeeded = false;

    [[nodiscard]] bool covers(std::int64_t count) const { return first <= count && count <= last; }
};

/// Changes of the session were brought onto a timeline.
struct Arrival {
    std::size_t start = never;
    std::size_t at = never;  ///< where it was done
    bool isPull = false;
    std::uint64_t sequence = 0;  ///< the change; of a pull: the last one that it held
};

/// A moment was brought onto a timeline, or was to be.
struct Placement {
    std::size_t at = never;
    std::size_t stay = never;
    std::string_view clip;
    std::string_view how;  ///< "new", "known", "own", "moved", "unplaced"; "updated", "notFound"
};

/// One write to the cloud.
struct Call {
    std::size_t at = never;
    std::size_t effect = never;    ///< the first one, if it had several
    std::size_t answered = never;  ///< never: not before the end
    std::size_t stay = never;
    std::string_view name;
    std::vector<std::string_view> ids;                      ///< as sent
    std::vector<std::string_view> answer;                   ///< the ids of a creation
    bool failed = false;                                    ///< answered with an error
    bool isFalse = false;                                   ///< answered with "false"
    const ReferenceHost::AcceptedCall* accepted = nullptr;  ///< null: the cloud has done nothing
};

/// What became of one moment in the cloud.
struct MomentHistory {
    std::vector<const ReferenceHost::RemoteChange*> changes;  ///< that name it, in order
    const ReferenceHost::MomentRecord* last = nullptr;        ///< as the last of them has it
    bool lives = false;
    const SessionHistory* session = nullptr;
    std::vector<Placement> placements;  ///< on all timelines
};

struct StayHistory {
    const Stay* stay = nullptr;
    const SessionHistory* session = nullptr;  ///< null: the cloud has none
    std::size_t joining = never;              ///< where the analyst asked to join
    std::vector<Upload> uploads;              ///< in the order of their starts
    std::vector<Arrival> arrivals;
    std::vector<std::size_t> calls;   ///< indexes of `History::calls`
    std::vector<std::size_t> edits;   ///< indexes of `History::edits`: those in this stay
    std::vector<std::size_t> counts;  ///< entries that moved the count
    std::vector<std::size_t> target;  ///< entries: what the component did to rows and clips

    /// The last change that the timeline had received before this entry; 0: none.
    [[nodiscard]] std::uint64_t receivedBefore(std::size_t entry) const;
};

/// A record read once, for questions about single objects. The record outlives it.
class History {
public:
    explicit History(const Record& record_);
    History(const History&) = delete;
    History& operator=(const History&) = delete;

    const Record& record;
    std::vector<StayHistory> stays;  ///< as in the record
    std::vector<UserEdit> edits;     ///< in order, those outside of sessions too
    std::vector<Call> calls;         ///< in order
    std::unordered_map<std::string_view, MomentHistory> moments;
    /// By host: when it had no coding target, from entry to entry.
    std::unordered_map<std::string_view, std::vector<std::pair<std::size_t, std::size_t>>> withoutTarget;

    [[nodiscard]] const ReferenceHost::TraceEntry& entry(std::size_t index) const {
        return record.trace[index];
    }
    /// Null when the cloud never had it.
    [[nodiscard]] const MomentHistory* moment(std::string_view id) const;
};

/// The parts between commas, none of nothing.
[[nodiscard]] std::vector<std::string_view> parts(std::string_view list);

}  // namespace Simulator
