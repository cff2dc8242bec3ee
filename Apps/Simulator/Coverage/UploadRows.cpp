#include "Apps/Simulator/Coverage/UploadRows.hpp"

#include "Apps/Simulator/Conformance/Ids.hpp"

#include <algorithm>
#include <array>

namespace Simulator {

namespace {

using Conformance::Block;
using Conformance::Entry;
using Conformance::Ids;
using Conformance::Kind;
using Conformance::Operation;

constexpr std::string_view nothing = "an upload with nothing to send";
constexpr std::string_view noSession = "an upload without a tagging session";
constexpr std::string_view noTimeline = "an upload of a timeline that is closed";
constexpr std::string_view unsentClip = "a clip that was deleted before it was sent";
constexpr std::string_view unsentRow = "a row that was removed before it was sent";
constexpr std::string_view createdThenFailed = "a step that fails after clips were created";
constexpr std::string_view sentAsUpdate = "clips of an upload that has failed, sent again as updates";
constexpr std::string_view fewIds = "fewer identifiers than created clips";
constexpr std::string_view deletedMeanwhile = "a created clip that was deleted before its identifier came";
constexpr std::string_view closedMeanwhile =
    "created clips whose timeline was closed before their identifiers came";
constexpr std::string_view overlap = "two uploads at the same time";
constexpr std::string_view fallsBack = "an upload after which the count falls back";

}  // namespace

std::span<const std::string_view> UploadRows::names() {
    static constexpr std::array all{nothing,          noSession,         noTimeline,   unsentClip,
                                    unsentRow,        createdThenFailed, sentAsUpdate, fewIds,
                                    deletedMeanwhile, closedMeanwhile,   overlap,      fallsBack};
    return all;
}

void UploadRows::see(const Entry& entry) {
    if (entry.synchroniser == nullptr) {
        return;
    }
    State& state = states_[*entry.synchroniser];
    switch (entry.kind) {
    case Kind::call:
        if (entry.call != nullptr) {
            called(entry, state);
        }
        break;
    case Kind::answer:
        if (Conformance::grantsCall(entry)) {
            answered(entry, state);
        }
        break;
    case Kind::uploadStart:
        state.hasUploaded = true;
        if (!entry.synchroniser->passes.empty()) {
            rows_.meet(overlap);
        }
        break;
    case Kind::uploadEnd:
        if (const auto created = state.created.extract(entry.number("number"));
            !created.empty() && entry.field("succeeded") == "false") {
            rows_.meet(createdThenFailed);
            for (const std::string_view momentId : Ids(created.mapped())) {
                state.halfSent.insert(momentId);
            }
        }
        break;
    case Kind::count:
        if (entry.field("reason") == "uploaded" && entry.number("new") < entry.number("old")) {
            rows_.meet(fallsBack);
        }
        break;
    case Kind::blockStart:
        state.hasUploaded = false;
        break;
    case Kind::blockEnd:
        blockEnded(entry, state);
        break;
    case Kind::edit:
        edited(entry, state);
        break;
    default:
        break;
    }
}

void UploadRows::called(const Entry& entry, State& state) {
    const auto& passes = entry.synchroniser->passes;
    switch (entry.call->operation) {
    case Operation::create:
        state.lastCreator = passes.empty() ? 0 : passes.back()->number;
        for (const std::string_view clip : Ids(entry.field("ids"))) {
            sent_.insert(clip);
        }
        break;
    case Operation::update: {
        const Ids momentIds(entry.field("ids"));
        if (std::ranges::any_of(momentIds,
                                [&](std::string_view id) { return state.halfSent.erase(id) > 0; })) {
            rows_.meet(sentAsUpdate);
        }
        break;
    }
    case Operation::save:
        state.lastSave = entry.index;
        break;
    default:
        break;
    }
}

void UploadRows::answered(const Entry& entry, State& state) {
    if (entry.call->operation != Operation::create) {
        return;
    }
    const ReferenceHost::TraceEntry& call = *entry.call->entry;
    state.created[state.lastCreator] = entry.field("ids");
    if (entry.number("count") < Conformance::numberIn(call.field("count"))) {
        rows_.meet(fewIds);
    }
    if (entry.host->isClosed(entry.synchroniser->stay.timelineId)) {
        rows_.meet(closedMeanwhile);
    }
    const Ids clips(call.field("ids"));
    if (std::ranges::any_of(clips, [&](std::string_view clip) {
            const auto deletion = deleted_.find(clip);
            return deletion != deleted_.end() && deletion->second > entry.call->index;
        })) {
        rows_.meet(deletedMeanwhile);
    }
}

void UploadRows::blockEnded(const Entry& entry, const State& state) {
    const Conformance::Synchroniser& synchroniser = *entry.synchroniser;
    if (!synchroniser.block || synchroniser.block->work != Block::Work::upload || state.hasUploaded) {
        return;
    }
    rows_.meet(synchroniser.stay.sessionId.empty()                  ? noSession
               : entry.host->isClosed(synchroniser.stay.timelineId) ? noTimeline
                                                                    : nothing);
}

void UploadRows::edited(const Entry& entry, const State& state) {
    const std::string_view what = entry.field("what");
    const std::string_view row = entry.field("row");
    if (what.starts_with("delete")) {
        const std::string_view clip = entry.field("clip");
        deleted_[clip] = entry.index;
        if (entry.field("moment").empty() && !sent_.contains(clip)) {
            rows_.meet(unsentClip);
        }
    } else if (what == "addRow") {
        rowsMade_[row] = entry.index;
    } else if (what == "removeRow") {
        for (const std::string_view clip : Ids(entry.field("clips"))) {
            deleted_[clip] = entry.index;
        }
        const auto made = rowsMade_.find(row);
        if (made != rowsMade_.end() && made->second > state.lastSave) {
            rows_.meet(unsentRow);
        }
    }
}

}  // namespace Simulator
