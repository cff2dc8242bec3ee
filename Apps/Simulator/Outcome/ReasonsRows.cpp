// Why the rows of a timeline, or of the shared list, are not as they should be.

#include "Apps/Simulator/Outcome/MomentCodes.hpp"
#include "Apps/Simulator/Outcome/Reasons.hpp"
#include "Apps/Simulator/Outcome/RowNames.hpp"

#include <algorithm>
#include <array>

namespace Simulator {

namespace {

/// The last one that concerns the row, or the order of all.
const UserEdit* lastRowEdit(const History& history, const Loss& loss) {
    const std::string& timelineId = history.stays[loss.stay].stay->timelineId;
    const auto found = std::find_if(history.edits.rbegin(), history.edits.rend(), [&](const UserEdit& edit) {
        if (edit.timelineId != timelineId || edit.kind < EditKind::addRow) {
            return false;
        }
        return loss.kind == LossKind::rowOrder ? edit.kind != EditKind::recolorRow
                                               : edit.name == loss.row || edit.oldName == loss.row;
    });
    return found != history.edits.rend() ? &*found : nullptr;
}

/// The last list that came before this entry came while the timeline could not be edited.
bool missedTheLastList(const History& history, const StayHistory& stay, std::size_t before) {
    const Arrival* list = lastList(stay, before);
    return list != nullptr && hadNoTarget(history, stay, list->at);
}

bool savedTheList(const History& history, const StayHistory& stay, const Upload& upload) {
    return std::ranges::any_of(stay.calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.name == "savePresentationView" && upload.start < call.at && call.at < upload.end;
    });
}

bool isRemovalOf(const ReferenceHost::TraceEntry& entry, std::string_view timelineId) {
    return entry.kind == ReferenceHost::TraceKind::notification &&
           entry.field("name") == "TimelineNotifications.timelineDidRemove" &&
           entry.field("timelineId") == timelineId;
}

/// Its first list after the edit was saved when the timeline was closed, and nobody knew any more what its user had done.
bool wasClosedBeforeTheList(const History& history, const UserEdit& edit) {
    const StayHistory& stay = history.stays[edit.stay];
    const auto list = std::ranges::find_if(stay.calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.name == "savePresentationView" && call.accepted != nullptr && call.at > edit.at;
    });
    if (list == stay.calls.end()) {
        return false;
    }
    for (std::size_t at = edit.at; at < history.calls[*list].at; ++at) {
        if (isRemovalOf(history.entry(at), edit.timelineId)) {
            return true;
        }
    }
    return false;
}

/// What is done to a row after its renaming, or to another row that has got its former name, is saved with the new name.
bool waitsForRenaming(const UserEdit& edit, const UserEdit& renaming) {
    return renaming.kind == EditKind::renameRow && renaming.timelineId == edit.timelineId &&
           renaming.at <= edit.at && (renaming.row == edit.row || renaming.oldName == edit.name);
}

/// It does so itself, or something that was done to the row before.
bool waitsWithItsRow(const History& history, const UserEdit& edit, const UserEdit& renaming) {
    return std::ranges::any_of(history.edits, [&](const UserEdit& earlier) {
        return earlier.kind >= EditKind::addRow && earlier.row == edit.row && earlier.stay == edit.stay &&
               earlier.at <= edit.at && waitsForRenaming(earlier, renaming);
    });
}

/// The row's removal was passed over: to the synchroniser it was there when that was taken back, so that no list followed.
Reason whyReturnIsNoNews(const History& history, const UserEdit& edit) {
    const auto removal =
        std::find_if(history.edits.rbegin(), history.edits.rend(), [&](const UserEdit& earlier) {
            return earlier.kind == EditKind::removeRow && earlier.stay == edit.stay &&
                   earlier.row == edit.row && earlier.at < edit.at;
        });
    return edit.kind == EditKind::restoreRow && removal != history.edits.rend()
               ? whyNotSent(history, *removal)
               : std::nullopt;
}

/// Before the session was there, in this stay of the timeline or in an earlier one.
bool wasDoneBeforeItsSession(const History& history, const StayHistory& stay, const UserEdit& edit) {
    return edit.stay == never && std::ranges::any_of(history.stays, [&](const StayHistory& joined) {
               return joined.session == stay.session && joined.stay->timelineId == stay.stay->timelineId &&
                      joined.stay->from <= stay.stay->from && joined.joining < edit.at &&
                      edit.at < joined.stay->from;
           });
}

/// The row that had the name has got that of one of its clips, whose user had it under another name.
bool followedAClip(const History& history, const StayHistory& stay, const Loss& loss) {
    return std::ranges::any_of(stay.target, [&](std::size_t at) {
        const auto& entry = history.entry(at);
        return entry.field("name") == "setRowNameWithRowNum" && entry.field("oldName") == loss.row;
    });
}

}  // namespace

bool wasTakenForKnown(const History& history, const UserEdit& edit) {
    const StayHistory& stay = history.stays[edit.stay];
    return std::ranges::any_of(stay.uploads, [&](const Upload& upload) {
        return upload.start > edit.at && upload.covers(edit.count) && !savedTheList(history, stay, upload) &&
               std::ranges::any_of(history.moments, [&](const auto& moment) {
                   return std::ranges::any_of(moment.second.placements, [&](const Placement& placement) {
                       return placement.stay == edit.stay && upload.start < placement.at &&
                              placement.at < upload.end && isOfRow(history, placement.clip, edit);
                   });
               });
    });
}

bool wasRenamedWhileListed(const History& history, const UserEdit& renaming) {
    if (renaming.kind != EditKind::renameRow || renaming.stay == never) {
        return false;
    }
    const auto& uploads = history.stays[renaming.stay].uploads;
    return std::ranges::any_of(history.edits, [&](const UserEdit& birth) {
        const bool isBirth = birth.kind == EditKind::addRow || birth.kind == EditKind::restoreRow;
        return isBirth && birth.stay == renaming.stay && birth.row == renaming.row &&
               std::ranges::any_of(uploads, [&](const Upload& listing) {
                   return listing.covers(birth.count) && listing.start < renaming.at &&
                          renaming.at < listing.end &&
                          std::ranges::any_of(
                              uploads,
                              [&](const Upload& upload) {
                                  return upload.covers(renaming.count) && renaming.at < upload.start &&
                                         upload.start < listing.end;
                              });
               });
    });
}

Reason whyRowDiffers(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    if (const UserEdit* edit = lastRowEdit(history, loss)) {
        if (const Reason reason = whyNotSent(history, *edit)) {
            return reason;
        }
    }
    if (missedTheLastList(history, stay, never)) {
        return LossClass::noCodingTarget;
    }
    if (loss.kind == LossKind::rowExtra) {
        if (const Reason reason = whyNotListed(history, loss)) {
            return reason;
        }
    }
    if (loss.kind == LossKind::rowOrder) {
        if (const Reason reason = whyInAnotherOrder(history, loss)) {
            return reason;
        }
    }
    if (loss.kind == LossKind::rowMissing && followedAClip(history, stay, loss)) {
        return LossClass::renamedMeanwhile;
    }
    // The timeline is as the user of another one wanted it, and the list is not.
    const std::vector<std::string_view> names = namesOf(history, loss.row);
    for (const UserEdit& edit : history.edits) {
        const bool isOfSession = edit.stay != never && history.stays[edit.stay].session == stay.session;
        if (!isOfSession || edit.kind != EditKind::renameRow ||
            std::ranges::find_first_of(names, std::array{edit.name, edit.oldName}) == names.end()) {
            continue;
        }
        if (const Reason reason = whyNotSent(history, edit)) {
            return reason;
        }
    }
    return std::nullopt;
}

Reason whyRowEditIsLost(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.edit->stay];
    if ((loss.kind == LossKind::newRowLost || loss.kind == LossKind::renameLost) &&
        (wasTakenForKnown(history, *loss.edit) || wasRenamedWhileListed(history, *loss.edit))) {
        return LossClass::takenForKnown;
    }
    if (wasClosedBeforeTheList(history, *loss.edit)) {
        return LossClass::left;
    }
    if (const Reason reason = whyReturnIsNoNews(history, *loss.edit);
        reason && loss.kind == LossKind::newRowLost) {
        return reason;
    }
    for (const UserEdit& renaming : history.edits) {
        const bool wasDoneWhileJoining = wasDoneBeforeItsSession(history, stay, renaming);
        if ((!wasDoneWhileJoining && renaming.stay != loss.edit->stay) ||
            !waitsWithItsRow(history, *loss.edit, renaming)) {
            continue;
        }
        // Nothing writes the row's clips with a name that it got before the session was there.
        if (const Reason reason =
                wasDoneWhileJoining ? whyNotSent(history, renaming) : whyNameIsHeldBack(history, renaming)) {
            return reason;
        }
    }
    // A place is counted on a list that is not everybody's.
    if (loss.kind == LossKind::moveLost && missedTheLastList(history, stay, loss.edit->at)) {
        return LossClass::noCodingTarget;
    }
    return std::nullopt;
}

}  // namespace Simulator
