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

// ---- what is known ----

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

// ---- what is sent ----

void ContentsCheck::called(const Entry& entry, State& state) {
    const std::string_view name = entry.field("name");
    if (name == "appendToTimeline") {
        appended(entry, state);
    } else if (name == "removeInstanceWithRowId") {
        state.deleted[entry.field("instanceId")] = entry.index;
        const auto known = state.moments.find(entry.field("instanceId"));
        if (known != state.moments.end()) {
            forgetMoment(state, std::string_view(known->second.momentId));
        }
    } else if (entry.call != nullptr && entry.call->operation == Operation::create) {
        created(entry, state);
    } else if (entry.call != nullptr && entry.call->operation == Operation::remove) {
        removes(entry, state);
    }
    if (entry.call == nullptr || entry.call->pass == nullptr) {
        return;
    }
    Sent& sent = state.sent[entry.call->pass->number];
    if (entry.call->operation == Operation::create) {
        sent.created = entry.field("ids");
        sent.createdCount = entry.number("count");
    } else if (entry.call->operation == Operation::update) {
        sent.updatedCount = entry.number("count");
    } else if (entry.call->operation == Operation::remove) {
        sent.removed = entry.field("ids");
    } else {
        sent.hasSaved = true;
    }
}

void ContentsCheck::appended(const Entry& entry, State& state) {
    const std::string_view momentId = entry.field("momentId");
    const auto clip = state.clips.find(momentId);
    if (clip != state.clips.end() && isLiving(entry.synchroniser->stay.sessionId, momentId)) {
        const auto known = state.moments.find(clip->second);
        // While an alert held the main thread, an answer could not be taken note of.
        if (known != state.moments.end() && !entry.host->wasHeldSince(known->second.time)) {
            report_.add("appendedTwice", entry,
                        std::string(momentId) + " is appended, though the clip " + std::string(clip->second) +
                            " stands for it");
        }
    }
    if (entry.field("how") != "unplaced") {
        know(entry, state, entry.field("instanceId"), momentId);
        state.removed.erase(momentId);
    }
}

void ContentsCheck::created(const Entry& entry, State& state) {
    const Pass* const pass = entry.call->pass;
    if (pass == nullptr) {
        return;
    }
    for (const std::string_view clip : Ids(entry.field("ids"))) {
        const auto known = state.moments.find(clip);
        if (known != state.moments.end() && known->second.since < pass->start &&
            !entry.host->wasHeldSince(known->second.time) &&
            isLiving(entry.field("taggingSessionId"), known->second.momentId)) {
            report_.add("createdTwice", entry,
                        "the clip " + std::string(clip) + " is created again, though " +
                            std::string(known->second.momentId) + " stands for it");
        }
    }
}

void ContentsCheck::removes(const Entry& entry, State& state) {
    const Pass* const pass = entry.call->pass;
    for (const std::string_view momentId : Ids(entry.field("ids"))) {
        const auto removed = state.removed.find(momentId);
        if (pass != nullptr && removed != state.removed.end() && removed->second < pass->start &&
            !unclear_.contains(momentId)) {
            report_.add("removedTwice", entry, std::string(momentId) + " is removed again");
        }
    }
}

void ContentsCheck::answered(const Entry& entry, State& state) {
    const ReferenceHost::TraceEntry& call = *entry.call->entry;
    switch (entry.call->operation) {
    case Operation::create: {
        state.lastAnswer = entry.index;
        const Ids momentIds(entry.field("ids"));
        auto momentId = momentIds.begin();
        for (const std::string_view clip : Ids(call.field("ids"))) {
            if (momentId == momentIds.end()) {
                break;
            }
            // Deleted meanwhile, it has nowhere to keep the identifier.
            if (!state.deleted.contains(clip)) {
                know(entry, state, clip, *momentId);
            }
            ++momentId;
        }
        break;
    }
    case Operation::update:
        for (const std::string_view momentId : Ids(call.field("ids"))) {
            state.removed.erase(momentId);
        }
        break;
    case Operation::remove:
        if (entry.field("answer") == "true") {
            for (const std::string_view momentId : Ids(call.field("ids"))) {
                state.removed[momentId] = entry.index;
                forgetMoment(state, momentId);
            }
        }
        break;
    default:
        break;
    }
}

void ContentsCheck::started(const Entry& entry, State& state) {
    const auto* const read = entry.synchroniser->read;
    if (read == nullptr || state.moments.empty()) {
        return;
    }
    for (const std::string_view clip : Ids(read->field("deleted"))) {
        const auto known = state.moments.find(clip);
        if (known != state.moments.end() &&
            isLiving(entry.synchroniser->stay.sessionId, known->second.momentId)) {
            state.sent[entry.number("number")].mustRemove.push_back(known->second.momentId);
        }
    }
}

void ContentsCheck::ended(const Entry& entry, State& state) {
    const auto found = std::ranges::find(entry.synchroniser->passes, entry.number("number"), &Pass::number);
    if (found == entry.synchroniser->passes.end()) {
        return;
    }
    const Pass& pass = **found;
    const Sent sent = std::move(state.sent[pass.number]);
    state.sent.erase(pass.number);
    if (!pass.isAlone || pass.isUnsure || pass.read == nullptr || entry.field("succeeded") != "true") {
        return;
    }
    const Ids changed(pass.read->field("instances"));
    const auto number = std::ranges::distance(changed);
    if (sent.createdCount + sent.updatedCount < number) {
        report_.add("changesSent", entry,
                    std::to_string(number) + " clips have changed, " + std::to_string(sent.createdCount) +
                        " were created and " + std::to_string(sent.updatedCount) + " updated");
    }
    for (const std::string_view clip : Ids(sent.created)) {
        if (!changed.contain(clip)) {
            report_.add("changesSent", entry,
                        "the clip " + std::string(clip) + " is created, but has not changed");
        }
    }
    for (const std::string_view momentId : sent.mustRemove) {
        if (!unclear_.contains(momentId) && !Ids(sent.removed).contain(momentId)) {
            report_.add("changesSent", entry,
                        "the clip of " + std::string(momentId) + " was deleted, and this was not sent");
        }
    }
    if (!sent.removed.empty() && !sent.hasSaved) {
        report_.add("saveAfterRemoval", entry, "moments were removed, and the list of rows was not saved");
    }
}

}  // namespace Simulator::Conformance
