#pragma once

#include "Apps/CodingDesk/EventFile.hpp"
#include "Base/Color.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace CodingDesk {

using AnalystIndex = std::size_t;
using RowKey = std::size_t;   ///< index into `ReplayPlan::rows`
using ClipKey = std::size_t;  ///< index into `ReplayPlan::clips`

struct TagClip {
    ClipKey clip = 0;
};
struct RetimeClip {
    ClipKey clip = 0;
    double start = 0;
    double end = 0;
};
struct DeleteClip {
    ClipKey clip = 0;
};
struct AddRow {
    RowKey row = 0;
    std::size_t to = 0;
};
struct RemoveRow {
    RowKey row = 0;
};
/// The colour is one that the row never had, for the reason given at `MoveRow`.
struct RecolorRow {
    RowKey row = 0;
    Base::Color color;
};
/// The row also gets a colour that it never had. Without it, a move that brings every row back to where this analyst last
/// sent it would not be sent: the component compares a row with what it has sent itself, not with what others have made
/// of it since.
struct MoveRow {
    RowKey row = 0;
    std::size_t to = 0;
    Base::Color color;
};
/// Everyone pauses first, until all is settled, and goes on when all is settled again.
struct RenameRow {
    RowKey row = 0;
    std::string name;
};
/// The analyst's link goes down, or is back.
struct SwitchLink {
    bool up = false;
};

using Edit = std::variant<TagClip, RetimeClip, DeleteClip, AddRow, RemoveRow, RecolorRow, MoveRow, RenameRow,
                          SwitchLink>;

/// What one analyst does at one moment.
struct Step {
    double at = 0;  ///< seconds from the start of the replay, the pauses left out
    AnalystIndex analyst = 0;
    Edit edit;
};

struct PlannedRow {
    std::string name;
    Base::Color color;
};

struct PlannedClip {
    RowKey row = 0;
    double start = 0;  ///< as first tagged, in seconds of match time
    double end = 0;
    AnalystIndex maker = 0;
};

/// Who does what when.
struct ReplayPlan {
    std::vector<PlannedRow> rows;
    std::size_t codes = 0;  ///< the first so many rows are the match's codes; the others are added on the way
    std::vector<PlannedClip> clips;
    std::vector<Step> steps;  ///< in the order of time
    double matchStart = 0;    ///< match time when the replay starts
    double speed = 1;         ///< match seconds per second of the replay

    [[nodiscard]] double matchTimeAt(double replayTime) const { return matchStart + replayTime * speed; }
};

struct PlanSettings {
    std::size_t analysts = 2;
    std::uint64_t seed = 1;
    std::optional<double> speed;           ///< absent: chosen by the size of the match
    std::optional<AnalystIndex> dropLink;  ///< whose link drops
};

/// A plan for these events (at least one). The same arguments give the same plan.
///
/// Codes are dealt to the analysts; whoever has a code tags its clips, each when it ends. Some clips are retimed later
/// by anybody, some deleted by whoever tagged them; rows are recoloured, moved, added with a clip or two, and
/// removed by whoever added them. Twice everyone pauses and a row is renamed to a name that no row ever had. One link
/// drops in the middle, away from the pauses.
[[nodiscard]] ReplayPlan makeReplayPlan(const std::vector<CodedEvent>& events, const PlanSettings& settings);

}  // namespace CodingDesk
