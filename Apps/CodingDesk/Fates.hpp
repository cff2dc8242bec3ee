#pragma once

#include <set>
#include <string>
#include <vector>

namespace CodingDesk {

/// What one analyst has made and taken back.
struct Work {
    struct Clip {
        std::string instanceId;
        std::string row;  ///< its name when the clip was tagged
        double start = 0;
        double end = 0;
        bool isDeleted = false;
    };

    std::string analyst;
    std::vector<Clip> clips;
    std::set<std::string> removedRows;  ///< by name; removed by hand, with the clips on them
};

/// What became of everybody's work in the end, a line each. All timelines may be equal and still not show what somebody
/// meant: where two edits meet, the one that reaches the cloud last holds.
///
/// `momentOrigins`: the instance ids from which the cloud's moments were made; `rows`: the cloud's list of codes.
[[nodiscard]] std::vector<std::string> fates(const std::vector<Work>& all,
                                             const std::set<std::string>& momentOrigins,
                                             const std::set<std::string>& rows);

}  // namespace CodingDesk
