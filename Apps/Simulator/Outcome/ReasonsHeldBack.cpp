// Why a row's new name, which is saved when all its clips are written with it, was not.

#include "Apps/Simulator/Outcome/MomentCodes.hpp"
#include "Apps/Simulator/Outcome/RowNames.hpp"

#include <algorithm>

namespace Simulator {

namespace {

/// One that nobody can write with the new name, which is saved when all are written.
bool hasAClipOfNoMoment(const StayHistory& stay, const UserEdit& edit) {
    return std::ranges::any_of(stay.stay->picture.clips, [&](const ClipPicture& clip) {
        return clip.rowId == edit.row && clip.momentId &&
               std::ranges::none_of(stay.session->session.moments,
                                    [&](const auto& moment) { return moment->id == *clip.momentId; });
    });
}

bool hadCode(const MomentHistory& moment, std::string_view code) {
    return std::ranges::any_of(moment.changes, [&](const ReferenceHost::RemoteChange* change) {
        return std::ranges::any_of(change->moments, [&](const ReferenceHost::MomentPointer& state) {
            return state->id == moment.last->id && state->code == code;
        });
    });
}

/// The cloud has refused to write one of the row's clips with the new name, which is saved when all are written.
bool wasRefusedForAClip(const History& history, const UserEdit& edit) {
    const StayHistory& stay = history.stays[edit.stay];
    const std::vector<std::string_view> names = namesOf(history, edit.oldName);
    return std::ranges::any_of(stay.calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.at > edit.at && call.isFalse && call.name == "updateMoments" &&
               std::ranges::any_of(call.ids, [&](std::string_view moment) {
                   const MomentHistory* found = history.moment(moment);
                   return found != nullptr && std::ranges::any_of(names, [&](std::string_view name) {
                              return hadCode(*found, name);
                          });
               });
    });
}

bool wasWrittenSince(const History& history, const UserEdit& edit, std::string_view moment) {
    return std::ranges::any_of(history.stays[edit.stay].calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.at > edit.at && call.answered != never && !call.failed && !call.isFalse &&
               call.name == "updateMoments" && std::ranges::find(call.ids, moment) != call.ids.end();
    });
}

/// When the renaming was sent, the timeline had fetched nothing yet, and nothing had brought the moment in this stay: to its
/// synchroniser the row was a new one, and its name is then none for the clips.
bool wasSentBeforeTheFetch(const History& history, const UserEdit& edit, std::string_view moment) {
    const StayHistory& stay = history.stays[edit.stay];
    const MomentHistory* found = history.moment(moment);
    std::size_t sent = 0;
    for (const Upload& upload : stay.uploads) {
        if (upload.start > edit.at && upload.covers(edit.count)) {
            sent = std::max(sent, upload.start);
        }
    }
    return sent != 0 && !stay.stay->isHost && found != nullptr &&
           std::ranges::none_of(
               stay.arrivals,
               [&](const Arrival& arrival) { return arrival.isPull && arrival.start < sent; }) &&
           std::ranges::none_of(found->placements, [&](const Placement& placement) {
               return placement.stay == edit.stay && placement.at < sent;
           });
}

/// The fetch that came later has put a clip of the row onto one of the old name.
bool lostAClipToTheFetch(const History& history, const UserEdit& renaming) {
    return std::ranges::any_of(history.moments, [&](const auto& entry) {
        const auto& [id, moment] = entry;
        const bool wasMoved = std::ranges::any_of(moment.placements, [&](const Placement& placement) {
            return placement.stay == renaming.stay && placement.at > renaming.at && placement.how == "moved";
        });
        return wasMoved && hadCode(moment, renaming.oldName) && wasSentBeforeTheFetch(history, renaming, id);
    });
}

/// The row was renamed, and a clip that is on it was not sent with the new name.
Reason whyAClipIsNotSent(const History& history, const UserEdit& renaming) {
    const StayHistory& stay = history.stays[renaming.stay];
    for (const ClipPicture& clip : stay.stay->picture.clips) {
        if (clip.rowId != renaming.row || !clip.momentId ||
            wasWrittenSince(history, renaming, *clip.momentId)) {
            continue;
        }
        if (const Reason reason = whyNotSent(history, renaming, {}, *clip.momentId)) {
            return reason;
        }
        if (const Reason reason = whyRowIsUnlisted(history, renaming, *clip.momentId)) {
            return reason;
        }
        if (wasSentBeforeTheFetch(history, renaming, *clip.momentId)) {
            return LossClass::neverFetched;
        }
    }
    return std::nullopt;
}

/// The answer to the clip's creation had not come, or had not named its moment, and that one had not come by itself either.
bool wasUnnamed(const MomentHistory& moment, const Call& creation, const UserEdit& edit) {
    if (creation.answered > edit.at) {
        return true;
    }
    const bool cameBefore = std::ranges::any_of(moment.placements, [&](const Placement& placement) {
        return placement.stay == edit.stay && placement.at < edit.at;
    });
    return !cameBefore && std::ranges::find(creation.answer, moment.last->id) == creation.answer.end();
}

/// A clip of the row was on its way to the cloud for the first time, and has the old name there.
bool hasAnUnnamedClip(const History& history, const UserEdit& edit) {
    return std::ranges::any_of(history.moments, [&](const auto& entry) {
        const MomentHistory& moment = entry.second;
        if (moment.last == nullptr || moment.last->originTimelineId != edit.timelineId ||
            !isOfRow(history, moment.last->originInstanceId, edit)) {
            return false;
        }
        const Call* creation = creationOf(history, moment);
        return creation != nullptr && creation->stay == edit.stay && wasUnnamed(moment, *creation, edit) &&
               hadCode(moment, edit.oldName);
    });
}

/// A clip of the row was brought back after the renaming, while its deletion was on its way: it is on the row, and cannot be written.
bool wasBroughtBackOnTheRow(const History& history, const UserEdit& renaming) {
    return std::ranges::any_of(history.edits, [&](const UserEdit& edit) {
        return edit.kind == EditKind::restoreClip && edit.stay == renaming.stay && edit.at > renaming.at &&
               edit.row == renaming.row && wasTakenAwayAgain(history, edit, edit.clips.front());
    });
}

}  // namespace

Reason whyRowIsUnlisted(const History& history, const UserEdit& renaming, std::string_view moment) {
    if (wasWrittenSince(history, renaming, moment)) {
        return std::nullopt;
    }
    for (const UserEdit& birth : history.edits) {
        const bool isBirth = birth.kind == EditKind::addRow || birth.kind == EditKind::restoreRow;
        if (isBirth && birth.stay == renaming.stay && birth.row == renaming.row && birth.at < renaming.at) {
            if (const Reason reason = whyNotSent(history, birth)) {
                return reason;
            }
        }
    }
    return std::nullopt;
}

Reason whyNameIsHeldBack(const History& history, const UserEdit& renaming) {
    if (const Reason reason = whyAClipIsNotSent(history, renaming)) {
        return reason;
    }
    if (lostAClipToTheFetch(history, renaming)) {
        return LossClass::neverFetched;
    }
    if (wasRefusedForAClip(history, renaming)) {
        return LossClass::answeredFalse;
    }
    if (hasAnUnnamedClip(history, renaming)) {
        return LossClass::renamedMeanwhile;
    }
    if (wasBroughtBackOnTheRow(history, renaming)) {
        return LossClass::takenAwayAgain;
    }
    return hasAClipOfNoMoment(history.stays[renaming.stay], renaming) ? Reason(LossClass::deletedWhileAway)
                                                                      : std::nullopt;
}

}  // namespace Simulator
