#pragma once

#include "Apps/Simulator/Outcome/ClipEdits.hpp"
#include "Apps/Simulator/Outcome/History.hpp"
#include "Apps/Simulator/Outcome/Loss.hpp"
#include "Apps/Simulator/Outcome/LossClass.hpp"

#include <optional>
#include <string_view>
#include <vector>

/// Why something is not as a user would have it: each function looks into the trace for one clip or row.
namespace Simulator {

using Reason = std::optional<LossClass>;

/// Why the cloud was never told of the edit. Of an edit of clips: of this one. Of a row's new name: of this moment's new code.
[[nodiscard]] Reason whyNotSent(const History& history, const UserEdit& edit, std::string_view clip = {},
                                std::string_view moment = {});

/// A row of the timeline, or the order of its rows, is not as in the shared list.
[[nodiscard]] Reason whyRowDiffers(const History& history, const Loss& loss);

/// A row of the timeline, without clips, is not in the shared list.
[[nodiscard]] Reason whyNotListed(const History& history, const Loss& loss);

/// The last list that came to the timeline before that entry; null: none.
[[nodiscard]] const Arrival* lastList(const StayHistory& stay, std::size_t before = never);

/// The shared list does not have this edit, though it was sent.
[[nodiscard]] Reason whyRowEditIsLost(const History& history, const Loss& loss);

/// While the upload that was to list a row ran, a clip of it came, or its own came back, and recorded the row, which the upload then
/// took for one that the list has.
[[nodiscard]] bool wasTakenForKnown(const History& history, const UserEdit& edit);

/// A new row was renamed while the upload that was to list it ran, and the new name went out before that had ended: it was not known
/// yet which name the cloud had been told, so that the row did not count as renamed.
[[nodiscard]] bool wasRenamedWhileListed(const History& history, const UserEdit& renaming);

/// The timeline could not be edited at that entry.
[[nodiscard]] bool hadNoTarget(const History& history, const StayHistory& stay, std::size_t at);

/// Why a clip stands on a row that has another name than its moment's code.
[[nodiscard]] Reason whyOnWrongRow(const History& history, const Loss& loss);

/// Of clips that were deleted and brought back.
[[nodiscard]] Reason whyOfBroughtBack(const History& history, const Loss& loss);

/// A pull that could not read the moment took it for deleted, on some timeline.
[[nodiscard]] bool wasReadAsDeleted(const History& history, const MomentHistory& moment, std::string_view id);

/// The timeline's first fetch has failed, and there was no other.
[[nodiscard]] Reason whyNeverFetched(const History& history, const Loss& loss);

/// The clip is older than the stay that publishes its timeline, and every upload of that stay has failed.
[[nodiscard]] Reason whyNeverPublished(const History& history, const Loss& loss);

/// The cloud has a moment for the clip, and the clip's own timeline does not know of it.
[[nodiscard]] Reason whyNeverNamed(const History& history, const Loss& loss);

/// The cloud has a clip that is not on the timeline.
[[nodiscard]] Reason whyNotArrived(const History& history, const Loss& loss);

/// The timeline that had made the clip did not know yet which moment was its clip's when somebody deleted that one: an edit has sent
/// the clip anew, as this moment.
[[nodiscard]] bool wasSentAnew(const History& history, std::string_view moment);

/// The clip was brought back as this moment, and was written as the one before with its row's new name: the news that that one is
/// deleted took the clip away, or the fetch that brought this one's id, if that had not come back.
[[nodiscard]] bool wasTakenForItsFormerMoment(const History& history, const Loss& loss);

/// The deletion was taken back, came back from the cloud, and was done again; or it was still on its way to the cloud, or
/// its answer was lost, so that the clip was sent once more as one that is there. The edit is the undo, or a later one of that clip.
[[nodiscard]] bool wasTakenAwayAgain(const History& history, const UserEdit& edit, std::string_view clip);

/// The clip is on the timeline, and its moment was deleted.
[[nodiscard]] Reason whyNotTakenAway(const History& history, const Loss& loss);

/// Why the cloud still has a clip that was deleted in a session; absent also when that was not in one.
[[nodiscard]] Reason whyNotDeleted(const History& history, const UserEdit& removal, std::string_view clip,
                                   std::string_view moment);

/// Two clips of the timeline stand for the moment.
[[nodiscard]] Reason whyThereTwice(const History& history, const Loss& loss);

/// The cloud's clip is not as users wanted it, though this edit was sent; or it is there more than once.
[[nodiscard]] Reason whyClipEditIsLost(const History& history, const Loss& loss);

/// A clip whose deletion was sent, or seems to have been, is in the cloud.
[[nodiscard]] Reason whyDeletionIsLost(const History& history, const Loss& loss);

/// Why this is not as it should be; absent: nothing that is known explains it.
[[nodiscard]] Reason explain(const History& history, const Loss& loss);

/// The clips of that stay's timeline that stand or stood for the moment.
[[nodiscard]] std::vector<std::string_view> clipsOf(const History& history, std::size_t stay,
                                                    std::string_view moment);

/// The call that made the moment; null: it is not in the trace.
[[nodiscard]] const Call* creationOf(const History& history, const MomentHistory& moment);

/// The user's last edit of one of these clips on that timeline; null: none.
[[nodiscard]] const UserEdit* lastEditOf(const History& history, std::string_view timelineId,
                                         const std::vector<std::string_view>& clips);

}  // namespace Simulator
