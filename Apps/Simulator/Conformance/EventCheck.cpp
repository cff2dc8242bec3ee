#include "Apps/Simulator/Conformance/EventCheck.hpp"

#include <string>
#include <utility>

namespace Simulator::Conformance {

namespace {

constexpr std::string_view received = "Received timeline update. ChangeType=";
constexpr std::string_view uploadsFirst =
    "Uploading local timeline updates before applying timeline update from subscription";
constexpr std::string_view noTimeline = "Unable to find the timeline";
constexpr std::string_view noMoments = "No moments found for update to tagging session moments.";
constexpr std::string_view noView =
    "No presentation view found for update to tagging session presentation view.";
constexpr std::string_view unknownType = "Unknown change type for tagging session update";

bool isEventOf(const Synchroniser& synchroniser) {
    return synchroniser.block && synchroniser.block->work == Block::Work::event;
}

}  // namespace

void EventCheck::see(const Entry& entry) {
    if (const auto* const synchroniser = std::exchange(mustStart_, nullptr)) {
        const bool starts = entry.kind == Kind::blockStart && entry.synchroniser == synchroniser;
        if (!starts) {
            report_.add("eventBlock", entry,
                        "a change was delivered to an idle synchroniser, and no block begins");
        }
    }
    if (const auto* const synchroniser = std::exchange(mustTell_, nullptr)) {
        const State& state = states_[*synchroniser];
        if (entry.kind != Kind::info || !entry.message().starts_with(received) ||
            entry.message().substr(received.size()) != state.current.type) {
            report_.add("eventOrder", entry,
                        "the block is not about the change that was delivered first, " +
                            std::string(state.current.type));
        }
    }
    switch (entry.kind) {
    case Kind::delivery:
        if (entry.synchroniser != nullptr) {
            states_[*entry.synchroniser].delivered.push_back(
                Delivery{entry.field("type"), !entry.field("ids").empty()});
            mustStart_ = entry.synchroniser->block ? nullptr : entry.synchroniser;
        }
        break;
    case Kind::blockStart:
        started(entry);
        break;
    case Kind::blockEnd:
        ended(entry);
        break;
    case Kind::info:
    case Kind::warning:
    case Kind::error:
        readLine(entry);
        break;
    case Kind::uploadStart:
        if (entry.synchroniser != nullptr && isEventOf(*entry.synchroniser)) {
            states_[*entry.synchroniser].hasUploaded = true;
        }
        break;
    case Kind::count:
        if (entry.synchroniser != nullptr && entry.field("reason") == "applied" &&
            isEventOf(*entry.synchroniser)) {
            State& state = states_[*entry.synchroniser];
            ++state.applied;
            if (state.isBehind && !state.hasUploaded && countsAreKnown_) {
                report_.add("uploadBeforeApply", entry,
                            "a change is applied over edits that are not being sent");
            }
        }
        break;
    default:
        break;
    }
}

void EventCheck::started(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr || entry.field("kind") != "event") {
        return;
    }
    State& state = states_[*synchroniser];
    if (state.delivered.empty()) {
        report_.add("eventBlock", entry, "an event block begins without a delivered change");
        return;
    }
    state.current = state.delivered.front();
    state.delivered.pop_front();
    state.applied = 0;
    state.isBehind =
        synchroniser->lastModifyCount < synchroniser->host.modifyCountOf(synchroniser->stay.timelineId);
    state.hasUploaded = false;
    state.complaint = {};
    mustTell_ = running_ = synchroniser;
}

// All of a block's lines stand between its beginning and its end, and nobody else's: it is one job.
void EventCheck::readLine(const Entry& entry) {
    if (running_ == nullptr) {
        return;
    }
    State& state = states_[*running_];
    const std::string_view message = entry.message();
    if (message == noTimeline || message == noMoments || message == noView || message == unknownType) {
        state.complaint = message;
    } else if (message == uploadsFirst && !state.isBehind && countsAreKnown_) {
        report_.add("uploadBeforeApply", entry, "an upload before a change, though nothing is unsent");
    }
}

void EventCheck::ended(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser == nullptr || !isEventOf(*synchroniser)) {
        return;
    }
    running_ = nullptr;
    const State& state = states_[*synchroniser];
    const std::string type(state.current.type);
    const bool isDropped =
        synchroniser->isCancelled || (!state.complaint.empty() && state.complaint != unknownType);
    if (state.applied != (isDropped ? 0 : 1)) {
        report_.add("eventApplied", entry,
                    "a change of the kind " + type + " was applied " + std::to_string(state.applied) +
                        " times");
    }
    // What it complains of must be so. A list of rows is not in the trace.
    const bool hasNoMoments = type.starts_with("moments") && !state.current.holdsMoments;
    const bool isUnderstood = !isDropped || state.complaint == noMoments;
    if (isUnderstood && !synchroniser->isCancelled &&
        ((state.complaint == noMoments) != hasNoMoments ||
         (state.complaint == unknownType) != (type == "unknown"))) {
        report_.add("eventComplaint", entry,
                    "a change of the kind " + type + " is answered by \"" + std::string(state.complaint) +
                        '"');
    }
    if (!isSameMoment(entry.time(), synchroniser->block->time)) {
        report_.add("eventWaits", entry, "applying a change took time: it waited for something");
    }
}

void EventCheck::settled(const Entry& entry, const std::deque<Synchroniser>& synchronisers) {
    for (const Synchroniser& synchroniser : synchronisers) {
        if (!synchroniser.isCancelled && !synchroniser.sharesTimeline &&
            !states_[synchroniser].delivered.empty()) {
            report_.add("eventBlock", entry,
                        synchroniser.stay.analyst + ": a delivered change was never handled");
        }
    }
}

}  // namespace Simulator::Conformance
