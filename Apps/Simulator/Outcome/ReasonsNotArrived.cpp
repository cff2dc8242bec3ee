// Why what the cloud has of a clip is not on a timeline.

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>

namespace Simulator {

namespace {

/// From entry to entry: when the timeline's analyst could not read the moment.
std::vector<std::pair<std::size_t, std::size_t>> timesUnread(const History& history, const StayHistory& stay,
                                                             std::string_view moment) {
    std::vector<std::pair<std::size_t, std::size_t>> times;
    for (std::size_t at = 0; at < history.record.trace.size(); ++at) {
        const auto& entry = history.entry(at);
        if (entry.host != stay.stay->analyst || entry.kind != SimulatedKind::fault ||
            entry.field("what") != "hideMoments" || !entry.field("drops").empty()) {
            continue;
        }
        const std::vector<std::string_view> ids = parts(entry.field("ids"));
        if (entry.field("state") == "ends" && !times.empty() && times.back().second == never) {
            times.back().second = at;
        } else if (std::ranges::find(ids, moment) != ids.end()) {
            times.emplace_back(at, never);
        }
    }
    return times;
}

/// A guest's timeline has nothing of the session but what happened since.
bool wasNeverFetched(const StayHistory& stay) {
    return !stay.stay->isHost && std::ranges::none_of(stay.arrivals, &Arrival::isPull);
}

/// The clip was made in place of one of the moment's two that stood on another row.
bool wasPutOntoAnotherRow(const MomentHistory& moment, const Loss& loss, std::size_t after) {
    return std::ranges::any_of(moment.placements, [&](const Placement& placement) {
        return placement.at > after && placement.how == "moved" && placement.clip == loss.clip;
    });
}

}  // namespace

Reason whyNeverNamed(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    for (const auto& [id, moment] : history.moments) {
        if (moment.last == nullptr || moment.last->originInstanceId != loss.clip ||
            moment.last->originTimelineId != stay.stay->timelineId ||
            std::ranges::any_of(moment.placements,
                                [&](const Placement& placement) { return placement.stay == loss.stay; })) {
            continue;
        }
        if (!moment.lives) {
            return LossClass::deletedWhileAway;  // before the timeline could hear of it
        }
        const std::uint64_t creation = moment.changes.front()->sequence;
        const auto times = timesUnread(history, stay, id);
        bool wasFetched = false;
        bool wasRead = false;
        for (const Arrival& arrival : stay.arrivals) {
            if (arrival.isPull && arrival.sequence >= creation) {
                wasFetched = true;
                wasRead = wasRead || std::ranges::none_of(times, [&](const auto& time) {
                              return time.first < arrival.at && arrival.at < time.second;
                          });
            }
        }
        if (wasFetched && !wasRead) {
            return LossClass::unreadable;
        }
    }
    return std::nullopt;
}

Reason whyNeverFetched(const History& history, const Loss& loss) {
    return loss.edit == nullptr && wasNeverFetched(history.stays[loss.stay]) ? Reason(LossClass::neverFetched)
                                                                             : std::nullopt;
}

Reason whyNotDeleted(const History& history, const UserEdit& removal, std::string_view clip,
                     std::string_view moment) {
    if (removal.stay == never) {
        return std::nullopt;
    }
    const Reason reason = whyNotSent(history, removal, clip, moment);
    return reason ? reason
                  : whyDeletionIsLost(history,
                                      {LossKind::deletionLost, removal.stay, moment, clip, {}, &removal, {}});
}

Reason whyThereTwice(const History& history, const Loss& loss) {
    const std::string& timelineId = history.stays[loss.stay].stay->timelineId;
    for (const Placement& placement : history.moment(loss.moment)->placements) {
        if (placement.how != "new" || history.stays[placement.stay].stay->timelineId != timelineId) {
            continue;
        }
        // The user had taken the other clip away, and has taken that back since.
        const UserEdit* removal = nullptr;
        std::string_view other;
        for (const UserEdit& edit : history.edits) {
            if (edit.timelineId != timelineId) {
                continue;
            }
            const auto place = std::ranges::find(edit.moments, loss.moment);
            if (edit.at < placement.at && takesAway(edit) && place != edit.moments.end()) {
                removal = &edit;
                other = edit.clips[static_cast<std::size_t>(place - edit.moments.begin())];
            } else if (removal != nullptr && edit.at > placement.at && bringsBack(edit) &&
                       std::ranges::find(edit.clips, other) != edit.clips.end() &&
                       (other == loss.clip || placement.clip == loss.clip ||
                        wasPutOntoAnotherRow(*history.moment(loss.moment), loss, edit.at))) {
                const Reason reason = whyNotDeleted(history, *removal, other, loss.moment);
                return reason || removal->stay == placement.stay ? reason : LossClass::deletedOutside;
            }
        }
    }
    return std::nullopt;
}

bool wasReadAsDeleted(const History& history, const MomentHistory& moment, std::string_view id) {
    return std::ranges::any_of(history.stays, [&](const StayHistory& stay) {
        return stay.session == moment.session &&
               std::ranges::any_of(timesUnread(history, stay, id), [&](const auto& time) {
                   return std::ranges::any_of(stay.arrivals, [&](const Arrival& arrival) {
                       return arrival.isPull && time.first < arrival.at && arrival.at < time.second;
                   });
               });
    });
}

Reason whyNotArrived(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    const MomentHistory& moment = *history.moment(loss.moment);
    const Placement* last = nullptr;
    for (const Placement& placement : moment.placements) {
        if (placement.stay == loss.stay) {
            last = &placement;
        }
    }
    if (last != nullptr && last->how == "unplaced") {
        return LossClass::noRow;
    }
    for (const auto& [from, to] : timesUnread(history, stay, loss.moment)) {
        const bool wasMissed = std::ranges::any_of(stay.arrivals, [&](const Arrival& arrival) {
            return from < arrival.at && arrival.at < to && (last == nullptr || last->at < arrival.at);
        });
        if (wasMissed) {
            return LossClass::unreadable;
        }
    }
    return wasTakenForItsFormerMoment(history, loss) ? Reason(LossClass::takenAwayAgain) : std::nullopt;
}

}  // namespace Simulator
