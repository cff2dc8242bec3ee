// The calls of the synchronisers: what they ask, what the cloud makes of it, and what it answers.

#include "Apps/Simulator/Outcome/TraceReader.hpp"

#include "Apps/Simulator/Outcome/EntryValues.hpp"

#include <algorithm>

namespace Simulator {

using ReferenceHost::AcceptedCall;
using ReferenceHost::CloudOperation;

namespace {

bool isOfTarget(std::string_view name) {
    return name == "removeInstanceWithRowId" || name == "setRowNameWithRowNum" ||
           name == "setRowColorWithRowId" || name == "insertRowWithName" || name == "rearrangeRowsFrom" ||
           name == "removeRowWithRowId";
}

/// Whether the cloud's log entry is of just these objects.
bool isAbout(const AcceptedCall& accepted, const Call& call) {
    const auto same = [&](const auto& listed, const auto& idOf) {
        return std::ranges::equal(listed, call.ids, {}, idOf);
    };
    switch (accepted.operation) {
    case CloudOperation::createMoments:
        return same(accepted.drafts, [](const auto& draft) { return std::string_view(draft.instanceId); });
    case CloudOperation::updateMoments:
        return same(accepted.drafts, [](const auto& draft) {
            return draft.externalId ? std::string_view(*draft.externalId) : std::string_view();
        });
    case CloudOperation::removeMoments:
        return same(accepted.momentIds, [](const auto& id) { return std::string_view(id); });
    default:
        return true;
    }
}

}  // namespace

/// Whose fetch begins: of several, the one of the latest stay, as a synchroniser that was cancelled does not fetch.
std::size_t TraceReader::pullingStay(std::string_view analyst) const {
    std::size_t stay = never;
    for (std::size_t index = 0; index < running_.size(); ++index) {
        if (running_[index].pulls && history_.stays[index].stay->analyst == analyst) {
            stay = index;
        }
    }
    return stay;
}

void TraceReader::readCall(std::size_t at, const Entry& entry) {
    const std::string_view name = entry.field("name");
    const std::string_view timelineId = entry.field("timelineId");
    if (name == "appendToTimeline" || name == "updateOnTimeline") {
        const std::string_view how = entry.field("how");
        const bool found = entry.field("found") == "true";
        history_.moments[entry.field("momentId")].placements.push_back(
            {at, stayOf(at, timelineId), entry.field("instanceId"),
             !how.empty() ? how
             : found      ? std::string_view("updated")
                          : std::string_view("notFound")});
        return;
    }
    if (name == "openLiveShareWithShareFiles") {
        const auto next = std::ranges::find_if(history_.stays, [&](const StayHistory& stay) {
            return stay.stay->analyst == entry.host && stay.stay->from > at;
        });
        if (next != history_.stays.end()) {
            next->joining = at;
        }
        return;
    }
    if (name == "subscribeToTaggingSessionChanges") {
        subscriptions_[{entry.host, entry.field("subscription")}] = stayOf(at, timelineId);
        return;
    }
    if (name == "fetchTaggingSessions") {
        pulling_[{entry.host, entry.field("call")}] = pullingStay(entry.host);
        return;
    }
    const std::size_t stay = stayOf(at, timelineId, entry.field("taggingSessionId"));
    if (isOfTarget(name)) {
        if (stay != never) {
            history_.stays[stay].target.push_back(at);
        }
    } else if (isWriteOfClipsOrRows(name)) {
        Call call;
        call.at = at;
        call.stay = stay;
        call.name = name;
        call.ids = parts(entry.field("ids"));
        calls_[{entry.host, entry.field("call")}] = history_.calls.size();
        if (stay != never) {
            history_.stays[stay].calls.push_back(history_.calls.size());
        }
        history_.calls.push_back(std::move(call));
    }
}

void TraceReader::readEffect(std::size_t at, const Entry& entry) {
    if (entry.field("name") == "fetchTaggingSessions") {
        fetches_[{entry.host, entry.field("call")}] = number<std::uint64_t>(entry.field("sequence"));
        return;
    }
    const auto found = calls_.find({entry.host, entry.field("call")});
    if (found == calls_.end()) {
        return;
    }
    Call& call = history_.calls[found->second];
    const AcceptedCall* accepted = acceptedCall(call, entry);
    if (call.accepted == nullptr) {
        call.effect = at;
        call.accepted = accepted;
    }
}

const AcceptedCall* TraceReader::acceptedCall(const Call& call, const Entry& effect) {
    const auto session = history_.record.sessions.find(std::string(effect.field("taggingSessionId")));
    if (session == history_.record.sessions.end()) {
        return nullptr;
    }
    // The effects stand in the order of the log. One that the cloud has refused is not in it.
    std::size_t& matched = logs_[&session->second];
    if (matched == session->second.log.size()) {
        return nullptr;
    }
    const AcceptedCall& next = session->second.log[matched];
    const bool isThis = nameOf(next.operation) == call.name &&
                        next.sequenceAfter == number<std::uint64_t>(effect.field("sequence")) &&
                        isAbout(next, call);
    if (!isThis) {
        return nullptr;
    }
    ++matched;
    return &next;
}

void TraceReader::readAnswer(std::size_t at, const Entry& entry) {
    if (entry.field("name") == "fetchTaggingSessions") {
        const auto fetch = fetches_.find({entry.host, entry.field("call")});
        const auto stay = pulling_.find({entry.host, entry.field("call")});
        if (fetch != fetches_.end() && stay != pulling_.end() && stay->second != never &&
            entry.field("error").empty()) {
            running_[stay->second].fetched = fetch->second;
        }
        return;
    }
    const auto found = calls_.find({entry.host, entry.field("call")});
    if (found != calls_.end()) {
        Call& call = history_.calls[found->second];
        call.answered = at;
        call.failed = !entry.field("error").empty();
        call.isFalse = entry.field("answer") == "false";
        call.answer = parts(entry.field("ids"));
    }
}

}  // namespace Simulator
