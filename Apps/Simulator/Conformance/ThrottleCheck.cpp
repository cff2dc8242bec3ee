#include "Apps/Simulator/Conformance/ThrottleCheck.hpp"

#include <algorithm>
#include <string>

namespace Simulator::Conformance {

namespace {

constexpr double interval = 1;  // seconds

bool isBefore(double left, double right) { return left < right && !isSameMoment(left, right); }

}  // namespace

void ThrottleCheck::see(const Entry& entry) {
    switch (entry.kind) {
    case Kind::notification:
        announced(entry);
        break;
    case Kind::blockStart:
        blockStarted(entry);
        break;
    case Kind::blockEnd:
        if (entry.synchroniser != nullptr) {
            states_[*entry.synchroniser].idleSince = entry.time();
        }
        break;
    case Kind::answer:
        // Whether or not the creation has succeeded.
        if (entry.synchroniser != nullptr && entry.call->operation == Operation::createSession) {
            ++states_[*entry.synchroniser].firstUploads;
        }
        break;
    case Kind::usage:
        if (entry.synchroniser != nullptr && entry.message() == "SessionEnded") {
            ended(entry);
        }
        break;
    case Kind::alert:
        // From now on its timers come late.
        for (const Synchroniser* synchroniser : entry.host->synchronisers) {
            fire(*synchroniser, states_[*synchroniser], entry.time());
        }
        break;
    default:
        break;
    }
}

// When a session has ended, its last edits are uploaded at once; what is changed after that may be uploaded or not.
bool ThrottleCheck::isChecked(const Synchroniser& synchroniser) {
    return !synchroniser.isCancelled && !synchroniser.sharesTimeline && !states_[synchroniser].isUnsure;
}

void ThrottleCheck::announced(const Entry& entry) {
    if (entry.field("name") != "TimelineNotifications.timelineDidAnyChange") {
        return;
    }
    const std::string_view timelineId = entry.field("timelineId");
    for (const Synchroniser* synchroniser : entry.host->synchronisers) {
        if (synchroniser->stay.timelineId == timelineId && isChecked(*synchroniser)) {
            change(entry, *synchroniser);
        }
    }
}

void ThrottleCheck::change(const Entry& entry, const Synchroniser& synchroniser) {
    advance(entry, synchroniser);
    State& state = states_[synchroniser];
    if (!state.due) {
        state.due = entry.time() + interval;
    } else if (!isBefore(entry.time(), *state.due) && synchroniser.block) {
        state.isUnsure = true;
    }
}

void ThrottleCheck::fire(const Synchroniser& synchroniser, State& state, double now) {
    if (!state.due || synchroniser.host.isHeld) {
        return;
    }
    const double at = std::max(*state.due, synchroniser.host.heldUntil);
    if (isBefore(at, now)) {
        state.fired.push_back(at);
        state.due.reset();
    }
}

void ThrottleCheck::advance(const Entry& entry, const Synchroniser& synchroniser) {
    State& state = states_[synchroniser];
    fire(synchroniser, state, entry.time());
    if (state.early) {
        report_.add("throttle", entry,
                    "an upload began before its time, or without a change (entry " +
                        std::to_string(*state.early) + ")");
        state.early.reset();
    }
    if (!state.fired.empty() && !synchroniser.block && isBefore(state.fired.front(), entry.time()) &&
        isBefore(state.idleSince, entry.time())) {
        report_.add("throttleLate", entry,
                    "an upload was due at " + std::to_string(state.fired.front()) + " s and has not begun");
        state.fired.pop_front();
    }
}

void ThrottleCheck::blockStarted(const Entry& entry) {
    const Synchroniser* const synchroniser = entry.synchroniser;
    if (synchroniser != nullptr && entry.field("kind") == "upload") {
        states_[*synchroniser].owesLast = false;
        states_[*synchroniser].lastUpload = entry.time();
    }
    if (synchroniser == nullptr || !isChecked(*synchroniser)) {
        return;
    }
    advance(entry, *synchroniser);
    if (entry.field("kind") != "upload") {
        return;
    }
    State& state = states_[*synchroniser];
    if (!state.fired.empty()) {
        state.fired.pop_front();
    } else if (state.due && !isBefore(entry.time(), *state.due)) {
        state.due.reset();
    } else if (state.firstUploads > 0) {
        --state.firstUploads;
    } else {
        // Unless the session ends right now.
        state.due.reset();
        state.early = entry.index;
    }
}

/// The block for the last changes begins before this, or waits for its turn.
void ThrottleCheck::ended(const Entry& entry) {
    const Synchroniser& synchroniser = *entry.synchroniser;
    if (!isChecked(synchroniser)) {
        return;
    }
    State& state = states_[synchroniser];
    state.early.reset();
    const Stay& stay = synchroniser.stay;
    const bool hasMet = stay.isHost || synchroniser.hasPulled || synchroniser.lastModifyCount > 0;
    const bool isBehind = hasMet && !synchroniser.host.isClosed(stay.timelineId) &&
                          synchroniser.lastModifyCount < synchroniser.host.modifyCountOf(stay.timelineId);
    const bool hasJustBegun = isSameMoment(state.lastUpload, entry.time());
    state.owesLast = (isBehind && !hasJustBegun) || (state.due && !isBefore(*state.due, entry.time()));
}

void ThrottleCheck::left(const Entry& entry, const std::deque<Synchroniser>& synchronisers) {
    for (const Synchroniser& synchroniser : synchronisers) {
        if (states_[synchroniser].owesLast && !synchroniser.sharesTimeline) {
            report_.add(
                "lastChanges", entry,
                synchroniser.stay.analyst +
                    "'s changes that were not sent before the end of the session were not uploaded at it");
        }
    }
}

void ThrottleCheck::settled(const Entry& entry, const std::deque<Synchroniser>& synchronisers) {
    for (const Synchroniser& synchroniser : synchronisers) {
        if (isChecked(synchroniser)) {
            advance(entry, synchroniser);
        }
    }
}

}  // namespace Simulator::Conformance
