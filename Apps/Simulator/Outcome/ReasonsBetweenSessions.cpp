#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>

namespace Simulator {

namespace {

/// A guest's timeline has nothing of the session but what happened since.
bool wasNeverFetched(const StayHistory& stay) {
    return !stay.stay->isHost && std::ranges::none_of(stay.arrivals, &Arrival::isPull);
}

bool covers(const Upload& upload, const UserEdit& edit) {
    return upload.start > edit.at && upload.end != never && upload.covers(edit.count);
}

/// Two sessions of this timeline were being sent at the same time, and the other one has told its cloud of the edit.
bool wentElsewhere(const History& history, const UserEdit& edit) {
    const StayHistory& own = history.stays[edit.stay];
    return std::ranges::any_of(history.stays, [&](const StayHistory& other) {
        if (other.session == nullptr || other.session == own.session ||
            other.stay->timelineId != edit.timelineId) {
            return false;
        }
        const bool wentBack =
            other.stay->from < edit.at &&
            std::ranges::any_of(
                other.uploads,
                [&](const Upload& upload) {
                    return covers(upload, edit) ||
                           (upload.start < edit.at && edit.at < upload.end && upload.end != never);
                });
        const bool wentOn =
            other.stay->from > edit.at &&
            std::ranges::any_of(own.uploads,
                                [&](const Upload& upload) {
                                    return covers(upload, edit) && upload.end > other.stay->from;
                                }) &&
            std::ranges::any_of(other.uploads, [&](const Upload& upload) { return covers(upload, edit); });
        return wentBack || wentOn;
    });
}

/// The clip stands for a moment of another session in which its timeline was.
bool isOfAnotherSession(const History& history, const StayHistory& stay, std::string_view moment) {
    const MomentHistory* found = history.moment(moment);
    return found != nullptr && found->session != stay.session;
}

/// A clip was deleted outside of the session, came back with it, and its user has taken the deletion back.
bool cameBackTwice(const History& history, const Loss& loss) {
    const auto& clips = history.stays[loss.stay].stay->picture.clips;
    return std::ranges::any_of(history.edits, [&](const UserEdit& undo) {
        const bool restores = undo.kind == EditKind::restoreClip || undo.kind == EditKind::restoreRow;
        return restores && undo.stay == loss.stay &&
               std::ranges::any_of(undo.clips, [&](std::string_view clip) {
                   const auto shown = std::ranges::find(clips, clip, &ClipPicture::instanceId);
                   return shown != clips.end() && shown->momentId == loss.moment &&
                          std::ranges::any_of(history.edits, [&](const UserEdit& removal) {
                              const bool removes =
                                  removal.kind == EditKind::removeClip || removal.kind == EditKind::removeRow;
                              return removes && removal.stay != loss.stay &&
                                     std::ranges::find(removal.clips, clip) != removal.clips.end();
                          });
               });
    });
}

}  // namespace

Reason whyBetweenSessions(const History& history, const Loss& loss) {
    if (loss.edit != nullptr) {
        return wentElsewhere(history, *loss.edit) ? Reason(LossClass::sentElsewhere) : std::nullopt;
    }
    if (loss.kind == LossKind::clipTwice && cameBackTwice(history, loss)) {
        return LossClass::deletedOutside;
    }
    if (loss.kind == LossKind::clipExtra &&
        isOfAnotherSession(history, history.stays[loss.stay], loss.moment)) {
        return LossClass::ofAnotherSession;
    }
    return wasNeverFetched(history.stays[loss.stay]) ? Reason(LossClass::neverFetched) : std::nullopt;
}

}  // namespace Simulator
