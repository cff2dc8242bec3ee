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

/// The timeline's own clip for the moment has been given the name of a moment of another session, whose answer came later.
bool isNamedElsewhere(const History& history, const StayHistory& stay, const MomentHistory& moment) {
    return std::ranges::any_of(stay.stay->picture.clips, [&](const ClipPicture& clip) {
        const MomentHistory* named = clip.momentId ? history.moment(*clip.momentId) : nullptr;
        return clip.instanceId == moment.last->originInstanceId && named != nullptr &&
               named->session != stay.session;
    });
}

bool tookAway(const UserEdit& edit) {
    return edit.kind == EditKind::removeClip || edit.kind == EditKind::removeRow;
}

}  // namespace

Reason whyThereTwice(const History& history, const Loss& loss) {
    const StayHistory& stay = history.stays[loss.stay];
    for (const Placement& placement : history.moment(loss.moment)->placements) {
        if (placement.stay != loss.stay || placement.how != "new") {
            continue;
        }
        // The user had taken the other clip away, and has taken it back since.
        const UserEdit* removal = nullptr;
        for (const UserEdit& edit : history.edits) {
            const auto place = std::ranges::find(edit.moments, loss.moment);
            if (edit.timelineId == stay.stay->timelineId && place != edit.moments.end() && tookAway(edit) &&
                edit.at < placement.at) {
                removal = &edit;
            }
        }
        if (removal != nullptr) {
            const auto place = std::ranges::find(removal->moments, loss.moment) - removal->moments.begin();
            return whyNotSent(history, *removal, removal->clips[static_cast<std::size_t>(place)],
                              loss.moment);
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
    if (isNamedElsewhere(history, stay, moment)) {
        return LossClass::sentElsewhere;
    }
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
    return std::nullopt;
}

}  // namespace Simulator
