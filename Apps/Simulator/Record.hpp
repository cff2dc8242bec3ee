#pragma once

#include "Apps/Simulator/Picture.hpp"
#include "Apps/Simulator/Plan.hpp"
#include "Components/RemoteCoding/HostInterfaces/SynchronisationStatus.hpp"
#include "ReferenceHost/Cloud/RemoteRecords.hpp"
#include "ReferenceHost/Trace.hpp"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Simulator {

/// One analyst in one session, from the moment when the component has it until it has it no more.
struct Stay {
    std::string analyst;
    std::uint64_t client = 0;  ///< under which the cloud knows the analyst (`AcceptedCall::client`)
    std::string timelineId;
    std::string videoId;
    std::string sessionId;  ///< of the tagging session; empty when the creation failed
    bool isHost = false;
    std::size_t from = 0;  ///< index into the trace
    std::size_t to = 0;    ///< index behind its last entry
    bool lasts = false;    ///< the analyst is still in the session when the end is looked at
    bool isClosed =
        false;  ///< its timeline's window is; a hosted session with a live stream goes on without it

    /// When the end is looked at; for a stay that is over, when it ended.
    TimelinePicture picture;
    RemoteCoding::SynchronisationStatus status;
};

/// What the cloud holds of one tagging session when the end is looked at, and how it came to it.
struct SessionHistory {
    ReferenceHost::TaggingSessionRecord session;
    std::vector<ReferenceHost::AcceptedCall> log;       ///< every write, in the order of effect
    std::vector<ReferenceHost::ChangePointer> changes;  ///< every change that was told, in order
};

/// The kinds of entries that the simulator itself writes into the trace, beside those of the reference host.
namespace SimulatedKind {
/// A step of the plan begins. Fields "number" (from 0 on), "action" and the step's own; the host is its analyst.
inline constexpr const char* step = "step";
/// A user's edit has changed a timeline. Fields "timelineId", "what" (the action's name), "count" (the timeline's modify count
/// afterwards), and where it has them "row" (id), "name", "oldName", "clip" (instance id), "start", "end", "notes", "color", "to", "above" (the row above a
/// moved one).
/// Edits of clips tell all their values as they are afterwards, and in "moment" the moment that the clip stands for, if one is known.
/// The removal of a row lists its clips in "clips", separated by commas, and their moments in "moments"; so does the undo of it.
inline constexpr const char* edit = "edit";
/// A fault begins or ends, or meets an event and goes on. Fields "what" (the action's name), "state" ("begins", "ends", "meets") and
/// its own: "operation" and "call" of a call that it meets, "subscription" and "sequence" of an event, "seconds" of one that lasts.
inline constexpr const char* fault = "fault";
/// An analyst's stay begins or ends. Fields "state", "timelineId", "sessionId", "role" ("host", "guest").
inline constexpr const char* stay = "stay";
/// A stage of the run is reached. Field "name": "faultsEnded", "settled", "quiet", "left".
inline constexpr const char* stage = "stage";
}  // namespace SimulatedKind

/// One run: everything that the checks look at.
struct Record {
    Plan plan;
    std::vector<ReferenceHost::TraceEntry> trace;
    std::vector<Stay> stays;                         ///< in the order of their beginnings
    std::map<std::string, SessionHistory> sessions;  ///< by tagging session id

    std::size_t faultsEnded = 0;  ///< the trace's size when the last fault had ended
    std::size_t settled = 0;      ///< when everybody was idle after that; the end is looked at here
    std::size_t quiet =
        0;  ///< when a while had passed after that without anybody's doing; then everybody leaves

    /// What was still under way when patience ended, a line each. All are faults of the component.
    std::vector<std::string> neverSettled;
    /// What was there and should not have been after everybody had left: tasks, subscriptions, calls, sessions.
    std::vector<std::string> leftovers;
    /// What was thrown out of the run.
    std::optional<std::string> crash;
};

}  // namespace Simulator
