#include "Apps/Simulator/Conformance/ApplyCheck.hpp"

#include <algorithm>
#include <array>
#include <string>

namespace Simulator::Conformance {

namespace {

constexpr std::string_view received = "Received timeline update. ChangeType=";

/// What the component does to a timeline, in the order of doing, and for which kind of change.
struct Deed {
    std::string_view call;
    int phase;
    std::string_view type;
};
constexpr std::array deeds{
    Deed{"appendToTimeline", 1, "momentsAdded"},
    Deed{"updateOnTimeline", 2, "momentsUpdated"},
    Deed{"setRowNameWithRowNum", 2, "momentsUpdated"},
    Deed{"removeInstanceWithRowId", 3, "momentsDeleted"},
    Deed{"insertRowWithName", 4, "presentationViewUpdated"},
    Deed{"rearrangeRowsFrom", 4, "presentationViewUpdated"},
    Deed{"setRowColorWithRowId", 4, "presentationViewUpdated"},
    Deed{"removeRowWithRowId", 5, "presentationViewUpdated"},
};

}  // namespace

void ApplyCheck::see(const Entry& entry) {
    if (entry.kind == Kind::info && entry.message().starts_with(received)) {
        received_ = entry.message().substr(received.size());
    } else if (entry.kind == Kind::call && entry.call == nullptr && entry.synchroniser != nullptr) {
        edited(entry);
    }
}

void ApplyCheck::edited(const Entry& entry) {
    const auto* const deed = std::ranges::find(deeds, entry.field("name"), &Deed::call);
    if (deed == deeds.end()) {
        return;
    }
    const auto& block = entry.synchroniser->block;
    if (!block || block->work == Block::Work::upload) {
        report_.add("applyBlock", entry, "the timeline is edited outside the blocks that apply changes");
        return;
    }
    if (block->work == Block::Work::event && deed->type != received_) {
        report_.add("applyKind", entry,
                    std::string(deed->call) + " is no part of a change of the kind " +
                        std::string(received_));
    }
    State& state = states_[*entry.synchroniser];
    if (state.block != block->start) {
        state = State{block->start, 0};
    }
    if (deed->phase < state.phase) {
        report_.add("applyOrder", entry, std::string(deed->call) + " comes too late");
    }
    state.phase = std::max(state.phase, deed->phase);
}

}  // namespace Simulator::Conformance
