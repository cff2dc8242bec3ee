#include "Apps/CodingDesk/SessionWords.hpp"

#include "Apps/CodingDesk/Text.hpp"

namespace CodingDesk {

std::string news(const std::string& analyst, const RemoteCoding::RemoteCodingSessionDetails& details) {
    using Status = RemoteCoding::RemoteCodingSessionStatus;
    const std::string name = quoted(details.name);
    const std::string ofSession = analyst + ": the session " + name;
    switch (details.status) {
    case Status::starting:
        return details.isHost ? ofSession + " is starting." : analyst + " has joined " + name + '.';
    case Status::live:
        return ofSession + " is live.";
    case Status::interrupted:
        return ofSession + " is interrupted.";
    case Status::streamEnded:
        return analyst + ": the stream of " + name + " is over; the timeline stays open.";
    case Status::ended:
        return details.isHost ? ofSession + " is over." : analyst + " has left " + name + '.';
    case Status::unused:
        break;
    }
    return ofSession + " is in an unknown state.";
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
