#include "Apps/CodingDesk/Desk.hpp"
#include "Apps/CodingDesk/Explanation.hpp"
#include "Apps/CodingDesk/Fates.hpp"
#include "Apps/CodingDesk/Text.hpp"

#include <algorithm>
#include <iterator>
#include <set>
#include <sstream>

/// What the desk says at the end.
namespace CodingDesk {

bool Desk::report() {
    std::vector<AnalystResult> all = results();
    const MatchState remote = remoteState(all);
    double matchEnd = 0;
    for (const ClipState& clip : remote.clips) {
        matchEnd = std::max(matchEnd, clip.end);
    }
    std::ostringstream text;
    for (const AnalystResult& result : all) {
        text << '\n';
        writeStrips(text, result, matchEnd, console_.look());
    }
    text << '\n';
    writeCounts(text, all, remote);
    text << '\n';
    writeArrivals(text, arrivals_.summary(), all);
    if (editsLeftOut_ > 0) {
        text << "  " << counted(editsLeftOut_, "planned edit")
             << " left out: the clip or row was not there any more, or not yet\n";
    }
    console_.say(text.str());
    sayFates();
    return sayDifferences(all, remote);
}

std::vector<AnalystResult> Desk::results() const {
    std::vector<AnalystResult> results;
    for (const auto& analyst : analysts_) {
        MatchState state = analyst->ask<MatchState>([](Workplace& workplace) { return workplace.state(); });
        results.push_back({analyst->name(), std::move(state), {}});
    }
    return results;
}

MatchState Desk::remoteState(std::vector<AnalystResult>& results) const {
    const auto snapshot = world_.cloud.snapshot(taggingSessionId_);
    if (!snapshot) {
        return {};
    }
    std::vector<std::string> timelineIds;
    for (const auto& analyst : analysts_) {
        timelineIds.push_back(
            analyst->ask<std::string>([](Workplace& workplace) { return workplace.timelineId(); }));
    }
    for (const auto& moment : snapshot->moments) {
        const auto maker = std::ranges::find(timelineIds, moment->originTimelineId);
        if (maker != timelineIds.end()) {
            ++results[static_cast<std::size_t>(maker - timelineIds.begin())].tagged[moment->code];
        }
    }
    return stateOf(*snapshot);
}

void Desk::sayFates() const {
    std::vector<Work> all;
    for (const auto& analyst : analysts_) {
        all.push_back(analyst->ask<Work>([](Workplace& workplace) {
            return workplace.coder() != nullptr ? workplace.coder()->work() : Work{};
        }));
    }
    std::set<std::string> origins;
    std::set<std::string> rows;
    if (const auto snapshot = world_.cloud.snapshot(taggingSessionId_)) {
        for (const auto& moment : snapshot->moments) {
            origins.insert(moment->originInstanceId);
        }
        if (snapshot->presentationView) {
            std::ranges::transform(*snapshot->presentationView, std::inserter(rows, rows.end()),
                                   &ReferenceHost::CodeRecord::name);
        }
    }
    for (const std::string& line : fates(all, origins, rows)) {
        console_.say(line);
    }
}

bool Desk::sayDifferences(const std::vector<AnalystResult>& results, const MatchState& remote) {
    bool allEqual = true;
    std::vector<ReferenceHost::TraceEntry> trace;
    for (AnalystIndex i = 0; i < results.size(); ++i) {
        const AnalystResult& result = results[i];
        const auto found = differences(result.state, remote);
        if (!found.empty() && trace.empty()) {
            trace = world_.trace.entries();
        }
        for (const Difference& difference : found) {
            console_.say(result.name + ": " + difference.what + " (" +
                         explanation(trace, result.name, difference) + ").");
        }
        allEqual = allEqual && found.empty();
        const auto& presence = lookout_.presences()[i];
        if (!isSettled_ && !presence.isUpToDate()) {
            console_.say(
                result.name + ": the timeline did not come to rest within " + decimal(Lookout::patience, 0) +
                " s: " +
                (presence.isReconnecting() ? "it still tries to reconnect." : "edits wait to be sent."));
        }
    }
    return allEqual;
}

}  // namespace CodingDesk
