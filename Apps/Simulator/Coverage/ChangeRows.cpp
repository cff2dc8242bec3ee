#include "Apps/Simulator/Coverage/ChangeRows.hpp"

#include <algorithm>
#include <array>

namespace Simulator {

namespace {

using Conformance::Block;
using Conformance::Entry;
using Conformance::Kind;

constexpr std::string_view knownAdded = "an added moment that is there already";
constexpr std::string_view unknownUpdated = "an updated moment that is not known";
constexpr std::string_view unknownDeleted = "a deleted moment that is not known";
constexpr std::string_view goneUpdated = "an updated moment whose clip is gone";
constexpr std::string_view deletionWithoutTarget = "a deletion without a coding target";
constexpr std::string_view rowsWithoutTarget = "a list of rows without a coding target";
constexpr std::string_view pullWithoutTarget = "a pull without a coding target";
constexpr std::string_view lateInsertion = "a row whose insertion is told later";
constexpr std::string_view afterEnd = "a change that is handled after the end of the session";

void setMember(std::vector<std::string_view>& set, std::string_view member, bool isMember) {
    std::erase(set, member);
    if (isMember) {
        set.push_back(member);
    }
}

}  // namespace

std::span<const std::string_view> ChangeRows::names() {
    static constexpr std::array all{knownAdded,        unknownUpdated,        unknownDeleted,
                                    goneUpdated,       deletionWithoutTarget, rowsWithoutTarget,
                                    pullWithoutTarget, lateInsertion,         afterEnd};
    return all;
}

void ChangeRows::see(const Entry& entry) {
    if (entry.kind == Kind::fault) {
        faulted(entry);
    }
    if (entry.synchroniser == nullptr) {
        return;
    }
    State& state = states_[*entry.synchroniser];
    switch (entry.kind) {
    case Kind::delivery:
        state.delivered.push_back(Delivery{entry.field("type"), entry.number("count")});
        break;
    case Kind::blockStart:
        if (entry.field("kind") == "event" && !state.delivered.empty()) {
            state.current = state.delivered.front();
            state.delivered.pop_front();
            state.done = 0;
        }
        break;
    case Kind::call:
        if (entry.call == nullptr) {
            called(entry, state);
        }
        break;
    case Kind::count:
        if (entry.field("reason") == "applied" && entry.synchroniser->block &&
            entry.synchroniser->block->work != Block::Work::event && hasNoTarget(entry)) {
            rows_.meet(pullWithoutTarget);
        }
        break;
    case Kind::blockEnd:
        if (entry.synchroniser->block && entry.synchroniser->block->work == Block::Work::event) {
            blockEnded(entry, state);
        }
        break;
    default:
        break;
    }
}

void ChangeRows::faulted(const Entry& entry) {
    const std::string_view what = entry.field("what");
    const bool begins = entry.field("state") == "begins";
    if (what == "withdrawCodingTarget" && begins) {
        setMember(withoutTarget_, entry.field("timelineId"), true);
    } else if (what == "withdrawCodingTarget") {
        // The end does not say of which timeline: it is the analyst's.
        std::erase_if(withoutTarget_, [&](std::string_view timelineId) {
            return std::ranges::any_of(entry.host->synchronisers,
                                       [&](const auto* one) { return one->stay.timelineId == timelineId; });
        });
    } else if (what == "insertionsComeLater") {
        setMember(lateInsertions_, entry.raw.host, begins);
    }
}

bool ChangeRows::hasNoTarget(const Entry& entry) const {
    return std::ranges::find(withoutTarget_, entry.synchroniser->stay.timelineId) != withoutTarget_.end();
}

void ChangeRows::called(const Entry& entry, State& state) {
    const std::string_view name = entry.field("name");
    state.done +=
        name == "appendToTimeline" || name == "updateOnTimeline" || name == "removeInstanceWithRowId" ? 1 : 0;
    if (name == "updateOnTimeline" && entry.field("found") == "false") {
        rows_.meet(goneUpdated);
    } else if (name == "insertRowWithName" &&
               std::ranges::find(lateInsertions_, entry.raw.host) != lateInsertions_.end()) {
        rows_.meet(lateInsertion);
    }
}

void ChangeRows::blockEnded(const Entry& entry, const State& state) {
    if (entry.synchroniser->isCancelled) {
        rows_.meet(afterEnd);
        return;
    }
    const std::string_view type = state.current.type;
    if (hasNoTarget(entry) && (type == "momentsDeleted" || type == "presentationViewUpdated")) {
        rows_.meet(type == "momentsDeleted" ? deletionWithoutTarget : rowsWithoutTarget);
    } else if (state.done < state.current.moments && type != "unknown") {
        rows_.meet(type == "momentsAdded"     ? knownAdded
                   : type == "momentsUpdated" ? unknownUpdated
                                              : unknownDeleted);
    }
}

}  // namespace Simulator
