#pragma once

#include "Base/Color.hpp"
#include "ReferenceHost/Cloud/RemoteRecords.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace CodingDesk {

/// One clip, on a timeline or in the cloud.
struct ClipState {
    std::optional<std::string> momentId;  ///< absent: it was never sent
    std::string row;                      ///< the row's name
    double start = 0;
    double end = 0;
};

/// One row, on a timeline or in the cloud's list of codes.
struct RowState {
    std::string name;
    Base::Color color;
};

/// What a timeline shows, or what the cloud holds, at one moment.
struct MatchState {
    std::vector<RowState> rows;  ///< from top to bottom
    std::vector<ClipState> clips;
};

/// What the cloud holds of a session.
[[nodiscard]] MatchState stateOf(const ReferenceHost::TaggingSessionRecord& session);

/// One thing that is not as the cloud has it.
struct Difference {
    std::string what;                     ///< in the user's words, without the analyst's name
    std::optional<std::string> momentId;  ///< of the clip it is about, for who looks into the log
};

/// How the timeline differs from what the cloud holds; nothing when they are equal.
///
/// Clips are compared by their moment: row, start and end. Rows are compared by order, name and colour where the cloud's
/// list of codes has them. A row that it has not may stay on a timeline as long as it holds clips: then only those count.
[[nodiscard]] std::vector<Difference> differences(const MatchState& timeline, const MatchState& remote);

}  // namespace CodingDesk
