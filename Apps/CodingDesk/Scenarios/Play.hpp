#pragma once

#include "Apps/CodingDesk/Scenery.hpp"
#include "Apps/CodingDesk/SessionWindows.hpp"
#include "Apps/CodingDesk/Stage.hpp"

#include <cstddef>
#include <string>

/// What several scenarios do and look at.
namespace CodingDesk::Scenarios {

inline constexpr const char* shot = "Shot";

/// Captures a match onto a timeline with a few rows.
void startCapture(Seat& seat);

/// Waits until all alerts that the analyst expects have come and are answered.
void waitForAlerts(VirtualSeat& seat);

/// Captures, starts the session of `Scenery` and waits until the timeline is shared. Gives the tagging session's id.
std::string host(Stage& stage, VirtualSeat& seat);

/// Joins that session and waits until the timeline is shared.
void join(VirtualSeat& seat);

/// Tags a clip of four seconds on the row `shot`.
void tag(Stage& stage, VirtualSeat& seat, double start);

/// How many clips there are on the row `shot`.
[[nodiscard]] std::size_t shots(VirtualSeat& seat);

/// Tells what the synchronisation of the analyst's timeline says of itself.
void tellSynchronisation(Stage& stage, VirtualSeat& seat);

/// Tells the warnings and errors of the analyst's log from that entry of the trace on, each once.
void tellLog(Stage& stage, const VirtualSeat& seat, std::size_t from);

/// How often the analyst's application has asked the cloud for the state of a video.
[[nodiscard]] std::size_t questionsAboutVideo(Stage& stage, const VirtualSeat& seat);

/// The alert or sheet that the analyst saw last had this message.
void expectLastMessage(Stage& stage, VirtualSeat& seat, const std::string& message);

/// The analyst is in the session still, and its stream flows.
void expectSessionGoesOn(Stage& stage, VirtualSeat& seat);

}  // namespace CodingDesk::Scenarios
