// Why a row of a timeline, on which no clip is, is not in the shared list.

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>

namespace Simulator {

using RemoteCoding::TaggingSessionChangeType;

namespace {

bool bringsAList(const StayHistory& stay, const Arrival& arrival) {
    return arrival.isPull || (arrival.sequence != 0 && arrival.sequence <= stay.session->changes.size() &&
                              stay.session->changes[arrival.sequence - 1]->type ==
                                  TaggingSessionChangeType::presentationViewUpdated);
}

/// The list that goes out with the deletion of a clip has failed, and there was none later: the others, too, keep the row that they
/// had kept for the clip.
Reason whyNoListFollowed(const History& history, const UserEdit& removal) {
    const StayHistory& stay = history.stays[removal.stay];
    bool hasFailed = false;
    for (const std::size_t number : stay.calls) {
        const Call& call = history.calls[number];
        if (call.name != "savePresentationView" || call.at < removal.at) {
            continue;
        }
        if (call.accepted != nullptr) {
            return std::nullopt;
        }
        hasFailed = hasFailed || std::ranges::any_of(stay.uploads, [&](const Upload& upload) {
                        return upload.covers(removal.count) && removal.at < upload.start &&
                               upload.start < call.at && call.at < upload.end && !upload.succeeded;
                    });
    }
    // One that has succeeded since had no deletion to tell of any more only if the failed one's was accepted.
    const bool wasRepeated = std::ranges::any_of(stay.uploads, [&](const Upload& upload) {
        return upload.covers(removal.count) && removal.at < upload.start && upload.succeeded;
    });
    const bool wasAccepted = std::ranges::any_of(stay.calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.name == "removeMoments" && call.at > removal.at && call.accepted != nullptr &&
               std::ranges::find_first_of(call.ids, removal.moments) != call.ids.end();
    });
    if (!hasFailed || (wasRepeated && !wasAccepted)) {
        return std::nullopt;
    }
    return stay.stay->lasts && !stay.stay->isClosed ? LossClass::passedOver : LossClass::left;
}

/// A clip of the row was taken off this timeline after that entry, because this had deleted it.
bool tookAway(const History& history, const Loss& loss, const UserEdit& removal, std::size_t after) {
    const StayHistory& stay = history.stays[loss.stay];
    if (removal.kind != EditKind::removeClip || removal.stay == never || removal.name != loss.row ||
        history.stays[removal.stay].session != stay.session) {
        return false;
    }
    if (removal.timelineId == stay.stay->timelineId) {
        return removal.at > after;
    }
    const auto clips = clipsOf(history, loss.stay, removal.moments.front());
    return std::ranges::any_of(stay.target, [&](std::size_t at) {
        const auto& entry = history.entry(at);
        return at > after && entry.field("name") == "removeInstanceWithRowId" &&
               std::ranges::find(clips, entry.field("instanceId")) != clips.end();
    });
}

/// The user has deleted a clip that nobody else had.
Reason whyAloneWithTheClip(const History& history, const Loss& loss, const UserEdit& removal) {
    const auto tag = std::ranges::find_if(history.edits, [&](const UserEdit& edit) {
        return edit.kind == EditKind::tag && edit.timelineId == removal.timelineId &&
               edit.clips == removal.clips;
    });
    const Reason reason =
        tag != history.edits.end() ? whyNotSent(history, *tag, removal.clips.front()) : std::nullopt;
    const MomentHistory* moment = history.moment(removal.moments.front());
    if (reason || moment == nullptr || moment->lives) {
        return reason;
    }
    Loss clip = loss;
    clip.kind = LossKind::clipExtra;
    clip.moment = removal.moments.front();
    clip.clip = removal.clips.front();
    return whyNotTakenAway(history, clip);
}

/// The row was kept for a clip that was deleted when the last list had come.
Reason whyKeptForAClip(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    const Arrival* list = lastList(stay);
    if (list == nullptr) {
        return std::nullopt;
    }
    for (const UserEdit& removal : history.edits) {
        if (!tookAway(history, loss, removal, list->at)) {
            continue;
        }
        Reason reason = whyNoListFollowed(history, removal);
        if (!reason && removal.timelineId == stay.stay->timelineId) {
            reason = whyAloneWithTheClip(history, loss, removal);
        }
        if (reason) {
            return reason;
        }
    }
    return std::nullopt;
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

/// No list has ever had the row, which its author's synchroniser took for one that is listed.
bool wasNeverListed(const History& history, const Loss& loss) {
    const SessionHistory* session = history.stays[loss.stay].session;
    const bool wasListed = std::ranges::any_of(session->changes, [&](const auto& change) {
        return change->presentationView &&
               std::ranges::any_of(*change->presentationView, [&](const ReferenceHost::CodeRecord& code) {
                   return code.name == loss.row;
               });
    });
    return !wasListed && std::ranges::any_of(history.edits, [&](const UserEdit& edit) {
        return edit.kind == EditKind::addRow && edit.name == loss.row && edit.stay != never &&
               history.stays[edit.stay].session == session && wasTakenForKnown(history, edit);
    });
}

}  // namespace

const Arrival* lastList(const StayHistory& stay, std::size_t before) {
    const auto found =
        std::find_if(stay.arrivals.rbegin(), stay.arrivals.rend(), [&](const Arrival& arrival) {
            return arrival.at < before && bringsAList(stay, arrival);
        });
    return found != stay.arrivals.rend() ? &*found : nullptr;
}

Reason whyNotListed(const History& history, const Loss& loss) {
    if (const Reason reason = whyFirstListWasNotSent(history, loss)) {
        return reason;
    }
    return wasNeverListed(history, loss) ? LossClass::takenForKnown : whyKeptForAClip(history, loss);
}

}  // namespace Simulator
