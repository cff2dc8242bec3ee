#pragma once

#include "Apps/CodingDesk/Seat.hpp"
#include "Apps/CodingDesk/Workplace.hpp"

#include <string>

/// How an analyst gets into a session and out of it: step by step through the component's windows, in real or virtual time. Each
/// step throws when the window does not let it be done.
namespace CodingDesk::SessionWindows {

/// Opens the window by the application's menu. What it shows comes later.
void openNewSession(Seat& seat);
void openJoinSession(Seat& seat);

/// Waits until one of the two windows asks to sign in, or offers teams.
void waitForSignIn(Seat& seat, const std::string& window);
void waitForTeams(Seat& seat, const std::string& window);

/// Ticks the feed, edits the name, chooses the team, and presses the create button. The window closes.
void fillInNewSession(Seat& seat, const std::string& feed, const std::string& name, const std::string& team);

/// Chooses the team, waits for the session, selects it and presses the join button. The window closes.
void chooseSession(Seat& seat, const std::string& team, const std::string& session);

/// Waits until there is a session and its timeline is shared in both directions.
void waitForSharing(Seat& seat);

/// All of it, one after the other, for the session of `Scenery`.
void createSession(Seat& seat);
void joinSession(Seat& seat);

/// Asks to end the hosted session, or to leave the joined one, and presses that button of the sheet on the timeline's window.
/// What follows comes later.
void askToEnd(Seat& seat, const std::string& button);
void askToLeave(Seat& seat, const std::string& button);

/// Asks and confirms, and waits until the session is over.
void endSession(Seat& seat);
void leaveSession(Seat& seat);

}  // namespace CodingDesk::SessionWindows
