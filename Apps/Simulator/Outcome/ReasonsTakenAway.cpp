// Why a clip is on a timeline although its moment was deleted.

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>
#include <map>

namespace Simulator {

namespace {

/// What a synchroniser went through that bears on one deleted moment.
enum class Turn : std::uint8_t {
    learnt,     ///< it knows from here on which clip stands for the moment
    forgotten,  ///< no more: its own removal was answered
    told        ///< of the deletion
};

bool names(const std::vector<std::string_view>& ids, std::string_view moment) {
    return std::ranges::find(ids, moment) != ids.end();
}

/// A copy of the clip that does not know its row tells nothing.
bool updatesWithRow(const Call& call, std::string_view moment) {
    if (call.name != "updateMoments" || !names(call.ids, moment)) {
        return false;
    }
    return call.accepted == nullptr ||
           std::ranges::any_of(call.accepted->drafts, [&](const ReferenceHost::MomentDraft& draft) {
               return draft.externalId == moment && draft.code;
           });
}

/// By entry.
std::map<std::size_t, Turn> stepsOf(const History& history, const Loss& loss, const MomentHistory& moment) {
    std::map<std::size_t, Turn> steps;
    const StayHistory& stay = history.stays[loss.stay];
    for (const Placement& placement : moment.placements) {
        const bool hasPlace = placement.how == "new" || placement.how == "known" || placement.how == "own" ||
                              placement.how == "moved";
        if (placement.stay == loss.stay && hasPlace) {
            steps.emplace(placement.at, Turn::learnt);
        }
    }
    for (const std::size_t number : stay.calls) {
        const Call& call = history.calls[number];
        if (call.answered == never || call.failed) {
            continue;
        }
        if (names(call.answer, loss.moment) || updatesWithRow(call, loss.moment)) {
            steps.emplace(call.answered, Turn::learnt);
        } else if (call.name == "removeMoments" && !call.isFalse && names(call.ids, loss.moment)) {
            steps.emplace(call.answered, Turn::forgotten);
        }
    }
    const std::uint64_t deletion = moment.changes.back()->sequence;
    for (const Arrival& arrival : stay.arrivals) {
        if (arrival.isPull ? arrival.sequence >= deletion : arrival.sequence == deletion) {
            steps.emplace(arrival.at, Turn::told);
        }
    }
    return steps;
}

}  // namespace

Reason whyNotTakenAway(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    const MomentHistory& moment = *history.moment(loss.moment);
    bool isKnown = false;
    bool wasKnown = false;
    Reason reason;
    for (const auto& [at, step] : stepsOf(history, loss, moment)) {
        if (step == Turn::learnt) {
            isKnown = wasKnown = true;
        } else if (step == Turn::forgotten) {
            isKnown = false;
        } else if (isKnown) {
            if (!hadNoTarget(history, stay, at)) {
                return std::nullopt;  // it was taken away
            }
            reason = LossClass::noCodingTarget;
            isKnown = false;
        } else if (!wasKnown) {
            reason = LossClass::deletedWhileAway;
        }
    }
    return reason;
}

}  // namespace Simulator
