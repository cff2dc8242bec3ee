#pragma once

#include "Apps/Simulator/Outcome/History.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Simulator {

/// What is not as a user would have it.
enum class LossKind : std::uint8_t {
    // A timeline and the cloud differ.
    clipMissing,     ///< in the cloud and not on the timeline
    clipExtra,       ///< on the timeline, its moment not in the cloud
    clipUnsent,      ///< on the timeline without a moment
    clipTwice,       ///< two clips for one moment
    clipValues,      ///< other times or notes
    clipOnWrongRow,  ///< its row has another name than the moment's code
    rowMissing,
    rowExtra,  ///< not in the shared list, and without clips
    rowTwice,
    rowColor,
    rowOrder,

    // The cloud does not have what users did.
    tagLost,
    deletionLost,
    retimeLost,
    noteLost,
    clipDoubled,  ///< one clip has two moments
    newRowLost,
    rowRemovalLost,
    renameLost,
    recolorLost,
    moveLost,
};

[[nodiscard]] const char* nameOf(LossKind kind);

struct Loss {
    LossKind kind = LossKind::clipMissing;
    std::size_t stay = never;  ///< whose timeline it is, or in which the edit was made
    std::string_view moment;
    std::string_view clip;
    std::string_view row;            ///< its name
    const UserEdit* edit = nullptr;  ///< the one that is lost
    std::string what;                ///< in words
};
using Losses = std::vector<Loss>;

/// How each timeline whose analyst is still in the session differs from what the cloud holds.
[[nodiscard]] Losses compareTimelines(const History& history);

/// What users did to clips in sessions and is not so in the cloud.
[[nodiscard]] Losses findLostClipEdits(const History& history);

/// What users did to rows in sessions and is not so in the cloud.
[[nodiscard]] Losses findLostRowEdits(const History& history);

}  // namespace Simulator
