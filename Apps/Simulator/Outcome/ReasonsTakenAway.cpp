// Why a clip is on a timeline although its moment was deleted, or was taken away together with one that it stands for no more.

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

/// From the timeline, between these entries.
bool wasRemoved(const History& history, const StayHistory& stay, std::string_view clip, std::size_t after,
                std::size_t before) {
    return std::ranges::any_of(stay.target, [&](std::size_t at) {
        const auto& entry = history.entry(at);
        return after < at && at < before && entry.field("name") == "removeInstanceWithRowId" &&
               entry.field("instanceId") == clip;
    });
}

bool isGoneBy(const History& history, std::string_view id, std::uint64_t sequence) {
    const MomentHistory* moment = history.moment(id);
    return moment != nullptr && !moment->lives && !moment->changes.empty() &&
           moment->changes.back()->sequence <= sequence;
}

/// The edit, or the one before it in its stay that took the clip's deletion back; null: there is none since the last deletion.
const UserEdit* undoBefore(const History& history, const UserEdit& edit, std::string_view clip) {
    const UserEdit* undo = nullptr;
    for (const std::size_t number : history.stays[edit.stay].edits) {
        const UserEdit& other = history.edits[number];
        if (other.at <= edit.at && std::ranges::find(other.clips, clip) != other.clips.end()) {
            undo = bringsBack(other) ? &other : takesAway(other) ? nullptr : undo;
        }
    }
    return undo;
}

/// The clip was sent as one that is there before the deletion was answered, and that was answered after it: from then on it counts as
/// there.
bool wasWrittenMeanwhile(const History& history, const StayHistory& stay, const UserEdit& undo,
                         const Call& removal, std::string_view moment) {
    return std::ranges::any_of(stay.calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return call.name == "updateMoments" && names(call.ids, moment) && undo.at < call.at &&
               call.at < removal.answered && removal.answered < call.answered && call.answered != never &&
               !call.failed;
    });
}

/// For which the clip stood when its deletion was taken back; empty: it is not this edit's.
std::string_view formerMomentOf(const UserEdit& undo, std::string_view clip) {
    const auto place = std::ranges::find(undo.clips, clip);
    return bringsBack(undo) && place != undo.clips.end()
               ? undo.moments[static_cast<std::size_t>(place - undo.clips.begin())]
               : std::string_view();
}

/// After the undo and before that entry.
bool wasWrittenAs(const History& history, const StayHistory& stay, const UserEdit& undo,
                  std::string_view former, std::size_t before) {
    return std::ranges::any_of(stay.calls, [&](std::size_t number) {
        const Call& call = history.calls[number];
        return undo.at < call.at && call.answered < before && !call.failed && call.name == "updateMoments" &&
               names(call.ids, former);
    });
}

/// The news of the former moment's deletion has taken away the clip, which stands for this one.
bool wasTakenByLateNews(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    const MomentHistory& moment = *history.moment(loss.moment);
    const std::string_view clip = moment.last->originInstanceId;
    return std::ranges::any_of(history.edits, [&](const UserEdit& undo) {
        const std::string_view former = undo.stay == loss.stay ? formerMomentOf(undo, clip) : "";
        return !former.empty() && former != loss.moment &&
               std::ranges::any_of(stay.arrivals, [&](const Arrival& arrival) {
                   return !arrival.isPull && isGoneBy(history, former, arrival.sequence) &&
                          history.moment(former)->changes.back()->sequence == arrival.sequence &&
                          wasWrittenAs(history, stay, undo, former, arrival.start) &&
                          wasRemoved(history, stay, clip, arrival.start, arrival.at);
               });
    });
}

}  // namespace

bool wasTakenAwayAgain(const History& history, const UserEdit& edit, std::string_view clip) {
    const UserEdit* undo = undoBefore(history, edit, clip);
    if (undo == nullptr) {
        return false;
    }
    const auto place = std::ranges::find(undo->clips, clip) - undo->clips.begin();
    const std::string_view moment = undo->moments[static_cast<std::size_t>(place)];
    const StayHistory& stay = history.stays[undo->stay];
    const bool wasDoneAgain = undo == &edit && std::ranges::any_of(stay.target, [&](std::size_t at) {
                                  const auto& entry = history.entry(at);
                                  return at > undo->at && entry.field("name") == "removeInstanceWithRowId" &&
                                         entry.field("instanceId") == clip;
                              });
    return wasDoneAgain || std::ranges::any_of(stay.calls, [&](std::size_t number) {
               const Call& call = history.calls[number];
               const bool isOfIt =
                   call.name == "removeMoments" && call.accepted != nullptr && names(call.ids, moment);
               return isOfIt && (call.failed || edit.at < call.answered ||
                                 wasWrittenMeanwhile(history, stay, *undo, call, moment));
           });
}

bool wasTakenForItsFormerMoment(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    return std::ranges::any_of(
               history.moment(loss.moment)->placements,
               [&](const Placement& placement) {
                   const auto pull = std::ranges::find_if(
                       stay.arrivals, [&](const Arrival& arrival) { return arrival.at > placement.at; });
                   if (placement.stay != loss.stay || placement.how != "own" || pull == stay.arrivals.end() ||
                       !pull->isPull || !wasRemoved(history, stay, placement.clip, placement.at, pull->at)) {
                       return false;
                   }
                   return std::ranges::any_of(history.edits, [&](const UserEdit& undo) {
                       if (undo.stay != loss.stay || undo.at > placement.at) {
                           return false;
                       }
                       const std::string_view former = formerMomentOf(undo, placement.clip);
                       return former != loss.moment && isGoneBy(history, former, pull->sequence) &&
                              wasWrittenAs(history, stay, undo, former, placement.at);
                   });
               }) ||
           wasTakenByLateNews(history, loss);
}

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
