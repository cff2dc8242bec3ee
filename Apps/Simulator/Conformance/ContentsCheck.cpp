#include "Apps/Simulator/Conformance/ContentsCheck.hpp"

#include "Apps/Simulator/Conformance/Ids.hpp"

#include <string>

namespace Simulator::Conformance {

ContentsCheck::ContentsCheck(Report& report, const Record& record) : report_(report) {
    for (const auto& [id, session] : record.sessions) {
        for (const auto& change : session.changes) {
            if (change->type == RemoteCoding::TaggingSessionChangeType::momentsDeleted) {
                for (const auto& moment : change->moments) {
                    deletions_.emplace(moment->id, change->sequence);
                }
            }
        }
    }
}

void ContentsCheck::see(const Entry& entry) {
    if (entry.kind == Kind::effect) {
        const std::string_view sessionId = entry.field("taggingSessionId");
        if (!sessionId.empty()) {
            lastSequence_[sessionId] = static_cast<std::uint64_t>(entry.number("sequence"));
        }
        return;
    }
    if (entry.kind == Kind::fault && entry.field("what") == "hideMoments") {
        hidden(entry);
    }
    if (entry.synchroniser == nullptr) {
        return;
    }
    State& state = states_[*entry.synchroniser];
    switch (entry.kind) {
    case Kind::call:
        called(entry, state);
        break;
    case Kind::answer:
        if (grantsCall(entry)) {
            answered(entry, state);
        }
        break;
    case Kind::delivery:
        if (entry.field("type") == "momentsDeleted") {
            for (const std::string_view momentId : Ids(entry.field("ids"))) {
                forgetMoment(state, momentId);
            }
        }
        break;
    case Kind::error:
        // What was created cannot be taken note of.
        if (entry.message() == "Trying to cache an instance without a row.") {
            std::erase_if(state.moments,
                          [&](const auto& known) { return known.second.since == state.lastAnswer; });
        }
        break;
    case Kind::edit:
        edited(entry, state);
        break;
    case Kind::uploadStart:
        started(entry, state);
        break;
    case Kind::uploadEnd:
        ended(entry, state);
        break;
    default:
        break;
    }
}

void ContentsCheck::know(const Entry& entry, State& state, std::string_view clip, std::string_view momentId) {
    const auto other = state.clips.find(momentId);
    if (other != state.clips.end() && other->second != clip) {
        leaveOut(state, momentId);
    }
    if (unclear_.contains(momentId)) {
        return;
    }
    state.moments[clip] = Known{momentId, entry.index, entry.time()};
    state.clips[momentId] = clip;
}

void ContentsCheck::leaveOut(State& state, std::string_view momentId) {
    unclear_.insert(momentId);
    forgetMoment(state, momentId);
}

// Taken for deleted by a pull, they are forgotten, which leaves no trace when there is no coding target.
void ContentsCheck::hidden(const Entry& entry) {
    for (const std::string_view momentId : Ids(entry.field("ids"))) {
        for (const Synchroniser* synchroniser : entry.host->synchronisers) {
            leaveOut(states_[*synchroniser], momentId);
        }
    }
}

void ContentsCheck::forgetMoment(State& state, std::string_view momentId) {
    const auto clip = state.clips.find(momentId);
    if (clip != state.clips.end()) {
        state.moments.erase(clip->second);
        state.clips.erase(clip);
    }
}

bool ContentsCheck::isLiving(std::string_view sessionId, std::string_view momentId) const {
    const auto deletion = deletions_.find(momentId);
    const auto now = lastSequence_.find(sessionId);
    return deletion == deletions_.end() || now == lastSequence_.end() || deletion->second > now->second;
}

void ContentsCheck::edited(const Entry& entry, State& state) {
    // A clip that an earlier stay left on the timeline, and the one that came for it in this stay: two may stand for one moment.
    const auto other = state.clips.find(entry.field("moment"));
    if (other != state.clips.end() && other->second != entry.field("clip")) {
        leaveOut(state, entry.field("moment"));
    }
    const std::string_view what = entry.field("what");
    const bool removes = what.starts_with("delete") || what == "removeRow";
    const bool restores = what.starts_with("undo");
    if (!removes && !restores) {
        return;
    }
    for (const char* field : {"clip", "clips"}) {
        for (const std::string_view clip : Ids(entry.field(field))) {
            if (removes) {
                state.deleted[clip] = entry.index;
            } else {
                state.deleted.erase(clip);
            }
        }
    }
}

}  // namespace Simulator::Conformance
