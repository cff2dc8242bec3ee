#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>

namespace Simulator {

namespace {

/// The clip's moment is gone, its user has taken the deletion back, and this was not sent: why that is. What is done to the clip then
/// is sent to the moment that is gone.
Reason whyReturnIsUnsent(const History& history, const Loss& loss) {
    const std::string_view timelineId = history.stays[loss.stay].stay->timelineId;
    const auto undo = std::find_if(history.edits.rbegin(), history.edits.rend(), [&](const UserEdit& edit) {
        return edit.timelineId == timelineId && bringsBack(edit) &&
               std::ranges::find(edit.clips, loss.clip) != edit.clips.end();
    });
    const bool wasCreatedSince =
        undo != history.edits.rend() && std::ranges::any_of(history.calls, [&](const Call& call) {
            return call.at > undo->at && call.name == "createMoments" &&
                   std::ranges::find(call.ids, loss.clip) != call.ids.end();
        });
    return undo == history.edits.rend() || wasCreatedSince ? std::nullopt
                                                           : whyNotSent(history, *undo, loss.clip, {});
}

/// A clip of the timeline and its moment differ.
Reason whyClipDiffers(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    std::vector<std::string_view> clips = clipsOf(history, loss.stay, loss.moment);
    if (!loss.clip.empty()) {
        clips.push_back(loss.clip);
    }
    const MomentHistory* moment = loss.moment.empty() ? nullptr : history.moment(loss.moment);
    const UserEdit* edit = lastEditOf(history, stay.stay->timelineId, clips);
    if (edit != nullptr) {
        const std::string_view clip = *std::ranges::find_first_of(edit->clips, clips);
        const bool isAboutIt = loss.kind == LossKind::clipMissing ? takesAway(*edit) : !takesAway(*edit);
        if (isAboutIt) {
            if (const Reason reason = whyNotSent(history, *edit, clip, loss.moment)) {
                return reason;
            }
        }
    }
    if (moment == nullptr || moment->changes.empty()) {
        return std::nullopt;
    }
    if (loss.kind == LossKind::clipMissing) {
        const bool isDeleted = edit != nullptr && takesAway(*edit);
        const Reason reason =
            isDeleted
                ? whyNotDeleted(history, *edit, *std::ranges::find_first_of(edit->clips, clips), loss.moment)
                : std::nullopt;
        return reason ? reason : whyNotArrived(history, loss);
    }
    if (loss.kind == LossKind::clipValues) {
        const bool isThereTwice =
            std::ranges::count_if(stay.stay->picture.clips,
                                  [&](const ClipPicture& clip) { return clip.momentId == loss.moment; }) > 1;
        return isThereTwice ? whyThereTwice(history, loss) : std::nullopt;  // and one of the two follows
    }
    if (loss.kind != LossKind::clipExtra) {
        return std::nullopt;
    }
    if (const Reason reason = whyNotTakenAway(history, loss)) {
        return reason;
    }
    const Reason reason = whyThereTwice(history, loss);  // and one of the two was taken away
    return reason ? reason : whyReturnIsUnsent(history, loss);
}

}  // namespace

bool hadNoTarget(const History& history, const StayHistory& stay, std::size_t at) {
    const auto spans = history.withoutTarget.find(stay.stay->analyst);
    return spans != history.withoutTarget.end() && std::ranges::any_of(spans->second, [&](const auto& span) {
               return span.first < at && at < span.second;
           });
}

std::vector<std::string_view> clipsOf(const History& history, std::size_t stay, std::string_view moment) {
    std::vector<std::string_view> clips;
    const MomentHistory* found = history.moment(moment);
    const std::string_view timelineId = history.stays[stay].stay->timelineId;
    if (found == nullptr) {
        return clips;
    }
    if (found->last != nullptr && found->last->originTimelineId == timelineId) {
        clips.push_back(found->last->originInstanceId);
    }
    for (const Placement& placement : found->placements) {
        if (placement.stay != never && history.stays[placement.stay].stay->timelineId == timelineId) {
            clips.push_back(placement.clip);
        }
    }
    return clips;
}

const UserEdit* lastEditOf(const History& history, std::string_view timelineId,
                           const std::vector<std::string_view>& clips) {
    const auto found = std::find_if(history.edits.rbegin(), history.edits.rend(), [&](const UserEdit& edit) {
        return edit.timelineId == timelineId &&
               std::ranges::find_first_of(edit.clips, clips) != edit.clips.end();
    });
    return found != history.edits.rend() ? &*found : nullptr;
}

Reason explain(const History& history, const Loss& loss) {
    if (const Reason reason = whyNeverFetched(history, loss)) {
        return reason;
    }
    if (loss.kind == LossKind::clipOnWrongRow) {
        return whyOnWrongRow(history, loss);
    }
    if (loss.kind == LossKind::clipTwice) {
        return whyThereTwice(history, loss);
    }
    if (loss.kind < LossKind::clipOnWrongRow) {
        if (const Reason reason = whyClipDiffers(history, loss)) {
            return reason;
        }
        if (loss.kind != LossKind::clipUnsent) {
            return whyOfBroughtBack(history, loss);
        }
        const Reason reason = whyNeverNamed(history, loss);
        return reason ? reason : whyNeverPublished(history, loss);
    }
    if (loss.kind == LossKind::clipDoubled) {
        const Reason reason = whyClipEditIsLost(history, loss);
        return reason ? reason : whyOfBroughtBack(history, loss);
    }
    if (loss.edit == nullptr) {
        return whyRowDiffers(history, loss);
    }
    if (const Reason reason = whyNotSent(history, *loss.edit, loss.clip, loss.moment)) {
        return reason;
    }
    if (loss.kind >= LossKind::newRowLost) {
        return whyRowEditIsLost(history, loss);
    }
    if (const Reason reason = whyClipEditIsLost(history, loss)) {
        return reason;
    }
    if (loss.kind == LossKind::deletionLost) {
        if (const Reason reason = whyDeletionIsLost(history, loss)) {
            return reason;
        }
    }
    // Sent anew by a timeline that had not heard of its deletion, as it was there.
    const bool isOfValues = loss.kind == LossKind::retimeLost || loss.kind == LossKind::noteLost;
    if (isOfValues && wasSentAnew(history, loss.moment)) {
        return LossClass::deletedWhileAway;
    }
    if (const Reason reason = whyOfBroughtBack(history, loss)) {
        return reason;
    }
    // Brought back by a user whose timeline was never told that the moment is gone.
    const MomentHistory* moment = history.moment(loss.moment);
    const bool isGone = loss.kind == LossKind::tagLost && bringsBack(*loss.edit) && moment != nullptr &&
                        !moment->lives && !moment->changes.empty();
    return isGone && whyNotTakenAway(history, loss) == LossClass::deletedWhileAway
               ? Reason(LossClass::deletedWhileAway)
               : std::nullopt;
}

}  // namespace Simulator
