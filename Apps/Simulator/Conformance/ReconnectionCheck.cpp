#include "Apps/Simulator/Conformance/ReconnectionCheck.hpp"

#include <string>

namespace Simulator::Conformance {

namespace {

constexpr double pause = 2;  // seconds
constexpr std::int64_t mostAttempts = 300;

constexpr std::string_view listenError = "Error while listening for tagging session changes. Error=";
constexpr std::string_view disconnected =
    "Disconnected from tagging session updates. Attempting to reconnect.";
constexpr std::string_view attempting = "Attempting to reconnect to the remote tagging session. Attempt=";
constexpr std::string_view waitCancelled = "Unable to wait between tagging session sync attempts";
constexpr std::string_view withoutTimeline = "Unable to get timeline";
constexpr std::string_view gaveUpLine = "Hit maximum reconnection attempts";

bool isReconnection(const Entry& entry) {
    return entry.synchroniser->block && entry.synchroniser->block->work == Block::Work::reconnection;
}

}  // namespace

void ReconnectionCheck::see(const Entry& entry) {
    if (disconnection_) {
        follow(entry);
        return;
    }
    if (entry.synchroniser == nullptr) {
        return;
    }
    State& state = states_[*entry.synchroniser];
    checkEnd(entry);
    switch (entry.kind) {
    case Kind::subscription:
        if (entry.field("state") == "failed" && !entry.synchroniser->isCancelled) {
            disconnection_ =
                Disconnection{entry.synchroniser, entry.field("error"), entry.field("subscription"), 0};
        }
        break;
    case Kind::info:
        if (entry.message().starts_with(attempting)) {
            announced(entry, numberIn(entry.message().substr(attempting.size())));
        }
        break;
    case Kind::error:
        if (entry.message() == gaveUpLine) {
            gaveUp(entry);
        }
        if (entry.message() == withoutTimeline && isReconnection(entry)) {
            state.failedAt = entry.time();
        }
        state.isCutShort |= entry.message() == waitCancelled;
        break;
    case Kind::blockStart:
        if (entry.field("kind") == "reconnection") {
            blockStarted(entry, state);
        }
        break;
    case Kind::uploadEnd:
        if (isReconnection(entry) && entry.field("succeeded") == "false" &&
            std::ranges::any_of(entry.synchroniser->passes, [&](const Pass* pass) {
                return pass->number == entry.number("number") &&
                       pass->block == entry.synchroniser->block->number;
            })) {
            state.failedAt = entry.time();
        }
        break;
    case Kind::call:
        if (entry.call != nullptr && entry.call->operation == Operation::fetch && isReconnection(entry)) {
            state.hasPulled = true;
            if (state.failedAt) {
                report_.add("attemptSteps", entry, "an attempt pulls, though its upload has failed");
            }
        }
        break;
    case Kind::answer:
        if (entry.call != nullptr && entry.call->operation == Operation::fetch && isReconnection(entry) &&
            !entry.field("error").empty()) {
            state.failedAt = entry.time();
        }
        break;
    case Kind::blockEnd:
        if (isReconnection(entry)) {
            blockEnded(entry, state);
        }
        break;
    default:
        break;
    }
}

void ReconnectionCheck::checkEnd(const Entry& entry) {
    const Synchroniser& synchroniser = *entry.synchroniser;
    const bool isWork =
        entry.kind == Kind::uploadStart ||
        (entry.kind == Kind::call && entry.call != nullptr && entry.call->operation == Operation::fetch);
    if (isWork && synchroniser.isCancelled && isReconnection(entry) &&
        synchroniser.block->start > synchroniser.end) {
        report_.add("attemptAfterEnd", entry, "an attempt to reconnect, though the session has ended");
    }
}

/// What a failure is answered with stands in the entries right behind it, in this order.
void ReconnectionCheck::follow(const Entry& entry) {
    const Disconnection known = *disconnection_;
    const std::string_view message = entry.message();
    bool isRight = false;
    switch (disconnection_->step++) {
    case 0:
        isRight = entry.kind == Kind::warning && message.starts_with(listenError) &&
                  message.substr(listenError.size()) == known.error;
        break;
    case 1:
        isRight = entry.kind == Kind::subscription && entry.field("state") == "cancelled" &&
                  entry.field("subscription") == known.subscription;
        break;
    case 2:
        isRight = entry.kind == Kind::warning && message == disconnected;
        break;
    default:
        isRight = entry.kind == Kind::info && message.starts_with(attempting) &&
                  numberIn(message.substr(attempting.size())) == 1;
        begin(entry, *known.synchroniser);
        disconnection_.reset();
        break;
    }
    if (!isRight) {
        disconnection_.reset();
        report_.add(
            "disconnection", entry,
            "a subscription that fails is not cancelled, logged twice and followed by an attempt at once");
    }
}

void ReconnectionCheck::begin(const Entry& entry, const Synchroniser& synchroniser) {
    State& state = states_[synchroniser];
    if (state.isLooping) {
        report_.add("attemptOrder", entry, "a second series of attempts begins before the first is over");
    }
    state = State();
    state.isLooping = true;
    state.announced = 1;
    state.announcedAt = entry.index;
}

void ReconnectionCheck::checkPause(const Entry& entry, const State& state) {
    if (!state.failedAt) {
        report_.add("attemptOrder", entry, "another attempt, though the one before it has not failed");
        return;
    }
    const double waited = entry.time() - *state.failedAt;
    const bool isLate = waited > pause && entry.synchroniser->host.wasHeldSince(*state.failedAt);
    const bool isShort = waited < pause && state.isCutShort;
    if (!isSameMoment(waited, pause) && !isLate && !isShort) {
        report_.add("attemptPause", entry, "the next attempt comes after " + std::to_string(waited) + " s");
    }
}

void ReconnectionCheck::announced(const Entry& entry, std::int64_t attempt) {
    State& state = states_[*entry.synchroniser];
    if (entry.synchroniser->sharesLog) {
        state.announced = attempt;
        state.announcedAt = entry.index;
        return;
    }
    if (!state.isLooping || attempt != state.announced + 1 || state.begun != state.announced) {
        report_.add("attemptOrder", entry,
                    "attempt " + std::to_string(attempt) + " follows attempt " +
                        std::to_string(state.announced));
    } else {
        checkPause(entry, state);
    }
    if (attempt > mostAttempts) {
        report_.add("attemptLimit", entry, "attempt " + std::to_string(attempt));
    }
    state.announced = attempt;
    state.announcedAt = entry.index;
}

void ReconnectionCheck::gaveUp(const Entry& entry) {
    State& state = states_[*entry.synchroniser];
    if (!entry.synchroniser->sharesLog) {
        if (state.announced != mostAttempts) {
            report_.add("attemptLimit", entry, "given up after attempt " + std::to_string(state.announced));
        }
        checkPause(entry, state);
    }
    state.announcedAt = entry.index;
    state.isLooping = false;
}

void ReconnectionCheck::blockStarted(const Entry& entry, State& state) {
    if (state.begun + 1 != state.announced && !entry.synchroniser->sharesLog) {
        report_.add("attemptOrder", entry, "an attempt that was not announced");
    }
    state.begun = state.announced;
    state.isCutShort = false;
    state.hasPulled = false;
    state.failedAt.reset();
}

void ReconnectionCheck::blockEnded(const Entry& entry, State& state) {
    Synchroniser& synchroniser = *entry.synchroniser;
    if (synchroniser.isCancelled || synchroniser.sharesLog) {
        state.isLooping = false;
        return;
    }
    if (!state.failedAt) {
        if (!state.hasPulled) {
            report_.add("attemptSteps", entry, "an attempt has succeeded without a fetch of the session");
        }
        state = State();
        ++synchroniser.maySubscribe;
        return;
    }
    // The next attempt, or the end of all attempts, is queued before the block ends.
    if (state.announcedAt + 1 != entry.index) {
        report_.add("attemptOrder", entry, "an attempt has failed, and no other one follows");
    }
    if (!state.isLooping) {
        state = State();
        ++synchroniser.maySubscribe;
    }
}

}  // namespace Simulator::Conformance
