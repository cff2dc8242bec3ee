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

}  // namespace

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
    return std::nullopt;
}

}  // namespace Simulator
