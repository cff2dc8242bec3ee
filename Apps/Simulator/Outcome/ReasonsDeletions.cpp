// Why a clip is in the cloud although the last word about it was its deletion.

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>

namespace Simulator {

namespace {

/// The moment had come to this stay as an answer to a creation before one entry, or with a change before another.
bool wasHeardOf(const History& history, std::size_t stay, std::string_view id, std::size_t answered = never,
                std::size_t placed = never) {
    const bool wasAnswered = std::ranges::any_of(history.stays[stay].calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.answered < answered && std::ranges::find(call.answer, id) != call.answer.end();
    });
    const MomentHistory* moment = history.moment(id);
    return wasAnswered ||
           (moment != nullptr && std::ranges::any_of(moment->placements, [&](const Placement& placement) {
                return placement.stay == stay && placement.at < placed;
            }));
}

/// The timeline had not received its session when the upload of the deletion was made: it did not know what to delete.
Reason whyNotKnownYet(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.edit->stay];
    if (stay.stay->isHost) {
        return std::nullopt;
    }
    const auto upload = std::ranges::find_if(stay.uploads, [&](const Upload& candidate) {
        return candidate.start > loss.edit->at && candidate.covers(loss.edit->count);
    });
    const std::size_t sent = upload != stay.uploads.end() ? upload->start : never;
    // An answer that comes after the deletion finds no clip any more that it could name.
    if (wasHeardOf(history, loss.edit->stay, loss.moment, loss.edit->at, sent)) {
        return std::nullopt;
    }
    const auto pull = std::ranges::find_if(stay.arrivals, &Arrival::isPull);
    if (pull == stay.arrivals.end()) {
        return LossClass::neverFetched;
    }
    return pull->at > loss.edit->at ? Reason(LossClass::beforeSession) : std::nullopt;
}

/// The clip had no name in the cloud when it was deleted, and each try to tell the cloud later has failed.
Reason whyNotToldLater(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.edit->stay];
    if (wasHeardOf(history, loss.edit->stay, loss.moment, loss.edit->at, loss.edit->at)) {
        return std::nullopt;
    }
    const Call* last = nullptr;
    for (const std::size_t number : stay.calls) {
        const Call& call = history.calls[number];
        if (call.at > loss.edit->at && call.name == "removeMoments" &&
            std::ranges::find(call.ids, loss.moment) != call.ids.end()) {
            if (!call.failed) {
                return std::nullopt;
            }
            last = &call;
        }
    }
    if (!stay.stay->lasts) {
        return LossClass::left;
    }
    if (last == nullptr) {
        return std::nullopt;
    }
    const bool isPassedOver = std::ranges::any_of(
        stay.arrivals, [&](const Arrival& arrival) { return arrival.at > last->answered; });
    return isPassedOver ? LossClass::passedOver : LossClass::waiting;
}

}  // namespace

bool wasSentAnew(const History& history, std::string_view moment) {
    const MomentHistory& living = *history.moment(moment);
    const Call* creation = creationOf(history, living);
    if (creation == nullptr) {
        return false;
    }
    const auto& uploads = history.stays[creation->stay].uploads;
    return std::ranges::any_of(history.moments, [&](const auto& known) {
        const MomentHistory& other = known.second;
        return !other.lives && other.session == living.session &&
               other.last->originInstanceId == living.last->originInstanceId &&
               other.last->originTimelineId == living.last->originTimelineId &&
               std::ranges::any_of(uploads, [&](const Upload& upload) {
                   return upload.start < creation->at && creation->at < upload.end &&
                          !wasHeardOf(history, creation->stay, known.first, upload.start, upload.start);
               });
    });
}

Reason whyDeletionIsLost(const History& history, const Loss& loss) {
    if (const Reason reason = whyNotKnownYet(history, loss)) {
        return reason;
    }
    if (wasSentAnew(history, loss.moment)) {
        return LossClass::deletedWhileAway;
    }
    return whyNotToldLater(history, loss);
}

}  // namespace Simulator
