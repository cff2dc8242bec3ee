// Why the rows of a timeline, or of the shared list, are not as they should be.

#include "Apps/Simulator/Outcome/MomentCodes.hpp"
#include "Apps/Simulator/Outcome/Reasons.hpp"
#include "Apps/Simulator/Outcome/RowNames.hpp"

#include <algorithm>
#include <array>

namespace Simulator {

using RemoteCoding::TaggingSessionChangeType;

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

bool bringsAList(const StayHistory& stay, const Arrival& arrival) {
    return arrival.isPull || (arrival.sequence != 0 && arrival.sequence <= stay.session->changes.size() &&
                              stay.session->changes[arrival.sequence - 1]->type ==
                                  TaggingSessionChangeType::presentationViewUpdated);
}

/// The last list that came before this entry came while the timeline could not be edited.
bool missedTheLastList(const History& history, const StayHistory& stay, std::size_t before) {
    const auto found =
        std::find_if(stay.arrivals.rbegin(), stay.arrivals.rend(), [&](const Arrival& arrival) {
            return arrival.at < before && bringsAList(stay, arrival);
        });
    return found != stay.arrivals.rend() && hadNoTarget(history, stay, found->at);
}

/// The row was kept for a clip that nobody else has, and that was deleted when the last list had come.
Reason whyKeptForAClip(const History& history, const StayHistory& stay, const Loss& loss) {
    const auto list = std::find_if(stay.arrivals.rbegin(), stay.arrivals.rend(),
                                   [&](const Arrival& arrival) { return bringsAList(stay, arrival); });
    if (list == stay.arrivals.rend()) {
        return std::nullopt;
    }
    for (const UserEdit& removal : history.edits) {
        if (removal.kind != EditKind::removeClip || removal.timelineId != stay.stay->timelineId ||
            removal.name != loss.row || removal.at < list->at) {
            continue;
        }
        const auto tag = std::ranges::find_if(history.edits, [&](const UserEdit& edit) {
            return edit.kind == EditKind::tag && edit.timelineId == removal.timelineId &&
                   edit.clips == removal.clips;
        });
        if (tag == history.edits.end()) {
            continue;
        }
        if (const Reason reason = whyNotSent(history, *tag, removal.clips.front())) {
            return reason;
        }
    }
    return std::nullopt;
}

bool savedTheList(const History& history, const StayHistory& stay, const Upload& upload) {
    return std::ranges::any_of(stay.calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.name == "savePresentationView" && upload.start < call.at && call.at < upload.end;
    });
}

/// While the upload ran, a clip of the row came, or its own came back, and recorded the row, which the upload then took for one that the list has.
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

/// The rows that a hosted timeline had from the start: its first upload sends them.
Reason whyFirstListWasNotSent(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    const auto first = std::ranges::find(stay.uploads, std::int64_t(1), &Upload::first);
    if (!stay.stay->isHost || first == stay.uploads.end() ||
        std::ranges::any_of(stay.calls, [&](std::size_t number) {
            const Call& call = history.calls[number];
            return call.name == "savePresentationView" && call.accepted != nullptr;
        })) {
        return std::nullopt;
    }
    UserEdit row;
    row.at = stay.stay->from;
    row.stay = loss.stay;
    row.kind = EditKind::addRow;
    row.timelineId = stay.stay->timelineId;
    row.count = first->first;
    return whyNotSent(history, row);
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

/// The row that had the name has got that of one of its clips, whose user had it under another name.
bool followedAClip(const History& history, const StayHistory& stay, const Loss& loss) {
    return std::ranges::any_of(stay.target, [&](std::size_t at) {
        const auto& entry = history.entry(at);
        return entry.field("name") == "setRowNameWithRowNum" && entry.field("oldName") == loss.row;
    });
}

}  // namespace

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
        if (const Reason reason = whyFirstListWasNotSent(history, loss)) {
            return reason;
        }
        if (const Reason reason = whyKeptForAClip(history, stay, loss)) {
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
    for (const UserEdit& renaming : history.edits) {
        const bool wasDoneWhileJoining =
            renaming.stay == never && stay.joining < renaming.at && renaming.at < stay.stay->from;
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
