#pragma once

#include "Apps/Simulator/Outcome/Reasons.hpp"

#include <cstdint>
#include <string_view>
#include <vector>

/// The names of rows that a moment was given, one after the other, and how its clips followed them.
namespace Simulator {

[[nodiscard]] bool isIn(const ReferenceHost::RemoteChange& change, const MomentHistory& moment);

/// The change names the moment.
[[nodiscard]] std::string_view codeIn(const ReferenceHost::RemoteChange& change, const MomentHistory& moment);

/// After that change of the session.
[[nodiscard]] std::string_view codeAt(const MomentHistory& moment, std::uint64_t sequence);

/// The write that made that change of the session; null: it is not in the trace.
[[nodiscard]] const Call* callOf(const History& history, const SessionHistory* session,
                                 std::uint64_t sequence);

/// The clip that its author's timeline handed out knew of no row, or somebody's that is of no row now.
[[nodiscard]] bool wasSentWithoutRow(const History& history, const MomentHistory& moment);

/// A row of the moment's new code was there, so that its clip stayed on its own.
[[nodiscard]] bool isLeftOnItsRow(const History& history, const Placement& placement);

/// In that stay, before that entry.
[[nodiscard]] bool wasLeftOnItsRow(const History& history, const MomentHistory& moment, std::size_t stay,
                                   std::size_t before);

/// Somebody's new name for the row was written to this moment and not to the other: its author did not have that yet, the other's
/// did not know of the name, or the other could not be written. `seen` has the stays that are being explained by it.
[[nodiscard]] Reason whyRenamedWithout(const History& history, const MomentHistory& moment,
                                       const MomentHistory& other, const std::vector<std::size_t>& seen);

/// Whoever has renamed the clip's row did not have the clip on it.
[[nodiscard]] Reason whyNotRenamed(const History& history, const Loss& loss);

/// The clip's row was given a name that its moment was not given: by its user, or because it followed another moment.
[[nodiscard]] Reason whyNamedOtherwise(const History& history, const Loss& loss,
                                       const std::vector<std::size_t>& seen);

/// The row was new, and could not be listed before it was renamed: the clips of such a row are not written with its new name, and
/// this one was not.
[[nodiscard]] Reason whyRowIsUnlisted(const History& history, const UserEdit& renaming,
                                      std::string_view moment);

/// The new name is not saved before all clips of the row have been written with it, and one was not.
[[nodiscard]] Reason whyNameIsHeldBack(const History& history, const UserEdit& renaming);

/// The rows of the timeline stand in another order than the list, all but for some that were made anew for their clips.
[[nodiscard]] Reason whyInAnotherOrder(const History& history, const Loss& loss);

/// As `whyOnWrongRow`, for a clip of a timeline on which another one depends.
[[nodiscard]] Reason whyOnWrongRow(const History& history, const Loss& loss,
                                   const std::vector<std::size_t>& seen);

}  // namespace Simulator
