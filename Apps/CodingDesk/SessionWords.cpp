#include "Apps/CodingDesk/SessionWords.hpp"

namespace CodingDesk {

std::string inWords(const RemoteCoding::RemoteCodingSessionDetails& details) {
    using Status = RemoteCoding::RemoteCodingSessionStatus;
    switch (details.status) {
    case Status::starting:
        return details.isHost ? "is starting" : "is joined";
    case Status::live:
        return "is live";
    case Status::interrupted:
        return "is interrupted";
    case Status::streamEnded:
        return "has lost its stream, the timeline stays shared";
    case Status::ended:
        return details.isHost ? "is over" : "is left";
    case Status::unused:
        break;
    }
    return "is in an unknown state";
}

std::string inWords(const std::optional<RemoteCoding::SynchronisationStatus>& status) {
    using Activity = RemoteCoding::SynchronisationStatus::Activity;
    if (!status) {
        return "is not there";
    }
    const std::string unsent = status->hasUnsentEdits ? "edits are unsent" : "everything is sent";
    switch (status->activity) {
    case Activity::waitingToReconnect:
        return "tries to reconnect, attempt " + std::to_string(status->reconnectionAttempt) + "; " + unsent;
    case Activity::cancelled:
        return "is over; " + unsent;
    case Activity::working:
    case Activity::idle:
        break;
    }
    const std::string receives = status->receivesChanges ? "receives what the others change"
                                                         : "receives nothing of what the others change";
    return receives + "; " + unsent + (status->activity == Activity::working ? ", it still works" : "");
}

}  // namespace CodingDesk
