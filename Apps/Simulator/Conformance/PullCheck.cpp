#include "Apps/Simulator/Conformance/PullCheck.hpp"

#include "Apps/Simulator/Conformance/Ids.hpp"

namespace Simulator::Conformance {

namespace {

bool pulls(const Synchroniser& synchroniser) {
    return synchroniser.block && (synchroniser.block->work == Block::Work::pull ||
                                  synchroniser.block->work == Block::Work::reconnection);
}

}  // namespace

void PullCheck::see(const Entry& entry) {
    const bool isFetch = entry.call != nullptr && entry.call->operation == Operation::fetch;
    if (entry.synchroniser == nullptr) {
        if (isFetch && entry.kind == Kind::call) {
            report_.add("pullBlock", entry, "a session is fetched outside the blocks that do this");
        }
        return;
    }
    State& state = states_[*entry.synchroniser];
    switch (entry.kind) {
    case Kind::blockStart:
        state = State();
        break;
    case Kind::call:
        if (isFetch) {
            fetched(entry);
        }
        break;
    case Kind::answer:
        if (isFetch && entry.call == state.fetch) {
            const std::string_view sessionId = entry.synchroniser->stay.sessionId;
            const Ids found(entry.field("ids"));
            state.answer = !entry.field("error").empty()  ? Answer::failed
                           : found.begin() == found.end() ? Answer::useless
                           : sessionId.empty()            ? Answer::unknown
                           : *found.begin() == sessionId  ? Answer::useful
                                                          : Answer::useless;
        }
        break;
    case Kind::count:
        state.applied += entry.field("reason") == "applied" ? 1 : 0;
        break;
    case Kind::blockEnd:
        blockEnded(entry);
        break;
    default:
        break;
    }
}

void PullCheck::fetched(const Entry& entry) {
    const Synchroniser& synchroniser = *entry.synchroniser;
    State& state = states_[synchroniser];
    if (state.fetch != nullptr) {
        report_.add("pullBlock", entry, "a session is fetched twice in one block");
    }
    const bool isReconnection = synchroniser.block && synchroniser.block->work == Block::Work::reconnection;
    const bool isUploading = std::ranges::any_of(synchroniser.passes, [&](const Pass* pass) {
        return synchroniser.block && pass->block == synchroniser.block->number;
    });
    if (isReconnection && isUploading) {
        report_.add("attemptSteps", entry, "an attempt to reconnect pulls before its upload has ended");
    }
    state.fetch = entry.call;
}

void PullCheck::blockEnded(const Entry& entry) {
    const Synchroniser& synchroniser = *entry.synchroniser;
    const State& state = states_[synchroniser];
    if (!pulls(synchroniser)) {
        return;
    }
    if (state.fetch != nullptr && state.answer == Answer::none) {
        report_.add("pullAwaited", entry, "the block ends before its fetch is answered");
        return;
    }
    const bool mustApply = state.answer == Answer::useful && !synchroniser.isCancelled;
    const bool mayApply = state.answer == Answer::useful || state.answer == Answer::unknown;
    if (state.applied > (mayApply ? 1 : 0) || (mustApply && state.applied == 0)) {
        report_.add("pullOutcome", entry,
                    mustApply ? "what was fetched was not applied, or more than once"
                              : "something was applied, though nothing was fetched");
    }
    const bool isPull = synchroniser.block->work == Block::Work::pull;
    if (isPull && state.fetch == nullptr && !synchroniser.host.isClosed(synchroniser.stay.timelineId)) {
        report_.add("pullOutcome", entry, "a pull has fetched nothing");
    }
}

}  // namespace Simulator::Conformance
