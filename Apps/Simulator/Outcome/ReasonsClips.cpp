// Why something else has become of a clip in the cloud than what users did, though the cloud was told.

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>
#include <set>

namespace Simulator {

namespace {

/// The moment was made for a clip that its user had taken back.
bool wasBroughtBack(const History& history, const MomentHistory& moment) {
    const Call* creation = creationOf(history, moment);
    return creation != nullptr && std::ranges::any_of(history.edits, [&](const UserEdit& edit) {
               return edit.at < creation->at &&
                      (edit.kind == EditKind::restoreClip || edit.kind == EditKind::restoreRow) &&
                      std::ranges::find(edit.clips, moment.last->originInstanceId) != edit.clips.end();
           });
}

/// Each of the moments was made for another analyst who had taken the clip back.
bool wereBroughtBack(const History& history, const std::vector<std::string_view>& moments) {
    std::set<std::string_view> timelines;
    return std::ranges::all_of(moments, [&](std::string_view id) {
        const MomentHistory* moment = history.moment(id);
        return moment != nullptr && timelines.insert(moment->last->originTimelineId).second &&
               wasBroughtBack(history, *moment);
    });
}

/// That of the clip which the user has edited.
std::string_view editedMoment(const Loss& loss) {
    const auto place = std::ranges::find(loss.edit->clips, loss.clip) - loss.edit->clips.begin();
    return loss.edit->moments[static_cast<std::size_t>(place)];
}

/// The user has deleted the clip before the edit could be sent, and the deletion is lost too: why that is.
Reason whyDeletedUnsent(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.edit->stay];
    const auto removal = std::ranges::find_if(history.edits, [&](const UserEdit& edit) {
        return edit.at > loss.edit->at && edit.timelineId == loss.edit->timelineId && takesAway(edit) &&
               std::ranges::find(edit.clips, loss.clip) != edit.clips.end();
    });
    if (removal == history.edits.end() || std::ranges::any_of(stay.uploads, [&](const Upload& upload) {
            return loss.edit->at < upload.start && upload.start < removal->at && upload.succeeded &&
                   upload.covers(loss.edit->count);
        })) {
        return std::nullopt;
    }
    return whyNotDeleted(history, *removal, loss.clip, loss.moment);
}

/// The session came onto the timeline after the edit, and brought the clip as it was in the cloud.
bool wasOverwrittenByTheSession(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.edit->stay];
    const auto pull = std::ranges::find_if(stay.arrivals, &Arrival::isPull);
    const MomentHistory* moment = history.moment(loss.moment);
    return !stay.stay->isHost && pull != stay.arrivals.end() && loss.edit->at < pull->at &&
           moment != nullptr &&
           std::ranges::any_of(
               moment->placements,
               [&](const Placement& placement) {
                   return placement.stay == loss.edit->stay && placement.at > loss.edit->at &&
                          placement.at < pull->at && (placement.how == "known" || placement.how == "moved");
               });
}

}  // namespace

const Call* creationOf(const History& history, const MomentHistory& moment) {
    const std::uint64_t sequence = moment.changes.front()->sequence;
    const auto found = std::ranges::find_if(history.calls, [&](const Call& call) {
        return call.stay != never && history.stays[call.stay].session == moment.session &&
               call.accepted != nullptr && call.accepted->sequenceBefore < sequence &&
               sequence <= call.accepted->sequenceAfter;
    });
    return found != history.calls.end() ? &*found : nullptr;
}

Reason whyClipEditIsLost(const History& history, const Loss& loss) {
    if (loss.kind == LossKind::retimeLost || loss.kind == LossKind::noteLost) {
        if (wasOverwrittenByTheSession(history, loss)) {
            return LossClass::beforeSession;
        }
        if (const Reason reason = whyDeletedUnsent(history, loss)) {
            return reason;
        }
    }
    const std::vector<SharedClip> clips = findSharedClips(history);
    const auto clip = std::ranges::find_if(clips, [&](const SharedClip& candidate) {
        return std::ranges::find(candidate.moments, loss.moment) != candidate.moments.end();
    });
    if (clip == clips.end()) {
        return std::nullopt;
    }
    if (loss.kind == LossKind::clipDoubled) {
        if (std::ranges::any_of(clip->livingMoments,
                                [&](std::string_view id) { return wasSentAnew(history, id); })) {
            return LossClass::deletedWhileAway;
        }
        return wereBroughtBack(history, clip->livingMoments) ? Reason(LossClass::broughtBackTwice)
                                                             : std::nullopt;
    }
    if (loss.kind == LossKind::deletionLost && wereBroughtBack(history, {editedMoment(loss), loss.moment})) {
        return LossClass::broughtBackTwice;
    }
    return std::nullopt;
}

}  // namespace Simulator
