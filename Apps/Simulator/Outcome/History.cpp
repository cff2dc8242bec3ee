#include "Apps/Simulator/Outcome/History.hpp"

#include "Apps/Simulator/Outcome/TraceReader.hpp"

#include <algorithm>

namespace Simulator {

using RemoteCoding::TaggingSessionChangeType;

std::vector<std::string_view> parts(std::string_view list) {
    std::vector<std::string_view> found;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        found.push_back(list.substr(0, comma));
        if (comma == std::string_view::npos) {
            break;
        }
        list.remove_prefix(comma + 1);
        if (list.empty()) {
            found.emplace_back();  // behind the last comma
        }
    }
    return found;
}

std::uint64_t StayHistory::receivedBefore(std::size_t entry) const {
    std::uint64_t received = 0;
    for (const Arrival& arrival : arrivals) {
        if (arrival.at >= entry) {
            break;
        }
        received = std::max(received, arrival.sequence);
    }
    return received;
}

History::History(const Record& record_) : record(record_) {
    for (const auto& [id, session] : record.sessions) {
        for (const auto& change : session.changes) {
            for (const auto& moment : change->moments) {
                MomentHistory& history = moments[moment->id];
                history.changes.push_back(change.get());
                history.last = moment.get();
                history.lives = change->type != TaggingSessionChangeType::momentsDeleted;
                history.session = &session;
            }
        }
    }
    for (const Stay& stay : record.stays) {
        StayHistory history;
        history.stay = &stay;
        const auto session = record.sessions.find(stay.sessionId);
        history.session = session != record.sessions.end() ? &session->second : nullptr;
        stays.push_back(std::move(history));
    }
    TraceReader(*this).read();
}

const MomentHistory* History::moment(std::string_view id) const {
    const auto found = moments.find(id);
    return found != moments.end() ? &found->second : nullptr;
}

}  // namespace Simulator
