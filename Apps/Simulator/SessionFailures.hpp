#pragma once

#include "Apps/Simulator/Seat.hpp"

#include <optional>
#include <string>

namespace Simulator {

/// What the step means when it is a session that does not come about, or a host that tells what makes no sense.
[[nodiscard]] Deed prepareFailingSession(Seat& seat, const Step& step);

// What both the sessions that come about and the others consist of.

/// Captures, onto a new timeline or the old one, and asks for a session.
void publish(Seat& seat, const Step& step);
void askToPublish(Seat& seat);

/// Asks for the session that is live.
void join(Seat& seat, const std::optional<std::string>& taggingSessionId);

}  // namespace Simulator
