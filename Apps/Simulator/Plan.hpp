#pragma once

#include "Base/ExecutionProtocol.hpp"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace Simulator {

/// What can happen in a step. The names below are those of plan files, of the trace and of the counts.
enum class Action : std::uint8_t {
    // A user's edits of the timeline that the analyst codes.
    tag,         ///< a new clip; `object`: the row
    tagNewCode,  ///< a new clip on a row with a name from a small common list, made when it is not there
    retime,      ///< `object`: the clip, among all on the timeline
    retimeShared,  ///< the same, but everybody who takes this action at about the same time means the same moment
    note,          ///< writes notes
    noteShared,
    deleteClip,
    deleteShared,
    undoDelete,  ///< of the clip that this analyst deleted last and has not restored
    addRow,
    renameRow,          ///< to a name that nobody has used
    renameRowToCommon,  ///< to a name from the small common list: others may do the same
    recolorRow,
    moveRow,
    removeRow,
    undoRemoveRow,

    // Sessions.
    closeTimeline,  ///< the analyst closes the timeline's window
    leave,          ///< a guest leaves, or the host ends the session (and goes on capturing, `object` odd)
    leaveByPrompt,  ///< the same, when asked whether to; `object` odd: says no, or there is no window to ask on
    streamEnds,     ///< the host's stream is over for good; the sharing goes on
    join,  ///< an analyst who is in no session joins the live one (with the old timeline open, `object` odd)
    host,  ///< an analyst who is in no session publishes when nobody does (onto the old timeline, `object` odd)

    // Sessions that do not come about as they should, and what a host may tell without sense.
    hostWithoutCapture,
    hostSignedOut,
    hostRefused,    ///< the capture does not publish
    joinRefused,    ///< the live share cannot be opened
    joinWithoutId,  ///< it cannot be opened, which is known only later
    joinSignedOut,
    joinWithoutTimeline,
    joinLate,          ///< the timeline is there `amount` seconds after the live share
    joinOtherSession,  ///< one that the video has beside its primary one
    endUnknown,  ///< the end of a session that there is not; with `object` odd, the question whether to end it
    strayNotifications,

    // Faults of one analyst's calls: the next call of one operation.
    failBefore,  ///< `object`: the operation
    failAfter,
    hang,  ///< it takes `amount` seconds longer, up to half a minute
    answerFalse,
    answerShort,
    answerNone,  ///< a fetch finds no session; with `object` even, the subscription is dropped, so that there is a fetch
    answerOther,  ///< a fetch finds another session in the first place; the same

    // Faults of the way.
    dropSubscription,
    repeatEvents,    ///< each of the next few events comes twice
    delayEvents,     ///< each of the next few events comes `amount` seconds late, up to twenty
    strangeEvents,   ///< after each of the next few events comes one that means nothing
    linkDown,        ///< for `amount` seconds, up to fifteen minutes
    fetchesFail,     ///< all of them, for `amount` seconds, up to fifteen minutes
    restartService,  ///< every analyst's calls and subscriptions break, and fail for `amount` seconds
    rowsAreNotMade,  ///< moments of a code without a row are placed nowhere, for `amount` seconds
    hideMoments,  ///< some moments cannot be read, for `amount` seconds; with `object` even, there is a fetch

    // Faults of a host.
    withdrawCodingTarget,  ///< for `amount` seconds
    insertionsComeLater,   ///< the coding target's callbacks come as jobs of their own, for `amount` seconds
    copiesLoseRows,        ///< the clips that an upload reads know no row, for `amount` seconds
    cancelSleeps,  ///< each wait is cancelled, for `amount` seconds; there is a reconnection that has to wait

    // The stream.
    streamBreaks,           ///< the host's stream is interrupted for `amount` seconds
    streamFails,            ///< the video's status becomes "Error" while no fragments come
    downloadPauses,         ///< the player of a guest pauses, without an error
    downloadPausesFailing,  ///< the same, with an error
    downloadFails,
    statusFails,  ///< the player pauses, and the question for the video's status fails
};

inline constexpr Action lastAction = Action::statusFails;

[[nodiscard]] const char* nameOf(Action action);

/// All of them, in the order above.
[[nodiscard]] const std::vector<Action>& allActions();

/// The rules of the host contract that a plan can break, by the names of the members of `CloudRules` and `TimelineRules`.
[[nodiscard]] std::vector<std::string> allRules();

/// One step. It names objects by a number that is taken modulo how many there are when it runs, so that every part of a plan is a
/// plan. A step that finds nothing to do is passed over.
struct Step {
    Base::Seconds at{};       ///< since the start of the run, never falling within a plan
    std::size_t analyst = 0;  ///< modulo the number of analysts
    Action action = Action::tag;
    std::uint32_t object = 0;
    std::uint32_t other = 0;  ///< a second choice: a colour, a target, a name
    double amount = 0;        ///< seconds

    friend bool operator==(const Step&, const Step&) = default;
};

inline constexpr std::size_t fewestAnalysts = 2;
inline constexpr std::size_t mostAnalysts = 8;

/// Everything that a run follows from.
struct Plan {
    std::uint64_t seed = 1;                ///< of the order of jobs, of latencies and of identifiers
    std::size_t analysts = 2;              ///< from the fewest to the most; the first one hosts
    std::vector<std::string> brokenRules;  ///< of the host contract, by name; none by default
    std::vector<Step> steps;

    friend bool operator==(const Plan&, const Plan&) = default;
};

struct PlanOptions {
    std::size_t operations = 200;
    std::size_t analysts = 0;  ///< 0: drawn, 2 to 8
    bool faults = true;
    std::vector<std::string> brokenRules;
};

/// Draws the plan that belongs to this seed.
[[nodiscard]] Plan makePlan(std::uint64_t seed, const PlanOptions& options);

/// A plan as text: one line a step, comments begin with '#'. What is written is read back as the same plan.
void write(std::ostream& stream, const Plan& plan);

/// Throws `std::runtime_error` with the line's number when the text is no plan.
[[nodiscard]] Plan readPlan(std::istream& stream);

}  // namespace Simulator
