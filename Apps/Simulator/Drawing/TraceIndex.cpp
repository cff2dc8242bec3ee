#include "Apps/Simulator/Drawing/TraceIndex.hpp"

#include <algorithm>
#include <charconv>

namespace Simulator {

using ReferenceHost::TraceEntry;
namespace TraceKind = ReferenceHost::TraceKind;

namespace {

unsigned long numberFrom(std::string_view text) {
    unsigned long number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

}  // namespace

TraceIndex::TraceIndex(const TraceEntries& entries) {
    for (std::size_t index = 0; index < entries.size(); ++index) {
        add(index, entries[index]);
    }
}

void TraceIndex::add(std::size_t index, const TraceEntry& entry) {
    if (!entry.host.empty() && std::ranges::find(hosts_, entry.host) == hosts_.end()) {
        hosts_.push_back(entry.host);
    }
    const std::string_view number = entry.field("call");
    if (entry.kind == TraceKind::call && !number.empty()) {
        openCalls_[{entry.host, number}] = index;
    } else if (!number.empty()) {
        if (const auto call = openCalls_.find({entry.host, number}); call != openCalls_.end()) {
            callOf_[index] = call->second;
            if (entry.kind == TraceKind::answer) {
                answerOf_[call->second] = index;
            }
        }
        addEffect(entry);
    }
    const bool isUpload = entry.kind == TraceKind::uploadStart || entry.kind == TraceKind::uploadEnd;
    const std::pair<Key, std::string_view> span{{isUpload ? "upload" : "block", entry.field("timelineId")},
                                                entry.field("number")};
    if (entry.kind == TraceKind::blockStart || entry.kind == TraceKind::uploadStart) {
        openSpans_[span] = spans_.size();
        spanAt_[index] = spans_.size();
        spans_.push_back({index, std::nullopt, isUpload});
    } else if (entry.kind == TraceKind::blockEnd || entry.kind == TraceKind::uploadEnd) {
        if (const auto open = openSpans_.find(span); open != openSpans_.end()) {
            spans_[open->second].end = index;
            spanAt_[index] = open->second;
            openSpans_.erase(open);
        }
    }
}

// An effect tells the session's last change behind it: all changes since the one before are its own.
void TraceIndex::addEffect(const TraceEntry& entry) {
    const std::string_view session = entry.field("taggingSessionId");
    if (entry.kind != "effect" || session.empty()) {
        return;
    }
    const unsigned long last = numberFrom(entry.field("sequence"));
    for (unsigned long& known = known_[session]; known < last;) {
        authors_[{session, ++known}] = entry.host;
    }
}

std::optional<std::size_t> TraceIndex::callOf(std::size_t entry) const {
    const auto found = callOf_.find(entry);
    return found != callOf_.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<std::size_t> TraceIndex::answerOf(std::size_t call) const {
    const auto found = answerOf_.find(call);
    return found != answerOf_.end() ? std::optional(found->second) : std::nullopt;
}

std::string_view TraceIndex::authorOf(std::string_view sessionId, std::string_view sequence) const {
    const auto found = authors_.find({sessionId, numberFrom(sequence)});
    return found != authors_.end() ? found->second : std::string_view();
}

const TraceSpan* TraceIndex::spanAt(std::size_t entry) const {
    const auto found = spanAt_.find(entry);
    return found != spanAt_.end() ? &spans_[found->second] : nullptr;
}

}  // namespace Simulator
