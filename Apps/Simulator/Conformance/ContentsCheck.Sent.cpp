#include "Apps/Simulator/Conformance/ContentsCheck.hpp"

#include "Apps/Simulator/Conformance/Ids.hpp"

#include <algorithm>
#include <string>
#include <utility>

namespace Simulator::Conformance {

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
