#pragma once

#include "Apps/Simulator/Outcome/History.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Simulator {

/// One clip as all its users see it: the clips that stand for it on their timelines, and its moment, or its moments, where it was
/// deleted and brought back.
struct SharedClip {
    std::vector<const UserEdit*> edits;           ///< in sessions, in order
    std::vector<std::string_view> clips;          ///< of those edits
    std::vector<std::string_view> moments;        ///< that it has or had
    std::vector<std::string_view> livingMoments;  ///< in the cloud at the end
    bool isFromElsewhere = false;  ///< it was edited outside of all sessions, or in another one
};

/// The clips of all sessions, each with what was done to it.
[[nodiscard]] std::vector<SharedClip> findSharedClips(const History& history);

/// Whether the earlier edit was known to the author of the later one: made on the same timeline, or received there.
[[nodiscard]] bool wasKnown(const History& history, const SharedClip& clip, const UserEdit& earlier,
                            const UserEdit& later);

/// The call that has brought the edit into the cloud; null: there is none.
[[nodiscard]] const Call* callThatBrought(const History& history, const SharedClip& clip,
                                          const UserEdit& edit);

}  // namespace Simulator
