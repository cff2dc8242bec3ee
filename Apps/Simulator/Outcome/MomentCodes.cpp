#include "Apps/Simulator/Outcome/MomentCodes.hpp"

#include <algorithm>

namespace Simulator {

namespace TraceKind = ReferenceHost::TraceKind;

bool isIn(const ReferenceHost::RemoteChange& change, const MomentHistory& moment) {
    return std::ranges::find(moment.changes, &change) != moment.changes.end();
}

std::string_view codeIn(const ReferenceHost::RemoteChange& change, const MomentHistory& moment) {
    return (*std::ranges::find_if(change.moments,
                                  [&](const auto& state) { return state->id == moment.last->id; }))
        ->code;
}

std::string_view codeAt(const MomentHistory& moment, std::uint64_t sequence) {
    std::string_view code;
    for (const auto* change : moment.changes) {
        if (change->sequence <= sequence) {
            code = codeIn(*change, moment);
        }
    }
    return code;
}

const Call* callOf(const History& history, const SessionHistory* session, std::uint64_t sequence) {
    const auto found = std::ranges::find_if(history.calls, [&](const Call& call) {
        return call.stay != never && history.stays[call.stay].session == session &&
               call.accepted != nullptr && call.accepted->sequenceBefore < sequence &&
               sequence <= call.accepted->sequenceAfter;
    });
    return found != history.calls.end() ? &*found : nullptr;
}

bool wasSentWithoutRow(const History& history, const MomentHistory& moment) {
    const auto isWithoutRow = [&](const Call* call) {
        return call != nullptr &&
               std::ranges::any_of(call->accepted->drafts, [&](const ReferenceHost::MomentDraft& draft) {
                   return (draft.instanceId == moment.last->originInstanceId ||
                           draft.externalId == moment.last->id) &&
                          !draft.code;
               });
    };
    return isWithoutRow(creationOf(history, moment)) ||
           (moment.last->code.empty() &&
            std::ranges::any_of(moment.changes, [&](const ReferenceHost::RemoteChange* change) {
                return isWithoutRow(callOf(history, moment.session, change->sequence));
            }));
}

bool isLeftOnItsRow(const History& history, const Placement& placement) {
    const auto& record = history.entry(placement.at);
    for (std::size_t at = placement.at + 1; at < history.record.trace.size(); ++at) {
        const auto& entry = history.entry(at);
        if (entry.host != record.host || entry.kind != TraceKind::logError) {
            return false;
        }
        if (entry.field("message") == "Instance for moment is on the wrong row") {
            return true;
        }
    }
    return false;
}

bool wasLeftOnItsRow(const History& history, const MomentHistory& moment, std::size_t stay,
                     std::size_t before) {
    return std::ranges::any_of(moment.placements, [&](const Placement& placement) {
        return placement.at < before && placement.stay == stay && isLeftOnItsRow(history, placement);
    });
}

}  // namespace Simulator
