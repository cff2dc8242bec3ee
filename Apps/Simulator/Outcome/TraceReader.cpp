#include "Apps/Simulator/Outcome/TraceReader.hpp"

#include "Apps/Simulator/Outcome/EntryValues.hpp"

#include <algorithm>

namespace Simulator {

namespace TraceKind = ReferenceHost::TraceKind;

namespace {

EditKind kindOf(std::string_view what) {
    constexpr std::pair<std::string_view, EditKind> kinds[] = {
        {"tag", EditKind::tag},
        {"retime", EditKind::retime},
        {"note", EditKind::note},
        {"delete", EditKind::removeClip},
        {"undoDelete", EditKind::restoreClip},
        {"addRow", EditKind::addRow},
        {"renameRow", EditKind::renameRow},
        {"recolorRow", EditKind::recolorRow},
        {"moveRow", EditKind::moveRow},
        {"removeRow", EditKind::removeRow},
        {"undoRemoveRow", EditKind::restoreRow},
    };
    const auto found =
        std::ranges::find_if(kinds, [&](const auto& kind) { return what.starts_with(kind.first); });
    return found != std::end(kinds) ? found->second : EditKind::tag;
}

}  // namespace

TraceReader::TraceReader(History& history) : history_(history), running_(history.stays.size()) {
    for (std::size_t index = 0; index < history.stays.size(); ++index) {
        staysOf_[history.stays[index].stay->timelineId].push_back(index);
    }
}

void TraceReader::read() {
    // The end was looked at when everybody was idle. What is sent when they leave afterwards comes too late for it.
    const Record& record = history_.record;
    const std::size_t end = record.settled > 0 ? record.settled : record.trace.size();
    for (std::size_t at = 0; at < end; ++at) {
        readEntry(at, history_.record.trace[at]);
    }
    for (auto& [host, spans] : history_.withoutTarget) {
        for (auto& [from, to] : spans) {
            to = std::min(to, history_.record.trace.size());
        }
    }
}

void TraceReader::readEntry(std::size_t at, const Entry& entry) {
    const std::string_view kind = entry.kind;
    if (kind == TraceKind::call) {
        readCall(at, entry);
    } else if (kind == "effect") {
        readEffect(at, entry);
    } else if (kind == TraceKind::answer) {
        readAnswer(at, entry);
    } else if (kind == "delivery") {
        readDelivery(entry);
    } else if (kind == TraceKind::blockStart || kind == TraceKind::blockEnd) {
        readBlock(at, entry);
    } else if (kind == TraceKind::count) {
        readCount(at, entry);
    } else if (kind == TraceKind::uploadStart || kind == TraceKind::uploadEnd) {
        readUpload(at, entry);
    } else if (kind == SimulatedKind::edit) {
        readEdit(at, entry);
    } else if (kind == SimulatedKind::fault) {
        readFault(at, entry);
    }
}

std::size_t TraceReader::stayOf(std::size_t at, std::string_view timelineId,
                                std::string_view sessionId) const {
    const auto found = staysOf_.find(timelineId);
    std::size_t stay = never;
    if (found != staysOf_.end()) {
        for (const std::size_t index : found->second) {
            const Stay& candidate = *history_.stays[index].stay;
            if (candidate.from <= at && (sessionId.empty() || candidate.sessionId == sessionId)) {
                stay = index;
            }
        }
    }
    return stay;
}

void TraceReader::readDelivery(const Entry& entry) {
    const auto stay = subscriptions_.find({entry.host, entry.field("subscription")});
    if (stay != subscriptions_.end() && stay->second != never) {
        running_[stay->second].delivered.push_back(number<std::uint64_t>(entry.field("sequence")));
    }
}

void TraceReader::readBlock(std::size_t at, const Entry& entry) {
    const auto stays = staysOf_.find(entry.field("timelineId"));
    if (stays == staysOf_.end()) {
        return;
    }
    // Blocks of a synchroniser that was cancelled may run beside those of its successor: whose number goes on with this one?
    const auto block = number<std::uint64_t>(entry.field("number"));
    const bool starts = entry.kind == TraceKind::blockStart;
    std::size_t chosen = never;
    for (const std::size_t index : stays->second) {
        const std::uint64_t last = running_[index].lastBlock;
        const bool fits = starts ? last < block : last == block;
        if (history_.stays[index].stay->from <= at && fits &&
            (chosen == never || last >= running_[chosen].lastBlock)) {
            chosen = index;
        }
    }
    if (chosen == never) {
        return;
    }
    Running& running = running_[chosen];
    running.event.reset();
    running.pulls = false;
    if (!starts) {
        return;
    }
    running.lastBlock = block;
    running.blockStart = at;
    const std::string_view kind = entry.field("kind");
    if (kind == "event" && !running.delivered.empty()) {
        running.event = running.delivered.front();
        running.delivered.pop_front();
    } else if (kind == "pull" || kind == "reconnection") {
        running.pulls = true;
    }
}

void TraceReader::readCount(std::size_t at, const Entry& entry) {
    const std::size_t stay = stayOf(at, entry.field("timelineId"));
    if (stay == never) {
        return;
    }
    StayHistory& history = history_.stays[stay];
    history.counts.push_back(at);
    if (entry.field("reason") == "applied") {
        const Running& running = running_[stay];
        history.arrivals.push_back(
            {running.blockStart, at, !running.event, running.event.value_or(running.fetched)});
    }
}

/// The synchroniser of an earlier session of the timeline may still be at work: the upload's first call tells whose it is.
std::size_t TraceReader::stayOfUpload(std::size_t at, const Entry& start) const {
    const std::string_view timelineId = start.field("timelineId");
    const auto& trace = history_.record.trace;
    for (std::size_t index = at + 1; index < trace.size(); ++index) {
        const Entry& entry = trace[index];
        if (entry.field("timelineId") != timelineId) {
            continue;
        }
        if (entry.kind == TraceKind::call && isWriteOfClipsOrRows(entry.field("name"))) {
            return stayOf(at, timelineId, entry.field("taggingSessionId"));
        }
        if (entry.kind == TraceKind::uploadStart || entry.kind == TraceKind::uploadEnd) {
            break;
        }
    }
    return stayOf(at, timelineId);
}

void TraceReader::readUpload(std::size_t at, const Entry& entry) {
    const std::string_view upload = entry.field("number");
    if (entry.kind == TraceKind::uploadStart) {
        const std::size_t stay = stayOfUpload(at, entry);
        if (stay != never) {
            history_.stays[stay].uploads.push_back({at, never, upload,
                                                    number<std::int64_t>(entry.field("first")),
                                                    number<std::int64_t>(entry.field("last")), false});
        }
        return;
    }
    const auto stays = staysOf_.find(entry.field("timelineId"));
    if (stays == staysOf_.end()) {
        return;
    }
    for (const std::size_t index : stays->second) {
        for (Upload& candidate : history_.stays[index].uploads) {
            if (candidate.number == upload && candidate.end == never) {
                candidate.end = at;
                candidate.succeeded = entry.field("succeeded") == "true";
                return;
            }
        }
    }
}

void TraceReader::readEdit(std::size_t at, const Entry& entry) {
    UserEdit edit;
    edit.at = at;
    edit.kind = kindOf(entry.field("what"));
    edit.analyst = entry.host;
    edit.timelineId = entry.field("timelineId");
    edit.count = number<std::int64_t>(entry.field("count"));
    edit.row = entry.field("row");
    edit.name = entry.field("name");
    edit.oldName = entry.field("oldName");
    edit.color = entry.field("color");
    edit.above = entry.field("above");
    edit.isFirst = entry.field("to") == "0";
    edit.start = number<double>(entry.field("start"));
    edit.end = number<double>(entry.field("end"));
    edit.notes = entry.field("notes");
    if (const std::string_view clip = entry.field("clip"); !clip.empty()) {
        edit.clips = {clip};
        edit.moments = {entry.field("moment")};
    } else {
        edit.clips = parts(entry.field("clips"));
        edit.moments = parts(entry.field("moments"));
        edit.moments.resize(edit.clips.size());
    }
    const std::size_t stay = stayOf(at, edit.timelineId);
    if (stay != never && (at < history_.stays[stay].stay->to || history_.stays[stay].stay->to == 0)) {
        edit.stay = stay;
        history_.stays[stay].edits.push_back(history_.edits.size());
    }
    history_.edits.push_back(std::move(edit));
}

void TraceReader::readFault(std::size_t at, const Entry& entry) {
    if (entry.field("what") != "withdrawCodingTarget") {
        return;
    }
    auto& spans = history_.withoutTarget[entry.host];
    if (entry.field("state") == "begins") {
        spans.emplace_back(at, never);
    } else if (!spans.empty()) {
        spans.back().second = at;
    }
}

}  // namespace Simulator
