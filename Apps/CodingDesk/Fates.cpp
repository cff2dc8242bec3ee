#include "Apps/CodingDesk/Fates.hpp"

#include "Apps/CodingDesk/Text.hpp"

#include <cstddef>

namespace CodingDesk {

namespace {

std::string listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

}  // namespace

std::vector<std::string> fates(const std::vector<Work>& all, const std::set<std::string>& momentOrigins,
                               const std::set<std::string>& rows) {
    std::size_t kept = 0;
    std::vector<std::string> lost;
    std::vector<std::string> clipsBack;
    std::vector<std::string> rowsBack;
    for (const Work& work : all) {
        for (const Work::Clip& clip : work.clips) {
            const bool isThere = momentOrigins.contains(clip.instanceId);
            if (clip.isDeleted == isThere) {
                const std::string name = work.analyst + "'s " + matchTime(clip.start) + "–" +
                                         matchTime(clip.end) + " on " + CodingDesk::quoted(clip.row);
                (isThere ? clipsBack : lost).push_back(name);
            } else if (isThere) {
                ++kept;
            }
        }
        for (const std::string& row : work.removedRows) {
            if (rows.contains(row)) {
                rowsBack.push_back(CodingDesk::quoted(row));
            }
        }
    }
    std::vector<std::string> lines;
    lines.push_back(lost.empty()
                        ? "Every clip that was tagged and not deleted is there: " + std::to_string(kept) + '.'
                        : "Of the clips that were tagged and not deleted " + std::to_string(kept) +
                              " are there and " + std::to_string(lost.size()) + " are lost.");
    if (!lost.empty()) {
        lines.push_back("  lost: " + listed(lost));
    }
    if (!clipsBack.empty()) {
        lines.push_back("  deleted while they were being sent, and back: " + listed(clipsBack));
    }
    if (!rowsBack.empty()) {
        lines.push_back("  removed while somebody else sent a list of rows, and back: " + listed(rowsBack));
    }
    return lines;
}

}  // namespace CodingDesk
