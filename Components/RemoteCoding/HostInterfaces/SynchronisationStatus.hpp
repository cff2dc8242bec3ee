#pragma once

#include <cstdint>

namespace RemoteCoding {

/// How far the synchronisation of one session's timeline has come, for a host that wants to show it.
struct SynchronisationStatus {
    enum class Activity : std::uint8_t {
        idle,     ///< nothing runs and nothing waits to run
        working,  ///< uploads, remote changes or the opening of the subscription run or wait to run
        waitingToReconnect,  ///< the subscription failed; `reconnectionAttempt` is under way or the last that failed
        cancelled,           ///< the session has ended; nothing more is received
    };

    Activity activity = Activity::idle;
    std::int64_t reconnectionAttempt = 0;  ///< from 1 on while waiting to reconnect, else 0

    /// Local edits have not reached the cloud: they wait to be sent, are being sent, or could not be sent. It stays true
    /// when edits will not be sent by themselves any more: those of an upload that failed while remote changes were
    /// applied, and those made while the session was being received for the first time.
    bool hasUnsentEdits = false;

    /// The subscription is open: what others change arrives.
    bool receivesChanges = false;

    /// Nothing is under way and nothing is unsent: it is safe to leave.
    [[nodiscard]] bool isSettled() const {
        return (activity == Activity::idle || activity == Activity::cancelled) && !hasUnsentEdits;
    }

    friend bool operator==(const SynchronisationStatus&, const SynchronisationStatus&) = default;
};

}  // namespace RemoteCoding
