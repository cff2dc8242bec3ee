#include "Apps/Simulator/Drawing/EntryWords.hpp"

#include "Apps/Simulator/Record.hpp"

#include <algorithm>
#include <cstdio>
#include <initializer_list>

namespace Simulator {

namespace TraceKind = ReferenceHost::TraceKind;

namespace {

using ReferenceHost::TraceEntry;

std::string quoted(std::string_view text) { return "“" + std::string(text) + "”"; }

/// The field behind a word, where the entry has it and it says something.
std::string with(const char* words, const TraceEntry& entry, std::string_view name) {
    const std::string_view value = entry.field(name);
    return value.empty() ? std::string() : words + std::string(value);
}

/// A list of ids behind a word, with blanks for lines to be broken at.
std::string list(const char* words, const TraceEntry& entry, std::string_view name) {
    std::string text = with(words, entry, name);
    std::ranges::replace(
        text.begin() + static_cast<std::ptrdiff_t>(std::min(std::string_view(words).size(), text.size())),
        text.end(), ',', ' ');
    return text;
}

/// All fields but those that are named, or empty.
std::string fieldsBut(const TraceEntry& entry, std::initializer_list<std::string_view> told) {
    std::string text;
    for (const auto& [name, value] : entry.fields) {
        if (!value.empty() && std::ranges::find(told, std::string_view(name)) == told.end()) {
            text += ' ' + name + ' ' + value;
        }
    }
    return text;
}

std::string lasting(Base::Seconds time) {
    char text[32] = {};
    std::snprintf(text, sizeof text, "%.3f s", time.count());
    return text;
}

}  // namespace

std::string EntryWords::of(std::size_t at) const {
    const Entry& entry = entries_[at];
    std::string text;
    if (entry.kind == TraceKind::call) {
        text = ofCall(at);
    } else if (entry.kind == TraceKind::answer) {
        text = ofAnswer(at);
    } else if (entry.kind == "delivery") {
        text = ofDelivery(entry);
    } else if (entry.kind == SimulatedKind::edit) {
        text = ofEdit(entry);
    } else if (text = ofSynchroniser(entry); text.empty()) {
        text = ofSimulator(entry);
    }
    return ids_.shorten(text.empty() ? ofAnythingElse(entry) : text);
}

std::string EntryWords::ofCall(std::size_t at) const {
    const Entry& entry = entries_[at];
    const std::string name(entry.field("name"));
    const std::string number(entry.field("call"));
    if (number.empty()) {
        return "∙ " + ofHostCall(entry);
    }
    std::string text = "→ " + number + ' ' + name;
    text += with(" ×", entry, "count") + with(" subscription ", entry, "subscription");
    text += list(": ", entry, "ids");
    const bool isAnswered = !entry.field("subscription").empty() || index_.answerOf(at);
    return isAnswered ? text : text + " (never answered)";
}

/// What the component, or the sync library for it, does at its own host.
std::string EntryWords::ofHostCall(const Entry& entry) {
    const std::string name(entry.field("name"));
    if (name == "appendToTimeline") {
        return with("", entry, "momentId") + with(" appended as ", entry, "instanceId") +
               with(", ", entry, "how");
    }
    if (name == "updateOnTimeline") {
        return with("", entry, "momentId") + with(" updates ", entry, "instanceId") +
               (entry.field("found") == "true" ? "" : ", which is not there");
    }
    if (name == "timelineFromModifyCount") {
        return "changes of counts" + with(" ", entry, "from") + with("–", entry, "modifyCount") +
               with(": rows ", entry, "rows") + list(", clips ", entry, "instances") +
               list(", deleted ", entry, "deleted");
    }
    std::string text = name;
    for (const auto& [key, value] : entry.fields) {
        if (key == "rowName") {
            text += ' ' + quoted(value);
        } else if (key != "name" && key != "timelineId" && !value.empty()) {
            text += ' ' + key + ' ' + value;
        }
    }
    return text;
}

std::string EntryWords::ofAnswer(std::size_t at) const {
    const Entry& entry = entries_[at];
    const std::string_view error = entry.field("error");
    const bool isGood = error.empty() && entry.field("answer") != "false";
    std::string text =
        (isGood ? "✓ " : "✗ ") + std::string(entry.field("call")) + ' ' + std::string(entry.field("name"));
    if (const auto call = index_.callOf(at)) {
        text += ' ' + lasting(entry.time - entries_[*call].time);
    }
    if (entry.field("answer") == "false") {
        text += " false";
    }
    text += error.empty() ? "" : ": " + std::string(error);
    return text + list(": ", entry, "ids") + with(" moments ", entry, "moments");
}

std::string EntryWords::ofDelivery(const Entry& entry) const {
    const auto author = index_.authorOf(entry.field("taggingSessionId"), entry.field("sequence"));
    std::string text = "← change " + std::string(entry.field("sequence"));
    text += author == entry.host ? " (own)" : author.empty() ? "" : " of " + std::string(author);
    return text + with(" ", entry, "type") + list(": ", entry, "ids");
}

std::string EntryWords::ofSynchroniser(const Entry& entry) {
    const std::string number(entry.field("number"));
    if (entry.kind == TraceKind::blockStart) {
        return "block " + number + ' ' + std::string(entry.field("kind"));
    }
    if (entry.kind == TraceKind::blockEnd) {
        return "end of block " + number;
    }
    if (entry.kind == TraceKind::uploadStart) {
        return "upload " + number + " of counts" + with(" ", entry, "first") + with("–", entry, "last");
    }
    if (entry.kind == TraceKind::uploadEnd) {
        return (entry.field("succeeded") == "true" ? "✓ upload " : "✗ upload ") + number;
    }
    if (entry.kind == TraceKind::count) {
        return "count" + with(" ", entry, "old") + with(" → ", entry, "new") + with(" ", entry, "reason");
    }
    if (entry.kind == "effect") {
        return "● " + std::string(entry.field("call")) + " takes effect" +
               with(": change ", entry, "sequence");
    }
    if (entry.kind == TraceKind::logWarn || entry.kind == TraceKind::logError) {
        return (entry.kind == TraceKind::logWarn ? "! " : "!! ") + std::string(entry.field("message")) +
               with(": ", entry, "detail");
    }
    return {};
}

std::string EntryWords::ofSimulator(const Entry& entry) {
    if (entry.kind == SimulatedKind::step) {
        const auto amount = entry.field("amount");
        return "▸ step" + with(" ", entry, "number") + with(" ", entry, "action") +
               (amount == "0" ? "" : with(" ", entry, "amount")) + with(", passed over: ", entry, "skipped");
    }
    if (entry.kind == SimulatedKind::fault) {
        return "fault " + std::string(entry.field("state")) + ":" + with(" ", entry, "what") +
               fieldsBut(entry, {"state", "what"});
    }
    if (entry.kind == SimulatedKind::stay) {
        return "stay " + std::string(entry.field("state")) + with(" as ", entry, "role") +
               with(": ", entry, "sessionId") + with(", timeline ", entry, "timelineId");
    }
    if (entry.kind == SimulatedKind::stage) {
        return std::string(entry.field("name"));
    }
    if (entry.kind == "link") {
        return entry.field("up") == "true" ? "link up" : "link down";
    }
    if (entry.kind == "subscription") {
        return "subscription" + with(" ", entry, "subscription") + with(" ", entry, "state") +
               with(", from change ", entry, "after") + with(": ", entry, "error");
    }
    return {};
}

std::string EntryWords::ofEdit(const Entry& entry) {
    std::string text = "✎ " + std::string(entry.field("what"));
    if (const auto name = entry.field("name"); !name.empty()) {
        text += ' ' + quoted(name);
    }
    if (const auto oldName = entry.field("oldName"); !oldName.empty()) {
        text += " was " + quoted(oldName);
    }
    text += with(" clip ", entry, "clip") + with(" moment ", entry, "moment");
    text += with(" ", entry, "start") + with("–", entry, "end");
    if (const auto notes = entry.field("notes"); !notes.empty()) {
        text += ' ' + quoted(notes);
    }
    const auto clip = entry.field("clip");
    text += clip.empty() ? with(" row ", entry, "row") : "";
    text += list(" clips ", entry, "clips") + list(" moments ", entry, "moments");
    return text + with(" to ", entry, "to") + with(" color ", entry, "color") +
           with(" · count ", entry, "count");
}

std::string EntryWords::ofAnythingElse(const Entry& entry) {
    const bool isFault = entry.kind == TraceKind::wrongThread || entry.kind == TraceKind::observerFailed;
    return (isFault ? "!! " : "") + entry.kind + fieldsBut(entry, {});
}

}  // namespace Simulator
