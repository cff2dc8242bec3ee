#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <algorithm>

namespace Simulator {

namespace {

/// A guest's timeline has nothing of the session but what happened since.
bool wasNeverFetched(const StayHistory& stay) {
    return !stay.stay->isHost && std::ranges::none_of(stay.arrivals, &Arrival::isPull);
}

/// The upload of another session of this timeline has told its cloud of the edit.
bool wentElsewhere(const History& history, const UserEdit& edit) {
    return std::ranges::any_of(history.stays, [&](const StayHistory& other) {
        return other.session != nullptr && other.session != history.stays[edit.stay].session &&
               other.stay->timelineId == edit.timelineId && other.stay->from < edit.at &&
               std::ranges::any_of(
                   other.uploads,
                   [&](const Upload& upload) {
                       return upload.end != never && upload.end > edit.at &&
                              upload.start > other.stay->from &&
                              (upload.covers(edit.count) || upload.start < edit.at);
                   });
    });
}

/// The clip stands for a moment of another session in which its timeline was.
bool isOfAnotherSession(const History& history, const StayHistory& stay, std::string_view moment) {
    const MomentHistory* found = history.moment(moment);
    return found != nullptr && found->session != stay.session;
}

}  // namespace

Reason whyBetweenSessions(const History& history, const Loss& loss) {
    if (loss.edit != nullptr) {
        return wentElsewhere(history, *loss.edit) ? Reason(LossClass::sentElsewhere) : std::nullopt;
    }
    if (loss.kind == LossKind::clipExtra &&
        isOfAnotherSession(history, history.stays[loss.stay], loss.moment)) {
        return LossClass::ofAnotherSession;
    }
    return wasNeverFetched(history.stays[loss.stay]) ? Reason(LossClass::neverFetched) : std::nullopt;
}

}  // namespace Simulator
