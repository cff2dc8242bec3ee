// What becomes of clips that were deleted and brought back, and of those that are left of deleted moments.

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>
#include <set>

namespace Simulator {

using RemoteCoding::TaggingSessionChangeType;

namespace {

bool restores(const UserEdit& edit) {
    return edit.kind == EditKind::restoreClip || edit.kind == EditKind::restoreRow;
}

/// When the moment was deleted; 0: it was not.
std::uint64_t deletionOf(const MomentHistory& moment) {
    const auto& last = *moment.changes.back();
    return last.type == TaggingSessionChangeType::momentsDeleted ? last.sequence : 0;
}

/// The edited clip stood for a moment whose deletion the timeline had received: nothing but this timeline shows it.
bool wasOnAStaleClip(const History& history, const UserEdit& edit, std::string_view clip) {
    const auto place = std::ranges::find(edit.clips, clip);
    const MomentHistory* moment =
        place != edit.clips.end()
            ? history.moment(edit.moments[static_cast<std::size_t>(place - edit.clips.begin())])
            : nullptr;
    return !restores(edit) && moment != nullptr && deletionOf(*moment) != 0 &&
           deletionOf(*moment) <= history.stays[edit.stay].receivedBefore(edit.at);
}

/// Several analysts have brought the clip back.
bool wasBroughtBackTwice(const SharedClip& clip) {
    std::set<std::string_view> timelines;
    for (const UserEdit* edit : clip.edits) {
        if (restores(*edit)) {
            timelines.insert(edit->timelineId);
        }
    }
    return timelines.size() > 1 && clip.moments.size() > 2;
}

}  // namespace

Reason whyOfBroughtBack(const History& history, const Loss& loss) {
    if (loss.edit != nullptr && wasOnAStaleClip(history, *loss.edit, loss.clip)) {
        return LossClass::deletedWhileAway;
    }
    const std::vector<SharedClip> clips = findSharedClips(history);
    const auto clip = std::ranges::find_if(clips, [&](const SharedClip& candidate) {
        return std::ranges::find(candidate.moments, loss.moment) != candidate.moments.end();
    });
    return clip != clips.end() && wasBroughtBackTwice(*clip) ? Reason(LossClass::broughtBackTwice)
                                                             : std::nullopt;
}

}  // namespace Simulator
