#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace RemoteCoding {

/// Keeps account, by modify counts, of the local edits that the cloud does not have: for the status only, nothing is decided
/// by it. Main thread only.
///
/// It differs from `lastModifyCount`, which may fall back when an upload ends that was started before remote changes
/// were applied, and which passes over the edits of such an upload when it fails.
class UnsentEdits {
public:
    /// Both ends belong to the range.
    struct Range {
        std::int64_t first = 0;
        std::int64_t last = 0;
    };

    /// The timeline was found to hold nothing new beyond what is accounted for here, or its changes are being dealt with.
    void timelineWasRead() { changesAreUnread_ = false; }
    void changeWasAnnounced() { changesAreUnread_ = true; }

    void uploadStarts(Range range) {
        ++uploadsUnderWay_;
        accountFor(range.last);
    }
    void uploadEnds(Range range, bool succeeded) {
        --uploadsUnderWay_;
        if (succeeded) {
            std::erase_if(lost_, [&](const Range& lost) {
                return range.first <= lost.first && lost.last <= range.last;
            });
        } else {
            lost_.push_back(range);
        }
    }

    /// These edits will not be sent, unless a later upload covers them.
    void areLost(Range range) { lost_.push_back(range); }

    /// Everything up to this count is applied, sent or being sent.
    void accountFor(std::int64_t count) { accountedFor_ = std::max(accountedFor_, count); }

    [[nodiscard]] bool isUploading() const { return uploadsUnderWay_ > 0; }

    /// `modifyCount`: the timeline's own; absent when it cannot be found any more.
    [[nodiscard]] bool exist(std::optional<std::int64_t> modifyCount) const {
        return isUploading() || !lost_.empty() ||
               (modifyCount ? accountedFor_ < *modifyCount : changesAreUnread_);
    }

private:
    std::int64_t accountedFor_ = 0;
    int uploadsUnderWay_ = 0;
    bool changesAreUnread_ = false;  ///< a change was announced, and the timeline not looked at since
    std::vector<Range> lost_;
};

}  // namespace RemoteCoding
